#include "probe/completion/known_servers.h"

#include "probe/completion/command_tree.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <istream>
#include <string>
#include <system_error>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

namespace fs = std::filesystem;

constexpr char kLibrary[] = "libsoapwrapper.so";
constexpr char kConfiguration[] = "soapwrapper.conf";

std::string value_of(const std::vector<Choice>& options, const char* name)
{
    const auto found = std::find_if(options.rbegin(), options.rend(),
                                    [&](const Choice& option) { return option.text == name; });
    return found == options.rend() ? "" : found->description;
}

fs::path configuration(const std::vector<Choice>& options)
{
    const std::string named = value_of(options, "--config");
    if (!named.empty()) return named;
    const std::string told = value_of(options, "--plugin-path");
    if (!told.empty()) return fs::path(told).replace_filename(kConfiguration);
    std::error_code error;
    fs::path library = value_of(options, "--library");
    if (library.empty()) library = fs::read_symlink("/proc/self/exe", error).replace_filename(kLibrary);
    return fs::canonical(library, error).replace_filename(kConfiguration);
}

} // namespace

std::vector<std::string> hosts_with_url(std::istream& configuration)
{
    std::vector<std::string> hosts;
    std::string line;
    while (std::getline(configuration, line)) {
        // The library drops white space wherever it stands.
        line.erase(std::remove_if(line.begin(), line.end(),
                                  [](char byte) {
                                      return std::string_view(" \t\r\v\f").find(byte) !=
                                             std::string_view::npos;
                                  }),
                   line.end());
        const std::size_t sign = line.find('=');
        if (sign == std::string::npos || sign == 0 || line.front() == '#') continue;
        const std::string value = line.substr(sign + 1);
        if (value.rfind("http://", 0) == 0 || value.rfind("https://", 0) == 0)
            hosts.push_back(line.substr(0, sign));
    }
    return hosts;
}

std::vector<std::string> known_hosts(const std::vector<Choice>& options)
{
    const fs::path path = configuration(options);
    std::error_code error;
    if (!fs::is_regular_file(path, error)) return {};
    std::ifstream file(path);
    return hosts_with_url(file);
}

} // namespace soapwrapper::probe
