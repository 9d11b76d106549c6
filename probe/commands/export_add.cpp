#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/arguments/volume_argument.h"
#include "probe/commands/command.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/login/server_login.h"
#include "probe/output/records.h"

#include <memory>

namespace soapwrapper::probe
{
namespace
{

struct AddOptions : LsuArguments {
    sts_volume_spec_v11_t volume = {};
    HostArguments host;
};

void add_export(const Probe& probe, const AddOptions& options)
{
    const auto host = std::make_unique<sts_host_spec_v11_t>(host_specification(options.host));
    ServerLogin login(probe, options.name, options.login);
    const stsp_lsu_v7_t lsu = lsu_reference(login, options);
    sts_volume_spec_v11_t exported = unfilled_volume();
    require(probe, slot::stspi_add_export, &lsu, &options.volume, host.get(), &exported);
    Properties made;
    made.add("Exported volume", "exported_volume", volume_text(exported));
    made.show(probe.output);
    login.close();
}

} // namespace

void add_export_add_command(const Command& group, Run& run)
{
    const Command command = group.add_subcommand("add", "Export a volume to hosts");
    auto options = std::make_shared<AddOptions>();
    add_lsu_arguments(command, *options);
    add_volume_option(command, options->volume, "Volume to export").required();
    add_host_options(command, options->host);
    set_footer(
        command,
        "export add Network_storage:filer1.example.com vol1 --volume nfs:filer1:/vol/vol1 --host client1");
    command.callback(chosen(run, options, add_export));
}

} // namespace soapwrapper::probe
