// Long operations: their results, starts, waits, status and cancel.
// Members stand in wire order: a trailing 1 marks an element that is always written, "nullptr 1" one
// that goes out as xsi:nil when its pointer is null, 0 a repeated one, and "$int __union_T" a choice.

class ns1__OperationID {
  public:
    std::string* token nullptr 1;
    struct soap* soap;
};

class ns1__AIOResult {
  public:
    ns1__ImageHandle* image nullptr 1;
    LONG64 bytesTransferred 1;
    int error 1;
    int delayInSeconds 1;
    struct soap* soap;
};

class ns1__AIOResultSnap {
  public:
    LONG64 totalBytesTransferred 1;
    int error 1;
    int retryInterval 1;
    int resultSnapType 1;
    $int __union_AIOResultSnap;
    union _ns1__union_AIOResultSnap {
        ns1__AIOResultValidateSnap* validateSnap;
        ns1__AIOResultProvisionTopology* provisionTopology;
        ns1__AIOResultCreateSnap* createSnap;
        ns1__AIOResultImportSnap* importSnap;
        ns1__AIOResultCopySnap* copySnap;
        ns1__AIOResultGetSnapDiff* getSnapDiff;
    } union_AIOResultSnap;
    struct soap* soap;
};

class ns1__AIOResultValidateSnap {
  public:
    std::string targetTopology 1;
    struct soap* soap;
};

class ns1__AIOResultProvisionTopology {
  public:
    std::string targetTopology 1;
    struct soap* soap;
};

class ns1__AIOResultCreateSnap {
  public:
    std::string targetSnapName 1;
    ns1__LSUSpecification* targetSnapLsu nullptr 1;
    struct soap* soap;
};

class ns1__AIOResultImportSnap {
  public:
    std::string targetSnapName 1;
    ns1__LSUSpecification* targetSnapLsu nullptr 1;
    struct soap* soap;
};

class ns1__AIOResultCopySnap {
  public:
    std::string targetSnapName 1;
    ns1__LSUSpecification* targetSnapLsu nullptr 1;
    struct soap* soap;
};

class ns1__AIOResultGetSnapDiff {
  public:
    int numDiffs 1;
    ns1__ArrayOfDiffObjectSpecification* diffObjectList nullptr 1;
    struct soap* soap;
};

class ns1__OperationStatus {
  public:
    std::string name 1;
    ns1__AIOResult* result nullptr 1;
    struct soap* soap;
};

class _ns1__asyncCreateSnapByName {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    ns1__VolumeSpecification* sourceVolSpec nullptr 1;
    ns1__SnapDefinition* targetSnapDef nullptr 1;
    ns1__ArrayOfLSUSpecification* targetLSUSpecs nullptr 1;
    int ntargets 1;
    std::string imageset 1;
    int pendingflag 1;
    struct soap* soap;
};

class _ns1__asyncCreateSnapByNameResponse {
  public:
    ns1__OperationID* opid nullptr 1;
    struct soap* soap;
};

class _ns1__asyncPrepareSnapByName {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    ns1__VolumeSpecification* sourceVolSpec nullptr 1;
    ns1__SnapDefinition* targetSnapDef nullptr 1;
    ns1__ArrayOfLSUSpecification* targetLSUSpecs nullptr 1;
    int ntargets 1;
    std::string imageset 1;
    int pendingflag 1;
    struct soap* soap;
};

class _ns1__asyncPrepareSnapByNameResponse {
  public:
    ns1__OperationID* opid nullptr 1;
    struct soap* soap;
};

class _ns1__asyncValidateSnapByName {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    ns1__VolumeSpecification* sourceVolSpec nullptr 1;
    ns1__SnapDefinition* targetSnapDef nullptr 1;
    ns1__ArrayOfLSUSpecification* targetLSUSpecs nullptr 1;
    int ntargets 1;
    std::string targetTopology 1;
    struct soap* soap;
};

class _ns1__asyncValidateSnapByNameResponse {
  public:
    ns1__OperationID* opid nullptr 1;
    struct soap* soap;
};

class _ns1__asyncCopySnapByName {
  public:
    ns1__LSU* lsu nullptr 1;
    ns1__SnapDefinition* snapDef nullptr 1;
    ns1__ArrayOfLSUSpecification* targetLSUSpecs nullptr 1;
    int ntargets 1;
    std::string imageset 1;
    int pendingflag 1;
    struct soap* soap;
};

class _ns1__asyncCopySnapByNameResponse {
  public:
    ns1__OperationID* opid nullptr 1;
    struct soap* soap;
};

class _ns1__asyncImportSnapByName {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    ns1__VolumeSpecification* sourceVolSpec nullptr 1;
    ns1__SnapDefinition* sourceSnapDef nullptr 1;
    std::string imageset 1;
    int pendingflag 1;
    struct soap* soap;
};

class _ns1__asyncImportSnapByNameResponse {
  public:
    ns1__OperationID* opid nullptr 1;
    struct soap* soap;
};

