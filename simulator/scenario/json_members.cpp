#include "simulator/scenario/json_members.h"

#include "simulator/scenario/text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

namespace soapwrapper::simulator
{
namespace
{

std::string found(const Json& value)
{
    return std::string(", not ") + (value.is_number_float() ? "a fraction" : value.type_name());
}

} // namespace

JsonPlace JsonPlace::member(const std::string& name) const
{
    return {findings_, path_.empty() ? name : path_ + "." + name};
}

JsonPlace JsonPlace::entry(std::size_t index) const
{
    return {findings_, path_ + "[" + std::to_string(index) + "]"};
}

void JsonPlace::refuse(const std::string& why) const
{
    findings_.add_error(path_.empty() ? "the document" : path_, why);
}

void JsonPlace::warn(const std::string& why) const
{
    findings_.add_warning(path_, why);
}

const Json* json_array(const Json& value, const JsonPlace& place)
{
    if (value.is_array()) return &value;
    place.refuse("an array is expected" + found(value));
    return nullptr;
}

void read_json(const Json& value, const JsonPlace& place, std::string& text)
{
    if (!value.is_string()) return place.refuse("a string is expected" + found(value));
    const auto& read = value.get_ref<const std::string&>();
    const auto has_no_place_in_xml = [](char c) {
        return static_cast<unsigned char>(c) < ' ' && c != '\t' && c != '\n';
    };
    if (std::any_of(read.begin(), read.end(), has_no_place_in_xml)) {
        return place.refuse("a control character can't be sent");
    }
    text = read;
}

void read_json(const Json& value, const JsonPlace& place, std::int64_t& number)
{
    if (!value.is_number_integer()) return place.refuse("a whole number is expected" + found(value));
    constexpr auto kLargest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (value.is_number_unsigned() && value.get<std::uint64_t>() > kLargest) {
        return place.refuse("the number doesn't fit 64 bits");
    }
    number = value.get<std::int64_t>();
}

void read_json(const Json& value, const JsonPlace& place, int& number)
{
    std::int64_t wide = number;
    read_json(value, place, wide);
    if (wide < std::numeric_limits<int>::min() || wide > std::numeric_limits<int>::max()) {
        return place.refuse("the number doesn't fit 32 bits");
    }
    number = static_cast<int>(wide);
}

JsonMembers::JsonMembers(const Json& object, const JsonPlace& place)
    : object_(object), place_(place), is_object_(object.is_object())
{
    if (!is_object_) place.refuse("an object is expected" + found(object));
}

bool JsonMembers::required_name(const char* name, std::string& into)
{
    if (!required(name, into)) return false;
    if (into.empty()) refuse(name, "it may not be empty");
    return !into.empty();
}

void JsonMembers::finish() const
{
    if (!is_object_) return;
    std::string expected;
    for (const std::string& name : known_) expected += (expected.empty() ? "" : ", ") + name;
    for (const auto& member : object_.items()) {
        if (known_.count(member.key()) != 0) continue;
        place_.refuse("the member \"" + printable(member.key()) + "\" is unknown; there are " + expected);
    }
}

const Json* JsonMembers::find(const char* name)
{
    known_.insert(name);
    if (!is_object_) return nullptr;
    const auto member = object_.find(name);
    return member == object_.end() ? nullptr : &*member;
}

} // namespace soapwrapper::simulator
