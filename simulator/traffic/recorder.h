// The exchanges of late, for people to look at.
#ifndef SOAPWRAPPER_SIMULATOR_TRAFFIC_RECORDER_H
#define SOAPWRAPPER_SIMULATOR_TRAFFIC_RECORDER_H

#include "messages/blotter.h"
#include "simulator/traffic/exchange.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

// Any thread may call.
class Recorder
{
  public:
    static constexpr std::size_t kMostExchanges = 1000;
    static constexpr std::size_t kMostBytes = std::size_t{64} << 20; // of texts
    static constexpr std::size_t kLongestText = std::size_t{64} << 10;

    // `on_change` is called behind each change, by the thread that made it; it must not throw. The credential
    // is blotted out wherever it stands.
    explicit Recorder(const std::string& credential, std::function<void()> on_change = {});
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    // Gives the exchange its number, blots out what is secret in its texts and cuts them. Returns what is
    // kept.
    std::shared_ptr<const Exchange> add(Exchange exchange);

    // The newest `most` behind `number`, ascending, without their texts.
    std::vector<Exchange> after(std::uint64_t number, std::size_t most) const;
    std::optional<Exchange> find(std::uint64_t number) const;
    std::vector<std::shared_ptr<const Exchange>> all() const;
    std::uint64_t last() const; // the highest number that was given; 0: none
    void clear();               // the numbers go on

  private:
    std::vector<std::shared_ptr<const Exchange>> newest(std::uint64_t behind, std::size_t most) const;
    void blot(Exchange& exchange);
    bool blot(std::string& text, std::size_t bytes);

    messages::Blotter blotter_;
    const std::function<void()> on_change_;
    mutable std::mutex mutex_;
    std::uint64_t last_ = 0;
    std::size_t bytes_ = 0;
    std::deque<std::shared_ptr<const Exchange>> exchanges_;
};

} // namespace soapwrapper::simulator

#endif
