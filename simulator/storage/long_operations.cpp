#include "simulator/storage/long_operations.h"

#include "plugin/host/status.h"
#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/simulated_time.h"
#include "simulator/scenario/text.h"
#include "simulator/storage/announcements.h"
#include "simulator/storage/serial.h"
#include "simulator/storage/storage.h"
#include "simulator/storage/token_table.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <new>
#include <string>
#include <utility>

namespace soapwrapper::simulator
{
namespace
{

// Stands for the server in a token's key.
constexpr std::size_t kAnyServer = std::numeric_limits<std::size_t>::max();

constexpr char kNoOperation[] = "there is no such operation, or no more";

} // namespace

std::int64_t LongOperation::bytes_moved(Instant now) const
{
    if (now >= end) return bytes;
    const std::int64_t whole = (end - begin).count();
    const std::int64_t past = (now - begin).count();
    // In two steps: the product of the two would be too large a number.
    return bytes / whole * past + bytes % whole * past / whole;
}

OperationRegistry::Key OperationRegistry::key_of_token(const std::string& token)
{
    return {kAnyServer, token};
}

const LongOperation& OperationRegistry::at(const std::map<Key, LongOperation>& operations, const Key& key)
{
    const auto found = operations.find(key);
    // The token isn't told: it opens what it names.
    if (found == operations.end()) throw Fault(kUnknownOperation, kNoOperation);
    return found->second;
}

const LongOperation& OperationRegistry::by_token(const std::string& token) const
{
    return at(operations_, key_of_token(token));
}

const LongOperation& OperationRegistry::by_name(std::size_t server, const std::string& name) const
{
    return at(operations_, {server, name});
}

std::string OperationRegistry::start(LongOperation operation, Instant now)
{
    std::string token = new_token();
    add(key_of_token(token), std::move(operation), now);
    return token;
}

void OperationRegistry::start_named(const std::string& name, LongOperation operation, Instant now)
{
    if (name.empty() || name.size() > kLongestName) {
        throw Fault(kBadValue, "an operation's name has 1 to " + std::to_string(kLongestName) + " bytes");
    }
    const Key key(operation.server, name);
    const auto found = operations_.find(key);
    if (found != operations_.end() && found->second.is_running()) {
        throw Fault(kInUse, "an operation called \"" + printable(name) + "\" is running");
    }
    add(key, std::move(operation), now);
}

void OperationRegistry::add(Key key, LongOperation operation, Instant now)
{
    if (running_.size() >= kMostRunning) throw Fault(kTooManyOpen, "too many operations are running");
    if (operation.found != 0) operation.room = running_differences_.take(operation.found);
    forget(key);
    operation.number = ++started_;
    operation.name = key.second;
    operation.is_named = key.first != kAnyServer;
    operation.begin = now;
    operation.end =
        now + std::chrono::seconds(settings_.seconds.of[static_cast<std::size_t>(operation.kind)]);
    operation.error = kBusy;
    running_.emplace(Due(operation.end, operation.number), key);
    operations_.emplace(std::move(key), std::move(operation));
}

void OperationRegistry::end_due(Storage& storage)
{
    const Instant now = storage.now();
    while (!running_.empty() && running_.begin()->first.first <= now) {
        const Key key = std::move(running_.begin()->second);
        running_.erase(running_.begin());
        end(storage, key);
    }
}

void OperationRegistry::end(Storage& storage, const Key& key)
{
    int error = 0;
    OperationResult result;
    try {
        result = operations_.at(key).effect(storage);
    } catch (const Fault& fault) {
        error = fault.code();
    } catch (const std::bad_alloc&) {
        error = STS_ENOMEM;
    }
    finish(storage, key, error, std::move(result));
}

void OperationRegistry::cancel_by_token(Storage& storage, const std::string& token)
{
    cancel(storage, key_of_token(token));
}

void OperationRegistry::cancel_by_name(Storage& storage, std::size_t server, const std::string& name)
{
    cancel(storage, {server, name});
}

bool OperationRegistry::cancel_by_number(Storage& storage, Serial number)
{
    const auto found = std::find_if(operations_.begin(), operations_.end(),
                                    [number](const auto& each) { return each.second.number == number; });
    if (found == operations_.end()) throw Fault(kUnknownOperation, kNoOperation);
    return cancel(storage, Key(found->first));
}

bool OperationRegistry::cancel(Storage& storage, const Key& key)
{
    at(operations_, key);
    const auto due = std::find_if(running_.begin(), running_.end(),
                                  [&](const auto& entry) { return entry.second == key; });
    if (due == running_.end()) return false;
    running_.erase(due);
    finish(storage, key, kCancelled, {});
    return true;
}

// Where every operation ends, well or not.
void OperationRegistry::finish(Storage& storage, const Key& key, int error, OperationResult result)
{
    LongOperation& operation = operations_.at(key);
    operation.bytes = operation.bytes_moved(storage.now());
    operation.end = storage.now();
    operation.error = error;
    operation.effect = nullptr;
    operation.room = nullptr;
    operation.result = std::move(result);
    differences_ += operation.result.differences.size();
    ended_.push_back(key);
    announce_operation(storage.server(operation.server), {operation.name, operation.bytes, operation.error,
                                                          operation.number, operation.is_named});
    forget_oldest();
}

void OperationRegistry::forget(const Key& key)
{
    const auto found = operations_.find(key);
    if (found == operations_.end()) return;
    differences_ -= found->second.result.differences.size();
    ended_.erase(std::find(ended_.begin(), ended_.end(), key));
    operations_.erase(found);
}

// The one that ended last is kept, however much it found.
void OperationRegistry::forget_oldest()
{
    while (ended_.size() > kMostEnded || (ended_.size() > 1 && differences_ > kMostDifferences)) {
        forget(Key(ended_.front()));
    }
}

} // namespace soapwrapper::simulator
