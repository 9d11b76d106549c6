// The options that all commands have.
#ifndef SOAPWRAPPER_PROBE_PROGRAM_COMMON_OPTIONS_H
#define SOAPWRAPPER_PROBE_PROGRAM_COMMON_OPTIONS_H

#include "probe/library/interruption.h"
#include "probe/library/plugin_library.h"
#include "probe/library/session.h"
#include "probe/output/output.h"

#include <chrono>
#include <optional>
#include <string>

namespace CLI
{
class App;
} // namespace CLI

namespace soapwrapper::probe
{

struct CommonOptions {
    std::optional<std::string> library;
    std::optional<std::string> plugin_path;
    std::optional<std::string> config;
    std::optional<std::string> manager;
    int log_level = Session::kPrintNothing;
    bool json = false;
    bool bytes = false;
    std::optional<std::string> separator;
    std::optional<std::string> trace;
    std::optional<std::string> record;
    RunLimits limits{std::chrono::minutes(10), {}};
    std::string credential_file; // that the command was given; empty: none

    LibraryPlaces places() const { return {library, plugin_path, manager, {}}; }
    Format format() const
    {
        if (json) return Format::kJson;
        return separator ? Format::kSeparated : Format::kAligned;
    }
};

void add_common_options(CLI::App& program, CommonOptions& options);

} // namespace soapwrapper::probe

#endif
