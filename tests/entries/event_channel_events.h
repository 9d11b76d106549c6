// Payloads of events as the service writes them, and what they leave in a host's record.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_EVENT_CHANNEL_EVENTS_H
#define SOAPWRAPPER_TESTS_ENTRIES_EVENT_CHANNEL_EVENTS_H

#include "plugin/host/event_records.h"
#include "tests/kit/soap_text.h"
#include "tests/kit/wire_elements.h"
#include "tests/unit/canary.h"

#include <cstring>
#include <string>

using kit::number;

inline std::string image_definition_xml()
{
    using kit::element;
    return element("def",
                   number("version", 31) + element("basename", "backup") + element("date", "20240131") +
                       element("fulldate", "full") + element("policy", "daily") + number("saveas", 32) +
                       number("flags", 33) + element("format", "tar") +
                       element("isid", number("version", 34) + element("dpaid", "dpa") +
                                           element("dpaver", "9.1") + element("info", "bW91bnQ9L2E=")));
}

inline std::string image_xml()
{
    using kit::element;
    std::string exports;
    for (const char* mount : {"/a", "/b", "/c", "/d"}) {
        exports += element("item", number("fstype", 40) + element("mount", mount));
    }
    return element("imgInfo", number("version", 30) + image_definition_xml() +
                                  element("server", "image server") + element("lsu", "image lsu") +
                                  number("size", -35) + number("blockSize", 36) +
                                  element("exports", exports) + number("status", 37));
}

inline std::string lsu_xml()
{
    using kit::element;
    const std::string def = number("version", 51) + element("name", "lsu") + number("alloc", 52) +
                            number("storage", 53) + element("description", "description") +
                            element("config", "config") + number("flags", 54) + number("saveas", 55) +
                            number("maxTransfer", 56) + number("blockSize", 57) + number("allocSize", 58) +
                            element("label", "label") + number("repSources", 59) + number("repTargets", 60);
    return element("lsuInfo", number("version", 50) + element("server", "lsu server") + element("def", def) +
                                  number("capacity", 61) + number("capacityPhys", 62) + number("used", 63) +
                                  number("usedPhys", 64) + number("images", 65));
}

// The six payloads, each in its arm of a body.
inline std::string op_xml(int delay = 5)
{
    using kit::element;
    return element("op", element("name", "operation") +
                             element("result", kit::nil("image") + number("bytesTransferred", -70) +
                                                   number("error", -71) + number("delayInSeconds", delay)));
}
inline std::string lsu_info_xml()
{
    return kit::element("lsuInfo", number("fields", 72) + lsu_xml());
}
inline std::string srv_stat_xml()
{
    return kit::element("srvStat", number("action", 73) + kit::element("name", "server"));
}
inline std::string lsu_stat_xml()
{
    return kit::element("lsuStat", number("action", 74) + kit::element("name", "lsu"));
}
inline std::string img_info_xml()
{
    return kit::element("imgInfo", number("fields", 75) + image_xml());
}
inline std::string activity_xml(long long length = 100)
{
    using kit::element;
    using kit::nil;
    return element("actv", number("version", 99) + number("action", 76) + element("eventset", "set") +
                               number("time", -77) + number("sev", 78) + element("vendorType", "vendor") +
                               element("lsuName", "lsu") + image_xml() + nil("snapInfo") + nil("volSpec") +
                               nil("hostSpec") + element("dpaid", "dpa") + element("dpaver", "9.1") +
                               number("dpaext", -79) + number("msgLen", length) + element("msg", "message"));
}

// What the library brings back of them.
inline void put_image(sts_image_info_v10_t& info)
{
    info.version = 30;
    put(info.def.basename, "backup");
    put(info.def.date, "20240131");
    put(info.def.policy, "daily");
    info.def.saveas = 32;
    info.def.flags = 33;
    put(info.server, "image server");
    put(info.lsu, "image lsu");
    info.size = -35;
    info.blockSize = 36;
    info.status = 37;
}

inline void put_lsu_info(sts_ev_lsu_info_v11_t& event)
{
    std::memset(&event, 0, sizeof event);
    event.fields = 72;
    sts_lsu_info_v11_t& info = event.lsuInfo;
    info.version = 50;
    put(info.server, "lsu server");
    put(info.def.name, "lsu");
    info.def.alloc = 52;
    info.def.storage = 53;
    put(info.def.description, "description");
    put(info.def.config, "config");
    info.def.flags = 54;
    info.def.saveas = 55;
    info.def.maxTransfer = 56;
    info.def.blockSize = 57;
    info.def.allocSize = 58;
    put(info.def.label, "label");
    info.def.repSources = 59;
    info.def.repTargets = 60;
    info.capacity = 61;
    info.capacityPhys = 62;
    info.used = 63;
    info.usedPhys = 64;
    info.images = 65;
}

inline void put_activity(sts_ev_activity_v11_t& activity, std::int64_t length = 100)
{
    std::memset(&activity, 0, sizeof activity);
    activity.version = 11;
    activity.action = 76;
    put(activity.eventset, "set");
    activity.time = -77;
    activity.sev = 78;
    put(activity.vendorType, "vendor");
    put(activity.lsuName, "lsu");
    put_image(activity.imgInfo);
    put(activity.dpaid, "dpa");
    put(activity.dpaver, "9.1");
    activity.dpaext = -79;
    activity.msgLen = length;
    put(activity.msg, "message");
}

#endif
