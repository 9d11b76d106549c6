// What the simulated storage tells its hosts of, as plain records.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_EVENT_RECORDS_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_EVENT_RECORDS_H

#include "simulator/scenario/records.h"
#include "simulator/storage/serial.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace soapwrapper::simulator
{

struct OperationEnded {
    std::string name; // the client's, or the token
    std::int64_t bytes_transferred = 0;
    int error = 0;
    Serial number = 0;
    bool is_named = false;
};

// The LSU as it is after a change.
struct LsuChanged {
    LsuProperties properties;
    std::size_t images = 0;
};

enum class ServerAction { kUp = 1, kFull = 2, kRoomAgain = 3 };

struct ServerStatus {
    ServerAction action = ServerAction::kUp;
};

enum class LsuAction { kLabelled = 1, kFull = 2, kRolledBack = 3 };

struct LsuStatus {
    LsuAction action = LsuAction::kLabelled;
    std::string name;
};

// The image as it was.
struct ImageGone {
    std::string lsu;
    Image image;
};

enum class ActivityAction { kCreated = 1, kDeleted = 2, kExported = 3, kExportEnded = 4 };

struct Activity {
    ActivityAction action = ActivityAction::kCreated;
    std::int64_t time = 0; // seconds
    std::string event_set;
    std::string lsu;
    std::optional<Snapshot> snapshot;
    std::optional<Volume> volume;
    std::vector<std::string> hosts; // of an export
    std::string message;
};

// The server's properties can be read anew. They are told as they are when somebody asks.
struct ServerInformed {
};

struct ImageReplicated {
    std::string lsu;
    Image image;
    std::string origin_server; // its prefix
    std::string origin_lsu;
    Image origin;
};

// In the order of the kinds on the wire.
using EventPayload = std::variant<OperationEnded, LsuChanged, ServerStatus, LsuStatus, ImageGone, Activity,
                                  ServerInformed, ImageReplicated>;

// Numbered like the wire's type.
enum class EventKind {
    kOperation = 1,
    kLsuInfo,
    kServerStatus,
    kLsuStatus,
    kImageInfo,
    kActivity,
    kServerInfo,
    kImageReplication
};

struct Event {
    std::int32_t seqno = 0;
    // Its payload comes with it. Otherwise it is only announced, and the payload has to be asked for.
    bool is_inline = true;
    EventPayload payload;
    // What comes first among the events of several servers.
    std::chrono::steady_clock::time_point recorded;

    EventKind kind() const { return static_cast<EventKind>(payload.index() + 1); }
};

} // namespace soapwrapper::simulator

#endif
