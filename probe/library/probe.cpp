#include "probe/library/probe.h"

#include "plugin/host/status.h"
#include "probe/library/failure.h"
#include "probe/library/session.h"
#include "probe/output/output.h"
#include "probe/output/problem.h"
#include "probe/output/status_text.h"

#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

constexpr std::string_view kRefusedWithZero = "HANDLE_SOAP_FAULT: 0";

bool ends_with(std::string_view text, std::string_view end)
{
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

// The status of a call whose request failed on its way says no more than that.
bool is_told_by(const Failure& failure, int status)
{
    return failure.status == status || (failure.status == STS_ESOAPERROR && status == STS_ENOSERVICEHANDLE);
}

std::string meaning_of_last(const std::optional<Failure>& failure, const StatusText& status)
{
    if (status.status == STS_EOK) return "the service refused, but with the status of success";
    return failure && is_told_by(*failure, status.status) ? meaning_of(*failure) : status.meaning;
}

// An entry may add a line of its own to what its request has failed with.
std::optional<Failure> last_failure_among(const std::vector<LoggedRequest>& requests)
{
    for (auto request = requests.rbegin(); request != requests.rend(); ++request) {
        if (auto failure = failure_of(*request)) return failure;
    }
    return std::nullopt;
}

} // namespace

std::optional<Problem> problem_of(const Probe& probe, int status)
{
    const std::string said = probe.session.last_failure();
    if (status == STS_EOK && !ends_with(said, kRefusedWithZero)) return std::nullopt;
    const std::vector<LoggedRequest> requests = probe.session.requests();
    const auto failure = last_failure_among(requests);
    const StatusText text = status_text(status);
    Problem problem(ExitCode::kOperation, text.name, status, meaning_of_last(failure, text), said);
    // What the library refuses by itself has nothing to do with the service.
    const bool was_asked = failure || (!requests.empty() && requests.back().return_code);
    if (was_asked) problem.set_url(probe.session.endpoint());
    return problem;
}

std::optional<Problem> EntryCall::problem(int status)
{
    auto problem = problem_of(probe_, status);
    if (!problem) return std::nullopt;
    auto cut = call_.why_cut(problem->detail());
    if (!cut) return problem;
    cut->set_url(problem->url());
    cut->set_attempts(problem->attempts());
    return cut;
}

void EntryCall::check(int status)
{
    if (status == STS_EOK || !call_.why_cut({})) return;
    if (const auto cut = problem(status)) throw Problem(*cut);
}

void keep_unclosed(void* handle)
{
    static auto* const handles = new std::vector<void*>; // outlives every check at the end of the process
    handles->push_back(handle);
}

void warn(const std::string& what, const Problem& problem)
{
    std::cerr << "warning: " << what << '\n';
    print_problem(problem, std::cerr);
}

} // namespace soapwrapper::probe
