#include "probe/program/program.h"

#include "probe/arguments/command_line.h"
#include "probe/commands/command.h"
#include "probe/completion/completion.h"
#include "probe/library/credential.h"
#include "probe/output/descriptor_stream.h"
#include "probe/output/problem.h"
#include "probe/program/common_options.h"
#include "probe/program/drive.h"
#include "probe/program/standard_streams.h"
#include "probe/program/usage.h"
#include "probe/program/version.h"

#include <CLI/CLI.hpp>

#include <unistd.h>

#include <iostream>
#include <string>

namespace soapwrapper::probe
{
namespace
{

int end_of_printing(DescriptorStream& out)
{
    out.flush();
    return out.error() == 0 ? static_cast<int>(ExitCode::kGood) : fail_for_output(out.error());
}

// Help, the version, or what is wrong with the command line.
int answer(const CLI::App& program, const CLI::ParseError& error)
{
    if (error.get_exit_code() != 0) {
        std::cerr << usage_text(program, error);
        return static_cast<int>(ExitCode::kUsage);
    }
    DescriptorStream out(STDOUT_FILENO);
    program.exit(error, out, std::cerr);
    return end_of_printing(out);
}

// That the command in its last word was given; empty: none.
std::string credential_file_of(const CLI::App& program)
{
    const CLI::App* command = &program;
    while (!command->get_subcommands().empty()) command = command->get_subcommands().back();
    const CLI::Option* const option = command->get_option_no_throw("--credential-file");
    return option && option->count() > 0 ? option->as<std::string>() : std::string();
}

} // namespace

int run_command_line(int argc, char** argv)
{
    prepare_standard_descriptors();
    CLI::App program("Plays the backup host: loads the plug-in library, calls its entries and shows what "
                     "the storage service answers.",
                     "soapwrapper-probe");
    program.require_subcommand(1);
    program.fallthrough();
    program.footer(std::string("Environment:\n  ") + kCredentialVariable +
                   "      The credential, for commands that log in\n"
                   "  SOAPWRAPPER_ZAPI_PASSWORD   The filer's password, for changes\n\n"
                   "Exit codes: 0 good, 2 usage, 3 the library cannot be loaded, 4 the operation failed\n"
                   "or the output could not be written, 5 interrupted or out of time, 6 check has found\n"
                   "something wrong, 141 closed pipe.\n"
                   "Each command has its own --help.");
    CommonOptions options;
    add_common_options(program, options);
    // Behind the options that say which library to tell of: options act in the order in which they were
    // added.
    program.set_version_flag("--version", [&options] { return version_text(options); });
    Run run;
    add_commands(Command(&program), run);
    Print print;
    add_completion_command(Command(&program), print);
    if (argc > 1 && argv[1] == std::string(kCompleteCommand)) {
        DescriptorStream out(STDOUT_FILENO);
        write_completions(program, {argv + 2, argv + argc}, out);
        return end_of_printing(out);
    }
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return answer(program, error);
    }
    if (print) {
        DescriptorStream out(STDOUT_FILENO);
        print(out);
        return end_of_printing(out);
    }
    options.credential_file = credential_file_of(program);
    return drive_library(options, run);
}

} // namespace soapwrapper::probe
