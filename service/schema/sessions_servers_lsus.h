// Sessions, servers, LSUs, the shared array types and the fault detail.
// Members stand in wire order: a trailing 1 marks an element that is always written, "nullptr 1" one
// that goes out as xsi:nil when its pointer is null, 0 a repeated one, and "$int __union_T" a choice.

class ns1__ArrayOfInt {
  public:
    std::vector<int> item 0;
    struct soap* soap;
};

class ns1__ArrayOfString {
  public:
    std::vector<std::string> item 0;
    struct soap* soap;
};

class ns1__Credential {
  public:
    int len 1;
    int type 1;
    xsd__base64Binary* cert nullptr 1;
    struct soap* soap;
};

class ns1__SessionDefinition {
  public:
    std::string* proxy nullptr 1;
    std::string* id nullptr 1;
    int flags 1;
    struct soap* soap;
};

class ns1__ServerHandle {
  public:
    std::string* token nullptr 1;
    struct soap* soap;
};

class ns1__STSException {
  public:
    int errorCode 1;
    struct soap* soap;
};

class ns1__ServerInformation {
  public:
    std::string* server nullptr 1;
    ns1__ArrayOfString* sth nullptr 1;
    int flags 1;
    int maxconnect 1;
    int nconnect 1;
    ns1__ArrayOfInt* cap nullptr 1;
    ns1__ArrayOfString* requiredInterface nullptr 1;
    ns1__ArrayOfInt* cred nullptr 1;
    std::string* ndmpHost nullptr 1;
    struct soap* soap;
};

class ns1__LSU {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    std::string lsuName 1;
    struct soap* soap;
};

class ns1__LSUDefinition {
  public:
    LONG64 version 1;
    std::string* name nullptr 1;
    int alloc 1;
    int storage 1;
    std::string* description nullptr 1;
    std::string* config nullptr 1;
    int flags 1;
    int saveas 1;
    LONG64 maxTransfer 1;
    LONG64 blockSize 1;
    LONG64 allocSize 1;
    std::string* label nullptr 1;
    int repSources 1;
    int repTargets 1;
    struct soap* soap;
};

class ns1__LSUInformation {
  public:
    LONG64 version 1;
    std::string server 1;
    ns1__LSUDefinition* def nullptr 1;
    LONG64 capacity 1;
    LONG64 capacityPhys 1;
    LONG64 used 1;
    LONG64 usedPhys 1;
    LONG64 images 1;
    struct soap* soap;
};

class ns1__LSUSpecification {
  public:
    std::string server 1;
    std::string lsu 1;
    struct soap* soap;
};

class ns1__ArrayOfLSUSpecification {
  public:
    std::vector<ns1__LSUSpecification*> item 0;
    struct soap* soap;
};

class ns1__LSUReplicationProps {
  public:
    ns1__ArrayOfLSUSpecification* source nullptr 1;
    ns1__ArrayOfLSUSpecification* target nullptr 1;
    struct soap* soap;
};

class ns1__LSUListHandle {
  public:
    std::string* token nullptr 1;
    struct soap* soap;
};

class _ns1__openServer {
  public:
    ns1__SessionDefinition* sd nullptr 1;
    std::string server 1;
    ns1__Credential* cred nullptr 1;
    std::string requiredInterface 1;
    struct soap* soap;
};

class _ns1__openServerResponse {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    struct soap* soap;
};

class _ns1__openTargetServer {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    std::string server 1;
    ns1__Credential* cred nullptr 1;
    std::string interface 1;
    struct soap* soap;
};

class _ns1__openTargetServerResponse {
  public:
    ns1__ServerHandle* targetServerHandle nullptr 1;
    struct soap* soap;
};

class _ns1__closeServer {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    struct soap* soap;
};

class _ns1__closeServerResponse {
  public:
    struct soap* soap;
};

class _ns1__getServerProp {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    struct soap* soap;
};

class _ns1__getServerPropResponse {
  public:
    ns1__ServerInformation* info nullptr 1;
    struct soap* soap;
};

class _ns1__getServerPropByName {
  public:
    ns1__SessionDefinition* sd nullptr 1;
    std::string server 1;
    struct soap* soap;
};

class _ns1__getServerPropByNameResponse {
  public:
    ns1__ServerInformation* info nullptr 1;
    struct soap* soap;
};

class _ns1__openLSUList {
  public:
    ns1__ServerHandle* serverHandle nullptr 1;
    ns1__LSUDefinition* lsudef nullptr 1;
    struct soap* soap;
};

class _ns1__openLSUListResponse {
  public:
    ns1__LSUListHandle* lsuListHandle nullptr 1;
    struct soap* soap;
};

class _ns1__listLSU {
  public:
    ns1__LSUListHandle* lsuListHandle nullptr 1;
    struct soap* soap;
};

class _ns1__listLSUResponse {
  public:
    std::string lsu 1;
    struct soap* soap;
};

class _ns1__closeLSUList {
  public:
    ns1__LSUListHandle* lsuListHandle nullptr 1;
    struct soap* soap;
};

class _ns1__closeLSUListResponse {
  public:
    struct soap* soap;
};

class _ns1__getLSUPropByName {
  public:
    ns1__LSU* lsu nullptr 1;
    struct soap* soap;
};

class _ns1__getLSUPropByNameResponse {
  public:
    ns1__LSUInformation* info nullptr 1;
    struct soap* soap;
};

class _ns1__getLSUReplicationProp {
  public:
    ns1__LSU* lsu nullptr 1;
    int nsource 1;
    int ntarget 1;
    struct soap* soap;
};

class _ns1__getLSUReplicationPropResponse {
  public:
    ns1__LSUReplicationProps* props nullptr 1;
    struct soap* soap;
};

class _ns1__labelLSU {
  public:
    ns1__LSU* lsu nullptr 1;
    std::string lsuLabel 1;
    struct soap* soap;
};

class _ns1__labelLSUResponse {
  public:
    struct soap* soap;
};
