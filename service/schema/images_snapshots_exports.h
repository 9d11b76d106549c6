// Images, snapshots, volumes, exports, hosts and file attributes.
// Members stand in wire order: a trailing 1 marks an element that is always written, "nullptr 1" one
// that goes out as xsi:nil when its pointer is null, 0 a repeated one, and "$int __union_T" a choice.

class ns1__IndependentSupplierId {
  public:
    LONG64 version 1;
    std::string* dpaid nullptr 1;
    std::string* dpaver nullptr 1;
    xsd__base64Binary* info nullptr 1;
    struct soap* soap;
};

class ns1__ImageDefinition {
  public:
    LONG64 version 1;
    std::string* basename nullptr 1;
    std::string* date nullptr 1;
    std::string* fulldate nullptr 1;
    std::string* policy nullptr 1;
    int saveas 1;
    int flags 1;
    std::string* format nullptr 1;
    ns1__IndependentSupplierId* isid nullptr 1;
    struct soap* soap;
};

class ns1__ImageInformation {
  public:
    LONG64 version 1;
    ns1__ImageDefinition* def nullptr 1;
    std::string* server nullptr 1;
    std::string* lsu nullptr 1;
    LONG64 size 1;
    LONG64 blockSize 1;
    ns1__ArrayOfExport* exports nullptr 1;
    int status 1;
    struct soap* soap;
};

class ns1__Export {
  public:
    int fstype 1;
    std::string* mount nullptr 1;
    struct soap* soap;
};

class ns1__ArrayOfExport {
  public:
    std::vector<ns1__Export*> item 0;
    struct soap* soap;
};

class ns1__ImageHandle {
  public:
    std::string* token nullptr 1;
    struct soap* soap;
};

class ns1__ImageListHandle {
  public:
    std::string* token nullptr 1;
    struct soap* soap;
};

class ns1__ReadResult {
  public:
    LONG64 bytesread 1;
    xsd__base64Binary* buf nullptr 1;
    struct soap* soap;
};

class ns1__SnapDefinition {
  public:
    std::string snapName 1;
    int snapType 1;
    int snapFlags 1;
    int snapSaveas 1;
    ns1__IndependentSupplierId* isid nullptr 1;
    struct soap* soap;
};

class ns1__SnapInformation {
  public:
    ns1__SnapDefinition* snapDef nullptr 1;
    std::string snapServer 1;
    std::string snapLsu 1;
    ns1__VolumeSpecification* snapVolSpec nullptr 1;
    int snapStatus 1;
    LONG64 snapSize 1;
    struct soap* soap;
};

class ns1__SnapListHandle {
  public:
    std::string* token nullptr 1;
    struct soap* soap;
};

class ns1__VolumeSpecification {
  public:
    $int __union_VolumeSpecification;
    union _ns1__union_VolumeSpecification {
        ns1__NFSVolumeSpecification* nfs;
        ns1__CIFSVolumeSpecification* cifs;
        ns1__SCSIVolumeSpecification* scsi;
        ns1__DeviceVolumeSpecification* device;
        ns1__NDMPVolumeSpecification* ndmp;
    } union_VolumeSpecification;
    int volumeType 1;
    struct soap* soap;
};

class ns1__NFSVolumeSpecification {
  public:
    std::string exportHost 1;
    std::string exportName 1;
    std::string exportPath 1;
    struct soap* soap;
};

class ns1__CIFSVolumeSpecification {
  public:
    std::string exportHost 1;
    std::string shareName 1;
    std::string exportPath 1;
    struct soap* soap;
};

class ns1__SCSIVolumeSpecification {
  public:
    std::string lunWWNN 1;
    std::string lunSerial 1;
    struct soap* soap;
};

class ns1__DeviceVolumeSpecification {
  public:
    std::string devicePath 1;
    struct soap* soap;
};

class ns1__NDMPVolumeSpecification {
  public:
    std::string exportfiler 1;
    std::string exportpath 1;
    struct soap* soap;
};

class ns1__ArrayOfVolumeSpecification {
  public:
    std::vector<ns1__VolumeSpecification*> item 0;
    struct soap* soap;
};

class ns1__HostSpecification {
  public:
    ns1__ArrayOfString* hostname nullptr 1;
    ns1__ArrayOfString* port nullptr 1;
    int flags 1;
    struct soap* soap;
};

