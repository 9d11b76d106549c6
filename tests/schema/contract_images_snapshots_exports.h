// Images, snapshots, volumes, exports, hosts and file attributes, as the service's contract has them.
// Kept by hand: nothing here comes from the type header or from anything made of it.
#ifndef SCHEMA_TEST_CONTRACT_IMAGES_SNAPSHOTS_EXPORTS_H
#define SCHEMA_TEST_CONTRACT_IMAGES_SNAPSHOTS_EXPORTS_H

// clang-format off
#define TYPES_OF_IMAGES_SNAPSHOTS_EXPORTS(TYPE) \
    TYPE(IndependentSupplierId, \
        VALUE(version, long_integer) NILLABLE(dpaid, string) NILLABLE(dpaver, string) NILLABLE(info, bytes)) \
    TYPE(ImageDefinition, \
        VALUE(version, long_integer) NILLABLE(basename, string) NILLABLE(date, string) \
        NILLABLE(fulldate, string) NILLABLE(policy, string) VALUE(saveas, integer) VALUE(flags, integer) \
        NILLABLE(format, string) NILLABLE(isid, "ns1:IndependentSupplierId")) \
    TYPE(ImageInformation, \
        VALUE(version, long_integer) NILLABLE(def, "ns1:ImageDefinition") NILLABLE(server, string) \
        NILLABLE(lsu, string) VALUE(size, long_integer) VALUE(blockSize, long_integer) \
        NILLABLE(exports, "ns1:ArrayOfExport") VALUE(status, integer)) \
    TYPE(Export, VALUE(fstype, integer) NILLABLE(mount, string)) \
    TYPE(ArrayOfExport, REPEATED(item, "ns1:Export")) \
    TYPE(ImageHandle, NILLABLE(token, string)) \
    TYPE(ImageListHandle, NILLABLE(token, string)) \
    TYPE(ReadResult, VALUE(bytesread, long_integer) NILLABLE(buf, bytes)) \
    TYPE(SnapDefinition, \
        VALUE(snapName, string) VALUE(snapType, integer) VALUE(snapFlags, integer) \
        VALUE(snapSaveas, integer) NILLABLE(isid, "ns1:IndependentSupplierId")) \
    TYPE(SnapInformation, \
        NILLABLE(snapDef, "ns1:SnapDefinition") VALUE(snapServer, string) VALUE(snapLsu, string) \
        NILLABLE(snapVolSpec, "ns1:VolumeSpecification") VALUE(snapStatus, integer) \
        VALUE(snapSize, long_integer)) \
    TYPE(SnapListHandle, NILLABLE(token, string)) \
    TYPE(VolumeSpecification, \
        CHOICE(1, nfs, "ns1:NFSVolumeSpecification") CHOICE(2, cifs, "ns1:CIFSVolumeSpecification") \
        CHOICE(3, scsi, "ns1:SCSIVolumeSpecification") CHOICE(4, device, "ns1:DeviceVolumeSpecification") \
        CHOICE(5, ndmp, "ns1:NDMPVolumeSpecification") VALUE(volumeType, integer)) \
    TYPE(NFSVolumeSpecification, \
        VALUE(exportHost, string) VALUE(exportName, string) VALUE(exportPath, string)) \
    TYPE(CIFSVolumeSpecification, \
        VALUE(exportHost, string) VALUE(shareName, string) VALUE(exportPath, string)) \
    TYPE(SCSIVolumeSpecification, VALUE(lunWWNN, string) VALUE(lunSerial, string)) \
    TYPE(DeviceVolumeSpecification, VALUE(devicePath, string)) \
    TYPE(NDMPVolumeSpecification, VALUE(exportfiler, string) VALUE(exportpath, string)) \
    TYPE(ArrayOfVolumeSpecification, REPEATED(item, "ns1:VolumeSpecification")) \
    TYPE(HostSpecification, \
        NILLABLE(hostname, "ns1:ArrayOfString") NILLABLE(port, "ns1:ArrayOfString") VALUE(flags, integer)) \
    TYPE(FileAttr, \
        VALUE(name, string) NILLABLE(ftype, integer) NILLABLE(changetype, integer) \
        NILLABLE(modtime, long_integer) NILLABLE(accesstime, long_integer) \
        NILLABLE(createtime, long_integer) NILLABLE(changetime, long_integer) NILLABLE(size, long_integer) \
        NILLABLE(ownerid, integer) NILLABLE(groupid, integer) NILLABLE(permissions, long_integer) \
        NILLABLE(inode, integer) NILLABLE(gnum, integer)) \
    TYPE(ArrayOfFileAttr, REPEATED(item, "ns1:FileAttr"))

