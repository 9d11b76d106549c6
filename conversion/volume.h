// Volumes, single and in arrays.
#ifndef SOAPWRAPPER_CONVERSION_VOLUME_H
#define SOAPWRAPPER_CONVERSION_VOLUME_H

#include "plugin/host/host_records.h"

class ns1__ArrayOfVolumeSpecification;
class ns1__CIFSVolumeSpecification;
class ns1__NDMPVolumeSpecification;
class ns1__NFSVolumeSpecification;
class ns1__SCSIVolumeSpecification;
class ns1__VolumeSpecification;

namespace soapwrapper
{

// Goes by the choice that the wire made and never by its volumeType. The third text is never brought back,
// and a device volume leaves the whole record as it stood.
void set_volume_spec_from_soap(sts_volume_spec_v11_t& volume, const ns1__VolumeSpecification* wire);

// Fills the caller's object for the volume's kind and makes the wire object point at it; only that one is
// touched. There is no argument for a device: the caller points the union at one beforehand. A kind beyond
// the five sets volumeType and nothing else.
void set_volume_spec_from_sts(ns1__VolumeSpecification& wire, ns1__NFSVolumeSpecification* nfs,
                              ns1__CIFSVolumeSpecification* cifs, ns1__SCSIVolumeSpecification* scsi,
                              ns1__NDMPVolumeSpecification* ndmp, const sts_volume_spec_v11_t* volume);

// Appends `count` objects from operator new; cleanup_volume_spec_array deletes them and empties the array.
// For NFS volumes: one of another kind goes out empty. `volumes` isn't read when the count is 0.
void set_volume_spec_array_from_sts(ns1__ArrayOfVolumeSpecification& wire,
                                    const sts_volume_spec_v11_t* volumes, unsigned int count);
void cleanup_volume_spec_array(ns1__ArrayOfVolumeSpecification& wire);

} // namespace soapwrapper

#endif
