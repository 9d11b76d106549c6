#include "probe/program/program.h"

#include "probe/arguments/command_line.h"
#include "probe/commands/command.h"
#include "probe/completion/completion.h"
#include "probe/library/credential.h"
#include "probe/output/output.h"
#include "probe/output/problem.h"
#include "probe/program/common_options.h"
#include "probe/program/drive.h"
#include "probe/program/usage.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <optional>
#include <string>

namespace soapwrapper::probe
{
namespace
{

int end_of_printing()
{
    if (std::cout.flush()) return static_cast<int>(ExitCode::kGood);
    print_problem(Problem(ExitCode::kOperation, "output", std::nullopt, "it could not be written"),
                  std::cerr);
    return static_cast<int>(ExitCode::kOperation);
}

} // namespace

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
    Print print;
    add_completion_command(Command(&program), print);
    if (argc > 1 && argv[1] == std::string(kCompleteCommand)) {
        write_completions(program, {argv + 2, argv + argc}, std::cout);
        return static_cast<int>(ExitCode::kGood);
    }
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) return program.exit(error);
        std::cerr << usage_text(program, error);
        return static_cast<int>(ExitCode::kUsage);
    }
    if (print) {
        print(std::cout);
        return end_of_printing();
    }
    return drive_library(options, run);
}

} // namespace soapwrapper::probe
