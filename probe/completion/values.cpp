#include "probe/completion/values.h"

#include "probe/completion/command_tree.h"
#include "probe/completion/known_servers.h"
#include "probe/completion/service_names.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

constexpr char kThisProgram[] = "/proc/self/exe";

std::vector<Choice> choices(const std::vector<const char*>& texts)
{
    std::vector<Choice> all;
    for (const char* text : texts) all.push_back({text, ""});
    return all;
}

Values files(const Place& /*place*/, const std::string& /*typed*/)
{
    Values values;
    values.are_files = true;
    return values;
}

Values servers(const Place& place, const std::string& typed)
{
    Values values;
    const std::size_t colon = typed.find(':');
    if (colon == std::string::npos) {
        // All that is known of a prefix is how it begins.
        values.words = {{"Network_", "Server name: prefix, colon, host"}};
        values.are_open = true;
        return values;
    }
    for (const std::string& host : known_hosts(place.options)) {
        values.words.push_back({typed.substr(0, colon + 1) + host, "in soapwrapper.conf"});
    }
    return values;
}

// One list of the service; empty, if what it is a list of isn't on the command line.
std::vector<std::vector<std::string>> ask(const Place& place, const char* command,
                                          const std::vector<const char*>& arguments,
                                          const std::vector<std::string>& keys)
{
    std::vector<std::string> words = {command};
    for (const char* name : arguments) {
        const auto found = place.arguments.find(name);
        if (found == place.arguments.end()) return {};
        words.push_back(found->second);
    }
    if (!can_log_in(place.options)) return {};
    return list_of_service(kThisProgram, lookup_options(place.options), words, command, keys);
}

Values lsus(const Place& place, const std::string& /*typed*/)
{
    Values values;
    for (const auto& lsu : ask(place, "lsus", {"NAME"}, {"name"})) values.words.push_back({lsu[0], "LSU"});
    return values;
}

// Where a slash would end the name of a server.
Values target_lsus(const Place& place, const std::string& typed)
{
    Values values = lsus(place, typed);
    for (Choice& each : values.words) {
        std::string escaped;
        for (const char byte : each.text) {
            if (byte == '/' || byte == '\\') escaped += '\\';
            escaped += byte;
        }
        each.text = escaped;
    }
    return values;
}

Values snapshots(const Place& place, const std::string& /*typed*/)
{
    Values values;
    for (const auto& snapshot : ask(place, "snapshots", {"NAME", "LSU"}, {"name"})) {
        values.words.push_back({snapshot[0], "snapshot"});
    }
    return values;
}

Values basenames(const Place& place, const std::string& /*typed*/)
{
    Values values;
    for (const auto& image : ask(place, "images", {"NAME", "LSU"}, {"basename"})) {
        values.words.push_back({image[0], "image"});
    }
    return values;
}

// Of the images with the base name that was given.
Values dates(const Place& place, const std::string& /*typed*/)
{
    Values values;
    const auto basename = place.arguments.find("BASENAME");
    for (const auto& image : ask(place, "images", {"NAME", "LSU"}, {"basename", "date"})) {
        if (basename != place.arguments.end() && image[0] == basename->second) {
            values.words.push_back({image[1], "image of this date"});
        }
    }
    return values;
}

Values volume_kinds(const Place& /*place*/, const std::string& /*typed*/)
{
    Values values;
    values.words = choices({"nfs:", "cifs:", "scsi:", "device:", "ndmp:"});
    values.are_open = true;
    return values;
}

Values levels(const Place& /*place*/, const std::string& /*typed*/)
{
    Values values;
    values.words = choices({"anomaly", "record", "failure"});
    return values;
}

Values nothing(const Place& /*place*/, const std::string& /*typed*/)
{
    return {};
}

// "service|zapi": the values themselves.
Values alternatives(const std::string& name)
{
    Values values;
    for (std::size_t begin = 0; begin <= name.size();) {
        const std::size_t end = std::min(name.find('|', begin), name.size());
        values.words.push_back({name.substr(begin, end - begin), ""});
        begin = end + 1;
    }
    return values;
}

} // namespace

Values values_of(const Place& place, const std::string& typed)
{
    using Finder = std::function<Values(const Place&, const std::string&)>;
    // These aren't what others mean by the same name: a filer's path, a filer's user.
    static const std::map<std::string, Finder> options = {{"--filter", nothing}, {"--zapi-user", nothing}};
    static const std::map<std::string, Finder> kinds = {
        {"FILE", files},
        {"PATH", files},
        {"NAME", servers},
        {"LSU", lsus},
        {"[SERVER/]LSU", target_lsus},
        {"SNAP", snapshots},
        {"BASE", snapshots},
        {"DIFF", snapshots},
        {"BASENAME", basenames},
        {"DATE", dates},
        {"KIND", volume_kinds},
        {"LEVEL", levels},
        {"SHELL", [](const Place&, const std::string&) { return alternatives("bash|zsh|fish"); }}};
    const auto special = options.find(place.option);
    if (special != options.end()) return special->second(place, typed);
    const auto found = kinds.find(place.value);
    if (found != kinds.end()) return found->second(place, typed);
    return place.value.find('|') == std::string::npos ? Values() : alternatives(place.value);
}

} // namespace soapwrapper::probe
