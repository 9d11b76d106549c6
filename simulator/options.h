// The command line.
#ifndef SOAPWRAPPER_SIMULATOR_OPTIONS_H
#define SOAPWRAPPER_SIMULATOR_OPTIONS_H

#include "simulator/front/address.h"
#include "simulator/front/tls_version.h"
#include "simulator/service/text_encoding.h"
#include "simulator/service/trouble.h"

#include <optional>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

constexpr int kExitStartFailed = 1;
constexpr int kExitUsage = 2;

struct Options {
    std::optional<Address> http = Address{"127.0.0.1", 8085};
    std::optional<Address> https = Address{"127.0.0.1", 8086};
    std::optional<Address> page; // without one, people come in where hosts do
    std::string advertise;       // empty: the address bound
    std::string certificate;     // a file, and so is the key; empty: they are made
    std::string key;
    std::string ca_out; // a file; empty: none
    TlsVersion newest_tls = TlsVersion::kTls13;
    std::string credential = "simulator";
    std::string scenario;         // a file; empty: the built-in one
    std::string checked_scenario; // a file to be looked over instead of being simulated, if any
    TextEncoding text_encoding = TextEncoding::kLatin1;
    unsigned threads = 8;
    bool verbose = false;
    std::vector<Trouble> troubles;
    std::string dump;   // a folder; empty: none
    std::string replay; // a recording that is answered from instead of a scenario, if any
    bool replay_times = false;
};

// What the command line comes to: options to start with, or a text to print and an exit code.
struct CommandLine {
    std::optional<Options> options;
    int exit_code = 0;
    std::string text;
};

CommandLine parse_command_line(const std::vector<std::string>& arguments);

} // namespace soapwrapper::simulator

#endif
