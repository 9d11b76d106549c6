// Reads JSON objects member by member, strictly: what is missing, of another type or unknown is refused with
// its path.
#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_JSON_MEMBERS_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_JSON_MEMBERS_H

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

using Json = nlohmann::json;

// Throws the ScenarioError "PATH: WHY".
[[noreturn]] void refuse_json(const std::string& path, const std::string& why);

// An array, or a refusal.
const Json& json_array(const Json& value, const std::string& path);

void read_json(const Json& value, const std::string& path, std::string& text);
void read_json(const Json& value, const std::string& path, int& number);
void read_json(const Json& value, const std::string& path, std::int64_t& number);

// Of anything that has a read_json() where it is asked for.
template <class Item>
void read_json(const Json& value, const std::string& path, std::vector<Item>& items)
{
    items.clear();
    std::size_t index = 0;
    for (const Json& entry : json_array(value, path)) {
        read_json(entry, path + "[" + std::to_string(index++) + "]", items.emplace_back());
    }
}

template <class Item>
void read_json(const Json& value, const std::string& path, std::optional<Item>& item)
{
    read_json(value, path, item.emplace());
}

class JsonMembers
{
  public:
    // Refuses a value that is no object.
    JsonMembers(const Json& object, std::string path);

    // Leaves `into` as it stands where the member is missing.
    template <class Value>
    void optional(const char* name, Value& into)
    {
        if (const Json* value = find(name)) read_json(*value, path_of(name), into);
    }
    template <class Value>
    void required(const char* name, Value& into)
    {
        const Json* value = find(name);
        if (!value) refuse_json(path_, "the member \"" + std::string(name) + "\" is missing");
        read_json(*value, path_of(name), into);
    }
    // Refuses members that nobody asked for.
    void finish() const;

    std::string path_of(const std::string& name) const;

  private:
    const Json* find(const char* name);

    const Json& object_;
    const std::string path_;
    std::set<std::string> known_;
};

} // namespace soapwrapper::simulator

#endif
