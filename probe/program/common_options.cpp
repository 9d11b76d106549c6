#include "probe/program/common_options.h"

#include "plugin/host/host_records.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <chrono>
#include <optional>
#include <string>
#include <system_error>
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

// What a limit of time is written as; none: the text isn't one.
std::optional<double> seconds_of(const std::string& text)
{
    constexpr double kMost = 1e9;
    double seconds = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, seconds, std::chars_format::fixed);
    const bool is_one = read.ec == std::errc() && read.ptr == end && seconds >= 0 && seconds <= kMost;
    return is_one ? std::optional(seconds) : std::nullopt;
}

void add_limit_option(CLI::App& program, const char* name, std::optional<std::chrono::milliseconds>& limit,
                      const char* description)
{
    const auto take = [&limit](const std::string& text) {
        const std::chrono::duration<double> time(seconds_of(text).value_or(0));
        limit.reset();
        if (time.count() > 0) limit = std::chrono::ceil<std::chrono::milliseconds>(time);
    };
    const auto wrong = [](const std::string& text) {
        return seconds_of(text) ? "" : "a number of seconds is needed, such as 30 or 0.5";
    };
    program.add_option_function<std::string>(name, take, description)
        ->type_name("SECONDS")
        ->check(CLI::Validator(wrong, ""));
}

} // namespace

void add_common_options(CLI::App& program, CommonOptions& options)
{
    program
        .add_option(
            "--library", options.library,
            "The library to load; without it libsoapwrapper.so beside this program or in the libraries' "
            "folder that belongs to it, else where the system's loader finds it. A name without a "
            "slash is left to the loader")
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
                    "plug-in; found as --library is")
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
    program
        .add_option("--record", options.record,
                    "Write all requests and replies to a file that the simulator can answer from, "
                    "without what is secret")
        ->type_name("FILE");
    program.add_flag("--bytes", options.bytes,
                     "Print sizes to the byte; in the forms for scripts they always are");
    add_limit_option(program, "--timeout", options.limits.call,
                     "The most seconds for one call of the library; 0: no limit. Default: 600");
    add_limit_option(program, "--deadline", options.limits.run,
                     "The most seconds for the whole run; 0: no limit. Default: none");
    CLI::Option* json = program.add_flag("--json", options.json, "Print one JSON document, errors included");
    program
        .add_option("--separator", options.separator,
                    "Print bare fields for scripts, with this text between them; a tab never occurs in one")
        ->type_name("TEXT")
        ->excludes(json);
}

} // namespace soapwrapper::probe
