#include "probe/arguments/arguments.h"

#include "plugin/host/host_records.h"
#include "probe/arguments/command_line.h"
#include "probe/library/credential.h"
#include "probe/output/problem.h"

#include <cstddef>
#include <string>

namespace soapwrapper::probe
{

void add_credential_options(const Command& command, LoginOptions& options)
{
    command
        .add_option("--credential-file", options.credential_file,
                    std::string("File that holds the credential; a line feed at its end is dropped. "
                                "Without it the credential comes from the environment variable ") +
                        kCredentialVariable)
        .type_name("FILE");
    command.add_option("--credential-type", options.credential_type, "Type number of the credential")
        .type_name("N")
        .capture_default_str();
}

void add_login_options(const Command& command, LoginOptions& options)
{
    add_credential_options(command, options);
    command.add_option("--interface", options.required_interface, "Interface to require of the service")
        .type_name("TEXT");
    command.add_flag("--no-discover", options.no_discovery,
                     "Open without discovery: at the URL of soapwrapper.conf, else at http on port 8085");
}

void add_target_server_option(const Command& command, LoginOptions& options)
{
    const Option option = command.add_option("--target-server", options.target_server,
                                             "Server to open through this one, with the same credential");
    option.type_name("NAME");
    limit_length(option, STS_SERVER_NAME_SIZE);
}

void add_server_arguments(const Command& command, ServerArguments& arguments)
{
    command.add_option("NAME", arguments.name, "Server name: prefix, colon, host").required().type_name("");
    add_login_options(command, arguments.login);
}

void add_lsu_arguments(const Command& command, LsuArguments& arguments)
{
    add_server_arguments(command, arguments);
    add_lsu_argument(command, arguments.lsu).required();
}

Option add_lsu_argument(const Command& command, std::string& lsu)
{
    return add_text_argument(command, "LSU", lsu, STS_LSU_NAME_SIZE, "Name of the logical storage unit")
        .required(false);
}

Option add_text_argument(const Command& command, const char* name, std::string& text, std::size_t room,
                         const char* description)
{
    const Option option = command.add_option(name, text, description).required().type_name("");
    limit_length(option, room);
    return option;
}

void add_host_options(const Command& command, HostArguments& arguments)
{
    const Option hosts =
        command.add_option("--host", arguments.hosts, "Host that the export is for; up to 16 times")
            .required()
            .type_name("TEXT");
    const Option ports =
        command.add_option("--port", arguments.ports, "Port of a host; up to 16 times").type_name("TEXT");
    for (const Option option : {hosts, ports}) {
        option.one_at_a_time(); // one text each time, or it would take the arguments behind it
        limit_length(option, STS_HOST_TEXT_SIZE);
    }
    command.add_option("--flags", arguments.flags, "Flags of the export")
        .type_name("N")
        .capture_default_str();
}

void limit_length(const Option& option, std::size_t room)
{
    option.check([room](const std::string& text) {
        return text.size() < room ? std::string()
                                  : "at most " + std::to_string(room - 1) + " bytes are possible";
    });
}

void set_footer(const Command& command, const std::string& example)
{
    command.footer("Example:\n  soapwrapper-probe " + example +
                   "\n\nSee also: soapwrapper-probe --help, for the options of all commands.");
}

sts_host_spec_v11_t host_specification(const HostArguments& arguments)
{
    if (arguments.hosts.size() > STS_EXPORT_HOSTS || arguments.ports.size() > STS_EXPORT_HOSTS) {
        throw usage_problem("an export has at most " + std::to_string(STS_EXPORT_HOSTS) +
                            " hosts and as many ports");
    }
    sts_host_spec_v11_t host = {};
    for (std::size_t i = 0; i < arguments.hosts.size(); ++i) put(host.hostname[i], arguments.hosts[i]);
    for (std::size_t i = 0; i < arguments.ports.size(); ++i) put(host.port[i], arguments.ports[i]);
    host.flags = arguments.flags;
    return host;
}

} // namespace soapwrapper::probe
