#include "probe/operations/operation.h"

#include "plugin/host/async_records.h"
#include "plugin/host/handles.h"
#include "probe/arguments/arguments.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/output/problem.h"
#include "probe/output/records.h"
#include "probe/output/text.h"

#include <cstdint>
#include <optional>

namespace soapwrapper::probe
{
namespace
{

constexpr std::int32_t kAskOnce = 0; // the waiting between two questions is the probe's own

} // namespace

OperationWithId::OperationWithId(const Probe& probe, stsp_async_t* handle) : Operation(probe), handle_(handle)
{
    if (!handle || !handle->op_token) {
        throw Problem(ExitCode::kOperation, "no handle", std::nullopt,
                      "the operation was started, but the library gave no handle for it");
    }
    keep_unclosed(handle);
}

OperationWithId::OperationWithId(const Probe& probe, stsp_server_t* server, const std::string& id)
    : Operation(probe), id_(id), handle_(&own_)
{
    own_.server = server;
    own_.op_token = id_.data();
}

void OperationWithId::check(const Probe& probe)
{
    probe.library.entry(slot::stspi_async_wait_snap);
    probe.library.entry(slot::stspi_async_cancel);
}

std::string OperationWithId::identity() const
{
    return clean_line(handle_->op_token);
}

void OperationWithId::tell(Properties& properties) const
{
    properties.add("Operation id", "operation_id", identity());
}

void OperationWithId::tell(Value& document) const
{
    document["operation_id"] = identity();
}

int OperationWithId::ask(sts_async_snap_result_t& answer) const
{
    return call(probe(), slot::stspi_async_wait_snap, probe().session.record(), handle_, kAskOnce, &answer);
}

void OperationWithId::cancel() const
{
    require(probe(), slot::stspi_async_cancel, probe().session.record(), handle_);
}

Problem OperationWithId::abandon() const
{
    const auto problem = clean_up(probe(), slot::stspi_async_cancel, probe().session.record(), handle_);
    if (!problem) return probe().interruption.problem("cancelled " + title());
    return probe().interruption.problem(title() + " could not be cancelled and may go on at the service: " +
                                            problem->name() + ", " + problem->meaning(),
                                        problem->detail());
}

OperationWithName::OperationWithName(const Probe& probe, stsp_server_t* server, const std::string& name)
    : Operation(probe), server_(server)
{
    put(name_.name, name);
}

void OperationWithName::check(const Probe& probe)
{
    probe.library.entry(slot::stspi_named_async_wait_snap);
}

std::string OperationWithName::identity() const
{
    return clean_field(name_.name);
}

void OperationWithName::tell(Properties& properties) const
{
    properties.add("Operation name", "operation_name", identity());
}

void OperationWithName::tell(Value& document) const
{
    document["operation_name"] = identity();
}

int OperationWithName::ask(sts_async_snap_result_t& answer) const
{
    return call(probe(), slot::stspi_named_async_wait_snap, server_, kAskOnce, &answer, name_);
}

Problem OperationWithName::abandon() const
{
    return probe().interruption.problem(title() + " goes on at the service under that name");
}

} // namespace soapwrapper::probe
