#include "probe/program/common_options.h"

#include "plugin/host/host_records.h"

#include <CLI/CLI.hpp>

#include <string>
#include <utility>

namespace soapwrapper::probe
{
namespace
{

// Puts the number in place of the level's name; anything but an empty result refuses the text.
std::string number_of_level(std::string& level)
{
    const std::pair<const char*, int> levels[] = {
        {"anomaly", STS_LOG_ANOMALY}, {"record", STS_LOG_RECORD}, {"failure", STS_LOG_FAILURE}};
    for (const auto& [name, number] : levels) {
        if (level != name && level != std::to_string(number)) continue;
        level = std::to_string(number);
        return {};
    }
    return "the levels are 2 or anomaly, 3 or record, 4 or failure";
}

} // namespace

void add_common_options(CLI::App& program, CommonOptions& options)
{
    program
        .add_option("--library", options.library,
                    "The library to load; without it libsoapwrapper.so beside this program, else where the "
                    "system's loader finds it")
        ->type_name("PATH");
    CLI::Option* plugin_path =
        program
            .add_option("--plugin-path", options.plugin_path,
                        "What the library is told about its own place, beside which it looks for "
                        "soapwrapper.conf; without it the library's real path")
            ->type_name("PATH");
    program
        .add_option(
            "--config", options.config,
            "The configuration that the library gets instead of soapwrapper.conf; a relative path in it "
            "begins in the file's folder")
        ->type_name("FILE")
        ->excludes(plugin_path);
    program
        .add_option("--manager", options.manager,
                    "The plug-in manager to load ahead of the library, through which it finds its second "
                    "plug-in")
        ->type_name("PATH");
    program
        .add_option("--log", options.log_level,
                    "Print the library's log lines of this level and above on standard error: 2 or anomaly, "
                    "3 or record, 4 or failure")
        ->type_name("LEVEL")
        ->transform(CLI::Validator(number_of_level, ""));
    program
        .add_option("--trace", options.trace,
                    "Write all requests and replies to a file, without what is secret; - is standard error")
        ->type_name("FILE");
    program.add_flag("--bytes", options.bytes,
                     "Print sizes to the byte; in the forms for scripts they always are");
    CLI::Option* json = program.add_flag("--json", options.json, "Print one JSON document, errors included");
    program
        .add_option("--separator", options.separator,
                    "Print bare fields for scripts, with this text between them; a tab never occurs in one")
        ->type_name("TEXT")
        ->excludes(json);
}

} // namespace soapwrapper::probe
