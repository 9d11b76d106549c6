#include "probe/completion/known_servers.h"

#include "probe/completion/command_tree.h"
#include "probe/library/configuration_file.h"
#include "probe/library/plugin_library.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <ios>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

namespace fs = std::filesystem;

constexpr std::size_t kMostBytes = 1 << 20;

std::optional<std::string> value_of(const std::vector<Choice>& options, const char* name)
{
    const auto found = std::find_if(options.rbegin(), options.rend(),
                                    [&](const Choice& option) { return option.text == name; });
    return found == options.rend() ? std::nullopt : std::optional(found->description);
}

std::optional<std::string> configuration(const std::vector<Choice>& options)
{
    if (const auto named = value_of(options, "--config")) return named;
    LibraryPlaces places;
    places.library = value_of(options, "--library");
    places.plugin_path = value_of(options, "--plugin-path");
    const std::optional<std::string> told = told_place_ahead(places);
    return told ? std::optional(configuration_path(*told)) : std::nullopt;
}

} // namespace

std::vector<std::string> hosts_with_url(const ConfigurationFile& configuration)
{
    std::vector<std::string> hosts;
    for (const ConfigurationLine& line : configuration.lines()) {
        if (line.kind != ConfigurationLine::Kind::kSetting || line.key.empty() || line.key_is_url()) continue;
        if (configuration.find(line.key) != &line) continue;
        if (line.value.rfind("http://", 0) == 0 || line.value.rfind("https://", 0) == 0)
            hosts.push_back(line.key);
    }
    return hosts;
}

std::vector<std::string> known_hosts(const std::vector<Choice>& options)
{
    const std::optional<std::string> path = configuration(options);
    std::error_code error;
    if (!path || !fs::is_regular_file(*path, error)) return {};
    std::string bytes(kMostBytes, '\0');
    std::ifstream file(*path, std::ios::binary);
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return hosts_with_url(ConfigurationFile(bytes));
}

} // namespace soapwrapper::probe
