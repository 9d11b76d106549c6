#include "probe/lists/change_list.h"

#include "plugin/host/handles.h"
#include "plugin/host/host_records.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/output/output.h"
#include "probe/output/problem.h"
#include "probe/output/readable.h"
#include "probe/output/text.h"
#include "probe/output/width.h"

#include <string.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

constexpr std::int32_t kDeleted = 1;
constexpr std::int32_t kRegularFile = 1;

constexpr const char* kChanges[] = {"created", "deleted", "changed"};
// Numbered from 1, as NFS does.
constexpr const char* kTypes[] = {"file", "directory", "block", "character", "symlink", "socket", "fifo"};

struct Column {
    const char* heading;
    std::size_t width;
    std::size_t exact_width; // where sizes are told to the byte
    bool right;
};
constexpr Column kColumns[] = {{"CHANGE", 7, 7, false},
                               {"TYPE", 9, 9, false},
                               {"SIZE", 8, 12, true},
                               {"MODIFIED", 20, 20, false},
                               {"PATH", 0, 0, false}};

// The name of a number, or the number.
template <std::size_t Size>
std::string named(const char* const (&names)[Size], std::int32_t number, std::int32_t first)
{
    const std::int64_t index = std::int64_t{number} - first;
    return index >= 0 && index < std::int64_t{Size} ? names[index] : std::to_string(number);
}

// Every byte that isn't printable ASCII, and every backslash, as a backslash and two digits.
std::string escaped(const std::string& path)
{
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const char c : path) {
        if (c >= ' ' && c <= '~' && c != '\\') {
            text += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            text += {'\\', kDigits[byte >> 4U], kDigits[byte & 15U]};
        }
    }
    return text;
}

} // namespace

ChangeListHandle::ChangeListHandle(const Probe& probe) : probe_(probe)
{
    probe.library.entry(slot::stspi_list_file);
    probe.library.entry(slot::stspi_close_snap_change_list);
}

ChangeListHandle::~ChangeListHandle()
{
    if (!handle_) return;
    if (const auto problem = close_handle(probe_, slot::stspi_close_snap_change_list, handle_)) {
        warn("the change list could not be closed", *problem);
    }
}

stsp_change_list_t* ChangeListHandle::get() const
{
    if (!handle_) {
        throw Problem(ExitCode::kOperation, "no handle", std::nullopt,
                      "the change list was opened, but the library gave no handle for it");
    }
    return handle_;
}

void ChangeListHandle::close()
{
    const auto problem =
        close_handle(probe_, slot::stspi_close_snap_change_list, std::exchange(handle_, nullptr));
    if (problem) throw Problem(*problem);
}

ChangePrinter::ChangePrinter(Output& output, bool escapes) : output_(output), escapes_(escapes)
{
    if (output.format() != Format::kAligned) return;
    std::vector<std::string> headings;
    for (const Column& column : kColumns) headings.emplace_back(column.heading);
    print_row(std::move(headings));
}

void ChangePrinter::print(const sts_file_attr_v11_t& entry)
{
    const std::string change = named(kChanges, entry.changetype, 0);
    const std::string type = named(kTypes, entry.ftype, 1);
    const std::string modified = utc_time(entry.modtime);
    const std::string path =
        escapes_ ? escaped({entry.name, strnlen(entry.name, sizeof entry.name)}) : clean_field(entry.name);
    ++entries_;
    const bool counts = entry.ftype == kRegularFile && entry.changetype != kDeleted && entry.size > 0;
    if (counts && bytes_ <= std::numeric_limits<std::int64_t>::max() - entry.size) bytes_ += entry.size;
    if (output_.format() == Format::kJson) {
        output_.print_line({{"change", change},
                            {"type", type},
                            {"size", entry.size},
                            {"modified", modified},
                            {"path", path}});
    } else {
        print_row({change, type, output_.size(entry.size), modified, path});
    }
}

// The widths are fixed: what is still to come isn't known.
void ChangePrinter::print_row(std::vector<std::string> cells)
{
    if (output_.format() == Format::kAligned) {
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const Column& column = kColumns[i];
            const std::size_t width = output_.exact_sizes() ? column.exact_width : column.width;
            cells[i] = column.right ? pad_ahead(cells[i], width) : pad_behind(cells[i], width);
        }
    }
    Table row({});
    row.add(std::move(cells));
    output_.print(row);
}

} // namespace soapwrapper::probe
