// Images, snapshots, volumes, exports, hosts and file attributes, as the service's contract has them.
// Kept by hand: nothing here comes from the type header or from anything made of it.
#ifndef SOAPWRAPPER_TESTS_SCHEMA_CONTRACT_IMAGES_SNAPSHOTS_EXPORTS_H
#define SOAPWRAPPER_TESTS_SCHEMA_CONTRACT_IMAGES_SNAPSHOTS_EXPORTS_H

// clang-format off
#define TYPES_OF_IMAGES_SNAPSHOTS_EXPORTS(TYPE) \
    TYPE(IndependentSupplierId, \
        VALUE(version, kLongInteger) NILLABLE(dpaid, kString) NILLABLE(dpaver, kString) NILLABLE(info, kBytes)) \
    TYPE(ImageDefinition, \
        VALUE(version, kLongInteger) NILLABLE(basename, kString) NILLABLE(date, kString) \
        NILLABLE(fulldate, kString) NILLABLE(policy, kString) VALUE(saveas, kInteger) VALUE(flags, kInteger) \
        NILLABLE(format, kString) NILLABLE(isid, "ns1:IndependentSupplierId")) \
    TYPE(ImageInformation, \
        VALUE(version, kLongInteger) NILLABLE(def, "ns1:ImageDefinition") NILLABLE(server, kString) \
        NILLABLE(lsu, kString) VALUE(size, kLongInteger) VALUE(blockSize, kLongInteger) \
        NILLABLE(exports, "ns1:ArrayOfExport") VALUE(status, kInteger)) \
    TYPE(Export, VALUE(fstype, kInteger) NILLABLE(mount, kString)) \
    TYPE(ArrayOfExport, REPEATED(item, "ns1:Export")) \
    TYPE(ImageHandle, NILLABLE(token, kString)) \
    TYPE(ImageListHandle, NILLABLE(token, kString)) \
    TYPE(ReadResult, VALUE(bytesread, kLongInteger) NILLABLE(buf, kBytes)) \
    TYPE(SnapDefinition, \
        VALUE(snapName, kString) VALUE(snapType, kInteger) VALUE(snapFlags, kInteger) \
        VALUE(snapSaveas, kInteger) NILLABLE(isid, "ns1:IndependentSupplierId")) \
    TYPE(SnapInformation, \
        NILLABLE(snapDef, "ns1:SnapDefinition") VALUE(snapServer, kString) VALUE(snapLsu, kString) \
        NILLABLE(snapVolSpec, "ns1:VolumeSpecification") VALUE(snapStatus, kInteger) \
        VALUE(snapSize, kLongInteger)) \
    TYPE(SnapListHandle, NILLABLE(token, kString)) \
    TYPE(VolumeSpecification, \
        CHOICE(1, nfs, "ns1:NFSVolumeSpecification") CHOICE(2, cifs, "ns1:CIFSVolumeSpecification") \
        CHOICE(3, scsi, "ns1:SCSIVolumeSpecification") CHOICE(4, device, "ns1:DeviceVolumeSpecification") \
        CHOICE(5, ndmp, "ns1:NDMPVolumeSpecification") VALUE(volumeType, kInteger)) \
    TYPE(NFSVolumeSpecification, \
        VALUE(exportHost, kString) VALUE(exportName, kString) VALUE(exportPath, kString)) \
    TYPE(CIFSVolumeSpecification, \
        VALUE(exportHost, kString) VALUE(shareName, kString) VALUE(exportPath, kString)) \
    TYPE(SCSIVolumeSpecification, VALUE(lunWWNN, kString) VALUE(lunSerial, kString)) \
    TYPE(DeviceVolumeSpecification, VALUE(devicePath, kString)) \
    TYPE(NDMPVolumeSpecification, VALUE(exportfiler, kString) VALUE(exportpath, kString)) \
    TYPE(ArrayOfVolumeSpecification, REPEATED(item, "ns1:VolumeSpecification")) \
    TYPE(HostSpecification, \
        NILLABLE(hostname, "ns1:ArrayOfString") NILLABLE(port, "ns1:ArrayOfString") VALUE(flags, kInteger)) \
    TYPE(FileAttr, \
        VALUE(name, kString) NILLABLE(ftype, kInteger) NILLABLE(changetype, kInteger) \
        NILLABLE(modtime, kLongInteger) NILLABLE(accesstime, kLongInteger) \
        NILLABLE(createtime, kLongInteger) NILLABLE(changetime, kLongInteger) NILLABLE(size, kLongInteger) \
        NILLABLE(ownerid, kInteger) NILLABLE(groupid, kInteger) NILLABLE(permissions, kLongInteger) \
        NILLABLE(inode, kInteger) NILLABLE(gnum, kInteger)) \
    TYPE(ArrayOfFileAttr, REPEATED(item, "ns1:FileAttr"))

