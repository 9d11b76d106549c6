// The long operations: those that run, and what the last ones came to. Nothing happens by itself: whoever
// uses the storage has those ended first whose end has come.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_LONG_OPERATIONS_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_LONG_OPERATIONS_H

#include "simulator/scenario/operation_settings.h"
#include "simulator/scenario/simulated_time.h"
#include "simulator/storage/room_account.h"
#include "simulator/storage/serial.h"
#include "simulator/storage/storage.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{

// An object that isn't now as a snapshot has it.
struct DifferingObject {
    std::string name;
    int type = 0;
    int state = 0;
};

// What an operation that ended well came to; each kind fills in what it has.
struct OperationResult {
    std::string topology;
    std::string snapshot_name;
    std::string server_name; // where that snapshot lies
    std::string lsu_name;
    std::vector<DifferingObject> differences;
    std::string image; // the handle's token of an image that was copied; empty if it isn't open
};

struct LongOperation {
    // Takes place at the end, with nobody else at the storage. What it throws as a Fault is what the
    // operation came to.
    using Effect = std::function<OperationResult(Storage&)>;

    OperationKind kind = OperationKind::kCreate;
    std::size_t server = 0;
    std::int64_t bytes = 0; // to be moved
    Effect effect;          // none any more, once it has ended
    std::size_t found = 0;  // differences that the effect holds until then

    // Filled in by OperationRegistry.
    Serial number = 0; // for people
    std::string name;  // the client's, or the token
    bool is_named = false;
    Instant begin{0};
    Instant end{0};
    int error = 0; // busy, while it runs
    OperationResult result;
    RoomAccount::Share room;

    bool is_running() const { return effect != nullptr; }
    std::int64_t bytes_moved(Instant now) const;
};

// Not guarded: the model holds a lock.
class OperationRegistry
{
  public:
    // A host that never asks for its results has the oldest forgotten.
    static constexpr std::size_t kMostEnded = 1000;
    // Of all that ended together, and of all that run. The one that ended last, and one that runs alone, may
    // have more: it has as many as the storage has files.
    static constexpr std::size_t kMostDifferences = 1000000;
    static constexpr std::size_t kMostRunning = 1000;
    // A host's record has no room for more.
    static constexpr std::size_t kLongestName = 255;

    // `started` is the number that was given last.
    explicit OperationRegistry(const OperationSettings& settings, Serial started = 0)
        : settings_(settings), started_(started)
    {
    }

    // Returns the token by which the operation goes.
    std::string start(LongOperation operation, Instant now);
    // Under a name of the client's, which is the server's alone until the operation has ended.
    void start_named(const std::string& name, LongOperation operation, Instant now);

    // Those that run and those that ended, or the fault that there is none.
    const LongOperation& by_token(const std::string& token) const;
    const LongOperation& by_name(std::size_t server, const std::string& name) const;

    // Without its effect, and only if it still runs.
    void cancel_by_token(Storage& storage, const std::string& token);
    void cancel_by_name(Storage& storage, std::size_t server, const std::string& name);
    // False if it has ended already.
    bool cancel_by_number(Storage& storage, Serial number);

    // Of those whose end has come, the earliest first.
    void end_due(Storage& storage);

    int retry_interval() const { return settings_.retry_interval; }
    Serial started() const { return started_; }

    // Calls visit(operation) for each, in any order.
    template <class Visit>
    void for_each(Visit visit) const
    {
        for (const auto& each : operations_) visit(each.second);
    }

  private:
    // A name is one server's; a token is everywhere the same.
    using Key = std::pair<std::size_t, std::string>;
    using Due = std::pair<Instant, Serial>;

    static Key key_of_token(const std::string& token);
    static const LongOperation& at(const std::map<Key, LongOperation>& operations, const Key& key);
    void add(Key key, LongOperation operation, Instant now);
    bool cancel(Storage& storage, const Key& key);
    void end(Storage& storage, const Key& key);
    void finish(Storage& storage, const Key& key, int error, OperationResult result);
    void forget(const Key& key);
    void forget_oldest();

    OperationSettings settings_;
    std::map<Key, LongOperation> operations_;
    std::map<Due, Key> running_;
    std::deque<Key> ended_;       // the oldest first
    std::size_t differences_ = 0; // of those that ended
    RoomAccount running_differences_{kMostDifferences, "differences of running operations"};
    Serial started_;
};

} // namespace soapwrapper::simulator

#endif
