#include "probe/arguments/command_line.h"
#include "probe/commands/command.h"
#include "probe/library/probe.h"
#include "probe/login/server_discovery.h"
#include "probe/output/problem.h"
#include "probe/output/server_report.h"

#include <memory>
#include <string>

namespace soapwrapper::probe
{
namespace
{

void discover(const Probe& probe, const std::string& name)
{
    const ServerDiscovery found = discover_server(probe, name);
    // A service none of whose interfaces will do has said all the same who it is and what it offers.
    const bool said_something = found.info->server[0] != '\0' || found.info->requiredInterface[0][0] != '\0';
    if (!found.problem || said_something) report_server(probe.output, name, *found.info, found.selection);
    if (found.problem) throw Problem(*found.problem);
}

} // namespace

void add_discover_command(const Command& program, Run& run)
{
    const Command command =
        program.add_subcommand("discover", "Find the service behind a server name and show what it offers");
    auto name = std::make_shared<std::string>();
    command.add_option("NAME", *name, "Server name: prefix, colon, host").required().type_name("");
    command.footer("Example:\n"
                   "  soapwrapper-probe discover Network_storage:filer1.example.com\n\n"
                   "See also: soapwrapper-probe --help, for the options of all commands.");
    command.callback([&run, name] { run.act = [name](const Probe& probe) { discover(probe, *name); }; });
}

} // namespace soapwrapper::probe
