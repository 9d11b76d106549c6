#include "service/configuration.h"

#include "plugin/base/bounded_text.h"
#include "plugin/base/file.h"
#include "plugin/base/plugin_globals.h"
#include "plugin/base/session_log.h"
#include "plugin/host/host_records.h"

#include <strings.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <string>

namespace soapwrapper
{
namespace
{

constexpr char kFileName[] = "/soapwrapper.conf";
constexpr char kReadAndCloseOnExec[] = "re";

// In the library's directory. A path without a slash is kept whole, and the name goes behind it.
std::string configuration_path()
{
    return pluginPath.substr(0, pluginPath.rfind('/')) + kFileName;
}

// The value of the first line with this key. Keys compare without regard to case.
bool find_key(std::FILE* file, const char* key, char* value, std::size_t size)
{
    char line[kSettingSize];
    while (readline(line, sizeof line, file)) {
        if (line[0] == '\0' || line[0] == '#') continue;
        char* equals = std::strchr(line, '=');
        if (!equals) continue;
        *equals = '\0';
        if (strcasecmp(line, key) != 0) continue;
        V_strlcpy(value, equals + 1, size);
        return true;
    }
    return false;
}

bool is_one_of(const char* value, std::initializer_list<const char*> words)
{
    for (const char* word : words) {
        if (strcasecmp(value, word) == 0) return true;
    }
    return false;
}

} // namespace

char* readline(char* destination, int size, std::FILE* file)
{
    const auto line = std::make_unique<char[]>(static_cast<std::size_t>(size));
    if (!std::fgets(line.get(), size, file)) return nullptr;
    char* end = destination;
    for (int i = 0; i < size; ++i) {
        const char byte = line[static_cast<std::size_t>(i)];
        if (!std::isspace(static_cast<unsigned char>(byte))) *end++ = byte;
    }
    return destination;
}

bool get_conf_setting(const sts_session_def_v7_t* session, const char* key, char* value)
{
    const EntryLog log(session, "get_conf_setting");
    const std::string path = configuration_path();
    log.record("Attempting to open config file ", path);
    const File file(std::fopen(path.c_str(), kReadAndCloseOnExec));
    if (!file) {
        log.record("Config file not found");
        return false;
    }
    if (!find_key(file.get(), key, value, kSettingSize)) {
        log.record("value for parameter ", key, " not found");
        return false;
    }
    log.record("found value ", value, " for parameter ", key);
    return true;
}

bool get_conf_setting_as_bool(const sts_session_def_v7_t* session, const char* key, bool& flag)
{
    flag = false;
    char value[kSettingSize];
    if (!get_conf_setting(session, key, value)) return false;
    flag = is_one_of(value, {"TRUE", "1", "YES"});
    return flag || is_one_of(value, {"FALSE", "0", "NO"});
}

bool get_conf_setting_as_int(const sts_session_def_v7_t* session, const char* key, int& number)
{
    number = 0;
    char value[kSettingSize];
    if (!get_conf_setting(session, key, value)) return false;
    char* end = nullptr;
    number = static_cast<int>(std::strtol(value, &end, 0)); // the low 32 bits
    return *end == '\0';
}

bool find_ss_name_in_conf(const sts_session_def_v7_t* session, const char* server_name, char* url)
{
    const EntryLog log(session, "find_ss_name_in_conf");
    const std::string path = configuration_path();
    log.record("Attempting to open config file ", path);
    const File file(std::fopen(path.c_str(), kReadAndCloseOnExec));
    if (!file) {
        log.record("Config file not found");
        return false;
    }
    log.record("Config file found");
    const bool found = find_key(file.get(), server_name, url, kUrlSize);
    log.record(found ? "Storage server match found" : "Storage server match not found");
    return found;
}

} // namespace soapwrapper
