// One line on a terminal that tells how a long job stands, and is gone when the job is done.
#ifndef SOAPWRAPPER_PROBE_OUTPUT_PROGRESS_LINE_H
#define SOAPWRAPPER_PROBE_OUTPUT_PROGRESS_LINE_H

#include <unistd.h>

#include <cstddef>
#include <mutex>
#include <string>

namespace soapwrapper::probe
{

// Nothing is ever written where `descriptor` is no terminal. To be used by any thread.
//
// What else goes to the same terminal goes through a DescriptorStream that knows the line, and clears it.
class ProgressLine
{
  public:
    explicit ProgressLine(int descriptor = STDERR_FILENO);
    ~ProgressLine() { clear(); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    // False: there is nobody to show it to.
    bool visible() const { return visible_; }

    // Puts `text` in the place of what stood there, cut to the width of the terminal. It must be clean.
    void show(const std::string& text);

    // The same for a text that is of less interest: it is shown only where no other text stands.
    void show_waiting(const std::string& text);

    // Leaves an empty line with the cursor at its beginning.
    void clear();

    // The same if it was show_waiting() that showed something.
    void clear_waiting();

    // The line is clear, and stays so as long as this lives.
    class Room
    {
      public:
        explicit Room(ProgressLine& line) : line_(line), lock_(line.mutex_) { line.clear_now(); }

        // This was written to the terminal meanwhile.
        void written(const char* bytes, std::size_t count);

      private:
        ProgressLine& line_;
        const std::lock_guard<std::mutex> lock_;
    };

  private:
    void show_now(const std::string& text);
    void clear_now();

    const int descriptor_;
    const bool visible_;
    std::mutex mutex_;       // guards what follows
    std::size_t shown_ = 0;  // columns
    bool waiting_ = false;   // what is shown is of less interest
    bool in_a_line_ = false; // something else has begun a line and not ended it
};

} // namespace soapwrapper::probe

#endif
