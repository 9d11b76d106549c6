// What every command has at hand, and how it calls an entry.
#ifndef SOAPWRAPPER_PROBE_LIBRARY_PROBE_H
#define SOAPWRAPPER_PROBE_LIBRARY_PROBE_H

#include "probe/library/interruption.h"
#include "probe/library/plugin_library.h"
#include "probe/library/session.h"
#include "probe/library/slots.h"
#include "probe/output/output.h"
#include "probe/output/problem.h"

#include <optional>
#include <string>

namespace soapwrapper::probe
{

class ProgressLine;

struct Probe {
    const PluginLibrary& library;
    Session& session;
    Output& output;
    Interruption& interruption;
    ProgressLine& line; // on the terminal, if standard error is one
};

// What went wrong in the last call, by its status and what was logged; none: it succeeded. A service may
// refuse with the status 0, which the host can't tell from success.
std::optional<Problem> problem_of(const Probe& probe, int status);

// The entries with a login of their own, which they close themselves.
template <class Entry>
constexpr Interruption::AfterCut after_cut(const Slot<Entry>& slot)
{
    const auto is = [&slot](const auto& other) {
        return slot.table == other.table && slot.number == other.number;
    };
    return is(slot::stspi_open_evchannel_v11) || is(slot::stspi_close_evchannel)
               ? Interruption::AfterCut::kCloses
               : Interruption::AfterCut::kNothing;
}

// Stands around one call of an entry. What was logged before is forgotten.
class EntryCall
{
  public:
    EntryCall(const Probe& probe, Interruption::CallKind kind, Interruption::AfterCut after_cut)
        : probe_(probe), call_(probe.interruption, kind, after_cut)
    {
        probe.session.forget_lines();
    }

    // A call that was cut and has failed for it is thrown.
    void check(int status);

    // What was wrong with the call, if anything.
    std::optional<Problem> problem(int status);

  private:
    const Probe& probe_;
    Interruption::Call call_;
};

// Calls the entry in a slot and returns its status. An interruption that came before, and a call that took
// too long, is thrown.
template <class Entry, class... Arguments>
int call(const Probe& probe, const Slot<Entry>& slot, Arguments... arguments)
{
    Entry* entry = probe.library.entry(slot);
    EntryCall running(probe, Interruption::CallKind::kWork, after_cut(slot));
    const int status = entry(arguments...);
    running.check(status);
    return status;
}

// Calls an entry that ends what was begun, behind an interruption too. The result is what was wrong, if
// anything.
template <class Entry, class... Arguments>
std::optional<Problem> clean_up(const Probe& probe, const Slot<Entry>& slot, Arguments... arguments)
{
    Entry* entry = probe.library.entry(slot);
    EntryCall running(probe, Interruption::CallKind::kCleanUp, after_cut(slot));
    return running.problem(entry(arguments...));
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
    auto problem = clean_up(probe, slot, handle);
    if (problem) keep_unclosed(handle);
    return problem;
}

} // namespace soapwrapper::probe

#endif
