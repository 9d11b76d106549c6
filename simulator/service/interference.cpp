#include "simulator/service/interference.h"

#include "simulator/scenario/fault.h"

#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

Interference::Interference(const std::vector<FaultRule>& faults, const std::vector<DelayRule>& delays)
{
    for (const FaultRule& rule : faults) faults_[rule.operation].push_back(rule);
    for (const DelayRule& rule : delays) delays_[rule.operation] = rule.delay;
}

void Interference::apply(const std::string& operation)
{
    wait(operation);
    if (const std::optional<int> code = next_fault(operation)) {
        throw Fault(*code, operation + " fails on demand");
    }
}

void Interference::stop()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    stopping_ = true;
    stopped_.notify_all();
}

void Interference::wait(const std::string& operation)
{
    std::unique_lock<std::mutex> lock(mutex_);
    const auto delay = delays_.find(operation);
    if (delay == delays_.end()) return;
    stopped_.wait_for(lock, delay->second, [this] { return stopping_; });
}

std::optional<int> Interference::next_fault(const std::string& operation)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = faults_.find(operation);
    if (found == faults_.end() || found->second.empty()) return std::nullopt;
    FaultRule& rule = found->second.front();
    const int code = rule.code;
    if (rule.count && --*rule.count == 0) found->second.pop_front();
    return code;
}

} // namespace soapwrapper::simulator
