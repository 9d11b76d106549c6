#include "probe/lists/list_reader.h"

#include "plugin/host/handles.h"
#include "plugin/host/status.h"
#include "probe/arguments/command_line.h"
#include "probe/library/probe.h"
#include "probe/output/problem.h"
#include "probe/output/records.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iostream>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

// Statuses that the library itself returns for a service it can't reach must never pass for the end.
std::string refuse_failure(const std::string& text)
{
    for (const int failure : {STS_EOK, STS_ESOAPERROR, STS_EFAULTDETAIL}) {
        if (std::strtoll(text.c_str(), nullptr, 0) == failure)
            return text + " is not a status that can end a list";
    }
    return {};
}

ListEnd failed(Problem problem)
{
    return {Extent::kIncomplete, std::move(problem)};
}

ListEnd endless(const std::string& meaning)
{
    return failed(Problem(ExitCode::kOperation, "endless list", std::nullopt, meaning));
}

// Tells an entry that came too often in a row.
class RepeatGuard
{
  public:
    // False: once too often.
    bool admit(const EntryRoom& room)
    {
        const auto* bytes = static_cast<const unsigned char*>(room.bytes);
        const bool same = last_.size() == room.size && std::memcmp(last_.data(), bytes, room.size) == 0;
        if (!same) last_.assign(bytes, bytes + room.size);
        repeats_ = same ? repeats_ + 1 : 0;
        return repeats_ <= kMostRepeats;
    }

  private:
    std::vector<unsigned char> last_;
    std::size_t repeats_ = 0;
};

// What was wrong with it, if anything.
std::optional<Problem> read_entry(const Probe& probe, const ListOptions& options,
                                  const std::function<int()>& next, bool& at_end)
{
    try {
        const int status = next();
        at_end = status == options.end_status;
        return at_end ? std::nullopt : problem_of(probe, status);
    } catch (const Problem& problem) {
        return problem;
    }
}

} // namespace

void add_end_status_option(const Command& command, int& end_status)
{
    command
        .add_option("--end-status", end_status,
                    "The status with which the service ends a list; any other one is a failure")
        .type_name("N")
        .check(refuse_failure)
        .capture_default_str();
}

void add_list_options(const Command& command, ListOptions& options)
{
    add_end_status_option(command, options.end_status);
    add_limit_option(command, options.limit);
}

void add_limit_option(const Command& command, std::optional<std::size_t>& limit)
{
    command.add_option("--limit", limit, "Show only the first N entries; that there are more is no failure")
        .type_name("N")
        .range(1, std::numeric_limits<std::int64_t>::max());
}

ListHandle::ListHandle(const Probe& probe, const CloseSlot& close_slot)
    : probe_(probe), close_slot_(close_slot)
{
    probe.library.entry(close_slot);
}

ListHandle::~ListHandle()
{
    if (!handle_) return;
    if (const auto problem = close_handle(probe_, close_slot_, handle_)) {
        warn("the list could not be closed", *problem);
    }
}

stsp_list_t* ListHandle::get() const
{
    if (!handle_) {
        throw Problem(ExitCode::kOperation, "no handle", std::nullopt,
                      "the list was opened, but the library gave no handle for it");
    }
    return handle_;
}

void ListHandle::close()
{
    // Whatever comes of it, it isn't tried again.
    const auto problem = close_handle(probe_, close_slot_, std::exchange(handle_, nullptr));
    if (problem) throw Problem(*problem);
}

Problem not_to_its_end(const Probe& probe)
{
    return probe.interruption.problem("the list was not read to its end");
}

std::optional<ListEnd> end_by_count(const ListOptions& options, std::size_t taken)
{
    if (options.limit) {
        if (taken < *options.limit) return std::nullopt;
        return ListEnd{Extent::kLimited, std::nullopt, taken};
    }
    if (!options.most || taken < *options.most) return std::nullopt;
    return endless("the list has more entries than " + std::to_string(taken));
}

ListEnd read_list(const Probe& probe, const ListOptions& options, EntryRoom room,
                  const std::function<int()>& next, const std::function<void()>& take)
{
    RepeatGuard repeats;
    bool at_end = false;
    for (std::size_t taken = 0;; ++taken) {
        std::memset(room.bytes, 0, room.size);
        if (probe.interruption.requested()) return failed(not_to_its_end(probe));
        if (auto problem = read_entry(probe, options, next, at_end)) return failed(std::move(*problem));
        if (at_end) return {};
        // The entry behind the limit is read, and not shown, to know that there is one.
        if (auto end = end_by_count(options, taken)) return std::move(*end);
        if (!repeats.admit(room)) {
            return endless("the service gave the same entry more than " + std::to_string(kMostRepeats) +
                           " times over");
        }
        take();
    }
}

void finish_list(const Probe& probe, const EntryList& list, const ListEnd& end)
{
    list.show(probe.output, end.extent);
    finish_list(probe, end);
}

void finish_list(const Probe& probe, const ListEnd& end)
{
    if (end.problem) throw Problem(*end.problem);
    if (end.extent != Extent::kLimited) return;
    probe.output.deliver(); // the note stands behind the entries
    std::cerr << "... and more: shown are the first " << end.limit << " (--limit)" << std::endl;
}

} // namespace soapwrapper::probe
