// Watching: questions to the service at an interval, and a table, or lines, of how all stands.
#ifndef SOAPWRAPPER_PROBE_WATCH_WATCH_H
#define SOAPWRAPPER_PROBE_WATCH_WATCH_H

#include "probe/arguments/command_line.h"
#include "probe/library/probe.h"
#include "probe/watch/watched.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace soapwrapper::probe
{

struct WatchOptions {
    std::chrono::milliseconds interval{2000};
    std::optional<std::uint32_t> count; // of renewals; none: there is no such end
};

void add_watch_options(const Command& command, WatchOptions& options);

// What is watched together, at one server.
struct WatchedThings {
    std::string server;     // its name, clean
    const char* key;        // of the list in a JSON document
    WatchedColumns columns; // of the table on a terminal
    std::vector<std::unique_ptr<Watched>> things;
};

// Goes on until a signal comes, which is a good end, until the count is reached, or until all things have
// ended. One that has failed is thrown then.
void watch(const Probe& probe, const WatchOptions& options, const WatchedThings& watched);

} // namespace soapwrapper::probe

#endif
