#include "conversion/volume.h"

#include "conversion/field_text.h"
#include "plugin/host/host_records.h"

#include <string>

#include "soapwrapperStub.h"

namespace soapwrapper
{
namespace
{

// The choices on the wire are the host's kinds, counted from 1.
enum Choice { kNone = 0, kNfs = 1, kCifs = 2, kScsi = 3, kDevice = 4, kNdmp = 5 };

void set_record(sts_volume_spec_v11_t& volume, int kind, const std::string& first, const std::string& second)
{
    volume.volumeType = kind;
    set_text(volume.second, second);
    set_text(volume.first, first);
}

} // namespace

void set_volume_spec_from_soap(sts_volume_spec_v11_t& volume, const ns1__VolumeSpecification* wire)
{
    if (!wire) return;
    const auto& kind = wire->union_VolumeSpecification;
    switch (wire->__union_VolumeSpecification) {
    case kNfs:
        if (kind.nfs) set_record(volume, STS_VOLUME_NFS, kind.nfs->exportHost, kind.nfs->exportName);
        break;
    case kCifs:
        if (kind.cifs) set_record(volume, STS_VOLUME_CIFS, kind.cifs->exportHost, kind.cifs->shareName);
        break;
    case kScsi:
        if (kind.scsi) set_record(volume, STS_VOLUME_SCSI, kind.scsi->lunWWNN, kind.scsi->lunSerial);
        break;
    case kNdmp:
        if (kind.ndmp) set_record(volume, STS_VOLUME_NDMP, kind.ndmp->exportfiler, kind.ndmp->exportpath);
        break;
    default:
        break;
    }
}

void set_volume_spec_from_sts(ns1__VolumeSpecification& wire, ns1__NFSVolumeSpecification* nfs,
                              ns1__CIFSVolumeSpecification* cifs, ns1__SCSIVolumeSpecification* scsi,
                              ns1__NDMPVolumeSpecification* ndmp, const sts_volume_spec_v11_t* volume)
{
    wire.volumeType = volume->volumeType;
    auto& kind = wire.union_VolumeSpecification;
    switch (volume->volumeType) {
    case STS_VOLUME_NFS:
        wire.__union_VolumeSpecification = kNfs;
        kind.nfs = nfs;
        nfs->exportHost = text_of(volume->first);
        nfs->exportName = text_of(volume->second);
        nfs->exportPath = text_of(volume->third);
        break;
    case STS_VOLUME_CIFS:
        wire.__union_VolumeSpecification = kCifs;
        kind.cifs = cifs;
        cifs->exportHost = text_of(volume->first);
        cifs->shareName = text_of(volume->second);
        cifs->exportPath = text_of(volume->third);
        break;
    case STS_VOLUME_SCSI:
        wire.__union_VolumeSpecification = kScsi;
        kind.scsi = scsi;
        scsi->lunSerial = text_of(volume->second);
        scsi->lunWWNN = text_of(volume->first);
        break;
    case STS_VOLUME_DEVICE:
        wire.__union_VolumeSpecification = kDevice;
        if (kind.device) kind.device->devicePath = text_of(volume->first);
        break;
    case STS_VOLUME_NDMP:
        wire.__union_VolumeSpecification = kNdmp;
        kind.ndmp = ndmp;
        ndmp->exportfiler = text_of(volume->first);
        ndmp->exportpath = text_of(volume->second);
        break;
    default:
        break;
    }
}

void set_volume_spec_array_from_sts(ns1__ArrayOfVolumeSpecification& wire,
                                    const sts_volume_spec_v11_t* volumes, unsigned int count)
{
    for (unsigned int i = 0; i < count; ++i) {
        auto* item = new ns1__VolumeSpecification();
        item->union_VolumeSpecification.nfs = nullptr;
        if (volumes[i].volumeType == STS_VOLUME_NFS) {
            set_volume_spec_from_sts(*item, new ns1__NFSVolumeSpecification(), nullptr, nullptr, nullptr,
                                     &volumes[i]);
        }
        wire.item.push_back(item);
    }
}

void cleanup_volume_spec_array(ns1__ArrayOfVolumeSpecification& wire)
{
    for (; !wire.item.empty(); wire.item.pop_back()) {
        const ns1__VolumeSpecification* item = wire.item.back();
        if (!item) continue;
        const auto& kind = item->union_VolumeSpecification;
        switch (item->__union_VolumeSpecification) {
        case kNfs:
            delete kind.nfs;
            break;
        case kCifs:
            delete kind.cifs;
            break;
        case kScsi:
            delete kind.scsi;
            break;
        case kNdmp:
            delete kind.ndmp;
            break;
        default: // a device is never the array's own
            break;
        }
        delete item;
    }
}

} // namespace soapwrapper
