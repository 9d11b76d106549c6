#include "probe/operations/operation_answer.h"

#include "plugin/host/async_records.h"
#include "probe/library/probe.h"
#include "probe/operations/operation.h"
#include "probe/output/output.h"
#include "probe/output/problem.h"
#include "probe/output/records.h"
#include "probe/output/text.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace soapwrapper::probe
{
namespace
{

constexpr std::int32_t kUnfilled = -1;
constexpr std::int32_t kNothing = 0;
constexpr std::chrono::seconds kWhenNegative{30};

// Without a name it is a number of the service's own.
const char* result_kind_name(std::int32_t kind)
{
#define RESULT_KIND(name)                                                                                    \
    case name:                                                                                               \
        return #name
    switch (kind) {
        RESULT_KIND(STS_RESULT_VALIDATE);
        RESULT_KIND(STS_RESULT_CREATE);
        RESULT_KIND(STS_RESULT_COPY);
        RESULT_KIND(STS_RESULT_DIFFERENCE);
        RESULT_KIND(STS_RESULT_PROVISION);
        RESULT_KIND(STS_RESULT_IMPORT);
    default:
        return nullptr;
    }
#undef RESULT_KIND
}

} // namespace

OperationAnswer::OperationAnswer(const Probe& probe, const Operation& operation)
{
    record_.body.difference.numDiffs = &row_count_; // for any operation: it may turn out to be a difference
    record_.result_kind = kUnfilled;
    const int status = operation.ask(record_);
    if (record_.result_kind == STS_RESULT_DIFFERENCE) rows_.reset(record_.body.difference.diffs);
    if (const auto problem = problem_of(probe, status)) throw Problem(*problem);
}

std::chrono::seconds OperationAnswer::interval_of(std::int32_t asked_for)
{
    return asked_for < 0 ? kWhenNegative : std::chrono::seconds(asked_for);
}

void OperationAnswer::add_body(Properties& properties) const
{
    switch (record_.result_kind) {
    case STS_RESULT_CREATE:
    case STS_RESULT_COPY:
    case STS_RESULT_IMPORT:
        properties.add("Snapshot", "snapshot", clean_field(record_.body.snapshot.targetSnapName));
        properties.add("Server", "server", clean_field(record_.body.snapshot.targetSnapLsu.server));
        properties.add("LSU", "lsu", clean_field(record_.body.snapshot.targetSnapLsu.lsu));
        break;
    case STS_RESULT_VALIDATE:
    case STS_RESULT_PROVISION:
        properties.add("Topology", "topology", clean_field(record_.body.targetTopology));
        break;
    default:
        break;
    }
}

void OperationAnswer::show_differences(Output& output) const
{
    EntryList differences(
        "differences",
        {{"OBJECT", "name"}, {"TYPE", "type", Look::kNumber}, {"STATE", "state", Look::kNumber}});
    for (std::int32_t i = 0; rows_ && i < row_count_; ++i) {
        const sts_snap_diff_t& row = rows_[static_cast<std::size_t>(i)];
        differences.add({clean_field(row.objectName), row.objectType, row.objectState});
    }
    output.title("Differences");
    differences.show(output, Extent::kComplete);
}

void OperationAnswer::show(const Operation& operation, Output& output) const
{
    const bool is_difference = record_.result_kind == STS_RESULT_DIFFERENCE;
    Properties properties;
    operation.tell(properties);
    properties.add_size("Bytes transferred", "bytes_transferred", bytes());
    const std::int32_t kind = record_.result_kind;
    if (kind != kUnfilled && kind != kNothing) {
        properties.add_named("Result", "result_kind", kind, result_kind_name(kind));
    }
    add_body(properties);
    // A script gets either values with their keys or the rows of a list.
    if (!is_difference || output.format() != Format::kSeparated) properties.show(output);
    if (is_difference) show_differences(output);
}

} // namespace soapwrapper::probe
