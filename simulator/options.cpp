#include "simulator/options.h"

#include "simulator/front/address.h"
#include "simulator/front/tls_version.h"
#include "simulator/option_error.h"
#include "simulator/scenario/default_scenario.h"
#include "simulator/service/operation_names.h"
#include "simulator/service/text_encoding.h"
#include "simulator/trouble_options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

constexpr unsigned kMaxThreads = 64;

Address address_in(const std::string& option, const std::string& text)
{
    const std::optional<Address> address = parse_address(text);
    if (!address) refuse(option, text, "is not HOST:PORT; an IPv6 number goes in brackets, as in [::1]:8085");
    return *address;
}

// A host as it may stand in a URL, in an interface row and in a certificate.
std::string host_in(const std::string& option, const std::string& text)
{
    const bool in_brackets = text.size() > 2 && text.front() == '[' && text.back() == ']';
    std::string host = in_brackets ? text.substr(1, text.size() - 2) : text;
    const auto fits = [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || std::strchr(".-_:", c);
    };
    if (host.empty() || !std::all_of(host.begin(), host.end(), fits)) refuse(option, text, "is not a host");
    return host;
}

CLI::Option* add_file_option(CLI::App& app, const std::string& name, std::string& file,
                             const std::string& description)
{
    const auto trouble = [](const std::string& given) { return given.empty() ? "names no file" : ""; };
    return app.add_option(name, file, description)->type_name("FILE")->check(trouble);
}

void add_tls_options(CLI::App& app, Options& options, CLI::Option* no_https)
{
    CLI::Option* certificate = add_file_option(
        app, "--certificate", options.certificate,
        "Show this certificate, in PEM with the chain behind it, instead of one made at the start");
    CLI::Option* key = add_file_option(app, "--key", options.key, "The certificate's key, in PEM");
    certificate->needs(key)->excludes(no_https);
    key->needs(certificate)->excludes(no_https);
    add_file_option(app, "--ca-out", options.ca_out,
                    "Write the authority's certificate, by which clients can check the one made at the start")
        ->excludes(certificate)
        ->excludes(no_https);
    app.add_option_function<std::string>(
           "--tls-max",
           [&options](const std::string& version) {
               options.newest_tls = version == "1.2" ? TlsVersion::kTls12 : TlsVersion::kTls13;
           },
           "The newest version of TLS that is spoken")
        ->type_name("VERSION")
        ->check(CLI::IsMember({"1.2", "1.3"}))
        ->default_str("1.3");
}

void add_text_encoding_option(CLI::App& app, TextEncoding& encoding)
{
    app.add_option_function<std::string>(
           "--text-encoding",
           [&encoding](const std::string& name) {
               encoding = name == "UTF-8" ? TextEncoding::kUtf8 : TextEncoding::kLatin1;
           },
           "What the bytes of a text are: a Latin-1 character each, or UTF-8")
        ->type_name("ENCODING")
        ->transform(CLI::IsMember({"Latin-1", "UTF-8"}, CLI::ignore_case))
        ->default_str("Latin-1");
}

void add_trouble_options(CLI::App& app, std::vector<std::string>& faults, std::vector<std::string>& delays)
{
    app.add_option(
           "--fault", faults,
           "Fail the operation with CODE, or with the KIND of trouble, COUNT times or always; repeatable")
        ->type_name("OPERATION=CODE|KIND[,COUNT]")
        ->allow_extra_args(false);
    app.add_option("--delay", delays,
                   "Let the operation take MS milliseconds longer, or around MS with a long tail; repeatable")
        ->type_name("OPERATION=MS[~SIGMA]")
        ->allow_extra_args(false);
}

// A recording leaves nothing to simulate.
void add_replay_options(CLI::App& app, Options& options)
{
    CLI::Option* replay =
        add_file_option(app, "--replay", options.replay,
                        "Simulate nothing, but answer from this file, which the probe has recorded");
    app.add_flag("--replay-times", options.replay_times, "Take as long for an answer as it took then")
        ->needs(replay);
    for (const char* other : {"--page", "--credential", "--scenario", "--check-scenario", "--print-scenario",
                              "--text-encoding", "--fault", "--delay", "--list-operations", "--dump"}) {
        replay->excludes(app.get_option(other));
    }
}

