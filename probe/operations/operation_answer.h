// How a long operation stands, and in the end what it has brought.
#ifndef SOAPWRAPPER_PROBE_OPERATIONS_OPERATION_ANSWER_H
#define SOAPWRAPPER_PROBE_OPERATIONS_OPERATION_ANSWER_H

#include "plugin/host/async_records.h"
#include "plugin/host/status.h"
#include "probe/library/probe.h"
#include "probe/operations/operation.h"
#include "probe/output/records.h"

#include <chrono>
#include <cstdint>
#include <memory>

namespace soapwrapper::probe
{

class Output;

class OperationAnswer
{
  public:
    // Asks the service, once. A call that fails is thrown.
    OperationAnswer(const Probe& probe, const Operation& operation);
    OperationAnswer(const OperationAnswer&) = delete;
    OperationAnswer& operator=(const OperationAnswer&) = delete;

    bool is_running() const { return status() == STS_EBUSY; }

    // Of the operation itself.
    int status() const { return static_cast<int>(record_.aio_error); }

    std::int64_t bytes() const { return record_.aio_total_bytes_transferred; }

    // How long the service would like to be left alone.
    std::chrono::seconds interval() const { return interval_of(record_.retryInterval); }

    // The length of a pause that a service asks for by this number of seconds.
    static std::chrono::seconds interval_of(std::int32_t asked_for);

    // Of an operation that has ended well.
    void show(const Operation& operation, Output& output) const;

  private:
    void add_body(Properties& properties) const;
    void show_differences(Output& output) const;

    sts_async_snap_result_t record_ = {};
    std::int32_t row_count_ = 0;
    std::unique_ptr<sts_snap_diff_t[]> rows_;
};

} // namespace soapwrapper::probe

#endif
