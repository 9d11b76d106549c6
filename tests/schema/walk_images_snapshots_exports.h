// Images, snapshots, volumes, exports, hosts and file attributes: the members of each class under the
// names of their elements, in wire order.
#ifndef SCHEMA_TEST_WALK_IMAGES_SNAPSHOTS_EXPORTS_H
#define SCHEMA_TEST_WALK_IMAGES_SNAPSHOTS_EXPORTS_H

#include "soapwrapperStub.h"

namespace schema_test
{

template <class Walker>
void walk(Walker& w, ns1__IndependentSupplierId& m)
{
    w("version", m.version, "dpaid", m.dpaid, "dpaver", m.dpaver, "info", m.info);
}

template <class Walker>
void walk(Walker& w, ns1__ImageDefinition& m)
{
    w("version", m.version, "basename", m.basename, "date", m.date, "fulldate", m.fulldate, "policy",
      m.policy, "saveas", m.saveas, "flags", m.flags, "format", m.format, "isid", m.isid);
}

template <class Walker>
void walk(Walker& w, ns1__ImageInformation& m)
{
    w("version", m.version, "def", m.def, "server", m.server, "lsu", m.lsu, "size", m.size, "blockSize",
      m.blockSize, "exports", m.exports, "status", m.status);
}

template <class Walker>
void walk(Walker& w, ns1__Export& m)
{
    w("fstype", m.fstype, "mount", m.mount);
}

template <class Walker>
void walk(Walker& w, ns1__ArrayOfExport& m)
{
    w("item", m.item);
}

template <class Walker>
void walk(Walker& w, ns1__ImageHandle& m)
{
    w("token", m.token);
}

template <class Walker>
void walk(Walker& w, ns1__ImageListHandle& m)
{
    w("token", m.token);
}

template <class Walker>
void walk(Walker& w, ns1__ReadResult& m)
{
    w("bytesread", m.bytesread, "buf", m.buf);
}

template <class Walker>
void walk(Walker& w, ns1__SnapDefinition& m)
{
    w("snapName", m.snapName, "snapType", m.snapType, "snapFlags", m.snapFlags, "snapSaveas", m.snapSaveas,
      "isid", m.isid);
}

template <class Walker>
void walk(Walker& w, ns1__SnapInformation& m)
{
    w("snapDef", m.snapDef, "snapServer", m.snapServer, "snapLsu", m.snapLsu, "snapVolSpec", m.snapVolSpec,
      "snapStatus", m.snapStatus, "snapSize", m.snapSize);
}

template <class Walker>
void walk(Walker& w, ns1__SnapListHandle& m)
{
    w("token", m.token);
}

template <class Walker>
void walk(Walker& w, ns1__VolumeSpecification& m)
{
    auto& u = m.union_VolumeSpecification;
    w.choice(m.__union_VolumeSpecification, "nfs", u.nfs, "cifs", u.cifs, "scsi", u.scsi, "device", u.device,
             "ndmp", u.ndmp);
    w("volumeType", m.volumeType);
}

template <class Walker>
void walk(Walker& w, ns1__NFSVolumeSpecification& m)
{
    w("exportHost", m.exportHost, "exportName", m.exportName, "exportPath", m.exportPath);
}

template <class Walker>
void walk(Walker& w, ns1__CIFSVolumeSpecification& m)
{
    w("exportHost", m.exportHost, "shareName", m.shareName, "exportPath", m.exportPath);
}

template <class Walker>
void walk(Walker& w, ns1__SCSIVolumeSpecification& m)
{
    w("lunWWNN", m.lunWWNN, "lunSerial", m.lunSerial);
}

template <class Walker>
void walk(Walker& w, ns1__DeviceVolumeSpecification& m)
{
    w("devicePath", m.devicePath);
}

template <class Walker>
void walk(Walker& w, ns1__NDMPVolumeSpecification& m)
{
    w("exportfiler", m.exportfiler, "exportpath", m.exportpath);
}

template <class Walker>
void walk(Walker& w, ns1__ArrayOfVolumeSpecification& m)
{
    w("item", m.item);
}

template <class Walker>
void walk(Walker& w, ns1__HostSpecification& m)
{
    w("hostname", m.hostname, "port", m.port, "flags", m.flags);
}

template <class Walker>
void walk(Walker& w, ns1__FileAttr& m)
{
    w("name", m.name, "ftype", m.ftype, "changetype", m.changetype, "modtime", m.modtime, "accesstime",
      m.accesstime, "createtime", m.createtime, "changetime", m.changetime, "size", m.size, "ownerid",
      m.ownerid, "groupid", m.groupid, "permissions", m.permissions, "inode", m.inode, "gnum", m.gnum);
}

template <class Walker>
void walk(Walker& w, ns1__ArrayOfFileAttr& m)
{
    w("item", m.item);
}

template <class Walker>
void walk(Walker& w, _ns1__openImageList& m)
{
    w("lsu", m.lsu, "type", m.type);
}

template <class Walker>
void walk(Walker& w, _ns1__openImageListResponse& m)
{
    w("imageListHandle", m.imageListHandle);
}

template <class Walker>
void walk(Walker& w, _ns1__listImage& m)
{
    w("imageListHandle", m.imageListHandle);
}

template <class Walker>
void walk(Walker& w, _ns1__listImageResponse& m)
{
    w("image", m.image);
}

template <class Walker>
void walk(Walker& w, _ns1__closeImageList& m)
{
    w("imageListHandle", m.imageListHandle);
}

template <class Walker>
void walk(Walker&, _ns1__closeImageListResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__getImageProp& m)
{
    w("imageHandle", m.imageHandle);
}

template <class Walker>
void walk(Walker& w, _ns1__getImagePropResponse& m)
{
    w("info", m.info);
}

template <class Walker>
void walk(Walker& w, _ns1__getImagePropByName& m)
{
    w("lsu", m.lsu, "image", m.image);
}

template <class Walker>
void walk(Walker& w, _ns1__getImagePropByNameResponse& m)
{
    w("info", m.info);
}

template <class Walker>
void walk(Walker& w, _ns1__deleteImage& m)
{
    w("lsu", m.lsu, "imd", m.imd, "asyncFlag", m.asyncFlag);
}

template <class Walker>
void walk(Walker&, _ns1__deleteImageResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__createImage& m)
{
    w("lsu", m.lsu, "image", m.image, "pendingflag", m.pendingflag);
}

template <class Walker>
void walk(Walker& w, _ns1__createImageResponse& m)
{
    w("imageHandle", m.imageHandle);
}

template <class Walker>
void walk(Walker& w, _ns1__openImage& m)
{
    w("lsu", m.lsu, "image", m.image, "mode", m.mode);
}

template <class Walker>
void walk(Walker& w, _ns1__openImageResponse& m)
{
    w("imageHandle", m.imageHandle);
}

template <class Walker>
void walk(Walker& w, _ns1__closeImage& m)
{
    w("imageHandle", m.imageHandle, "flag", m.flag, "reserved", m.reserved);
}

template <class Walker>
void walk(Walker&, _ns1__closeImageResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__readImageMeta& m)
{
    w("imageHandle", m.imageHandle, "len", m.len, "offset", m.offset);
}

template <class Walker>
void walk(Walker& w, _ns1__readImageMetaResponse& m)
{
    w("readResult", m.readResult);
}

template <class Walker>
void walk(Walker& w, _ns1__writeImageMeta& m)
{
    w("imageHandle", m.imageHandle, "buf", m.buf, "len", m.len, "offset", m.offset);
}

template <class Walker>
void walk(Walker& w, _ns1__writeImageMetaResponse& m)
{
    w("byteswritten", m.byteswritten);
}

template <class Walker>
void walk(Walker& w, _ns1__copyExtent& m)
{
    w("toImage", m.toImage, "toOffset", m.toOffset, "fromImage", m.fromImage, "fromOffset", m.fromOffset,
      "len", m.len, "flags", m.flags);
}

template <class Walker>
void walk(Walker& w, _ns1__copyExtentResponse& m)
{
    w("bytescopied", m.bytescopied);
}

template <class Walker>
void walk(Walker& w, _ns1__includeInImage& m)
{
    w("imageToHandle", m.imageToHandle, "offsetTo", m.offsetTo, "imageFromHandle", m.imageFromHandle,
      "offsetFrom", m.offsetFrom, "len", m.len);
}

template <class Walker>
void walk(Walker& w, _ns1__includeInImageResponse& m)
{
    w("bytesIncluded", m.bytesIncluded);
}

template <class Walker>
void walk(Walker& w, _ns1__beginCopyImage& m)
{
    w("targetLSU", m.targetLSU, "targetImage", m.targetImage, "imageHandle", m.imageHandle, "imageset",
      m.imageset, "eventflag", m.eventflag);
}

template <class Walker>
void walk(Walker&, _ns1__beginCopyImageResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__openSnapList& m)
{
    w("lsu", m.lsu);
}

template <class Walker>
void walk(Walker& w, _ns1__openSnapListResponse& m)
{
    w("snapListHandle", m.snapListHandle);
}

template <class Walker>
void walk(Walker& w, _ns1__openSnapListByVolume& m)
{
    w("serverHandle", m.serverHandle, "volSpec", m.volSpec);
}

template <class Walker>
void walk(Walker& w, _ns1__listSnap& m)
{
    w("snapListHandle", m.snapListHandle);
}

template <class Walker>
void walk(Walker& w, _ns1__listSnapResponse& m)
{
    w("snapDef", m.snapDef);
}

template <class Walker>
void walk(Walker& w, _ns1__closeSnapList& m)
{
    w("snapListHandle", m.snapListHandle);
}

template <class Walker>
void walk(Walker&, _ns1__closeSnapListResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__getSnapPropByName& m)
{
    w("lsu", m.lsu, "snapDef", m.snapDef);
}

template <class Walker>
void walk(Walker& w, _ns1__getSnapPropByNameResponse& m)
{
    w("snapInfo", m.snapInfo);
}

template <class Walker>
void walk(Walker& w, _ns1__deleteSnap& m)
{
    w("lsu", m.lsu, "snapDef", m.snapDef);
}

template <class Walker>
void walk(Walker&, _ns1__deleteSnapResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__validateRollback& m)
{
    w("lsu", m.lsu, "snapDef", m.snapDef, "targetServerHandle", m.targetServerHandle, "targetVolSpec",
      m.targetVolSpec, "rollbackList", m.rollbackList, "numRollbacks", m.numRollbacks);
}

template <class Walker>
void walk(Walker& w, _ns1__validateRollbackResponse& m)
{
    w("snapListHandle", m.snapListHandle);
}

template <class Walker>
void walk(Walker& w, _ns1__createExport& m)
{
    w("lsu", m.lsu, "snapName", m.snapName, "host", m.host);
}

template <class Walker>
void walk(Walker& w, _ns1__createExportResponse& m)
{
    w("exportedVolume", m.exportedVolume);
}

template <class Walker>
void walk(Walker& w, _ns1__addExport& m)
{
    w("lsu", m.lsu, "sourceVolSpec", m.sourceVolSpec, "host", m.host);
}

template <class Walker>
void walk(Walker& w, _ns1__addExportResponse& m)
{
    w("exportedVolume", m.exportedVolume);
}

template <class Walker>
void walk(Walker& w, _ns1__deleteExport& m)
{
    w("lsu", m.lsu, "host", m.host, "exportedVolume", m.exportedVolume);
}

template <class Walker>
void walk(Walker&, _ns1__deleteExportResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__claimVolume& m)
{
    w("serverHandle", m.serverHandle, "volume", m.volume);
}

template <class Walker>
void walk(Walker&, _ns1__claimVolumeResponse&)
{
}

} // namespace schema_test

#endif
