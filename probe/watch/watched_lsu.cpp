#include "probe/watch/watched_lsu.h"

#include "plugin/host/host_records.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/output/output.h"
#include "probe/output/problem.h"
#include "probe/output/records.h"
#include "probe/output/text.h"
#include "probe/watch/bar.h"
#include "probe/watch/watched.h"

#include <cstddef>
#include <string>
#include <vector>

namespace soapwrapper::probe
{

const WatchedColumns WatchedLsu::kColumns = {
    {"LSU", "FULL", "USED", "CAPACITY", "IMAGES", "CHANGE", "RATE", "STATE"}, {2, 3, 4, 5, 6}};

void WatchedLsu::ask()
{
    sts_lsu_info_v11_t info = {};
    require(probe_, slot::stspi_get_lsu_prop_byname_v11, &lsu_, &info);
    info_ = info;
    take_bytes(info.used);
}

// One that has been there may come back.
bool WatchedLsu::survives(const Problem& problem)
{
    return was_answered() || is_passing(problem);
}

std::vector<std::string> WatchedLsu::cells(const Output& output, Form form, std::size_t /*step*/) const
{
    const std::string state = trouble().empty() ? "good" : trouble() + "; it is asked again";
    if (!was_answered()) return {clean_field(lsu_.name), "", "", "", "", "", "", state};
    const auto change = progress().change();
    const bool has_sign = change > 0 && output.format() == Format::kAligned;
    return {clean_field(lsu_.name),
            form == Form::kTerminal ? bar(info_.used, info_.capacity)
                                    : percentage(info_.used, info_.capacity),
            output.size(info_.used),
            output.size(info_.capacity),
            std::to_string(info_.images),
            (has_sign ? "+" : "") + change_text(output, change),
            rate_text(output, progress().rate),
            state};
}

Value WatchedLsu::value() const
{
    Value value;
    value["name"] = clean_field(lsu_.name);
    if (was_answered()) {
        value["used"] = info_.used;
        value["capacity"] = info_.capacity;
        value["images"] = info_.images;
        value["change"] = progress().change();
        value["rate"] = progress().rate ? Value(*progress().rate) : Value();
    }
    tell_trouble(value);
    return value;
}

} // namespace soapwrapper::probe