std::string operation_lines()
{
    std::string lines;
    for (const std::string_view name : operation_names()) lines.append(name).append("\n");
    return lines;
}

} // namespace

CommandLine parse_command_line(const std::vector<std::string>& arguments)
{
    Options options;
    std::string http = to_string(*options.http);
    std::string https = to_string(*options.https);
    bool no_http = false;
    bool no_https = false;
    bool print_scenario = false;
    bool list_operations = false;
    std::vector<std::string> faults;
    std::vector<std::string> delays;

    CLI::App app(
        "A storage service to run against: it simulates the storage, in memory, for as long as it runs.",
        "soapwrapper-sim");
    app.set_version_flag("--version", "soapwrapper-sim " SOAPWRAPPER_VERSION);
    app.add_option("--http", http, "Listen here for plain HTTP; port 0 draws a free one")
        ->type_name("HOST:PORT")
        ->capture_default_str();
    app.add_option("--https", https, "Listen here for HTTPS; port 0 draws a free one")
        ->type_name("HOST:PORT")
        ->capture_default_str();
    app.add_flag("--no-http", no_http, "Don't serve plain HTTP");
    CLI::Option* no_https_flag = app.add_flag("--no-https", no_https, "Don't serve HTTPS");
    app.add_option_function<std::string>(
           "--page", [&options](const std::string& text) { options.page = address_in("--page", text); },
           "Serve people here, over plain HTTP, and at the service's addresses no more")
        ->type_name("HOST:PORT");
    CLI::Option* advertise = app.add_option("--advertise", options.advertise,
                                            "Name this host in the interfaces, not the address bound")
                                 ->type_name("HOST");
    add_tls_options(app, options, no_https_flag);
    app.add_option("--credential", options.credential, "The text that opens a server")
        ->type_name("TEXT")
        ->capture_default_str();
    add_file_option(app, "--scenario", options.scenario, "Simulate the storage that this file describes");
    add_file_option(app, "--check-scenario", options.checked_scenario,
                    "Tell what is wrong with this scenario file and end; - is standard input");
    app.add_flag("--print-scenario", print_scenario, "Print the built-in scenario as JSON and end");
    add_text_encoding_option(app, options.text_encoding);
    app.add_option("--threads", options.threads, "Requests served at once")
        ->type_name("N")
        ->check(CLI::Range(1U, kMaxThreads))
        ->capture_default_str();
    add_trouble_options(app, faults, delays);
    app.add_flag("--list-operations", list_operations,
                 "Print what --fault and --delay take for OPERATION, and end");
    app.add_option("--dump", options.dump, "Write every request and reply to files in this folder")
        ->type_name("DIR")
        ->check([](const std::string& given) { return given.empty() ? "names no folder" : ""; });
    add_replay_options(app, options);
    app.add_flag("-v,--verbose", options.verbose, "Log every request on standard error");

    CommandLine result;
    try {
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
        if (print_scenario) {
            result.text = default_scenario_text();
            return result;
        }
        if (list_operations) {
            result.text = operation_lines();
            return result;
        }
        if (no_http && no_https)
            throw CLI::ValidationError("--no-http and --no-https", "leave nothing to serve");
        options.http = no_http ? std::nullopt : std::optional(address_in("--http", http));
        options.https = no_https ? std::nullopt : std::optional(address_in("--https", https));
        if (advertise->count() > 0) options.advertise = host_in("--advertise", options.advertise);
        options.troubles = troubles_in(faults, delays);
        result.options = std::move(options);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
            std::ostringstream text;
            app.exit(error, text, text);
            result.text = text.str();
        } else {
            result.exit_code = kExitUsage;
            result.text = std::string("soapwrapper-sim: ") + error.what() +
                          "\nTry soapwrapper-sim --help for the options.\n";
        }
    }
    return result;
}

} // namespace soapwrapper::simulator
