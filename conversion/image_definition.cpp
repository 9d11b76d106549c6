#include "conversion/image_definition.h"

#include "conversion/field_text.h"
#include "conversion/supplier_id.h"
#include "plugin/base/session_log.h"
#include "plugin/host/host_records.h"

#include <string>
#include <utility>

#include "soapwrapperStub.h"

namespace soapwrapper
{

void set_image_def_from_soap(sts_image_def_v10_t& def, const ns1__ImageDefinition* wire)
{
    if (!wire) return;
    set_text(def.basename, wire->basename);
    set_text(def.date, wire->date);
    set_text(def.policy, wire->policy);
    def.saveas = wire->saveas;
    def.flags = wire->flags;
}

void set_image_info_from_soap(sts_image_info_v10_t& info, const ns1__ImageInformation* wire)
{
    if (!wire) return;
    info.version = wire->version;
    set_image_def_from_soap(info.def, wire->def);
    set_text(info.server, wire->server);
    set_text(info.lsu, wire->lsu);
    info.size = wire->size;
    info.blockSize = wire->blockSize;
    info.status = wire->status;
}

void set_exports_from_soap(sts_export_v7_t* exports, const ns1__ArrayOfExport* wire,
                           const sts_session_def_v7_t* session)
{
    if (!wire) return;
    if (wire->item.size() > STS_IMAGE_EXPORTS) {
        log_message(session, STS_LOG_ANOMALY, "set_exports_from_soap: Export limit exceeded");
    }
    for (const ns1__Export* item : wire->item) {
        if (item) {
            exports->fstype = item->fstype;
            set_text(exports->mount, item->mount);
        }
        ++exports;
    }
}

void set_image_def_from_sts(ns1__ImageDefinition& wire, const sts_image_def_v10_t* def)
{
    wire.version = def->version;
    wire.basename = new std::string(text_of(def->basename));
    wire.date = new std::string(text_of(def->date));
    wire.fulldate = new std::string(text_of(def->fulldate));
    wire.policy = new std::string(text_of(def->policy));
    wire.saveas = def->saveas;
    wire.flags = def->flags;
    wire.format = new std::string(text_of(def->format));
    wire.isid = new_supplier_id(def->isid);
}

void cleanup_image_def(ns1__ImageDefinition& wire)
{
    delete_supplier_id(wire.isid);
}

void release_image_def(ns1__ImageDefinition& wire)
{
    cleanup_image_def(wire);
    delete std::exchange(wire.basename, nullptr);
    delete std::exchange(wire.date, nullptr);
    delete std::exchange(wire.fulldate, nullptr);
    delete std::exchange(wire.policy, nullptr);
    delete std::exchange(wire.format, nullptr);
}

void set_image_info_from_sts(ns1__ImageInformation& wire, const sts_image_info_v10_t* info)
{
    auto* def = new ns1__ImageDefinition();
    set_image_def_from_sts(*def, &info->def);
    wire.version = info->version;
    wire.def = def;
    wire.server = new std::string(text_of(info->server));
    wire.lsu = new std::string(text_of(info->lsu));
    wire.size = info->size;
    wire.blockSize = info->blockSize;
    if (wire.exports) {
        for (const sts_export_v7_t& exported : info->exports) {
            auto* item = new ns1__Export();
            item->fstype = exported.fstype;
            item->mount = new std::string(text_of(exported.mount));
            wire.exports->item.push_back(item);
        }
    }
    wire.status = info->status;
}

void release_image_info(ns1__ImageInformation& wire)
{
    if (wire.def) release_image_def(*wire.def);
    delete std::exchange(wire.def, nullptr);
    delete std::exchange(wire.server, nullptr);
    delete std::exchange(wire.lsu, nullptr);
    if (!wire.exports) return;
    for (const ns1__Export* item : wire.exports->item) {
        if (item) delete item->mount;
        delete item;
    }
    wire.exports->item.clear();
}

} // namespace soapwrapper
