// What every command has at hand, and how it calls an entry.
#ifndef SOAPWRAPPER_PROBE_LIBRARY_PROBE_H
#define SOAPWRAPPER_PROBE_LIBRARY_PROBE_H

#include "probe/library/plugin_library.h"
#include "probe/library/session.h"
#include "probe/library/slots.h"
#include "probe/output/output.h"
#include "probe/output/problem.h"

#include <optional>
#include <string>

namespace soapwrapper::probe
{

struct Probe {
    const PluginLibrary& library;
    Session& session;
    Output& output;
};

// What went wrong in the last call, by its status and what was logged; none: it succeeded. A service may
// refuse with the status 0, which the host can't tell from success.
std::optional<Problem> problem_of(const Probe& probe, int status);

// Calls the entry in a slot and returns its status. What was logged before is forgotten.
template <class Entry, class... Arguments>
int call(const Probe& probe, const Slot<Entry>& slot, Arguments... arguments)
{
    Entry* entry = probe.library.entry(slot);
    probe.session.forget_lines();
    return entry(arguments...);
}

// The same, for calls that have to succeed: anything else is thrown.
template <class Entry, class... Arguments>
void require(const Probe& probe, const Slot<Entry>& slot, Arguments... arguments)
{
    if (const auto problem = problem_of(probe, call(probe, slot, arguments...))) throw Problem(*problem);
}

// Prints a warning and the problem behind it on standard error.
void warn(const std::string& what, const Problem& problem);

// Takes note of a handle that the service wouldn't close. It is the library's still, and nobody can free it:
// it is kept in sight, so that a leak checker doesn't take it for lost.
void keep_unclosed(void* handle);

// Closes a handle, once. The result is what was wrong, if anything.
template <class Entry, class Handle>
std::optional<Problem> close_handle(const Probe& probe, const Slot<Entry>& slot, Handle* handle)
{
    auto problem = problem_of(probe, call(probe, slot, handle));
    if (problem) keep_unclosed(handle);
    return problem;
}

} // namespace soapwrapper::probe

#endif