class ns1__FileAttr {
  public:
    std::string name 1;
    int* ftype nullptr 1;
    int* changetype nullptr 1;
    LONG64* modtime nullptr 1;
    LONG64* accesstime nullptr 1;
    LONG64* createtime nullptr 1;
    LONG64* changetime nullptr 1;
    LONG64* size nullptr 1;
    int* ownerid nullptr 1;
    int* groupid nullptr 1;
    LONG64* permissions nullptr 1;
    int* inode nullptr 1;
    int* gnum nullptr 1;
    struct soap* soap;
};

class ns1__ArrayOfFileAttr {
  public:
    std::vector<ns1__FileAttr*> item 0;
    struct soap* soap;
};

class _ns1__openImageList {
  public:
    ns1__LSU* lsu nullptr 1;
    int type 1;
    struct soap* soap;
};

class _ns1__openImageListResponse {
  public:
    ns1__ImageListHandle* imageListHandle nullptr 1;
    struct soap* soap;
};

class _ns1__listImage {
  public:
    ns1__ImageListHandle* imageListHandle nullptr 1;
    struct soap* soap;
};

class _ns1__listImageResponse {
  public:
    ns1__ImageDefinition* image nullptr 1;
    struct soap* soap;
};

class _ns1__closeImageList {
  public:
    ns1__ImageListHandle* imageListHandle nullptr 1;
    struct soap* soap;
};

class _ns1__closeImageListResponse {
  public:
    struct soap* soap;
};

class _ns1__getImageProp {
  public:
    ns1__ImageHandle* imageHandle nullptr 1;
    struct soap* soap;
};

class _ns1__getImagePropResponse {
  public:
    ns1__ImageInformation* info nullptr 1;
    struct soap* soap;
};

class _ns1__getImagePropByName {
  public:
    ns1__LSU* lsu nullptr 1;
    ns1__ImageDefinition* image nullptr 1;
    struct soap* soap;
};

class _ns1__getImagePropByNameResponse {
  public:
    ns1__ImageInformation* info nullptr 1;
    struct soap* soap;
};

class _ns1__deleteImage {
  public:
    ns1__LSU* lsu nullptr 1;
    ns1__ImageDefinition* imd nullptr 1;
    LONG64 asyncFlag 1;
    struct soap* soap;
};

class _ns1__deleteImageResponse {
  public:
    struct soap* soap;
};

class _ns1__createImage {
  public:
    ns1__LSU* lsu nullptr 1;
    ns1__ImageDefinition* image nullptr 1;
    bool pendingflag 1;
    struct soap* soap;
};

class _ns1__createImageResponse {
  public:
    ns1__ImageHandle* imageHandle nullptr 1;
    struct soap* soap;
};

class _ns1__openImage {
  public:
    ns1__LSU* lsu nullptr 1;
    ns1__ImageDefinition* image nullptr 1;
    int mode 1;
    struct soap* soap;
};

class _ns1__openImageResponse {
  public:
    ns1__ImageHandle* imageHandle nullptr 1;
    struct soap* soap;
};

class _ns1__closeImage {
  public:
    ns1__ImageHandle* imageHandle nullptr 1;
    int flag 1;
    int reserved 1;
    struct soap* soap;
};

class _ns1__closeImageResponse {
  public:
    struct soap* soap;
};

class _ns1__readImageMeta {
  public:
    ns1__ImageHandle* imageHandle nullptr 1;
    LONG64 len 1;
    LONG64 offset 1;
    struct soap* soap;
};

class _ns1__readImageMetaResponse {
  public:
    ns1__ReadResult* readResult nullptr 1;
    struct soap* soap;
};

class _ns1__writeImageMeta {
  public:
    ns1__ImageHandle* imageHandle nullptr 1;
    xsd__base64Binary buf 1;
    LONG64 len 1;
    LONG64 offset 1;
    struct soap* soap;
};

class _ns1__writeImageMetaResponse {
  public:
    LONG64 byteswritten 1;
    struct soap* soap;
};

class _ns1__copyExtent {
  public:
    ns1__ImageHandle* toImage nullptr 1;
    LONG64 toOffset 1;
    ns1__ImageHandle* fromImage nullptr 1;
    LONG64 fromOffset 1;
    LONG64 len 1;
    int flags 1;
    struct soap* soap;
};

