#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/arguments/confirmation.h"
#include "probe/arguments/volume_argument.h"
#include "probe/commands/command.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/login/server_login.h"
#include "probe/output/records.h"

#include <memory>
#include <string>

namespace soapwrapper::probe
{
namespace
{

struct DeleteOptions : LsuArguments {
    sts_volume_spec_v11_t volume = {};
    HostArguments host;
    bool yes = false;
};

void delete_export(const Probe& probe, const DeleteOptions& options)
{
    const auto host = std::make_unique<sts_host_spec_v11_t>(host_specification(options.host));
    const std::string volume = volume_text(options.volume);
    confirm_deletion("export " + volume, options.yes);
    ServerLogin login(probe, options.name, options.login);
    const stsp_lsu_v7_t lsu = lsu_reference(login, options);
    require(probe, slot::stspi_delete_export, &lsu, host.get(), &options.volume);
    Properties done;
    done.add("Deleted export", "deleted_export", volume);
    done.show(probe.output);
    login.close();
}

} // namespace

void add_export_delete_command(const Command& group, Run& run)
{
    const Command command = group.add_subcommand("delete", "Take an export away");
    auto options = std::make_shared<DeleteOptions>();
    add_lsu_arguments(command, *options);
    add_volume_option(command, options->volume, "The exported volume").required();
    add_host_options(command, options->host);
    add_yes_option(command, options->yes);
    set_footer(
        command,
        "export delete Network_storage:filer1.example.com vol1 --volume nfs:filer1:/vol/vol1 --host client1");
    command.callback(chosen(run, options, delete_export));
}

} // namespace soapwrapper::probe
