// Arguments that many commands share.
#ifndef SOAPWRAPPER_PROBE_ARGUMENTS_ARGUMENTS_H
#define SOAPWRAPPER_PROBE_ARGUMENTS_ARGUMENTS_H

#include "plugin/host/host_records.h"
#include "probe/arguments/command_line.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace soapwrapper::probe
{

// How to log in, as the command line tells it.
struct LoginOptions {
    std::string credential_file; // empty: the environment has it
    int credential_type = 1;
    std::string required_interface;
    bool no_discovery = false;
    bool warns_of_clear_login = true;
    std::string target_server; // to be opened through the server; empty: none
};

struct ServerArguments {
    std::string name;
    LoginOptions login;
};

struct LsuArguments : ServerArguments {
    std::string lsu;
};

// The hosts that an export is for.
struct HostArguments {
    std::vector<std::string> hosts;
    std::vector<std::string> ports;
    std::int32_t flags = 0;
};

void add_login_options(const Command& command, LoginOptions& options);

// The first of them: where the credential is, and of which type.
void add_credential_options(const Command& command, LoginOptions& options);

void add_target_server_option(const Command& command, LoginOptions& options);

// NAME, and how to log in.
void add_server_arguments(const Command& command, ServerArguments& arguments);

// NAME and LSU, and how to log in.
void add_lsu_arguments(const Command& command, LsuArguments& arguments);
Option add_lsu_argument(const Command& command, std::string& lsu);

// A positional text that must fit a field of `room` bytes: nothing is cut without a word.
Option add_text_argument(const Command& command, const char* name, std::string& text, std::size_t room,
                         const char* description);

void add_host_options(const Command& command, HostArguments& arguments);

// Refuses texts that wouldn't fit, for options that may be given several times.
void limit_length(const Option& option, std::size_t room);

void set_footer(const Command& command, const std::string& example);

// `text` is known to fit.
template <std::size_t Room>
void put(char (&field)[Room], const std::string& text)
{
    std::strncpy(field, text.c_str(), Room - 1);
    field[Room - 1] = '\0';
}

// Too many hosts or ports are thrown as a Problem.
sts_host_spec_v11_t host_specification(const HostArguments& arguments);

} // namespace soapwrapper::probe

#endif
