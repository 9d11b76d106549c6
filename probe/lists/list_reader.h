// Reading a list of the service to its end, and telling that end from a failure.
#ifndef SOAPWRAPPER_PROBE_LISTS_LIST_READER_H
#define SOAPWRAPPER_PROBE_LISTS_LIST_READER_H

#include "plugin/host/entry_points.h"
#include "probe/arguments/command_line.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/output/problem.h"
#include "probe/output/records.h"

#include <cstddef>
#include <functional>
#include <optional>

namespace soapwrapper::probe
{

struct ListOptions {
    int end_status = STS_ENOENT;
    std::optional<std::size_t> limit;          // as many entries as the user wants to see
    std::optional<std::size_t> most = 1000000; // as many as a list can have that isn't endless
};

void add_list_options(const Command& command, ListOptions& options);

// Those of them that stand for themselves: what tells the end, and what the user wants to see.
void add_end_status_option(const Command& command, int& end_status);
void add_limit_option(const Command& command, std::optional<std::size_t>& limit);

// The handle of a list, which is closed on every way out.
class ListHandle
{
  public:
    using CloseSlot = Slot<decltype(stspi_close_lsu_list)>; // the entries of all kinds of lists are alike

    // A close entry that the library lacks is a Problem: what couldn't be closed again isn't opened.
    ListHandle(const Probe& probe, const CloseSlot& close_slot);

    // Closes a list that is still open, and warns if that fails.
    ~ListHandle();
    ListHandle(const ListHandle&) = delete;
    ListHandle& operator=(const ListHandle&) = delete;

    // For the entry that opens the list.
    stsp_list_t** address() { return &handle_; }

    // Of an opened list. The lack of one is thrown.
    stsp_list_t* get() const;

    // Closes the list. A refusal is thrown.
    void close();

  private:
    const Probe& probe_;
    const CloseSlot close_slot_;
    stsp_list_t* handle_ = nullptr;
};

// The record that one entry of a list is written to.
struct EntryRoom {
    template <class Record>
    explicit EntryRoom(Record& record) : bytes(&record), size(sizeof record)
    {
    }

    void* bytes;
    std::size_t size;
};

// As often as a list may give the same entry again: a service that never fills the record, or never moves
// on, would be read for ever.
inline constexpr std::size_t kMostRepeats = 100;

// How the reading of a list ended.
struct ListEnd {
    Extent extent = Extent::kComplete;
    std::optional<Problem> problem; // of an incomplete one
    std::size_t limit = 0;          // of a limited one
};

// What ends the reading ahead of one more entry than so many, if anything: the user's limit, or that no list
// is so long.
std::optional<ListEnd> end_by_count(const ListOptions& options, std::size_t taken);

// An interruption of reading a list.
Problem not_to_its_end(const Probe& probe);

// Clears the record, has `next` fill it, hands it on with `take`, and again, until the end of the list or the
// user's limit.
ListEnd read_list(const Probe& probe, const ListOptions& options, EntryRoom room,
                  const std::function<int()>& next, const std::function<void()>& take);

// Shows what was read, and says if there is more than the user wanted. What else it ended with is thrown.
void finish_list(const Probe& probe, const EntryList& list, const ListEnd& end);

// The same for what has been shown already.
void finish_list(const Probe& probe, const ListEnd& end);

} // namespace soapwrapper::probe

#endif