class _ns1__copyExtentResponse {
  public:
    LONG64 bytescopied 1;
    struct soap* soap;
};

class _ns1__includeInImage {
  public:
    ns1__ImageHandle* imageToHandle nullptr 1;
    LONG64 offsetTo 1;
    ns1__ImageHandle* imageFromHandle nullptr 1;
    LONG64 offsetFrom 1;
    LONG64 len 1;
    struct soap* soap;
};

class _ns1__includeInImageResponse {
  public:
    LONG64 bytesIncluded 1;
    struct soap* soap;
};

class _ns1__beginCopyImage {
  public:
    ns1__LSU* targetLSU nullptr 1;
    ns1__ImageDefinition* targetImage nullptr 1;
    ns1__ImageHandle* imageHandle nullptr 1;
    std::string imageset 1;
    int eventflag 1;
    struct soap* soap;
};

class _ns1__beginCopyImageResponse {
  public:
    struct soap* soap;
};

class _ns1__openSnapList {
  public:
    ns1__LSU* lsu nullptr 1;
    struct soap* soap;
};

class _ns1__openSnapListResponse {
  public:
    ns1__SnapListHandle* snapListHandle nullptr 1;
    struct soap* soap;
};

class _ns1__openSnapListByVolume {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    ns1__VolumeSpecification* volSpec nullptr 1;
    struct soap* soap;
};

class _ns1__listSnap {
  public:
    ns1__SnapListHandle* snapListHandle nullptr 1;
    struct soap* soap;
};

class _ns1__listSnapResponse {
  public:
    ns1__SnapDefinition* snapDef nullptr 1;
    struct soap* soap;
};

class _ns1__closeSnapList {
  public:
    ns1__SnapListHandle* snapListHandle nullptr 1;
    struct soap* soap;
};

class _ns1__closeSnapListResponse {
  public:
    struct soap* soap;
};

class _ns1__getSnapPropByName {
  public:
    ns1__LSU* lsu nullptr 1;
    ns1__SnapDefinition* snapDef nullptr 1;
    struct soap* soap;
};

class _ns1__getSnapPropByNameResponse {
  public:
    ns1__SnapInformation* snapInfo nullptr 1;
    struct soap* soap;
};

class _ns1__deleteSnap {
  public:
    ns1__LSU* lsu nullptr 1;
    ns1__SnapDefinition* snapDef nullptr 1;
    struct soap* soap;
};

class _ns1__deleteSnapResponse {
  public:
    struct soap* soap;
};

class _ns1__validateRollback {
  public:
    ns1__LSU* lsu nullptr 1;
    ns1__SnapDefinition* snapDef nullptr 1;
    ns1__ServerHandle* targetServerHandle nullptr 1;
    ns1__VolumeSpecification* targetVolSpec nullptr 1;
    ns1__ArrayOfString* rollbackList nullptr 1;
    int numRollbacks 1;
    struct soap* soap;
};

class _ns1__validateRollbackResponse {
  public:
    ns1__SnapListHandle* snapListHandle nullptr 1;
    struct soap* soap;
};

class _ns1__createExport {
  public:
    ns1__LSU* lsu nullptr 1;
    std::string snapName 1;
    ns1__HostSpecification* host nullptr 1;
    struct soap* soap;
};

class _ns1__createExportResponse {
  public:
    ns1__VolumeSpecification* exportedVolume nullptr 1;
    struct soap* soap;
};

class _ns1__addExport {
  public:
    ns1__LSU* lsu nullptr 1;
    ns1__VolumeSpecification* sourceVolSpec nullptr 1;
    ns1__HostSpecification* host nullptr 1;
    struct soap* soap;
};

class _ns1__addExportResponse {
  public:
    ns1__VolumeSpecification* exportedVolume nullptr 1;
    struct soap* soap;
};

class _ns1__deleteExport {
  public:
    ns1__LSU* lsu nullptr 1;
    ns1__HostSpecification* host nullptr 1;
    ns1__VolumeSpecification* exportedVolume nullptr 1;
    struct soap* soap;
};

class _ns1__deleteExportResponse {
  public:
    struct soap* soap;
};

class _ns1__claimVolume {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    ns1__VolumeSpecification* volume nullptr 1;
    struct soap* soap;
};

class _ns1__claimVolumeResponse {
  public:
    struct soap* soap;
};
