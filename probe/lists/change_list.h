// An open change list, and how its entries are shown.
#ifndef SOAPWRAPPER_PROBE_LISTS_CHANGE_LIST_H
#define SOAPWRAPPER_PROBE_LISTS_CHANGE_LIST_H

#include "plugin/host/entry_points.h"
#include "probe/library/probe.h"
#include "probe/output/output.h"

#include <cstdint>
#include <string>
#include <vector>

namespace soapwrapper::probe
{

// The handle of a change list, which is closed on every way out.
class ChangeListHandle
{
  public:
    // Entries that the library lacks are a Problem: what couldn't be closed again isn't opened.
    explicit ChangeListHandle(const Probe& probe);

    // Closes a list that is still open, and warns if that fails.
    ~ChangeListHandle();
    ChangeListHandle(const ChangeListHandle&) = delete;
    ChangeListHandle& operator=(const ChangeListHandle&) = delete;

    // For the entry that opens the list.
    stsp_change_list_t** address() { return &handle_; }

    // Of an opened list. The lack of one is thrown.
    stsp_change_list_t* get() const;

    // Closes the list. A refusal is thrown.
    void close();

  private:
    const Probe& probe_;
    stsp_change_list_t* handle_ = nullptr;
};

// Prints entries as they come, and keeps none of them: a list may hold millions.
class ChangePrinter
{
  public:
    // `escapes`: paths are shown byte for byte, in the way of filers, instead of cleaned.
    ChangePrinter(Output& output, bool escapes);

    void print(const sts_file_attr_v11_t& entry);

    std::uint64_t entries() const { return entries_; }
    // The size of the files among them that are still there.
    std::int64_t bytes() const { return bytes_; }

  private:
    void print_row(std::vector<std::string> cells);

    Output& output_;
    const bool escapes_;
    std::uint64_t entries_ = 0;
    std::int64_t bytes_ = 0;
};

} // namespace soapwrapper::probe

#endif
