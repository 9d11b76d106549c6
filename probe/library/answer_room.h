// The buffer for what a control command answers.
#ifndef SOAPWRAPPER_PROBE_LIBRARY_ANSWER_ROOM_H
#define SOAPWRAPPER_PROBE_LIBRARY_ANSWER_ROOM_H

#include <cstddef>
#include <string>

namespace soapwrapper::probe
{

// The library ends a text behind the whole of it, even where it cut it, so that the service decides where a
// byte is written. The room is address space, most of it never touched: far more than the library is told of
// can be written to, and what lies behind that is out of bounds, so that nothing else is ever overwritten.
class AnswerRoom
{
  public:
    static constexpr std::size_t kWritable = std::size_t{1} << 30U;
    static constexpr std::size_t kReserved = std::size_t{1} << 34U;

    // Cleared. Address space that can't be had is a Problem.
    AnswerRoom();
    ~AnswerRoom();
    AnswerRoom(const AnswerRoom&) = delete;
    AnswerRoom& operator=(const AnswerRoom&) = delete;

    char* buffer() const { return buffer_; }

    // Writes a text, which must fit, and its terminator.
    void put(const std::string& text);

    // What stands in the first `size` bytes, up to a terminator.
    std::string text(std::size_t size) const;

  private:
    char* buffer_ = nullptr;
};

} // namespace soapwrapper::probe

#endif
