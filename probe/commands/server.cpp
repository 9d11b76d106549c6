#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/commands/command.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/login/server_login.h"
#include "probe/output/server_report.h"

#include <memory>
#include <string>

namespace soapwrapper::probe
{
namespace
{

struct ServerOptions {
    std::string name;
    LoginOptions login;
};

void show_server(const Probe& probe, const ServerOptions& options)
{
    ServerLogin login(probe, options.name, options.login);
    const auto info = std::make_unique<sts_server_info_v8_t>();
    require(probe, slot::stspi_get_server_prop, login.handle(), info.get());
    report_server(probe.output, options.name, *info, login.selection());
    login.close();
}

} // namespace

void add_server_command(const Command& program, Run& run)
{
    const Command command = program.add_subcommand("server", "Open a server, show its properties, close it");
    auto options = std::make_shared<ServerOptions>();
    command.add_option("NAME", options->name, "Server name: prefix, colon, host").required().type_name("");
    add_login_options(command, options->login);
    command.footer("Example:\n"
                   "  soapwrapper-probe server --credential-file ~/.storage-login "
                   "Network_storage:filer1.example.com\n\n"
                   "See also: soapwrapper-probe --help, for the options of all commands.");
    command.callback(
        [&run, options] { run.act = [options](const Probe& probe) { show_server(probe, *options); }; });
}

} // namespace soapwrapper::probe
