#include "plugin/host/async_records.h"
#include "plugin/host/handles.h"
#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/commands/command.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/lists/snapshot_records.h"
#include "probe/login/server_login.h"
#include "probe/operations/operation_arguments.h"
#include "probe/operations/operation_run.h"

#include <memory>
#include <string>

namespace soapwrapper::probe
{
namespace
{

struct ProvisionOptions : SourceArguments, TargetOptions, ImagesetOptions {
    std::string topology;
};

void provision_topology(const Probe& probe, const ProvisionOptions& options)
{
    const TargetLsus targets(options, options.name);
    const sts_snap_def_v11_t snap = snapshot_named(options.snapshot);
    const sts_imageset_t imageset = imageset_of(options);
    ServerLogin login(probe, options.name, options.login);
    run_operation(probe, login.handle(), options.operation,
                  {[&](stsp_async_t** async) {
                       return call(probe, slot::stspi_async_provision_topology, login.handle(),
                                   &options.volume, &snap, targets.data(), targets.count(),
                                   options.topology.c_str(), imageset, options.pending, async);
                   },
                   [&](const sts_opname_t& name) {
                       return call(probe, slot::stspi_named_async_provision_topology, login.handle(),
                                   &options.volume, &snap, targets.data(), targets.count(),
                                   options.topology.c_str(), imageset, options.pending, name);
                   }});
    login.close();
}

} // namespace

void add_topology_provision_command(const Command& group, Run& run)
{
    const Command command = group.add_subcommand("provision", "Make what a topology says there should be");
    auto options = std::make_shared<ProvisionOptions>();
    add_source_arguments(command, *options);
    add_target_options(command, *options);
    add_imageset_options(command, *options);
    command.add_option("--topology", options->topology, "Topology that there is to be")
        .required()
        .type_name("TEXT");
    set_footer(command, "topology provision Network_storage:filer1.example.com nightly.0 --volume "
                        "nfs:filer1:/vol/vol1 --topology mirror");
    command.callback(chosen(run, options, provision_topology));
}

} // namespace soapwrapper::probe
