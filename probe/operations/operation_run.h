// Starting a long operation and following it to its end.
#ifndef SOAPWRAPPER_PROBE_OPERATIONS_OPERATION_RUN_H
#define SOAPWRAPPER_PROBE_OPERATIONS_OPERATION_RUN_H

#include "plugin/host/async_records.h"
#include "plugin/host/handles.h"
#include "probe/arguments/command_line.h"
#include "probe/library/probe.h"
#include "probe/operations/operation.h"

#include <functional>
#include <optional>
#include <string>

namespace soapwrapper::probe
{

struct OperationOptions {
    std::optional<std::string> name; // none: the service makes up an id
    bool no_wait = false;
};

void add_operation_options(const Command& command, OperationOptions& options);

// `--name`, the name of an operation.
Option add_operation_name_option(const Command& command, std::optional<std::string>& name,
                                 const std::string& description);

// The two entries that start an operation, called with all the arguments that it has.
struct OperationStart {
    std::function<int(stsp_async_t**)> with_id;
    std::function<int(const sts_opname_t&)> with_name;
};

// Starts an operation at an open server, and unless that is all, waits for its end and shows what it has
// brought. Whatever else comes of it is thrown.
void run_operation(const Probe& probe, stsp_server_t* server, const OperationOptions& options,
                   const OperationStart& start);

// Waits and shows, as above, until there is an interruption: that is thrown, with what became of the
// operation.
void follow_operation(const Probe& probe, const Operation& operation);

} // namespace soapwrapper::probe

#endif
