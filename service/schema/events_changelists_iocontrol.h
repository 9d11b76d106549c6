// Events, change lists and the generic control call.
// Members stand in wire order: a trailing 1 marks an element that is always written, "nullptr 1" one
// that goes out as xsi:nil when its pointer is null, 0 a repeated one, and "$int __union_T" a choice.

class ns1__EventChannelHandle {
  public:
    std::string* token nullptr 1;
    struct soap* soap;
};

class ns1__Event {
  public:
    int seqno 1;
    std::string server 1;
    int flags 1;
    int type 1;
    ns1__EventBody* body nullptr 1;
    struct soap* soap;
};

class ns1__EventBody {
  public:
    // For a class with nothing but a choice soapcpp2 makes a reader that fails at an empty element and at an
    // unknown one. A function ahead of the choice, which nobody calls, gets it the ordinary reader.
    void no_bare_choice() const;
    $int __union_EventBody;
    union _ns1__union_EventBody {
        ns1__OperationStatus* op;
        ns1__EventLSUInformation* lsuInfo;
        ns1__ServerStatus* srvStat;
        ns1__LSUStatus* lsuStat;
        ns1__EventImageInformation* imgInfo;
        ns1__EventActivity* actv;
        ns1__EventServerInformation* srvInfo;
        ns1__EventImageReplication* imgRep;
    } union_EventBody;
    struct soap* soap;
};

class ns1__EventActivity {
  public:
    LONG64 version 1;
    int action 1;
    std::string* eventset nullptr 1;
    int time 1;
    int sev 1;
    std::string* vendorType nullptr 1;
    std::string* lsuName nullptr 1;
    ns1__ImageInformation* imgInfo nullptr 1;
    ns1__SnapInformation* snapInfo nullptr 1;
    ns1__VolumeSpecification* volSpec nullptr 1;
    ns1__HostSpecification* hostSpec nullptr 1;
    std::string* dpaid nullptr 1;
    std::string* dpaver nullptr 1;
    int* dpaext nullptr 1;
    int msgLen 1;
    std::string msg 1;
    struct soap* soap;
};

class ns1__EventLSUInformation {
  public:
    LONG64 fields 1;
    ns1__LSUInformation* lsuInfo nullptr 1;
    struct soap* soap;
};

class ns1__EventImageInformation {
  public:
    LONG64 fields 1;
    ns1__ImageInformation* imgInfo nullptr 1;
    struct soap* soap;
};

class ns1__EventServerInformation {
  public:
    LONG64 fields 1;
    ns1__ServerInformation* srvInfo nullptr 1;
    struct soap* soap;
};

class ns1__EventImageReplication {
  public:
    std::string lsu 1;
    ns1__ImageDefinition* name nullptr 1;
    std::string origServer 1;
    std::string origLsu 1;
    ns1__ImageDefinition* origName nullptr 1;
    struct soap* soap;
};

class ns1__ServerStatus {
  public:
    int action 1;
    std::string name 1;
    struct soap* soap;
};

class ns1__LSUStatus {
  public:
    int action 1;
    std::string name 1;
    struct soap* soap;
};

class ns1__FileListHandle {
  public:
    std::string* token nullptr 1;
    struct soap* soap;
};

class ns1__DiffObjectSpecification {
  public:
    std::string objectName 1;
    int objectType 1;
    int objectState 1;
    struct soap* soap;
};

class ns1__ArrayOfDiffObjectSpecification {
  public:
    std::vector<ns1__DiffObjectSpecification*> item 0;
    struct soap* soap;
};

class _ns1__openEventChannel {
  public:
    ns1__SessionDefinition* sd nullptr 1;
    std::string server 1;
    ns1__Credential* cred nullptr 1;
    std::string interface 1;
    int flags 1;
    int evseqno 1;
    struct soap* soap;
};

class _ns1__openEventChannelResponse {
  public:
    ns1__EventChannelHandle* pevcHandle nullptr 1;
    struct soap* soap;
};

class _ns1__closeEventChannel {
  public:
    ns1__EventChannelHandle* evcHandle nullptr 1;
    struct soap* soap;
};

class _ns1__closeEventChannelResponse {
  public:
    struct soap* soap;
};

class _ns1__getEvent {
  public:
    ns1__EventChannelHandle* evcHandle nullptr 1;
    struct soap* soap;
};

class _ns1__getEventResponse {
  public:
    ns1__Event* event nullptr 1;
    struct soap* soap;
};

class _ns1__getEventPayload {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    ns1__Event* event nullptr 1;
    struct soap* soap;
};

class _ns1__getEventPayloadResponse {
  public:
    ns1__EventBody* payload nullptr 1;
    struct soap* soap;
};

class _ns1__deleteEvent {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    ns1__Event* event nullptr 1;
    struct soap* soap;
};

class _ns1__deleteEventResponse {
  public:
    struct soap* soap;
};

class _ns1__openSnapChangeList {
  public:
    ns1__LSU* lsu nullptr 1;
    ns1__SnapDefinition* baseSnapshot nullptr 1;
    ns1__SnapDefinition* diffSnapshot nullptr 1;
    ns1__VolumeSpecification* sourceVolSpec nullptr 1;
    int diffFlag 1;
    struct soap* soap;
};

class _ns1__openSnapChangeListResponse {
  public:
    ns1__FileListHandle* fileListHandle nullptr 1;
    struct soap* soap;
};

class _ns1__listFile {
  public:
    ns1__FileListHandle* fileListHandle nullptr 1;
    int filterPathNum 1;
    ns1__ArrayOfString* filterPathList nullptr 1;
    struct soap* soap;
};

class _ns1__listFileResponse {
  public:
    ns1__ArrayOfFileAttr* fileAttrList nullptr 1;
    int numFiles 1;
    int error 1;
    int retryInterval 1;
    struct soap* soap;
};

class _ns1__closeSnapChangeList {
  public:
    ns1__FileListHandle* fileListHandle nullptr 1;
    struct soap* soap;
};

class _ns1__closeSnapChangeListResponse {
  public:
    struct soap* soap;
};

class _ns1__ioControl {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    int command 1;
    std::string args 1;
    int ioflag 1;
    int len 1;
    struct soap* soap;
};

class _ns1__ioControlResponse {
  public:
    std::string args 1;
    int len 1;
    struct soap* soap;
};
