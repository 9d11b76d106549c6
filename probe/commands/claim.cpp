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

struct ClaimOptions : ServerArguments {
    sts_volume_spec_v11_t volume = {};
};

void claim(const Probe& probe, const ClaimOptions& options)
{
    ServerLogin login(probe, options.name, options.login);
    require(probe, slot::stspi_claim_volume, login.handle(), &options.volume);
    Properties done;
    done.add("Claimed volume", "claimed_volume", volume_text(options.volume));
    done.show(probe.output);
    login.close();
}

} // namespace

void add_claim_command(const Command& program, Run& run)
{
    const Command command = program.add_subcommand("claim", "Claim a volume");
    auto options = std::make_shared<ClaimOptions>();
    add_server_arguments(command, *options);
    add_volume_option(command, options->volume, "Volume to claim").required();
    set_footer(command, "claim Network_storage:filer1.example.com --volume scsi:serial");
    command.callback(chosen(run, options, claim));
}

} // namespace soapwrapper::probe
