// Faults and delays on demand: what --fault and --delay ask for.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_INTERFERENCE_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_INTERFERENCE_H

#include <chrono>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

struct FaultRule {
    std::string operation;
    int code = 0;
    std::optional<unsigned> count; // without one, for good
};

struct DelayRule {
    std::string operation;
    std::chrono::milliseconds delay{0};
};

class Interference
{
  public:
    // Several faults for one operation come one after the other, in their order. Of delays there is one each.
    Interference(const std::vector<FaultRule>& faults, const std::vector<DelayRule>& delays);
    Interference(const Interference&) = delete;
    Interference& operator=(const Interference&) = delete;

    // Waits for as long as the operation is to drag, then throws the fault that it is to fail with, if any.
    void apply(const std::string& operation);

    // Ends every wait, now and to come.
    void stop();

  private:
    void wait(const std::string& operation);
    std::optional<int> next_fault(const std::string& operation);

    std::mutex mutex_;
    std::condition_variable stopped_;
    bool stopping_ = false;
    std::map<std::string, std::deque<FaultRule>> faults_;
    std::map<std::string, std::chrono::milliseconds> delays_;
};

} // namespace soapwrapper::simulator

#endif
