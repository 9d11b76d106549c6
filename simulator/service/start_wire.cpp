#include "simulator/service/start_wire.h"

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/records.h"
#include "simulator/service/call.h"
#include "simulator/service/wire.h"
#include "simulator/storage/start_requests.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

// A host's records have no room for more.
constexpr std::size_t kLongestSnapshotName = 2047;
constexpr std::size_t kLongestSupplierText = 4095;

std::string supplier_text(const std::string* text)
{
    return text ? bounded(*text, kLongestSupplierText, "isid") : std::string();
}

std::optional<SupplierId> supplier_id_of(const ns1__IndependentSupplierId* wire)
{
    if (!wire) return std::nullopt;
    SupplierId isid;
    isid.version = wire->version;
    isid.dpaid = supplier_text(wire->dpaid);
    isid.dpaver = supplier_text(wire->dpaver);
    if (wire->info && wire->info->__ptr && wire->info->__size > 0) {
        const std::string info(wire->info->__ptr, wire->info->__ptr + wire->info->__size);
        isid.info = bounded(info, kLongestSupplierText, "isid");
    }
    return isid;
}

} // namespace

Snapshot definition_of(const ns1__SnapDefinition* wire, const char* element)
{
    const ns1__SnapDefinition& told = required(wire, element);
    Snapshot definition;
    definition.name = bounded(told.snapName, kLongestSnapshotName, "snapName");
    if (definition.name.empty()) throw Fault(kBadValue, "a snapshot can't be without a name");
    definition.type = told.snapType;
    definition.flags = told.snapFlags;
    definition.saveas = told.snapSaveas;
    definition.isid = supplier_id_of(told.isid);
    return definition;
}

std::vector<NamedLsu> targets_of(const ns1__ArrayOfLSUSpecification* wire, int told)
{
    std::vector<NamedLsu> targets;
    for (const ns1__LSUSpecification* item : items_of(wire, told, "targetLSUSpecs")) {
        const ns1__LSUSpecification& target = required(item, "item");
        targets.push_back({target.server, target.lsu});
    }
    return targets;
}

} // namespace soapwrapper::simulator