#define MESSAGES_OF_IMAGES_SNAPSHOTS_EXPORTS(MESSAGE) \
    MESSAGE(openImageList, NILLABLE(lsu, "ns1:LSU") VALUE(type, kInteger)) \
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
        NILLABLE(lsu, "ns1:LSU") NILLABLE(imd, "ns1:ImageDefinition") VALUE(asyncFlag, kLongInteger)) \
    MESSAGE(deleteImageResponse, ) \
    MESSAGE(createImage, \
        NILLABLE(lsu, "ns1:LSU") NILLABLE(image, "ns1:ImageDefinition") VALUE(pendingflag, kBoolean)) \
    MESSAGE(createImageResponse, NILLABLE(imageHandle, "ns1:ImageHandle")) \
    MESSAGE(openImage, NILLABLE(lsu, "ns1:LSU") NILLABLE(image, "ns1:ImageDefinition") VALUE(mode, kInteger)) \
    MESSAGE(openImageResponse, NILLABLE(imageHandle, "ns1:ImageHandle")) \
    MESSAGE(closeImage, \
        NILLABLE(imageHandle, "ns1:ImageHandle") VALUE(flag, kInteger) VALUE(reserved, kInteger)) \
    MESSAGE(closeImageResponse, ) \
    MESSAGE(readImageMeta, \
        NILLABLE(imageHandle, "ns1:ImageHandle") VALUE(len, kLongInteger) VALUE(offset, kLongInteger)) \
    MESSAGE(readImageMetaResponse, NILLABLE(readResult, "ns1:ReadResult")) \
    MESSAGE(writeImageMeta, \
        NILLABLE(imageHandle, "ns1:ImageHandle") VALUE(buf, kBytes) VALUE(len, kLongInteger) \
        VALUE(offset, kLongInteger)) \
    MESSAGE(writeImageMetaResponse, VALUE(byteswritten, kLongInteger)) \
    MESSAGE(copyExtent, \
        NILLABLE(toImage, "ns1:ImageHandle") VALUE(toOffset, kLongInteger) \
        NILLABLE(fromImage, "ns1:ImageHandle") VALUE(fromOffset, kLongInteger) VALUE(len, kLongInteger) \
        VALUE(flags, kInteger)) \
    MESSAGE(copyExtentResponse, VALUE(bytescopied, kLongInteger)) \
    MESSAGE(includeInImage, \
        NILLABLE(imageToHandle, "ns1:ImageHandle") VALUE(offsetTo, kLongInteger) \
        NILLABLE(imageFromHandle, "ns1:ImageHandle") VALUE(offsetFrom, kLongInteger) \
        VALUE(len, kLongInteger)) \
    MESSAGE(includeInImageResponse, VALUE(bytesIncluded, kLongInteger)) \
    MESSAGE(beginCopyImage, \
        NILLABLE(targetLSU, "ns1:LSU") NILLABLE(targetImage, "ns1:ImageDefinition") \
        NILLABLE(imageHandle, "ns1:ImageHandle") VALUE(imageset, kString) VALUE(eventflag, kInteger)) \
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
        NILLABLE(rollbackList, "ns1:ArrayOfString") VALUE(numRollbacks, kInteger)) \
    MESSAGE(validateRollbackResponse, NILLABLE(snapListHandle, "ns1:SnapListHandle")) \
    MESSAGE(createExport, \
        NILLABLE(lsu, "ns1:LSU") VALUE(snapName, kString) NILLABLE(host, "ns1:HostSpecification")) \
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
