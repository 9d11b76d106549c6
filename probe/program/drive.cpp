#include "probe/program/drive.h"

#include "probe/commands/command.h"
#include "probe/library/interruption.h"
#include "probe/library/library_trial.h"
#include "probe/library/plugin_library.h"
#include "probe/library/plugin_manager.h"
#include "probe/library/probe.h"
#include "probe/library/session.h"
#include "probe/library/signals.h"
#include "probe/output/descriptor_stream.h"
#include "probe/output/output.h"
#include "probe/output/problem.h"
#include "probe/output/progress_line.h"
#include "probe/program/common_options.h"
#include "probe/program/separate_files.h"
#include "probe/program/standard_streams.h"
#include "probe/wire/config_file.h"
#include "probe/wire/tap.h"
#include "probe/wire/watching.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <exception>
#include <functional>
#include <iostream>
#include <optional>

namespace soapwrapper::probe
{
namespace
{

Output output_to(std::ostream& stream, const CommonOptions& options, const Run& run)
{
    Output output(stream, options.format(), options.separator.value_or(""), options.bytes);
    if (run.json == JsonForm::kLines) output.use_lines();
    return output;
}

// What else goes to the terminal of the progress line has to know it.
ProgressLine* line_on(int descriptor, ProgressLine& line)
{
    return line.visible() && isatty(descriptor) == 1 ? &line : nullptr;
}

bool has_room(int descriptor)
{
    pollfd watched = {descriptor, POLLOUT, 0};
    return poll(&watched, 1, 0) > 0;
}

// The last words of a process that ends at once, whatever its thread with the work is at: it has no part in
// them, and what it has written isn't added to.
void say_farewell(const Problem& problem, const CommonOptions& options, const Run& run, bool output_is_used,
                  ProgressLine& line)
{
    DescriptorStream errors(STDERR_FILENO, has_room, &line);
    print_problem(problem, errors);
    if (output_is_used || options.format() != Format::kJson) return;
    DescriptorStream stream(STDOUT_FILENO, has_room);
    Output output = output_to(stream, options, run);
    output.add_problem(problem);
    output.finish();
}

std::chrono::steady_clock::time_point end_of_run(const RunLimits& limits,
                                                 std::chrono::steady_clock::time_point begin)
{
    return limits.run ? begin + *limits.run : std::chrono::steady_clock::time_point::max();
}

// What the work goes by, beside the library.
struct Means {
    const std::optional<Problem>& trouble; // that the library was found to make
    Output& output;
    Interruption& interruption;
    ProgressLine& line;
};

// Loads what the library needs and the library, unless it has been found not to stand that.
void load(const LibraryPlaces& places, const std::optional<Problem>& trouble,
          std::optional<PluginLibrary>& library)
{
    if (trouble) throw Problem(*trouble);
    if (places.manager) load_plugin_manager(*places.manager);
    library.emplace(places);
}

void act(const CommonOptions& options, const LibraryPlaces& places, const Run& run, const Means& means,
         wire::Watching& watching)
{
    std::optional<PluginLibrary> library;
    try {
        load(places, means.trouble, library);
    } catch (const Problem& problem) {
        if (!run.without_library) throw;
        run.without_library(problem, places, means.output);
        return;
    }
    if (options.record) watching.record(*options.record, library->release());
    Session session(options.log_level, std::cerr);
    run.act(Probe{*library, session, means.output, means.interruption, means.line});
}

// Loads the library and does the work. The result is what went wrong, if anything.
std::optional<Problem> work(const CommonOptions& options, const Run& run, const Means& means,
                            wire::Watching& watching)
{
    try {
        require_separate_files(options);
        std::optional<wire::ConfigFile> config;
        if (options.config) config.emplace(*options.config);
        if (options.trace) watching.trace(*options.trace, std::cerr);
        LibraryPlaces places = options.places();
        if (config) {
            places.plugin_path = config->plugin_path();
            places.configuration = {*options.config, config->bytes_path()};
        }
        act(options, places, run, means, watching);
    } catch (const Problem& problem) {
        return problem;
    } catch (const std::exception& error) {
        return Problem(ExitCode::kOperation, "failed", std::nullopt, error.what());
    }
    return means.interruption.unanswered();
}

// The same, watched. A trace that couldn't be written is told beside what else went wrong.
std::optional<Problem> work_watched(const CommonOptions& options, const Run& run, const Means& means)
{
    wire::Watching watching([&](int descriptor) { return means.interruption.wait_for_room(descriptor); });
    std::optional<Problem> problem = work(options, run, means, watching);
    const std::optional<Problem> unwritten = watching.finish();
    if (!problem) return unwritten;
    if (unwritten) print_problem(*unwritten, std::cerr);
    return problem;
}

// Of what has gone wrong in the work, if anything, and in writing its output. It is told, but for a closed
// pipe: whoever closed it knows.
int exit_code_of(std::optional<Problem> problem, int output_error, Interruption& interruption)
{
    if (output_error == EPIPE) return fail_for_output(output_error);
    if (output_error != 0 && (!problem || problem->name() == output_problem().name())) {
        if (!interruption.requested()) return fail_for_output(output_error);
        problem = interruption.problem("the output was not taken to its end");
    }
    if (!problem) return static_cast<int>(ExitCode::kGood);
    print_problem(*problem, std::cerr);
    return static_cast<int>(problem->code());
}

} // namespace

int drive_library(const CommonOptions& options, const Run& run)
{
    const auto begin = std::chrono::steady_clock::now();
    const EndingSignals signals; // from here on they wait for the interruption
    // Ahead of whatever makes a thread.
    const std::optional<Problem> trouble =
        try_library(options.places(), kTrialLimit, end_of_run(options.limits, begin));
    ProgressLine line;
    Interruption interruption(options.limits, {wire::cut, wire::allow, wire::end_connections, wire::where},
                              line, begin);
    const auto wait = [&](int descriptor) { return interruption.wait_for_room(descriptor); };
    DescriptorStream errors(STDERR_FILENO, wait, line_on(STDERR_FILENO, line));
    const ErrorsBy errors_by(errors);
    DescriptorStream stream(STDOUT_FILENO, wait, line_on(STDOUT_FILENO, line));
    interruption.set_farewell(
        [&](const Problem& problem) { say_farewell(problem, options, run, stream.used(), line); });

    Output output = output_to(stream, options, run);
    const auto problem = work_watched(options, run, {trouble, output, interruption, line});
    if (problem) output.add_problem(*problem);
    output.finish();
    interruption.set_farewell({}); // the streams that it needs are about to go
    return exit_code_of(problem, stream.error(), interruption);
}

} // namespace soapwrapper::probe
