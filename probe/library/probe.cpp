#include "probe/library/probe.h"

#include "plugin/host/status.h"
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

} // namespace

std::optional<Problem> problem_of(const Probe& probe, int status)
{
    const std::string said = probe.session.last_failure();
    const StatusText text = status_text(status);
    if (status != STS_EOK) return Problem(ExitCode::kOperation, text.name, status, text.meaning, said);
    if (!ends_with(said, kRefusedWithZero)) return std::nullopt;
    return Problem(ExitCode::kOperation, text.name, status,
                   "the service refused, but with the status of success", said);
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
