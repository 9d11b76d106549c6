// The error codes of the simulator's faults. Where the host's own table of statuses has a name for what went
// wrong, the number is taken from there; the rest lie in a range of the simulator's.
#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_FAULT_CODES_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_FAULT_CODES_H

#include "plugin/host/status.h"

namespace soapwrapper::simulator
{

enum FaultCode : int {
    kMissingElement = STS_ENULLARG, // a required element of the request is nil or missing
    kBadHandle = STS_EBADARG,       // a handle's token was never issued, or is closed
    kBusy = STS_EBUSY,              // an operation runs, or the filer asks to come back later
    kInUse = STS_EINUSE,            // a snapshot is exported, an image is open, a volume is claimed
    kEndOfList = STS_ENOENT,        // a list has no more entries, a channel no event at present
    kUnknownServer = 2069001,       // no server of the scenario answers to the name
    kCredentialRefused = 2069002,   // the credential's type, length or bytes are not the expected ones
    kNotSupported = 2069003,        // the simulator doesn't serve the operation
    kTooManySessions = 2069004,     // the server has as many open sessions as its maxconnect allows
    kUnknownLsu = 2069005,          // the server has no LSU of the name
    kUnknownImage = 2069006,        // the LSU has no such image
    kUnknownSnapshot = 2069007,     // the LSU, or for a path map the server, has no such snapshot
    kUnknownVolume = 2069008,       // the server knows no such volume
    kUnknownExport = 2069009,       // the volume isn't exported, or not to that host
    kBadValue = 2069010,            // a value of the request makes no sense
    kUnknownCommand = 2069011,      // the control command has no meaning here
    kTooManyOpen = 2069012,         // as many lists or images are open as there is room for
    kUnreadableTree = 2069013,      // a directory that a snapshot or volume stands for can't be read
    kUnknownEvent = 2069020,        // the server has no event of that number
    kUnknownOperation = 2069030,    // no operation goes by the id or the name
    kCancelled = 2069031,           // the operation was cancelled
    kSnapshotsInTheWay = 2069032    // a rollback would take away snapshots that aren't given up
};

struct FaultCodeName {
    FaultCode code;
    const char* name;
};

inline constexpr FaultCodeName kFaultCodeNames[] = {{kMissingElement, "missing element"},
                                                    {kBadHandle, "bad handle"},
                                                    {kUnknownServer, "unknown server"},
                                                    {kCredentialRefused, "credential refused"},
                                                    {kNotSupported, "not supported"},
                                                    {kTooManySessions, "too many sessions"},
                                                    {kBusy, "busy"},
                                                    {kInUse, "in use"},
                                                    {kEndOfList, "end of list"},
                                                    {kUnknownLsu, "unknown LSU"},
                                                    {kUnknownImage, "unknown image"},
                                                    {kUnknownSnapshot, "unknown snapshot"},
                                                    {kUnknownVolume, "unknown volume"},
                                                    {kUnknownExport, "unknown export"},
                                                    {kBadValue, "bad value"},
                                                    {kUnknownCommand, "unknown command"},
                                                    {kTooManyOpen, "too many open"},
                                                    {kUnreadableTree, "unreadable tree"},
                                                    {kUnknownEvent, "unknown event"},
                                                    {kUnknownOperation, "unknown operation"},
                                                    {kCancelled, "cancelled"},
                                                    {kSnapshotsInTheWay, "snapshots in the way"}};

} // namespace soapwrapper::simulator

#endif
