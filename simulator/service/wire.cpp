#include "simulator/service/wire.h"

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/records.h"
#include "simulator/service/call.h"
#include "simulator/storage/storage.h"

#include <cstddef>
#include <optional>
#include <string>

namespace soapwrapper::simulator
{
namespace
{

// The wire's choices are the kinds, counted from 1.
int choice_of(VolumeKind kind)
{
    return static_cast<int>(kind) + 1;
}

} // namespace

Place place_of(Storage& storage, const ns1__LSU* lsu)
{
    const ns1__LSU& wanted = required(lsu, "lsu");
    return storage.place(token_of(wanted.serverHandle), wanted.lsuName);
}

ns1__IndependentSupplierId* wire_supplier_id(const Call& call, const std::optional<SupplierId>& isid)
{
    if (!isid) return nullptr;
    ns1__IndependentSupplierId* wire = call.make(soap_new_ns1__IndependentSupplierId);
    wire->version = isid->version;
    wire->dpaid = call.text(isid->dpaid);
    wire->dpaver = call.text(isid->dpaver);
    wire->info = call.bytes(isid->info);
    return wire;
}

ns1__VolumeSpecification* wire_volume(const Call& call, const Volume& volume)
{
    ns1__VolumeSpecification* wire = call.make(soap_new_ns1__VolumeSpecification);
    wire->volumeType = static_cast<int>(volume.kind);
    wire->__union_VolumeSpecification = choice_of(volume.kind);
    auto& kind = wire->union_VolumeSpecification;
    switch (volume.kind) {
    case VolumeKind::kNfs:
        kind.nfs = call.make(soap_new_ns1__NFSVolumeSpecification);
        kind.nfs->exportHost = volume.texts[0];
        kind.nfs->exportName = volume.texts[1];
        kind.nfs->exportPath = volume.texts[2];
        break;
    case VolumeKind::kCifs:
        kind.cifs = call.make(soap_new_ns1__CIFSVolumeSpecification);
        kind.cifs->exportHost = volume.texts[0];
        kind.cifs->shareName = volume.texts[1];
        kind.cifs->exportPath = volume.texts[2];
        break;
    case VolumeKind::kScsi:
        kind.scsi = call.make(soap_new_ns1__SCSIVolumeSpecification);
        kind.scsi->lunWWNN = volume.texts[0];
        kind.scsi->lunSerial = volume.texts[1];
        break;
    case VolumeKind::kDevice:
        kind.device = call.make(soap_new_ns1__DeviceVolumeSpecification);
        kind.device->devicePath = volume.texts[0];
        break;
    case VolumeKind::kNdmp:
        kind.ndmp = call.make(soap_new_ns1__NDMPVolumeSpecification);
        kind.ndmp->exportfiler = volume.texts[0];
        kind.ndmp->exportpath = volume.texts[1];
        break;
    }
    return wire;
}

Volume volume_of(const ns1__VolumeSpecification* wire, const char* element)
{
    const auto& kind = required(wire, element).union_VolumeSpecification;
    const int choice = wire->__union_VolumeSpecification;
    if (choice == choice_of(VolumeKind::kNfs)) {
        const ns1__NFSVolumeSpecification& nfs = required(kind.nfs, "nfs");
        return {VolumeKind::kNfs, {nfs.exportHost, nfs.exportName, nfs.exportPath}};
    }
    if (choice == choice_of(VolumeKind::kCifs)) {
        const ns1__CIFSVolumeSpecification& cifs = required(kind.cifs, "cifs");
        return {VolumeKind::kCifs, {cifs.exportHost, cifs.shareName, cifs.exportPath}};
    }
    if (choice == choice_of(VolumeKind::kScsi)) {
        const ns1__SCSIVolumeSpecification& scsi = required(kind.scsi, "scsi");
        return {VolumeKind::kScsi, {scsi.lunWWNN, scsi.lunSerial, ""}};
    }
    if (choice == choice_of(VolumeKind::kDevice)) {
        return {VolumeKind::kDevice, {required(kind.device, "device").devicePath, "", ""}};
    }
    if (choice == choice_of(VolumeKind::kNdmp)) {
        const ns1__NDMPVolumeSpecification& ndmp = required(kind.ndmp, "ndmp");
        return {VolumeKind::kNdmp, {ndmp.exportfiler, ndmp.exportpath, ""}};
    }
    throw Fault(kMissingElement, std::string("the ") + element + " is of none of the five kinds");
}

std::size_t target_server_of(const Storage& storage, std::size_t own, const ns1__ServerHandle* target)
{
    const std::string& token = token_of(target, "targetServerHandle");
    return token.empty() ? own : storage.session(token).server;
}

} // namespace soapwrapper::simulator
