// What callers hold by handle. A handle is a number in a pointer's place, and none is given twice: one that
// was never given, or is closed, is told from all others, and nothing is ever read where it points to.
#ifndef SOAPWRAPPER_SIMULATOR_ZAPI_HANDLE_TABLE_H
#define SOAPWRAPPER_SIMULATOR_ZAPI_HANDLE_TABLE_H

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>

struct sts_handle_s;

namespace soapwrapper::simulator
{

// Numbers of one table are those of no other, so that a handle of the wrong kind is found out.
std::uintptr_t next_handle_number();

// Any thread may call. Whoever works with a value keeps it alive, also when it is closed meanwhile.
template <class Value>
class HandleTable
{
  public:
    explicit HandleTable(const char* what) : what_(what) {}

    sts_handle_s* add(std::shared_ptr<Value> value)
    {
        const std::uintptr_t number = next_handle_number();
        const std::lock_guard<std::mutex> lock(mutex_);
        values_.emplace(number, std::move(value));
        return reinterpret_cast<sts_handle_s*>(number);
    }
    // Null if there is none.
    std::shared_ptr<Value> find(const sts_handle_s* handle) const
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto found = values_.find(reinterpret_cast<std::uintptr_t>(handle));
        return found == values_.end() ? nullptr : found->second;
    }
    std::shared_ptr<Value> at(const sts_handle_s* handle) const
    {
        auto value = find(handle);
        if (!value) refuse();
        return value;
    }
    std::shared_ptr<Value> take(const sts_handle_s* handle)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto found = values_.find(reinterpret_cast<std::uintptr_t>(handle));
        if (found == values_.end()) return nullptr;
        auto value = std::move(found->second);
        values_.erase(found);
        return value;
    }
    template <class Predicate>
    void erase_if(Predicate predicate)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        for (auto entry = values_.begin(); entry != values_.end();) {
            entry = predicate(*entry->second) ? values_.erase(entry) : std::next(entry);
        }
    }
    bool empty() const
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        return values_.empty();
    }
    [[noreturn]] void refuse() const
    {
        throw Fault(kBadHandle, std::string("the ") + what_ + " handle was never given or is closed");
    }

  private:
    const char* what_;
    mutable std::mutex mutex_;
    std::map<std::uintptr_t, std::shared_ptr<Value>> values_;
};

} // namespace soapwrapper::simulator

#endif
