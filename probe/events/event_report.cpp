#include "probe/events/event_report.h"

#include "plugin/host/event_records.h"
#include "plugin/host/host_records.h"
#include "probe/output/output.h"
#include "probe/output/readable.h"
#include "probe/output/records.h"
#include "probe/output/status_text.h"
#include "probe/output/text.h"
#include "probe/output/width.h"

#include <cstdint>
#include <cstring>
#include <string>

namespace soapwrapper::probe
{
namespace
{

using Json = nlohmann::ordered_json;

constexpr const char* kInlineKinds[] = {"operation",  "lsu-info",   "server-status",
                                        "lsu-status", "image-info", "activity"};
constexpr const char* kDetachedKinds[] = {"server-info", "image-replication", "activity"};

std::string quoted(const std::string& text)
{
    return '"' + text + '"';
}

std::string number(std::int64_t value)
{
    return std::to_string(value);
}

// What happened, for scripts and for people.
struct Story {
    Json members = Json::object();
    std::string text;
};

Story story_of(const Output& output, const sts_ev_op_v11_t& op)
{
    Story story;
    const std::string name = clean_field(op.name);
    story.members = {{"name", name}, {"bytes_transferred", op.bytesTransferred}, {"error_code", op.error}};
    const char* error_name = status_name(op.error);
    if (error_name) story.members["error_code_name"] = error_name;
    if (output.format() != Format::kAligned) error_name = nullptr;
    story.text = name + ": " + output.size_in_words(op.bytesTransferred) + ", ";
    story.text += op.error == 0 ? "good" : "error " + with_name(op.error, error_name);
    return story;
}

Story story_of(const Output& output, const sts_ev_lsu_info_v11_t& event)
{
    Story story;
    const sts_lsu_info_v11_t& info = event.lsuInfo;
    const std::string name = clean_field(info.def.name);
    const std::string label = clean_field(info.def.label);
    story.members = {{"fields", event.fields},
                     {"lsu", name},
                     {"label", label},
                     {"description", clean_field(info.def.description)},
                     {"capacity", info.capacity},
                     {"physical_capacity", info.capacityPhys},
                     {"used", info.used},
                     {"physically_used", info.usedPhys},
                     {"images", info.images}};
    story.text = "LSU " + name + ": label " + quoted(label) + ", " + output.size(info.used) + " of " +
                 output.size_in_words(info.capacity) + " used, " + number(info.images) + " images";
    return story;
}

Story story_of_status(const char* subject, const char* key, const std::string& name, std::int32_t action)
{
    Story story;
    story.members = {{key, name}, {"action", action}};
    story.text = std::string(subject) + " " + name + ": action " + number(action);
    return story;
}

Json image_members(const sts_image_info_v10_t& info)
{
    return {{"lsu", clean_field(info.lsu)},
            {"basename", clean_field(info.def.basename)},
            {"date", clean_field(info.def.date)},
            {"policy", clean_field(info.def.policy)},
            {"size", info.size},
            {"status", info.status}};
}

Story story_of(const Output& output, const sts_ev_img_info_v11_t& event)
{
    Story story;
    const sts_image_info_v10_t& info = event.imgInfo;
    story.members = {{"fields", event.fields}};
    story.members.update(image_members(info));
    story.text = "image " + clean_field(info.def.basename) + " " + clean_field(info.def.date) + " of LSU " +
                 clean_field(info.lsu) + ": " + output.size_in_words(info.size) + ", status " +
                 number(info.status);
    return story;
}

Story story_of(const Output& output, const sts_ev_activity_v11_t& activity)
{
    Story story;
    const std::string message = clean_field(activity.msg);
    const std::string lsu = clean_field(activity.lsuName);
    story.members = {{"action", activity.action},
                     {"event_set", clean_field(activity.eventset)},
                     {"time", activity.time},
                     {"severity", activity.sev},
                     {"vendor_type", clean_field(activity.vendorType)},
                     {"lsu", lsu},
                     {"application", clean_field(activity.dpaid)},
                     {"application_version", clean_field(activity.dpaver)},
                     {"application_value", activity.dpaext},
                     {"message_length", activity.msgLen},
                     {"message", message}};
    if (activity.imgInfo.def.basename[0] != '\0') story.members["image"] = image_members(activity.imgInfo);
    story.text = message.empty() ? "LSU " + lsu + ": action " + number(activity.action) : message;
    if (output.format() == Format::kAligned) story.text = utc_time(activity.time) + ' ' + story.text;
    return story;
}

Story story_of_inline(const Output& output, const sts_event_v11_t& event)
{
    switch (event.inline_kind) {
    case STS_EVENT_OP:
        return story_of(output, event.payload.op);
    case STS_EVENT_LSU_INFO:
        return story_of(output, event.payload.lsuInfo);
    case STS_EVENT_SRV_STAT:
        return story_of_status("server", "name", clean_field(event.payload.srvStat.name),
                               event.payload.srvStat.action);
    case STS_EVENT_LSU_STAT:
        return story_of_status("LSU", "lsu", clean_field(event.payload.lsuStat.name),
                               event.payload.lsuStat.action);
    case STS_EVENT_IMG_INFO:
        return story_of(output, event.payload.imgInfo);
    default:
        return story_of(output, event.payload.actv);
    }
}

Story story_of_detached(const Output& output, const ReadEvent& event)
{
    if (!event.is_detached_activity()) return {};
    Story story;
    if (event.has_activity) {
        story = story_of(output, event.activity);
    } else {
        story.text = "the payload could not be fetched";
    }
    story.members["payload_length"] = event.record.payload_length;
    return story;
}

// Kinds are numbered from `first` on.
template <std::size_t Count>
const char* name_of(const char* const (&kinds)[Count], std::int32_t kind, std::int32_t first)
{
    const std::int64_t index = std::int64_t{kind} - first;
    return index >= 0 && index < static_cast<std::int64_t>(Count) ? kinds[index] : "unknown";
}

const char* kind_of(const ReadEvent& event)
{
    if (!event.is_known) return "unknown";
    return event.is_inline() ? name_of(kInlineKinds, event.record.inline_kind, STS_EVENT_OP)
                             : name_of(kDetachedKinds, event.record.detached_kind, STS_DETACHED_SRV_INFO);
}

Story story_of(const Output& output, const ReadEvent& event)
{
    if (!event.is_known) return {};
    return event.is_inline() ? story_of_inline(output, event.record) : story_of_detached(output, event);
}

} // namespace

void show_event(Output& output, const ReadEvent& event)
{
    const std::string shape = event.is_inline() ? "inline" : "detached";
    const std::string kind = kind_of(event);
    const std::string seqno = number(event.record.seqno);
    Story story = story_of(output, event);
    if (output.format() == Format::kJson) {
        Json line = {{"seqno", event.record.seqno},
                     {"server", clean_field(event.record.server)},
                     {"flags", event.record.flags},
                     {"shape", shape},
                     {"kind", kind}};
        line.update(story.members);
        output.print_line(line);
        return;
    }
    // Lines come one at a time, so that columns can't be as wide as their widest cell.
    const bool aligned = output.format() == Format::kAligned;
    Table table({});
    table.add({pad_ahead(seqno, aligned ? 6 : 0), pad_behind(shape, aligned ? 8 : 0),
               pad_behind(kind, aligned ? 17 : 0), story.text});
    output.print(table);
}

} // namespace soapwrapper::probe
