// Reads JSON objects member by member, strictly: what is missing, of another type or unknown is refused with
// its path, and reading goes on behind it.
#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_JSON_MEMBERS_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_JSON_MEMBERS_H

#include "simulator/scenario/findings.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{

using Json = nlohmann::json;

// Where a value stands in the document, and who is told what is wrong with it.
class JsonPlace
{
  public:
    // The document itself.
    explicit JsonPlace(Findings& findings) : findings_(findings) {}

    JsonPlace member(const std::string& name) const;
    JsonPlace entry(std::size_t index) const;

    void refuse(const std::string& why) const;
    void warn(const std::string& why) const;
    const std::string& path() const { return path_; }

    // How many errors there are by now, wherever they are.
    std::size_t errors() const { return findings_.errors(); }

  private:
    JsonPlace(Findings& findings, std::string path) : findings_(findings), path_(std::move(path)) {}

    Findings& findings_;
    std::string path_;
};

// Each of these tells what it refuses, and then leaves what it should have filled.
void read_json(const Json& value, const JsonPlace& place, std::string& text);
void read_json(const Json& value, const JsonPlace& place, int& number);
void read_json(const Json& value, const JsonPlace& place, std::int64_t& number);

// Null, and a refusal, unless it is an array.
const Json* json_array(const Json& value, const JsonPlace& place);

// Of anything that has a read_json() where it is asked for.
template <class Item>
void read_json(const Json& value, const JsonPlace& place, std::vector<Item>& items)
{
    items.clear();
    const Json* entries = json_array(value, place);
    if (!entries) return;
    std::size_t index = 0;
    for (const Json& entry : *entries) read_json(entry, place.entry(index++), items.emplace_back());
}

template <class Item>
void read_json(const Json& value, const JsonPlace& place, std::optional<Item>& item)
{
    read_json(value, place, item.emplace());
}

class JsonMembers
{
  public:
    // Refuses a value that is no object, and then takes it for one whose members are all right.
    JsonMembers(const Json& object, const JsonPlace& place);

    // Leaves `into` as it stands where the member is missing. Whether nothing was refused.
    template <class Value>
    bool optional(const char* name, Value& into)
    {
        const std::size_t errors = place_.errors();
        if (const Json* value = find(name)) read_json(*value, place_.member(name), into);
        return is_object_ && place_.errors() == errors;
    }
    template <class Value>
    bool required(const char* name, Value& into)
    {
        if (is_object_ && !find(name)) {
            place_.refuse("the member \"" + std::string(name) + "\" is missing");
            return false;
        }
        return optional(name, into);
    }
    // The same of a text that may not be empty.
    bool required_name(const char* name, std::string& into);

    // Refuses members that nobody asked for.
    void finish() const;

    void refuse(const char* name, const std::string& why) const { place_.member(name).refuse(why); }
    const JsonPlace& place() const { return place_; }
    bool has(const char* name) const { return is_object_ && object_.contains(name); }

  private:
    const Json* find(const char* name);

    const Json& object_;
    const JsonPlace place_;
    const bool is_object_;
    std::set<std::string> known_;
};

} // namespace soapwrapper::simulator

#endif
