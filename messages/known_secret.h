#ifndef SOAPWRAPPER_MESSAGES_KNOWN_SECRET_H
#define SOAPWRAPPER_MESSAGES_KNOWN_SECRET_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::messages
{

// A text that must not be seen, however it is written. It is wiped at the end.
class KnownSecret
{
  public:
    static constexpr std::size_t kShortest = 4; // a shorter one stands everywhere

    explicit KnownSecret(std::string_view secret);
    ~KnownSecret();
    KnownSecret(const KnownSecret&) = delete;
    KnownSecret& operator=(const KnownSecret&) = delete;

    // Blotted out as text and as Base64, also with XML's references, comments and sections in between. Of a
    // text that `is_cut`, a part of the secret at its end is, too.
    std::string blotted(std::string_view text, bool is_cut) const;

  private:
    bool may_be_in(std::string_view text) const;

    std::vector<std::string> texts_;
    std::vector<std::string> base64_;
};

} // namespace soapwrapper::messages

#endif