class _ns1__asyncPostProcessSnapByName {
  public:
    ns1__LSU* lsu nullptr 1;
    std::string snapName 1;
    struct soap* soap;
};

class _ns1__asyncPostProcessSnapByNameResponse {
  public:
    ns1__OperationID* opid nullptr 1;
    struct soap* soap;
};

class _ns1__asyncRollbackSnap {
  public:
    ns1__LSU* lsu nullptr 1;
    ns1__SnapDefinition* snapDef nullptr 1;
    ns1__ServerHandle* targetServerHandle nullptr 1;
    ns1__VolumeSpecification* targetVolSpec nullptr 1;
    ns1__ArrayOfString* rollbackList nullptr 1;
    int numRollbacks 1;
    int rollbackFlag 1;
    struct soap* soap;
};

class _ns1__asyncRollbackSnapResponse {
  public:
    ns1__OperationID* opid nullptr 1;
    struct soap* soap;
};

class _ns1__asyncProvisionTopology {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    ns1__VolumeSpecification* sourceVolSpec nullptr 1;
    ns1__SnapDefinition* targetSnapDef nullptr 1;
    ns1__ArrayOfLSUSpecification* targetLSUSpecs nullptr 1;
    int ntargets 1;
    std::string targetTopology 1;
    std::string imageset 1;
    int pendingflag 1;
    struct soap* soap;
};

class _ns1__asyncProvisionTopologyResponse {
  public:
    ns1__OperationID* opid nullptr 1;
    struct soap* soap;
};

class _ns1__asyncGetSnapDiff {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    ns1__SnapDefinition* snapshot nullptr 1;
    ns1__ServerHandle* targetServerHandle nullptr 1;
    ns1__ArrayOfVolumeSpecification* rollbackList nullptr 1;
    int numRollbacks 1;
    int diffFlag 1;
    struct soap* soap;
};

class _ns1__asyncGetSnapDiffResponse {
  public:
    ns1__OperationID* opid nullptr 1;
    struct soap* soap;
};

class _ns1__asyncCopyImage {
  public:
    ns1__LSU* targetLSU nullptr 1;
    ns1__ImageDefinition* targetImage nullptr 1;
    ns1__LSU* sourceLSU nullptr 1;
    ns1__ImageDefinition* sourceImage nullptr 1;
    std::string imageset 1;
    int eventflag 1;
    struct soap* soap;
};

class _ns1__asyncCopyImageResponse {
  public:
    ns1__OperationID* opid nullptr 1;
    struct soap* soap;
};

class _ns1__asyncEndCopyImage {
  public:
    ns1__ImageHandle* imageHandle nullptr 1;
    ns1__OperationID* opid nullptr 1;
    struct soap* soap;
};

class _ns1__asyncEndCopyImageResponse {
  public:
    struct soap* soap;
};

class _ns1__asyncWait {
  public:
    ns1__SessionDefinition* sd nullptr 1;
    ns1__OperationID* opid nullptr 1;
    struct soap* soap;
};

class _ns1__asyncWaitResponse {
  public:
    ns1__AIOResult* result nullptr 1;
    struct soap* soap;
};

class _ns1__asyncWaitSnap {
  public:
    ns1__SessionDefinition* sd nullptr 1;
    ns1__OperationID* opid nullptr 1;
    struct soap* soap;
};

class _ns1__asyncWaitSnapResponse {
  public:
    ns1__AIOResultSnap* result nullptr 1;
    struct soap* soap;
};

class _ns1__asyncCancel {
  public:
    ns1__SessionDefinition* sd nullptr 1;
    ns1__OperationID* opid nullptr 1;
    struct soap* soap;
};

class _ns1__asyncCancelResponse {
  public:
    struct soap* soap;
};

class _ns1__namedAsyncCreateSnapByName {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    ns1__VolumeSpecification* sourceVolSpec nullptr 1;
    ns1__SnapDefinition* targetSnapDef nullptr 1;
    ns1__ArrayOfLSUSpecification* targetLSUSpecs nullptr 1;
    int ntargets 1;
    std::string imageset 1;
    int pendingflag 1;
    std::string opname 1;
    struct soap* soap;
};

class _ns1__namedAsyncCreateSnapByNameResponse {
  public:
    struct soap* soap;
};

class _ns1__namedAsyncPrepareSnapByName {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    ns1__VolumeSpecification* sourceVolSpec nullptr 1;
    ns1__SnapDefinition* targetSnapDef nullptr 1;
    ns1__ArrayOfLSUSpecification* targetLSUSpecs nullptr 1;
    int ntargets 1;
    std::string imageset 1;
    int pendingflag 1;
    std::string opname 1;
    struct soap* soap;
};

class _ns1__namedAsyncPrepareSnapByNameResponse {
  public:
    struct soap* soap;
};

