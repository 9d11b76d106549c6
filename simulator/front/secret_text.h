#ifndef SOAPWRAPPER_SIMULATOR_FRONT_SECRET_TEXT_H
#define SOAPWRAPPER_SIMULATOR_FRONT_SECRET_TEXT_H

#include <string.h>

#include <cstddef>
#include <cstring>
#include <string_view>
#include <vector>

namespace soapwrapper::simulator
{

// A text that is wiped where it ends: freed memory keeps its bytes until somebody else writes there. It never
// grows, because that would leave a copy behind, and neither does a move leave one.
class SecretText
{
  public:
    SecretText() = default;
    explicit SecretText(std::string_view text) : SecretText(text.size())
    {
        text.copy(bytes_.data(), text.size());
    }
    // As long, to be filled in.
    explicit SecretText(std::size_t size) : bytes_(size + 1) {}
    SecretText(SecretText&& other) noexcept { bytes_.swap(other.bytes_); }
    SecretText& operator=(SecretText&& other) noexcept
    {
        bytes_.swap(other.bytes_);
        return *this;
    }
    ~SecretText() { wipe(); }

    // Ends with a zero, unless it is wiped.
    char* data() { return bytes_.data(); }
    std::string_view view() const { return {bytes_.data(), bytes_.empty() ? 0 : bytes_.size() - 1}; }
    // Leaves out what is behind.
    void cut(std::size_t size)
    {
        if (size >= view().size()) return;
        explicit_bzero(&bytes_[size], bytes_.size() - size);
        bytes_.resize(size + 1);
    }
    void wipe()
    {
        if (!bytes_.empty()) explicit_bzero(bytes_.data(), bytes_.size());
        bytes_.clear();
    }

  private:
    std::vector<char> bytes_;
};

} // namespace soapwrapper::simulator

#endif
