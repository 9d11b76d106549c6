// Text on its way to a file, a pipe or a terminal, whose failure is known by its number.
#ifndef SOAPWRAPPER_PROBE_OUTPUT_DESCRIPTOR_STREAM_H
#define SOAPWRAPPER_PROBE_OUTPUT_DESCRIPTOR_STREAM_H

#include <array>
#include <atomic>
#include <cstddef>
#include <functional>
#include <ostream>
#include <streambuf>
#include <utility>

namespace soapwrapper::probe
{

class ProgressLine;

class DescriptorBuffer : public std::streambuf
{
  public:
    // Waits until the descriptor takes something; false: it is not to be waited for any longer.
    using Wait = std::function<bool(int descriptor)>;

    // `line` is cleared where it stands on the same terminal; null: none does.
    DescriptorBuffer(int descriptor, Wait wait, ProgressLine* line);
    ~DescriptorBuffer() override { sync(); }
    DescriptorBuffer(const DescriptorBuffer&) = delete;
    DescriptorBuffer& operator=(const DescriptorBuffer&) = delete;

    // What the first failure was, as errno has it; 0: there was none. Behind one nothing is written any more.
    int error() const { return error_; }

    // Whether anything was ever written. Any thread may ask.
    bool used() const { return used_; }

  protected:
    int_type overflow(int_type character) override;
    int sync() override;

  private:
    bool write_all();
    std::ptrdiff_t write_some(const char* bytes, std::size_t count);

    const int descriptor_;
    const Wait wait_;
    ProgressLine* const line_;
    const std::size_t most_at_once_;
    int error_ = 0;
    std::atomic<bool> used_ = false;
    std::array<char, 65536> bytes_;
};

class DescriptorStream : public std::ostream
{
  public:
    explicit DescriptorStream(int descriptor, DescriptorBuffer::Wait wait = {}, ProgressLine* line = nullptr)
        : std::ostream(nullptr), buffer_(descriptor, std::move(wait), line)
    {
        rdbuf(&buffer_);
    }

    int error() const { return buffer_.error(); }
    bool used() const { return buffer_.used(); }

  private:
    DescriptorBuffer buffer_;
};

} // namespace soapwrapper::probe

#endif
