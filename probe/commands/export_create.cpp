#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/arguments/volume_argument.h"
#include "probe/commands/command.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/lists/snapshot_records.h"
#include "probe/login/server_login.h"
#include "probe/output/records.h"

#include <memory>

namespace soapwrapper::probe
{
namespace
{

struct CreateOptions : SnapshotArguments {
    HostArguments host;
};

void create_export(const Probe& probe, const CreateOptions& options)
{
    const auto host = std::make_unique<sts_host_spec_v11_t>(host_specification(options.host));
    ServerLogin login(probe, options.name, options.login);
    const stsp_lsu_v7_t lsu = lsu_reference(login, options);
    sts_volume_spec_v11_t exported = unfilled_volume();
    require(probe, slot::stspi_create_export, &lsu, options.snapshot.c_str(), host.get(), &exported);
    Properties made;
    made.add("Exported volume", "exported_volume", volume_text(exported));
    made.show(probe.output);
    login.close();
}

} // namespace

void add_export_create_command(const Command& group, Run& run)
{
    const Command command = group.add_subcommand("create", "Export a snapshot to hosts");
    auto options = std::make_shared<CreateOptions>();
    add_snapshot_arguments(command, *options);
    add_host_options(command, options->host);
    set_footer(command, "export create Network_storage:filer1.example.com vol1 nightly.0 --host client1");
    command.callback(chosen(run, options, create_export));
}

} // namespace soapwrapper::probe
