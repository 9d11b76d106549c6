#include "simulator/service/trouble_json.h"

#include "simulator/service/interference.h"
#include "simulator/service/operation_names.h"
#include "simulator/service/trouble.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>

namespace soapwrapper::simulator
{
namespace
{

using nlohmann::json;

// Not what is inside of an array or object, which may be nested more deeply than the stack is.
std::string shown(const json& value)
{
    if (value.is_structured()) return value.type_name();
    std::string text = value.dump(-1, ' ', true, json::error_handler_t::replace);
    constexpr std::size_t kLongest = 100;
    if (text.size() > kLongest) text = text.substr(0, kLongest) + "...";
    return text;
}

// Reads the members of one trouble, each at most once, and knows which were asked for.
class Members
{
  public:
    explicit Members(const json& object) : object_(object)
    {
        if (!object.is_object()) throw std::invalid_argument("a trouble is an object");
    }

    std::string text(const char* name)
    {
        const json* member = find(name);
        if (!member) throw std::invalid_argument(std::string(name) + " is missing");
        if (!member->is_string()) throw std::invalid_argument(std::string(name) + " is a string");
        return member->get<std::string>();
    }
    std::optional<std::int64_t> number(const char* name, std::int64_t least, std::int64_t greatest)
    {
        const json* member = find(name);
        if (!member || member->is_null()) return std::nullopt;
        // Those beyond a signed number are unsigned ones.
        const bool fits = member->is_number_integer() &&
                          (!member->is_number_unsigned() ||
                           member->get<std::uint64_t>() <= static_cast<std::uint64_t>(greatest)) &&
                          member->get<std::int64_t>() >= least && member->get<std::int64_t>() <= greatest;
        if (!fits) {
            throw std::invalid_argument(std::string(name) + " is a whole number from " +
                                        std::to_string(least) + " to " + std::to_string(greatest) + ", not " +
                                        shown(*member));
        }
        return member->get<std::int64_t>();
    }
    std::int64_t required_number(const char* name, std::int64_t least, std::int64_t greatest)
    {
        const std::optional<std::int64_t> value = number(name, least, greatest);
        if (!value) throw std::invalid_argument(std::string(name) + " is missing");
        return *value;
    }
    double sigma()
    {
        const json* member = find("sigma");
        if (!member || member->is_null()) return 0;
        const double value = member->is_number() ? member->get<double>() : -1;
        if (!(value >= 0 && value <= kLargestSigma)) {
            throw std::invalid_argument("sigma is a number from 0 to 10, not " + shown(*member));
        }
        return value;
    }
    void refuse_others() const
    {
        for (const auto& member : object_.items()) {
            if (asked_.count(member.key()) == 0) {
                throw std::invalid_argument(shown(member.key()) + " is no member of such a trouble");
            }
        }
    }

  private:
    const json* find(const char* name)
    {
        asked_.insert(name);
        const auto member = object_.find(name);
        return member == object_.end() ? nullptr : &*member;
    }

    const json& object_;
    std::set<std::string> asked_;
};

template <class Number>
json number_or_null(const std::optional<Number>& number)
{
    return number ? json(*number) : json(nullptr);
}

} // namespace

Trouble trouble_from_json(const json& object)
{
    Members members(object);
    Trouble trouble;
    trouble.operation = members.text("operation");
    if (!is_operation(trouble.operation)) {
        throw std::invalid_argument(shown(trouble.operation) + " is no operation of the service");
    }
    const std::string name = members.text("kind");
    const std::optional<TroubleKind> kind = trouble_kind_of(name);
    if (!kind) throw std::invalid_argument(shown(name) + " is no kind of trouble");
    trouble.kind = *kind;
    if (kind == TroubleKind::kFault) {
        using Code = std::numeric_limits<int>;
        trouble.code = static_cast<int>(members.required_number("code", Code::min(), Code::max()));
    }
    if (kind == TroubleKind::kDelay || kind == TroubleKind::kDribble) {
        trouble.time =
            std::chrono::milliseconds(members.required_number("milliseconds", 0, kLongestTrouble.count()));
    }
    if (kind == TroubleKind::kDelay) trouble.sigma = members.sigma();
    if (kind == TroubleKind::kHttpError) {
        const auto status = members.number("status", kLeastHttpError, kGreatestHttpError);
        trouble.status = static_cast<int>(status.value_or(trouble.status));
    }
    const auto count = members.number("count", 1, std::numeric_limits<unsigned>::max());
    if (count) trouble.count = static_cast<unsigned>(*count);
    members.refuse_others();
    return trouble;
}

json to_json(const SetTrouble& set)
{
    const Trouble& trouble = set.trouble;
    json result = {{"number", set.number},
                   {"operation", trouble.operation},
                   {"kind", name_of(trouble.kind)},
                   {"count", number_or_null(trouble.count)},
                   {"left", number_or_null(set.left)},
                   {"hits", set.hits}};
    if (trouble.kind == TroubleKind::kFault) result["code"] = trouble.code;
    if (trouble.kind == TroubleKind::kHttpError) result["status"] = trouble.status;
    if (trouble.kind == TroubleKind::kDelay || trouble.kind == TroubleKind::kDribble) {
        result["milliseconds"] = trouble.time.count();
    }
    if (trouble.kind == TroubleKind::kDelay && trouble.sigma > 0) result["sigma"] = trouble.sigma;
    return result;
}

} // namespace soapwrapper::simulator
