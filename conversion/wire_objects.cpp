#include "conversion/wire_objects.h"

#include "conversion/export_host.h"
#include "conversion/field_text.h"
#include "conversion/image_definition.h"
#include "conversion/lsu_pair.h"
#include "conversion/snap_definition.h"
#include "conversion/volume.h"
#include "plugin/host/host_records.h"

#include <string.h>

#include <cstdint>

namespace soapwrapper
{

WireLsu::WireLsu(const stsp_lsu_v7_t& lsu) : server_handle_(lsu.server->service_handle)
{
    lsu_.serverHandle = server_handle_.get();
    lsu_.lsuName = text_of(lsu.name);
}

WireImageDef::WireImageDef(const sts_image_def_v10_t& def)
{
    set_image_def_from_sts(definition_, &def);
}

WireImageDef::~WireImageDef()
{
    release_image_def(definition_);
}

WireSnapDef::WireSnapDef(const sts_snap_def_v11_t& def)
{
    set_snap_def_from_sts(definition_, &def);
}

WireSnapDef::~WireSnapDef()
{
    cleanup_snap_def(definition_);
}

WireVolume::WireVolume(const sts_volume_spec_v11_t& volume)
{
    // A device has no argument below; its text lands in what the union points at.
    specification_.union_VolumeSpecification.device = &device_;
    set_volume_spec_from_sts(specification_, &nfs_, &cifs_, &scsi_, &ndmp_, &volume);
}

WireVolumeSpecs::WireVolumeSpecs(const sts_volume_spec_v11_t* volumes, std::uint32_t count)
{
    set_volume_spec_array_from_sts(array_, volumes, count);
}

WireVolumeSpecs::~WireVolumeSpecs()
{
    cleanup_volume_spec_array(array_);
}

WireLsuSpecs::WireLsuSpecs(const sts_lsu_spec_v11_t* specs, std::uint32_t count)
{
    set_lsu_spec_array_from_sts(array_, specs, count);
}

WireLsuSpecs::~WireLsuSpecs()
{
    cleanup_lsu_spec_array(array_);
}

WireHostSpec::WireHostSpec(const sts_host_spec_v11_t& host)
{
    hostname_.item = texts_of_rows(host.hostname);
    port_.item = texts_of_rows(host.port);
    specification_.hostname = &hostname_;
    specification_.port = &port_;
    specification_.flags = host.flags;
}

WireRollbackList::WireRollbackList(const char* rows, std::uint32_t count)
{
    for (std::uint32_t i = 0; i < count; ++i, rows += STS_ROLLBACK_ROW_SIZE) {
        array_.item.emplace_back(rows, strnlen(rows, STS_ROLLBACK_ROW_SIZE));
    }
}

} // namespace soapwrapper
