// Why a command ends before its time.
#ifndef SOAPWRAPPER_PROBE_OUTPUT_PROBLEM_H
#define SOAPWRAPPER_PROBE_OUTPUT_PROBLEM_H

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{

enum class ExitCode {
    kGood = 0,
    kUsage = 2,
    kLibrary = 3,
    kOperation = 4,
    kInterrupted = 5,
    kUnsound = 6,     // an installation, as check has found
    kClosedPipe = 141 // as of a process that SIGPIPE has ended
};

// A try to reach the service, and what became of it.
struct Attempt {
    std::string url;
    std::string failure; // in a line; may hold anything that a service sent
    int times = 1;       // that it was made and ended so
};

class Problem : public std::runtime_error
{
  public:
    Problem(ExitCode code, std::string name, std::optional<int> status, const std::string& meaning,
            std::string detail = {})
        : std::runtime_error(meaning), code_(code), name_(std::move(name)), status_(status),
          detail_(std::move(detail))
    {
    }

    ExitCode code() const { return code_; }
    const std::string& name() const { return name_; }
    std::optional<int> status() const { return status_; } // none: it didn't come from an entry
    std::string meaning() const { return what(); }
    const std::string& detail() const { return detail_; } // may hold anything that a service sent

    // Where the service was looked for; empty: it isn't known, or none was.
    const std::string& url() const { return url_; }
    void set_url(std::string url) { url_ = std::move(url); }

    // All that was tried, in order, if that was more than one thing; the URL and the rest are then those of
    // the one that says most.
    const std::vector<Attempt>& attempts() const { return attempts_; }
    void set_attempts(std::vector<Attempt> attempts) { attempts_ = std::move(attempts); }
    void add_detail(const std::string& line) { detail_ += (detail_.empty() ? "" : "\n") + line; }

  private:
    ExitCode code_;
    std::string name_;
    std::optional<int> status_;
    std::string detail_;
    std::string url_;
    std::vector<Attempt> attempts_;
};

// The command can't be carried out as it was given.
inline Problem usage_problem(const std::string& meaning, std::string detail = {})
{
    return Problem(ExitCode::kUsage, "usage", std::nullopt, meaning, std::move(detail));
}

// The library can't be driven at all.
inline Problem library_problem(const std::string& meaning, std::string detail = {})
{
    return Problem(ExitCode::kLibrary, "library", std::nullopt, meaning, std::move(detail));
}

// The same problem with a line more behind its detail.
inline Problem with_more_detail(Problem problem, const std::string& more)
{
    problem.add_detail(more);
    return problem;
}

} // namespace soapwrapper::probe

#endif
