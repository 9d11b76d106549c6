// A long operation that is watched to its end.
#ifndef SOAPWRAPPER_PROBE_WATCH_WATCHED_OPERATION_H
#define SOAPWRAPPER_PROBE_WATCH_WATCHED_OPERATION_H

#include "probe/library/probe.h"
#include "probe/operations/operation.h"
#include "probe/output/output.h"
#include "probe/output/problem.h"
#include "probe/output/records.h"
#include "probe/watch/watched.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{

class WatchedOperation : public Watched
{
  public:
    static const WatchedColumns kColumns;

    WatchedOperation(const Probe& probe, std::unique_ptr<Operation> operation, std::string name)
        : probe_(probe), operation_(std::move(operation)), name_(std::move(name))
    {
    }

    bool ended() const override { return state_ != State::kRunning; }
    std::optional<Problem> failure() const override { return failure_; }
    std::chrono::milliseconds least_pause() const override { return least_pause_; }
    std::vector<std::string> cells(const Output& output, Form form, std::size_t step) const override;
    Value value() const override;

  private:
    enum class State { kRunning, kEnded, kFailed };

    void ask() override;
    bool survives(const Problem& problem) override;
    void fail(const Problem& problem);
    std::chrono::seconds elapsed() const;
    std::string state_text() const;

    const Probe& probe_;
    const std::unique_ptr<Operation> operation_;
    const std::string name_; // clean
    const Clock::time_point begun_ = Clock::now();
    Clock::time_point ended_at_;
    State state_ = State::kRunning;
    std::chrono::milliseconds least_pause_{0};
    std::optional<Problem> failure_;
};

} // namespace soapwrapper::probe

#endif
