// What a freshly made object writes between its tags: zeros, empty elements for texts, xsi:nil for null
// pointers, nothing for a choice that isn't made and for an empty list.
#include "blank_texts.h"

#include "xml_node.h"

namespace schema_test
{

const std::map<std::string, std::string>& blank_types()
{
    static const std::map<std::string, std::string> texts = {
        {"ArrayOfInt", ""},
        {"ArrayOfString", ""},
        {"Credential", zero("len") + zero("type") + nil("cert")},
        {"SessionDefinition", nil("proxy") + nil("id") + zero("flags")},
        {"ServerHandle", nil("token")},
        {"STSException", zero("errorCode")},
        {"ServerInformation", nil("server") + nil("sth") + zero("flags") + zero("maxconnect") +
                                  zero("nconnect") + nil("cap") + nil("requiredInterface") + nil("cred") +
                                  nil("ndmpHost")},
        {"LSU", nil("serverHandle") + empty("lsuName")},
        {"LSUDefinition", zero("version") + nil("name") + zero("alloc") + zero("storage") +
                              nil("description") + nil("config") + zero("flags") + zero("saveas") +
                              zero("maxTransfer") + zero("blockSize") + zero("allocSize") + nil("label") +
                              zero("repSources") + zero("repTargets")},
        {"LSUInformation", zero("version") + empty("server") + nil("def") + zero("capacity") +
                               zero("capacityPhys") + zero("used") + zero("usedPhys") + zero("images")},
        {"LSUSpecification", empty("server") + empty("lsu")},
        {"ArrayOfLSUSpecification", ""},
        {"LSUReplicationProps", nil("source") + nil("target")},
        {"LSUListHandle", nil("token")},
        {"IndependentSupplierId", zero("version") + nil("dpaid") + nil("dpaver") + nil("info")},
        {"ImageDefinition", zero("version") + nil("basename") + nil("date") + nil("fulldate") +
                                nil("policy") + zero("saveas") + zero("flags") + nil("format") + nil("isid")},
        {"ImageInformation", zero("version") + nil("def") + nil("server") + nil("lsu") + zero("size") +
                                 zero("blockSize") + nil("exports") + zero("status")},
        {"Export", zero("fstype") + nil("mount")},
        {"ArrayOfExport", ""},
        {"ImageHandle", nil("token")},
        {"ImageListHandle", nil("token")},
        {"ReadResult", zero("bytesread") + nil("buf")},
        {"SnapDefinition",
         empty("snapName") + zero("snapType") + zero("snapFlags") + zero("snapSaveas") + nil("isid")},
        {"SnapInformation", nil("snapDef") + empty("snapServer") + empty("snapLsu") + nil("snapVolSpec") +
                                zero("snapStatus") + zero("snapSize")},
        {"SnapListHandle", nil("token")},
        {"VolumeSpecification", zero("volumeType")},
        {"NFSVolumeSpecification", empty("exportHost") + empty("exportName") + empty("exportPath")},
        {"CIFSVolumeSpecification", empty("exportHost") + empty("shareName") + empty("exportPath")},
        {"SCSIVolumeSpecification", empty("lunWWNN") + empty("lunSerial")},
        {"DeviceVolumeSpecification", empty("devicePath")},
        {"NDMPVolumeSpecification", empty("exportfiler") + empty("exportpath")},
        {"ArrayOfVolumeSpecification", ""},
        {"HostSpecification", nil("hostname") + nil("port") + zero("flags")},
        {"FileAttr", empty("name") + nil("ftype") + nil("changetype") + nil("modtime") + nil("accesstime") +
                         nil("createtime") + nil("changetime") + nil("size") + nil("ownerid") +
                         nil("groupid") + nil("permissions") + nil("inode") + nil("gnum")},
        {"ArrayOfFileAttr", ""},
        {"OperationID", nil("token")},
        {"AIOResult", nil("image") + zero("bytesTransferred") + zero("error") + zero("delayInSeconds")},
        {"AIOResultSnap",
         zero("totalBytesTransferred") + zero("error") + zero("retryInterval") + zero("resultSnapType")},
        {"AIOResultValidateSnap", empty("targetTopology")},
        {"AIOResultProvisionTopology", empty("targetTopology")},
        {"AIOResultCreateSnap", empty("targetSnapName") + nil("targetSnapLsu")},
        {"AIOResultImportSnap", empty("targetSnapName") + nil("targetSnapLsu")},
        {"AIOResultCopySnap", empty("targetSnapName") + nil("targetSnapLsu")},
        {"AIOResultGetSnapDiff", zero("numDiffs") + nil("diffObjectList")},
        {"OperationStatus", empty("name") + nil("result")},
        {"EventChannelHandle", nil("token")},
        {"Event", zero("seqno") + empty("server") + zero("flags") + zero("type") + nil("body")},
        {"EventBody", ""},
        {"EventActivity", zero("version") + zero("action") + nil("eventset") + zero("time") + zero("sev") +
                              nil("vendorType") + nil("lsuName") + nil("imgInfo") + nil("snapInfo") +
                              nil("volSpec") + nil("hostSpec") + nil("dpaid") + nil("dpaver") +
                              nil("dpaext") + zero("msgLen") + empty("msg")},
        {"EventLSUInformation", zero("fields") + nil("lsuInfo")},
        {"EventImageInformation", zero("fields") + nil("imgInfo")},
        {"EventServerInformation", zero("fields") + nil("srvInfo")},
        {"EventImageReplication",
         empty("lsu") + nil("name") + empty("origServer") + empty("origLsu") + nil("origName")},
        {"ServerStatus", zero("action") + empty("name")},
        {"LSUStatus", zero("action") + empty("name")},
        {"FileListHandle", nil("token")},
        {"DiffObjectSpecification", empty("objectName") + zero("objectType") + zero("objectState")},
        {"ArrayOfDiffObjectSpecification", ""},
    };
    return texts;
}

const std::map<std::string, std::string>& blank_requests()
{
    static const std::map<std::string, std::string> texts = {
        {"openServer", nil("sd") + empty("server") + nil("cred") + empty("requiredInterface")},
        {"openTargetServer", nil("serverHandle") + empty("server") + nil("cred") + empty("interface")},
        {"closeServer", nil("serverHandle")},
        {"getServerProp", nil("serverHandle")},
        {"getServerPropByName", nil("sd") + empty("server")},
        {"openLSUList", nil("serverHandle") + nil("lsudef")},
        {"listLSU", nil("lsuListHandle")},
        {"closeLSUList", nil("lsuListHandle")},
        {"getLSUPropByName", nil("lsu")},
        {"getLSUReplicationProp", nil("lsu") + zero("nsource") + zero("ntarget")},
        {"labelLSU", nil("lsu") + empty("lsuLabel")},
        {"openImageList", nil("lsu") + zero("type")},
        {"listImage", nil("imageListHandle")},
        {"closeImageList", nil("imageListHandle")},
        {"getImageProp", nil("imageHandle")},
        {"getImagePropByName", nil("lsu") + nil("image")},
        {"deleteImage", nil("lsu") + nil("imd") + zero("asyncFlag")},
        {"createImage", nil("lsu") + nil("image") + no("pendingflag")},
        {"openImage", nil("lsu") + nil("image") + zero("mode")},
        {"closeImage", nil("imageHandle") + zero("flag") + zero("reserved")},
        {"readImageMeta", nil("imageHandle") + zero("len") + zero("offset")},
        {"writeImageMeta", nil("imageHandle") + element("buf", "") + zero("len") + zero("offset")},
        {"copyExtent", nil("toImage") + zero("toOffset") + nil("fromImage") + zero("fromOffset") +
                           zero("len") + zero("flags")},
        {"includeInImage",
         nil("imageToHandle") + zero("offsetTo") + nil("imageFromHandle") + zero("offsetFrom") + zero("len")},
        {"beginCopyImage",
         nil("targetLSU") + nil("targetImage") + nil("imageHandle") + empty("imageset") + zero("eventflag")},
        {"openSnapList", nil("lsu")},
        {"openSnapListByVolume", nil("serverHandle") + nil("volSpec")},
        {"listSnap", nil("snapListHandle")},
        {"closeSnapList", nil("snapListHandle")},
        {"getSnapPropByName", nil("lsu") + nil("snapDef")},
        {"deleteSnap", nil("lsu") + nil("snapDef")},
        {"validateRollback", nil("lsu") + nil("snapDef") + nil("targetServerHandle") + nil("targetVolSpec") +
                                 nil("rollbackList") + zero("numRollbacks")},
        {"createExport", nil("lsu") + empty("snapName") + nil("host")},
        {"addExport", nil("lsu") + nil("sourceVolSpec") + nil("host")},
        {"deleteExport", nil("lsu") + nil("host") + nil("exportedVolume")},
        {"claimVolume", nil("serverHandle") + nil("volume")},
        {"asyncCreateSnapByName", nil("serverHandle") + nil("sourceVolSpec") + nil("targetSnapDef") +
                                      nil("targetLSUSpecs") + zero("ntargets") + empty("imageset") +
                                      zero("pendingflag")},
        {"asyncPrepareSnapByName", nil("serverHandle") + nil("sourceVolSpec") + nil("targetSnapDef") +
                                       nil("targetLSUSpecs") + zero("ntargets") + empty("imageset") +
                                       zero("pendingflag")},
        {"asyncValidateSnapByName", nil("serverHandle") + nil("sourceVolSpec") + nil("targetSnapDef") +
                                        nil("targetLSUSpecs") + zero("ntargets") + empty("targetTopology")},
        {"asyncCopySnapByName", nil("lsu") + nil("snapDef") + nil("targetLSUSpecs") + zero("ntargets") +
                                    empty("imageset") + zero("pendingflag")},
        {"asyncImportSnapByName", nil("serverHandle") + nil("sourceVolSpec") + nil("sourceSnapDef") +
                                      empty("imageset") + zero("pendingflag")},
        {"asyncPostProcessSnapByName", nil("lsu") + empty("snapName")},
        {"asyncRollbackSnap", nil("lsu") + nil("snapDef") + nil("targetServerHandle") + nil("targetVolSpec") +
                                  nil("rollbackList") + zero("numRollbacks") + zero("rollbackFlag")},
        {"asyncProvisionTopology", nil("serverHandle") + nil("sourceVolSpec") + nil("targetSnapDef") +
                                       nil("targetLSUSpecs") + zero("ntargets") + empty("targetTopology") +
                                       empty("imageset") + zero("pendingflag")},
        {"asyncGetSnapDiff", nil("serverHandle") + nil("snapshot") + nil("targetServerHandle") +
                                 nil("rollbackList") + zero("numRollbacks") + zero("diffFlag")},
        {"asyncCopyImage", nil("targetLSU") + nil("targetImage") + nil("sourceLSU") + nil("sourceImage") +
                               empty("imageset") + zero("eventflag")},
        {"asyncEndCopyImage", nil("imageHandle") + nil("opid")},
        {"asyncWait", nil("sd") + nil("opid")},
        {"asyncWaitSnap", nil("sd") + nil("opid")},
        {"asyncCancel", nil("sd") + nil("opid")},
        {"namedAsyncCreateSnapByName", nil("serverHandle") + nil("sourceVolSpec") + nil("targetSnapDef") +
                                           nil("targetLSUSpecs") + zero("ntargets") + empty("imageset") +
                                           zero("pendingflag") + empty("opname")},
        {"namedAsyncPrepareSnapByName", nil("serverHandle") + nil("sourceVolSpec") + nil("targetSnapDef") +
                                            nil("targetLSUSpecs") + zero("ntargets") + empty("imageset") +
                                            zero("pendingflag") + empty("opname")},
        {"namedAsyncValidateSnapByName", nil("serverHandle") + nil("sourceVolSpec") + nil("targetSnapDef") +
                                             nil("targetLSUSpecs") + zero("ntargets") +
                                             empty("targetTopology") + empty("opname")},
        {"namedAsyncCopySnapByName", nil("lsu") + nil("snapDef") + nil("targetLSUSpecs") + zero("ntargets") +
                                         empty("imageset") + zero("pendingflag") + empty("opname")},
        {"namedAsyncImportSnapByName", nil("serverHandle") + nil("sourceVolSpec") + nil("sourceSnapDef") +
                                           empty("imageset") + zero("pendingflag") + empty("opname")},
        {"namedAsyncPostProcessSnapByName", nil("lsu") + empty("snapName") + empty("opname")},
        {"namedAsyncRollbackSnap", nil("lsu") + nil("snapDef") + nil("targetServerHandle") +
                                       nil("targetVolSpec") + nil("rollbackList") + zero("numRollbacks") +
                                       zero("rollbackFlag") + empty("opname")},
        {"namedAsyncProvisionTopology", nil("serverHandle") + nil("sourceVolSpec") + nil("targetSnapDef") +
                                            nil("targetLSUSpecs") + zero("ntargets") +
                                            empty("targetTopology") + empty("imageset") +
                                            zero("pendingflag") + empty("opname")},
        {"namedAsyncGetSnapDiff", nil("serverHandle") + nil("snapshot") + nil("targetServerHandle") +
                                      nil("rollbackList") + zero("numRollbacks") + no("diffFlag") +
                                      empty("opname")},
        {"namedAsyncCopyImage", nil("targetLSU") + nil("targetImage") + nil("sourceLSU") +
                                    nil("sourceImage") + empty("opname") + empty("imageset") +
                                    zero("eventflag")},
        {"namedAsyncEndCopyImage", nil("imageHandle") + empty("opname")},
        {"namedAsyncWait", nil("serverHandle") + empty("opname")},
        {"namedAsyncWaitSnap", nil("serverHandle") + empty("opname")},
        {"namedAsyncStatus", nil("serverHandle") + empty("opname")},
        {"namedAsyncCancel", nil("serverHandle") + empty("opname")},
        {"openEventChannel",
         nil("sd") + empty("server") + nil("cred") + empty("interface") + zero("flags") + zero("evseqno")},
        {"closeEventChannel", nil("evcHandle")},
        {"getEvent", nil("evcHandle")},
        {"getEventPayload", nil("serverHandle") + nil("event")},
        {"deleteEvent", nil("serverHandle") + nil("event")},
        {"openSnapChangeList",
         nil("lsu") + nil("baseSnapshot") + nil("diffSnapshot") + nil("sourceVolSpec") + zero("diffFlag")},
        {"listFile", nil("fileListHandle") + zero("filterPathNum") + nil("filterPathList")},
        {"closeSnapChangeList", nil("fileListHandle")},
        {"ioControl", nil("serverHandle") + zero("command") + empty("args") + zero("ioflag") + zero("len")},
    };
    return texts;
}

} // namespace schema_test