#define MESSAGES_OF_IMAGES_SNAPSHOTS_EXPORTS(MESSAGE) \
    MESSAGE(openImageList, NILLABLE(lsu, "ns1:LSU") VALUE(type, integer)) \
    MESSAGE(openImageListResponse, NILLABLE(imageListHandle, "ns1:ImageListHandle")) \
    MESSAGE(listImage, NILLABLE(imageListHandle, "ns1:ImageListHandle")) \
    MESSAGE(listImageResponse, NILLABLE(image, "ns1:ImageDefinition")) \
    MESSAGE(closeImageList, NILLABLE(imageListHandle, "ns1:ImageListHandle")) \
    MESSAGE(closeImageListResponse, ) \
    MESSAGE(getImageProp, NILLABLE(imageHandle, "ns1:ImageHandle")) \
    MESSAGE(getImagePropResponse, NILLABLE(info, "ns1:ImageInformation")) \
    MESSAGE(getImagePropByName, NILLABLE(lsu, "ns1:LSU") NILLABLE(image, "ns1:ImageDefinition")) \
    MESSAGE(getImagePropByNameResponse, NILLABLE(info, "ns1:ImageInformation")) \
    MESSAGE(deleteImage, \
        NILLABLE(lsu, "ns1:LSU") NILLABLE(imd, "ns1:ImageDefinition") VALUE(asyncFlag, long_integer)) \
    MESSAGE(deleteImageResponse, ) \
    MESSAGE(createImage, \
        NILLABLE(lsu, "ns1:LSU") NILLABLE(image, "ns1:ImageDefinition") VALUE(pendingflag, boolean)) \
    MESSAGE(createImageResponse, NILLABLE(imageHandle, "ns1:ImageHandle")) \
    MESSAGE(openImage, NILLABLE(lsu, "ns1:LSU") NILLABLE(image, "ns1:ImageDefinition") VALUE(mode, integer)) \
    MESSAGE(openImageResponse, NILLABLE(imageHandle, "ns1:ImageHandle")) \
    MESSAGE(closeImage, \
        NILLABLE(imageHandle, "ns1:ImageHandle") VALUE(flag, integer) VALUE(reserved, integer)) \
    MESSAGE(closeImageResponse, ) \
    MESSAGE(readImageMeta, \
        NILLABLE(imageHandle, "ns1:ImageHandle") VALUE(len, long_integer) VALUE(offset, long_integer)) \
    MESSAGE(readImageMetaResponse, NILLABLE(readResult, "ns1:ReadResult")) \
    MESSAGE(writeImageMeta, \
        NILLABLE(imageHandle, "ns1:ImageHandle") VALUE(buf, bytes) VALUE(len, long_integer) \
        VALUE(offset, long_integer)) \
    MESSAGE(writeImageMetaResponse, VALUE(byteswritten, long_integer)) \
    MESSAGE(copyExtent, \
        NILLABLE(toImage, "ns1:ImageHandle") VALUE(toOffset, long_integer) \
        NILLABLE(fromImage, "ns1:ImageHandle") VALUE(fromOffset, long_integer) VALUE(len, long_integer) \
        VALUE(flags, integer)) \
    MESSAGE(copyExtentResponse, VALUE(bytescopied, long_integer)) \
    MESSAGE(includeInImage, \
        NILLABLE(imageToHandle, "ns1:ImageHandle") VALUE(offsetTo, long_integer) \
        NILLABLE(imageFromHandle, "ns1:ImageHandle") VALUE(offsetFrom, long_integer) \
        VALUE(len, long_integer)) \
    MESSAGE(includeInImageResponse, VALUE(bytesIncluded, long_integer)) \
    MESSAGE(beginCopyImage, \
        NILLABLE(targetLSU, "ns1:LSU") NILLABLE(targetImage, "ns1:ImageDefinition") \
        NILLABLE(imageHandle, "ns1:ImageHandle") VALUE(imageset, string) VALUE(eventflag, integer)) \
    MESSAGE(beginCopyImageResponse, ) \
    MESSAGE(openSnapList, NILLABLE(lsu, "ns1:LSU")) \
    MESSAGE(openSnapListResponse, NILLABLE(snapListHandle, "ns1:SnapListHandle")) \
    MESSAGE(openSnapListByVolume, \
        NILLABLE(serverHandle, "ns1:ServerHandle") NILLABLE(volSpec, "ns1:VolumeSpecification")) \
    MESSAGE(listSnap, NILLABLE(snapListHandle, "ns1:SnapListHandle")) \
    MESSAGE(listSnapResponse, NILLABLE(snapDef, "ns1:SnapDefinition")) \
    MESSAGE(closeSnapList, NILLABLE(snapListHandle, "ns1:SnapListHandle")) \
    MESSAGE(closeSnapListResponse, ) \
    MESSAGE(getSnapPropByName, NILLABLE(lsu, "ns1:LSU") NILLABLE(snapDef, "ns1:SnapDefinition")) \
    MESSAGE(getSnapPropByNameResponse, NILLABLE(snapInfo, "ns1:SnapInformation")) \
    MESSAGE(deleteSnap, NILLABLE(lsu, "ns1:LSU") NILLABLE(snapDef, "ns1:SnapDefinition")) \
    MESSAGE(deleteSnapResponse, ) \
    MESSAGE(validateRollback, \
        NILLABLE(lsu, "ns1:LSU") NILLABLE(snapDef, "ns1:SnapDefinition") \
        NILLABLE(targetServerHandle, "ns1:ServerHandle") NILLABLE(targetVolSpec, "ns1:VolumeSpecification") \
        NILLABLE(rollbackList, "ns1:ArrayOfString") VALUE(numRollbacks, integer)) \
    MESSAGE(validateRollbackResponse, NILLABLE(snapListHandle, "ns1:SnapListHandle")) \
    MESSAGE(createExport, \
        NILLABLE(lsu, "ns1:LSU") VALUE(snapName, string) NILLABLE(host, "ns1:HostSpecification")) \
    MESSAGE(createExportResponse, NILLABLE(exportedVolume, "ns1:VolumeSpecification")) \
    MESSAGE(addExport, \
        NILLABLE(lsu, "ns1:LSU") NILLABLE(sourceVolSpec, "ns1:VolumeSpecification") \
        NILLABLE(host, "ns1:HostSpecification")) \
    MESSAGE(addExportResponse, NILLABLE(exportedVolume, "ns1:VolumeSpecification")) \
    MESSAGE(deleteExport, \
        NILLABLE(lsu, "ns1:LSU") NILLABLE(host, "ns1:HostSpecification") \
        NILLABLE(exportedVolume, "ns1:VolumeSpecification")) \
    MESSAGE(deleteExportResponse, ) \
    MESSAGE(claimVolume, \
        NILLABLE(serverHandle, "ns1:ServerHandle") NILLABLE(volume, "ns1:VolumeSpecification")) \
    MESSAGE(claimVolumeResponse, )
// clang-format on

#endif
