#include "probe/program/drive.h"

#include "probe/commands/command.h"
#include "probe/library/plugin_library.h"
#include "probe/library/plugin_manager.h"
#include "probe/library/probe.h"
#include "probe/library/session.h"
#include "probe/output/output.h"
#include "probe/output/problem.h"
#include "probe/program/common_options.h"
#include "probe/wire/config_file.h"
#include "probe/wire/watching.h"

#include <exception>
#include <iostream>
#include <optional>

namespace soapwrapper::probe
{
namespace
{

int fail(const Problem& problem, Output& output)
{
    output.add_problem(problem);
    output.finish();
    print_problem(problem, std::cerr);
    return static_cast<int>(problem.code());
}

// Loads the library and does the work. What goes wrong is thrown.
void work(const CommonOptions& options, const Run& run, Output& output, wire::Watching& watching)
{
    std::optional<wire::ConfigFile> config;
    if (options.config) config.emplace(*options.config);
    if (options.trace) watching.trace(*options.trace, std::cerr);
    if (options.manager) load_plugin_manager(*options.manager);
    const PluginLibrary library(options.library, config ? config->plugin_path() : options.plugin_path);
    Session session(options.log_level, std::cerr);
    run.act(Probe{library, session, output});
}

} // namespace

int drive_library(const CommonOptions& options, const Run& run)
{
    Output output(std::cout, options.format(), options.separator.value_or(""), options.bytes);
    if (run.json == JsonForm::kLines) output.use_lines();
    try {
        wire::Watching watching;
        work(options, run, output, watching);
        if (const auto problem = watching.problem()) throw Problem(*problem);
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

} // namespace soapwrapper::probe
