// What was looked at and what is to be said of it, line by line.
#ifndef SOAPWRAPPER_PROBE_CHECK_CHECK_REPORT_H
#define SOAPWRAPPER_PROBE_CHECK_CHECK_REPORT_H

#include "probe/output/output.h"

#include <cstddef>
#include <string>

namespace soapwrapper::probe
{

enum class Mark {
    kOk,
    kInfo, // neither good nor bad
    kWarning,
    kWrong // a backup will fail, or the library doesn't do what it was told
};

class CheckReport
{
  public:
    CheckReport(Output& output, bool coloured) : output_(output), coloured_(coloured) {}

    // What follows is about this.
    void begin_group(const std::string& name);

    // `subject` is a word or two. Texts may hold anything. `advice` says what to do.
    void add(Mark mark, const std::string& subject, const std::string& text, const std::string& advice = {});

    // Says what all that comes to. Anything wrong is thrown as a Problem.
    void finish();

  private:
    void print_line(Mark mark, const std::string& subject, const std::string& text);

    Output& output_;
    const bool coloured_;
    std::string group_;
    std::size_t wrong_ = 0;
    std::size_t warnings_ = 0;
};

// Whether marks are to be coloured on standard output: on a terminal, unless the environment forbids it.
bool output_takes_colours();

} // namespace soapwrapper::probe

#endif
