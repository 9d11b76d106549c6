// The configuration file is an administrator's, and may hold anything. The first line of the input is the key
// that is asked for, the rest is the file, of which the settings of the channel are read too.
#include "plugin/base/plugin_globals.h"
#include "service/channel_settings.h"
#include "service/configuration.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace
{

// A file of this process's own, gone when it ends.
struct ConfigurationFile {
    ConfigurationFile()
    {
        std::string name = (std::filesystem::temp_directory_path() / "soapwrapper-fuzz-XXXXXX").string();
        if (!mkdtemp(name.data())) std::abort();
        folder = name;
        pluginPath = name + "/libsoapwrapper.so";
    }
    ~ConfigurationFile() { std::filesystem::remove_all(folder); }

    void write(std::string_view text) const
    {
        std::ofstream(folder / "soapwrapper.conf", std::ios::binary | std::ios::trunc) << text;
    }

    std::filesystem::path folder;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const ConfigurationFile file;
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t end = input.find('\n');
    const std::string key(input.substr(0, end));
    file.write(end == std::string_view::npos ? std::string_view() : input.substr(end + 1));

    char value[soapwrapper::kSettingSize];
    int number = 0;
    bool flag = false;
    soapwrapper::get_conf_setting(nullptr, key.c_str(), value);
    soapwrapper::get_conf_setting_as_int(nullptr, key.c_str(), number);
    soapwrapper::get_conf_setting_as_bool(nullptr, key.c_str(), flag);
    soapwrapper::find_ss_name_in_conf(nullptr, key.c_str(), value);
    soapwrapper::read_channel_settings();
    return 0;
}
