// A folder with a configuration file, where the library's own code looks for it.
#ifndef SOAPWRAPPER_TESTS_UNIT_CONFIGURATION_FIXTURE_H
#define SOAPWRAPPER_TESTS_UNIT_CONFIGURATION_FIXTURE_H

#include "plugin/base/plugin_globals.h"
#include "service/configuration.h"
#include "tests/kit/host.h"
#include "tests/kit/log_recorder.h"

#include <gmock/gmock.h>

#include <fstream>
#include <optional>
#include <string>
#include <string_view>

class Configuration : public testing::Test
{
  protected:
    Configuration() { pluginPath = (folder_.path() / "libsoapwrapper.so").string(); }
    ~Configuration() override { pluginPath.clear(); }

    std::filesystem::path file() const { return folder_.path() / "soapwrapper.conf"; }
    void write(std::string_view text) { std::ofstream(file(), std::ios::binary | std::ios::trunc) << text; }

    std::optional<std::string> setting(const char* key, const sts_session_def_v7_t* session = nullptr)
    {
        std::string value(soapwrapper::kSettingSize, '#');
        if (!soapwrapper::get_conf_setting(session, key, value.data())) return std::nullopt;
        return value.c_str();
    }

    std::optional<std::string> url(const char* server, const sts_session_def_v7_t* session = nullptr)
    {
        std::string value(soapwrapper::kUrlSize, '#');
        if (!soapwrapper::find_ss_name_in_conf(session, server, value.data())) return std::nullopt;
        return value.c_str();
    }

    kit::TemporaryFolder folder_;
};

#endif
