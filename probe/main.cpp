// soapwrapper-probe: plays the backup host from the command line.
#include "plugin/host/host_records.h"
#include "probe/arguments/command_line.h"
#include "probe/commands/command.h"
#include "probe/library/credential.h"
#include "probe/library/plugin_library.h"
#include "probe/library/plugin_manager.h"
#include "probe/library/probe.h"
#include "probe/library/session.h"
#include "probe/output/output.h"
#include "probe/output/problem.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <iostream>
#include <optional>
#include <string>
#include <utility>

namespace
{

using namespace soapwrapper::probe;

struct CommonOptions {
    std::optional<std::string> library;
    std::optional<std::string> plugin_path;
    std::optional<std::string> manager;
    int log_level = Session::kPrintNothing;
    bool json = false;
    std::optional<std::string> separator;

    Format format() const
    {
        if (json) return Format::kJson;
        return separator ? Format::kSeparated : Format::kAligned;
    }
};

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

void add_common_options(CLI::App& program, CommonOptions& options)
{
    program
        .add_option("--library", options.library,
                    "The library to load; without it libsoapwrapper.so beside this program, else where the "
                    "system's loader finds it")
        ->type_name("PATH");
    program
        .add_option("--plugin-path", options.plugin_path,
                    "What the library is told about its own place, beside which it looks for "
                    "soapwrapper.conf; without it the library's real path")
        ->type_name("PATH");
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
    CLI::Option* json = program.add_flag("--json", options.json, "Print one JSON document, errors included");
    program
        .add_option("--separator", options.separator,
                    "Print bare fields for scripts, with this text between them; a tab never occurs in one")
        ->type_name("TEXT")
        ->excludes(json);
}

int fail(const Problem& problem, Output& output)
{
    output.add_problem(problem);
    output.finish();
    print_problem(problem, std::cerr);
    return static_cast<int>(problem.code());
}

int drive_library(const CommonOptions& options, const Run& run)
{
    Output output(std::cout, options.format(), options.separator.value_or(""));
    try {
        if (options.manager) load_plugin_manager(*options.manager);
        const PluginLibrary library(options.library, options.plugin_path);
        Session session(options.log_level, std::cerr);
        run(Probe{library, session, output});
    } catch (const Problem& problem) {
        return fail(problem, output);
    } catch (const std::exception& error) {
        return fail(Problem(ExitCode::kOperation, "failed", std::nullopt, error.what()), output);
    }
    if (output.finish()) return static_cast<int>(ExitCode::kGood);
    print_problem(Problem(ExitCode::kOperation, "output", std::nullopt, "it could not be written"),
                  std::cerr);
    return static_cast<int>(ExitCode::kOperation);
}

int run_command_line(int argc, char** argv)
{
    CLI::App program("Plays the backup host: loads the plug-in library, calls its entries and shows what "
                     "the storage service answers.",
                     "soapwrapper-probe");
    program.set_version_flag("--version", std::string("soapwrapper-probe ") + SOAPWRAPPER_VERSION);
    program.require_subcommand(1);
    program.fallthrough();
    program.footer(std::string("Environment:\n  ") + kCredentialVariable +
                   "      The credential, for commands that log in\n"
                   "  SOAPWRAPPER_ZAPI_PASSWORD   The filer's password, for changes\n\n"
                   "Exit codes: 0 good, 2 usage, 3 the library cannot be loaded, 4 the operation failed,\n"
                   "5 interrupted while waiting.\n"
                   "Each command has its own --help.");
    CommonOptions options;
    add_common_options(program, options);
    Run run;
    add_commands(Command(&program), run);
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return program.exit(error) == 0 ? 0 : static_cast<int>(ExitCode::kUsage);
    }
    return drive_library(options, run);
}

} // namespace

int main(int argc, char** argv)
{
    try {
        return run_command_line(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "failed: %s\n", error.what());
    } catch (...) {
        std::fputs("failed\n", stderr);
    }
    return static_cast<int>(ExitCode::kOperation);
}
