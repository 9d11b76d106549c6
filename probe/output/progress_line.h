// One line on a terminal that tells how a long job stands, and is gone when the job is done.
#ifndef SOAPWRAPPER_PROBE_OUTPUT_PROGRESS_LINE_H
#define SOAPWRAPPER_PROBE_OUTPUT_PROGRESS_LINE_H

#include <unistd.h>

#include <cstddef>
#include <string>

namespace soapwrapper::probe
{

// Nothing is ever written where `descriptor` is no terminal.
//
// Whoever prints something else clears the line first; that holds for calls of the library too, since its
// log lines may be printed on the same terminal.
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

    // Leaves an empty line with the cursor at its beginning.
    void clear();

  private:
    const int descriptor_;
    const bool visible_;
    std::size_t shown_ = 0; // columns
};

} // namespace soapwrapper::probe

#endif
