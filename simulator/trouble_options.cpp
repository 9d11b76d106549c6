#include "simulator/trouble_options.h"

#include "simulator/front/number_in.h"
#include "simulator/option_error.h"
#include "simulator/service/interference.h"
#include "simulator/service/operation_names.h"
#include "simulator/service/trouble.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

constexpr char kFault[] = "--fault";
constexpr char kDelay[] = "--delay";

// The text ahead of the first such character, and if there is one, the text behind it.
std::pair<std::string_view, std::optional<std::string_view>> halves(std::string_view text, char separator)
{
    const std::size_t at = text.find(separator);
    if (at == std::string_view::npos) return {text, std::nullopt};
    return {text.substr(0, at), text.substr(at + 1)};
}

// Splits OPERATION=REST and makes sure that there is such an operation.
std::pair<std::string, std::string_view> rule_in(const std::string& option, std::string_view text)
{
    const auto [operation, rest] = halves(text, '=');
    if (!rest) refuse(option, text, "has no \"=\" behind the operation");
    if (!is_operation(operation)) refuse(option, text, "doesn't begin with an operation of the service");
    return {std::string(operation), *rest};
}

std::chrono::milliseconds time_in(const std::string& option, const std::string& text, std::string_view given)
{
    const std::optional<unsigned> milliseconds = number_in<unsigned>(given);
    if (!milliseconds || *milliseconds > kLongestTrouble.count()) {
        refuse(option, text,
               "has MS that are not a number from 0 to " + std::to_string(kLongestTrouble.count()));
    }
    return std::chrono::milliseconds(*milliseconds);
}

int status_in(const std::string& text, std::string_view given)
{
    const std::optional<int> status = number_in<int>(given);
    if (!status || *status < kLeastHttpError || *status > kGreatestHttpError) {
        refuse(kFault, text,
               "has a STATUS that is not a number from " + std::to_string(kLeastHttpError) + " to " +
                   std::to_string(kGreatestHttpError));
    }
    return *status;
}

// KIND, or KIND:VALUE.
void read_kind(Trouble& trouble, const std::string& text, std::string_view given)
{
    const auto [name, value] = halves(given, ':');
    const std::optional<TroubleKind> kind = trouble_kind_of(name);
    if (!kind || kind == TroubleKind::kFault || kind == TroubleKind::kDelay) {
        refuse(kFault, text, "names no CODE in 32 bits, nor a KIND of trouble");
    }
    trouble.kind = *kind;
    if (kind == TroubleKind::kDribble) {
        trouble.time = time_in(kFault, text, value.value_or(""));
    } else if (value && kind == TroubleKind::kHttpError) {
        trouble.status = status_in(text, *value);
    } else if (value) {
        refuse(kFault, text, "has a value behind a KIND that takes none");
    }
}

Trouble fault_in(const std::string& text)
{
    Trouble trouble;
    std::string_view rest;
    std::tie(trouble.operation, rest) = rule_in(kFault, text);
    const auto [what, count] = halves(rest, ',');
    if (const std::optional<int> code = number_in<int>(what)) {
        trouble.code = *code;
    } else {
        read_kind(trouble, text, what);
    }
    if (count) {
        trouble.count = number_in<unsigned>(*count);
        if (!trouble.count || *trouble.count == 0) refuse(kFault, text, "has a COUNT that is not 1 or more");
    }
    return trouble;
}

Trouble delay_in(const std::string& text)
{
    Trouble trouble;
    std::string_view rest;
    std::tie(trouble.operation, rest) = rule_in(kDelay, text);
    trouble.kind = TroubleKind::kDelay;
    const auto [milliseconds, deviation] = halves(rest, '~');
    trouble.time = time_in(kDelay, text, milliseconds);
    if (deviation) {
        const std::optional<double> sigma = number_in<double>(*deviation);
        if (!sigma || !(*sigma > 0 && *sigma <= kLargestSigma)) {
            refuse(kDelay, text, "has a SIGMA that is not a number above 0, and 10 at most");
        }
        trouble.sigma = *sigma;
    }
    return trouble;
}

void add_delay(std::vector<Trouble>& delays, const std::string& text)
{
    Trouble trouble = delay_in(text);
    for (const Trouble& other : delays) {
        if (other.operation == trouble.operation) refuse(kDelay, text, "is the second one for its operation");
    }
    delays.push_back(std::move(trouble));
}

} // namespace

std::vector<Trouble> troubles_in(const std::vector<std::string>& faults,
                                 const std::vector<std::string>& delays)
{
    std::vector<Trouble> troubles;
    for (const std::string& text : delays) add_delay(troubles, text);
    for (const std::string& text : faults) {
        if (troubles.size() >= Interference::kMostTroubles) {
            refuse(kFault, text, "is one more than the greatest number of troubles");
        }
        troubles.push_back(fault_in(text));
    }
    return troubles;
}

} // namespace soapwrapper::simulator
