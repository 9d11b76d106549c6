#include "probe/login/discovery_attempts.h"

#include "probe/library/failure.h"
#include "probe/library/session.h"
#include "probe/output/problem.h"
#include "probe/output/status_text.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

struct Outcome {
    LoggedRequest request;
    std::optional<Failure> failure;
    int times = 1;
};

bool ended_alike(const LoggedRequest& one, const LoggedRequest& other)
{
    return one.url == other.url && one.failure == other.failure && one.return_code == other.return_code;
}

// Each once, in the order in which they came first.
std::vector<Outcome> outcomes_of(const std::vector<LoggedRequest>& requests)
{
    std::vector<Outcome> outcomes;
    for (const LoggedRequest& request : requests) {
        const auto same = std::find_if(outcomes.begin(), outcomes.end(), [&](const Outcome& outcome) {
            return ended_alike(outcome.request, request);
        });
        if (same != outcomes.end()) {
            ++same->times;
        } else {
            outcomes.push_back({request, failure_of(request)});
        }
    }
    return outcomes;
}

// One that can't be made out says less than all others.
bool says_more(const Outcome& one, const Outcome& other)
{
    return one.failure && (!other.failure || one.failure->kind < other.failure->kind);
}

Attempt attempt_of(const Outcome& outcome)
{
    const LoggedRequest& request = outcome.request;
    return {request.url, outcome.failure ? summary_of(*outcome.failure, request.failure) : request.failure,
            outcome.times};
}

std::string meaning_behind(const Problem& returned, const Outcome& told)
{
    if (!told.failure) return returned.meaning();
    const int own = told.failure->status;
    if (returned.status() == own) {
        return told.failure->kind == FailureKind::kFault ? returned.meaning() : meaning_of(*told.failure);
    }
    return told.request.url + " failed with " + status_text(own).name + "(" + std::to_string(own) +
           "): " + meaning_of(*told.failure) + " (the status in front is that of the last attempt)";
}

} // namespace

Problem told_by_attempts(const Problem& returned, const std::vector<LoggedRequest>& requests)
{
    const std::vector<Outcome> outcomes = outcomes_of(requests);
    if (outcomes.empty()) return returned;
    const Outcome& told = *std::min_element(outcomes.begin(), outcomes.end(), says_more);
    Problem problem(returned.code(), returned.name(), returned.status(), meaning_behind(returned, told),
                    told.request.failure);
    problem.set_url(told.request.url);
    if (requests.size() == 1) return problem;
    std::vector<Attempt> attempts;
    for (const Outcome& outcome : outcomes) attempts.push_back(attempt_of(outcome));
    problem.set_attempts(std::move(attempts));
    return problem;
}

} // namespace soapwrapper::probe
