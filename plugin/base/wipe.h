// Secrets leave memory with the object that held them: a freed block keeps its bytes until somebody else
// writes there.
#ifndef SOAPWRAPPER_PLUGIN_BASE_WIPE_H
#define SOAPWRAPPER_PLUGIN_BASE_WIPE_H

#include <cstdlib>
#include <cstring>
#include <string>
#include <type_traits>

namespace soapwrapper
{

// A record or an array of plain bytes.
template <class Plain>
void wipe(Plain& plain)
{
    static_assert(std::is_trivially_copyable_v<Plain> && !std::is_pointer_v<Plain>, "bytes and nothing else");
    explicit_bzero(&plain, sizeof plain);
}

// All that the text has room for: one that was moved from, or is shorter than it was, still holds the rest.
// A text that grows leaves a copy of itself behind, so a secret one is made in its full length.
inline void wipe(std::string& text)
{
    text.resize(text.capacity());
    explicit_bzero(text.data(), text.size());
    text.clear();
}

// Wipes a named object at the end of the scope, however the scope is left.
template <class Secret>
class WipeAtEnd
{
  public:
    explicit WipeAtEnd(Secret& secret) : secret_(secret) {}
    ~WipeAtEnd() { wipe(secret_); }
    WipeAtEnd(const WipeAtEnd&) = delete;
    WipeAtEnd& operator=(const WipeAtEnd&) = delete;

  private:
    Secret& secret_;
};

// Blocks from malloc; there may be none.
inline void wipe_and_free(char* text)
{
    if (text) explicit_bzero(text, std::strlen(text));
    std::free(text);
}

template <class Record>
void wipe_and_free(Record* record)
{
    if (record) wipe(*record);
    std::free(record);
}

} // namespace soapwrapper

#endif
