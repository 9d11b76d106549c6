#include "simulator/scenario/json_members.h"

#include "simulator/scenario/scenario_error.h"
#include "simulator/scenario/text.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>

namespace soapwrapper::simulator
{
namespace
{

std::string found(const Json& value)
{
    return std::string(", not ") + (value.is_number_float() ? "a fraction" : value.type_name());
}

} // namespace

void refuse_json(const std::string& path, const std::string& why)
{
    throw ScenarioError((path.empty() ? "the document" : path) + ": " + why);
}

const Json& json_array(const Json& value, const std::string& path)
{
    if (!value.is_array()) refuse_json(path, "an array is expected" + found(value));
    return value;
}

void read_json(const Json& value, const std::string& path, std::string& text)
{
    if (!value.is_string()) refuse_json(path, "a string is expected" + found(value));
    text = value.get<std::string>();
    const auto has_no_place_in_xml = [](char c) {
        return static_cast<unsigned char>(c) < ' ' && c != '\t' && c != '\n';
    };
    if (std::any_of(text.begin(), text.end(), has_no_place_in_xml)) {
        refuse_json(path, "a control character can't be sent");
    }
}

void read_json(const Json& value, const std::string& path, std::int64_t& number)
{
    if (!value.is_number_integer()) refuse_json(path, "a whole number is expected" + found(value));
    constexpr auto kLargest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (value.is_number_unsigned() && value.get<std::uint64_t>() > kLargest) {
        refuse_json(path, "the number doesn't fit 64 bits");
    }
    number = value.get<std::int64_t>();
}

void read_json(const Json& value, const std::string& path, int& number)
{
    std::int64_t wide = 0;
    read_json(value, path, wide);
    if (wide < std::numeric_limits<int>::min() || wide > std::numeric_limits<int>::max()) {
        refuse_json(path, "the number doesn't fit 32 bits");
    }
    number = static_cast<int>(wide);
}

JsonMembers::JsonMembers(const Json& object, std::string path) : object_(object), path_(std::move(path))
{
    if (!object.is_object()) refuse_json(path_, "an object is expected" + found(object));
}

void JsonMembers::finish() const
{
    for (const auto& member : object_.items()) {
        if (known_.count(member.key()) != 0) continue;
        std::string expected;
        for (const std::string& name : known_) expected += (expected.empty() ? "" : ", ") + name;
        refuse_json(path_,
                    "the member \"" + printable(member.key()) + "\" is unknown; there are " + expected);
    }
}

std::string JsonMembers::path_of(const std::string& name) const
{
    return path_.empty() ? name : path_ + "." + name;
}

const Json* JsonMembers::find(const char* name)
{
    known_.insert(name);
    const auto member = object_.find(name);
    return member == object_.end() ? nullptr : &*member;
}

} // namespace soapwrapper::simulator
