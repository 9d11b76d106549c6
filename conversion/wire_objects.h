// The host's records as requests say them. Each object owns what one request points at for the length of one
// call, and gives it back at the end of its scope. The host's record must outlive the object.
#ifndef SOAPWRAPPER_CONVERSION_WIRE_OBJECTS_H
#define SOAPWRAPPER_CONVERSION_WIRE_OBJECTS_H

#include "plugin/base/handle_records.h"
#include "plugin/host/host_records.h"
#include "service/wire_session.h"

#include <cstdint>

#include "soapwrapperStub.h"

namespace soapwrapper
{

// An LSU under its server. The reference's server must be there.
class WireLsu
{
  public:
    explicit WireLsu(const stsp_lsu_v7_t& lsu);
    WireLsu(const WireLsu&) = delete;
    WireLsu& operator=(const WireLsu&) = delete;

    ns1__LSU* get() { return &lsu_; }

  private:
    WireServerHandle server_handle_;
    ns1__LSU lsu_;
};

class WireImageDef
{
  public:
    explicit WireImageDef(const sts_image_def_v10_t& def);
    ~WireImageDef();
    WireImageDef(const WireImageDef&) = delete;
    WireImageDef& operator=(const WireImageDef&) = delete;

    ns1__ImageDefinition* get() { return &definition_; }

  private:
    ns1__ImageDefinition definition_;
};

class WireSnapDef
{
  public:
    explicit WireSnapDef(const sts_snap_def_v11_t& def);
    ~WireSnapDef();
    WireSnapDef(const WireSnapDef&) = delete;
    WireSnapDef& operator=(const WireSnapDef&) = delete;

    ns1__SnapDefinition* get() { return &definition_; }

  private:
    ns1__SnapDefinition definition_;
};

// A volume of any kind, with an object of each of the five at hand.
class WireVolume
{
  public:
    explicit WireVolume(const sts_volume_spec_v11_t& volume);
    WireVolume(const WireVolume&) = delete;
    WireVolume& operator=(const WireVolume&) = delete;

    ns1__VolumeSpecification* get() { return &specification_; }

  private:
    ns1__NFSVolumeSpecification nfs_;
    ns1__CIFSVolumeSpecification cifs_;
    ns1__SCSIVolumeSpecification scsi_;
    ns1__DeviceVolumeSpecification device_;
    ns1__NDMPVolumeSpecification ndmp_;
    ns1__VolumeSpecification specification_;
};

// An array of NFS volumes; volumes of other kinds go out empty.
class WireVolumeSpecs
{
  public:
    WireVolumeSpecs(const sts_volume_spec_v11_t* volumes, std::uint32_t count);
    ~WireVolumeSpecs();
    WireVolumeSpecs(const WireVolumeSpecs&) = delete;
    WireVolumeSpecs& operator=(const WireVolumeSpecs&) = delete;

    ns1__ArrayOfVolumeSpecification* get() { return &array_; }

  private:
    ns1__ArrayOfVolumeSpecification array_;
};

class WireLsuSpecs
{
  public:
    WireLsuSpecs(const sts_lsu_spec_v11_t* specs, std::uint32_t count);
    ~WireLsuSpecs();
    WireLsuSpecs(const WireLsuSpecs&) = delete;
    WireLsuSpecs& operator=(const WireLsuSpecs&) = delete;

    ns1__ArrayOfLSUSpecification* get() { return &array_; }

  private:
    ns1__ArrayOfLSUSpecification array_;
};

// The host that an export is for: sixteen names and sixteen ports, always.
class WireHostSpec
{
  public:
    explicit WireHostSpec(const sts_host_spec_v11_t& host);
    WireHostSpec(const WireHostSpec&) = delete;
    WireHostSpec& operator=(const WireHostSpec&) = delete;

    ns1__HostSpecification* get() { return &specification_; }

  private:
    ns1__ArrayOfString hostname_;
    ns1__ArrayOfString port_;
    ns1__HostSpecification specification_;
};

// A rollback list: `count` rows of STS_ROLLBACK_ROW_SIZE characters; none is read when the count is 0.
class WireRollbackList
{
  public:
    WireRollbackList(const char* rows, std::uint32_t count);
    WireRollbackList(const WireRollbackList&) = delete;
    WireRollbackList& operator=(const WireRollbackList&) = delete;

    ns1__ArrayOfString* get() { return &array_; }

  private:
    ns1__ArrayOfString array_;
};

} // namespace soapwrapper

#endif
