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

// Loads the library and does the work. The result is what went wrong, if anything.
std::optional<Problem> work(const CommonOptions& options, const Run& run, Output& output,
                            wire::Watching& watching)
{
    try {
        std::optional<wire::ConfigFile> config;
        if (options.config) config.emplace(*options.config);
        if (options.trace) watching.trace(*options.trace, std::cerr);
        if (options.manager) load_plugin_manager(*options.manager);
        const PluginLibrary library(options.library, config ? config->plugin_path() : options.plugin_path);
        Session session(options.log_level, std::cerr);
        run.act(Probe{library, session, output});
    } catch (const Problem& problem) {
        return problem;
    } catch (const std::exception& error) {
        return Problem(ExitCode::kOperation, "failed", std::nullopt, error.what());
    }
    return std::nullopt;
}

// The same, watched. A trace that couldn't be written is told beside what else went wrong.
std::optional<Problem> work_watched(const CommonOptions& options, const Run& run, Output& output)
{
    wire::Watching watching;
    std::optional<Problem> problem = work(options, run, output, watching);
    const std::optional<Problem> unwritten = watching.finish();
    if (!problem) return unwritten;
    if (unwritten) print_problem(*unwritten, std::cerr);
    return problem;
}

} // namespace

int drive_library(const CommonOptions& options, const Run& run)
{
    Output output(std::cout, options.format(), options.separator.value_or(""), options.bytes);
    if (run.json == JsonForm::kLines) output.use_lines();
    if (const auto problem = work_watched(options, run, output)) {
        output.add_problem(*problem);
        output.finish();
        print_problem(*problem, std::cerr);
        return static_cast<int>(problem->code());
    }
    if (output.finish()) return static_cast<int>(ExitCode::kGood);
    print_problem(Problem(ExitCode::kOperation, "output", std::nullopt, "it could not be written"),
                  std::cerr);
    return static_cast<int>(ExitCode::kOperation);
}

} // namespace soapwrapper::probe