class _ns1__namedAsyncValidateSnapByName {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    ns1__VolumeSpecification* sourceVolSpec nullptr 1;
    ns1__SnapDefinition* targetSnapDef nullptr 1;
    ns1__ArrayOfLSUSpecification* targetLSUSpecs nullptr 1;
    int ntargets 1;
    std::string targetTopology 1;
    std::string opname 1;
    struct soap* soap;
};

class _ns1__namedAsyncValidateSnapByNameResponse {
  public:
    struct soap* soap;
};

class _ns1__namedAsyncCopySnapByName {
  public:
    ns1__LSU* lsu nullptr 1;
    ns1__SnapDefinition* snapDef nullptr 1;
    ns1__ArrayOfLSUSpecification* targetLSUSpecs nullptr 1;
    int ntargets 1;
    std::string imageset 1;
    int pendingflag 1;
    std::string opname 1;
    struct soap* soap;
};

class _ns1__namedAsyncCopySnapByNameResponse {
  public:
    struct soap* soap;
};

class _ns1__namedAsyncImportSnapByName {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    ns1__VolumeSpecification* sourceVolSpec nullptr 1;
    ns1__SnapDefinition* sourceSnapDef nullptr 1;
    std::string imageset 1;
    int pendingflag 1;
    std::string opname 1;
    struct soap* soap;
};

class _ns1__namedAsyncImportSnapByNameResponse {
  public:
    struct soap* soap;
};

class _ns1__namedAsyncPostProcessSnapByName {
  public:
    ns1__LSU* lsu nullptr 1;
    std::string snapName 1;
    std::string opname 1;
    struct soap* soap;
};

class _ns1__namedAsyncPostProcessSnapByNameResponse {
  public:
    struct soap* soap;
};

class _ns1__namedAsyncRollbackSnap {
  public:
    ns1__LSU* lsu nullptr 1;
    ns1__SnapDefinition* snapDef nullptr 1;
    ns1__ServerHandle* targetServerHandle nullptr 1;
    ns1__VolumeSpecification* targetVolSpec nullptr 1;
    ns1__ArrayOfString* rollbackList nullptr 1;
    int numRollbacks 1;
    int rollbackFlag 1;
    std::string opname 1;
    struct soap* soap;
};

class _ns1__namedAsyncRollbackSnapResponse {
  public:
    struct soap* soap;
};

class _ns1__namedAsyncProvisionTopology {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    ns1__VolumeSpecification* sourceVolSpec nullptr 1;
    ns1__SnapDefinition* targetSnapDef nullptr 1;
    ns1__ArrayOfLSUSpecification* targetLSUSpecs nullptr 1;
    int ntargets 1;
    std::string targetTopology 1;
    std::string imageset 1;
    int pendingflag 1;
    std::string opname 1;
    struct soap* soap;
};

class _ns1__namedAsyncProvisionTopologyResponse {
  public:
    struct soap* soap;
};

class _ns1__namedAsyncGetSnapDiff {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    ns1__SnapDefinition* snapshot nullptr 1;
    ns1__ServerHandle* targetServerHandle nullptr 1;
    ns1__ArrayOfVolumeSpecification* rollbackList nullptr 1;
    int numRollbacks 1;
    bool diffFlag 1;
    std::string opname 1;
    struct soap* soap;
};

class _ns1__namedAsyncGetSnapDiffResponse {
  public:
    struct soap* soap;
};

class _ns1__namedAsyncCopyImage {
  public:
    ns1__LSU* targetLSU nullptr 1;
    ns1__ImageDefinition* targetImage nullptr 1;
    ns1__LSU* sourceLSU nullptr 1;
    ns1__ImageDefinition* sourceImage nullptr 1;
    std::string opname 1;
    std::string imageset 1;
    int eventflag 1;
    struct soap* soap;
};

class _ns1__namedAsyncCopyImageResponse {
  public:
    struct soap* soap;
};

class _ns1__namedAsyncEndCopyImage {
  public:
    ns1__ImageHandle* imageHandle nullptr 1;
    std::string opname 1;
    struct soap* soap;
};

class _ns1__namedAsyncEndCopyImageResponse {
  public:
    struct soap* soap;
};

class _ns1__namedAsyncWait {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    std::string opname 1;
    struct soap* soap;
};

class _ns1__namedAsyncWaitResponse {
  public:
    ns1__AIOResult* result nullptr 1;
    struct soap* soap;
};

class _ns1__namedAsyncWaitSnap {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    std::string opname 1;
    struct soap* soap;
};

class _ns1__namedAsyncWaitSnapResponse {
  public:
    ns1__AIOResultSnap* result nullptr 1;
    struct soap* soap;
};

class _ns1__namedAsyncStatus {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    std::string opname 1;
    struct soap* soap;
};

class _ns1__namedAsyncStatusResponse {
  public:
    struct soap* soap;
};

class _ns1__namedAsyncCancel {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    std::string opname 1;
    struct soap* soap;
};

class _ns1__namedAsyncCancelResponse {
  public:
    struct soap* soap;
};
