#include "simulator/options.h"

#include "simulator/front/address.h"
#include "simulator/front/tls_version.h"
#include "simulator/scenario/default_scenario.h"
#include "simulator/service/interference.h"
#include "simulator/service/service_operations.h"
#include "simulator/service/text_encoding.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <chrono>
#include <cstring>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

constexpr std::string_view kOperations[] = {
#define SOAPWRAPPER_NAME(name, answered) #name,
    SOAPWRAPPER_SIMULATED_OPERATIONS(SOAPWRAPPER_NAME)
#undef SOAPWRAPPER_NAME
};

constexpr unsigned kMaxThreads = 64;
constexpr unsigned kMaxDelay = 60 * 60 * 1000;

[[noreturn]] void refuse(const std::string& option, std::string_view value, const std::string& why)
{
    throw CLI::ValidationError(option, "\"" + std::string(value) + "\" " + why);
}

// The whole text as a number, within its type.
template <class Number>
std::optional<Number> number_in(std::string_view text)
{
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

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

// Splits OPERATION=REST and makes sure that there is such an operation.
std::pair<std::string, std::string_view> rule_in(const std::string& option, std::string_view text)
{
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos) refuse(option, text, "has no \"=\" behind the operation");
    const std::string_view operation = text.substr(0, equals);
    if (std::find(std::begin(kOperations), std::end(kOperations), operation) == std::end(kOperations)) {
        refuse(option, text, "doesn't begin with an operation of the service");
    }
    return {std::string(operation), text.substr(equals + 1)};
}

FaultRule fault_rule_in(const std::string& text)
{
    auto [operation, rest] = rule_in("--fault", text);
    const std::size_t comma = rest.find(',');
    const std::optional<int> code = number_in<int>(rest.substr(0, comma));
    if (!code) refuse("--fault", text, "names no CODE in 32 bits");
    FaultRule rule{std::move(operation), *code, std::nullopt};
    if (comma != std::string_view::npos) {
        rule.count = number_in<unsigned>(rest.substr(comma + 1));
        if (!rule.count || *rule.count == 0) refuse("--fault", text, "has a COUNT that is not 1 or more");
    }
    return rule;
}

DelayRule delay_rule_in(const std::string& text)
{
    auto [operation, rest] = rule_in("--delay", text);
    const std::optional<unsigned> milliseconds = number_in<unsigned>(rest);
    if (!milliseconds || *milliseconds > kMaxDelay) {
        refuse("--delay", text, "has MS that are not a number from 0 to " + std::to_string(kMaxDelay));
    }
    return {std::move(operation), std::chrono::milliseconds(*milliseconds)};
}

void add_delay(std::vector<DelayRule>& delays, const std::string& text)
{
    DelayRule rule = delay_rule_in(text);
    for (const DelayRule& other : delays) {
        if (other.operation == rule.operation) refuse("--delay", text, "is the second one for its operation");
    }
    delays.push_back(std::move(rule));
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

} // namespace

CommandLine parse_command_line(const std::vector<std::string>& arguments)
{
    Options options;
    std::string http = to_string(*options.http);
    std::string https = to_string(*options.https);
    bool no_http = false;
    bool no_https = false;
    bool print_scenario = false;
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
    CLI::Option* advertise = app.add_option("--advertise", options.advertise,
                                            "Name this host in the interfaces, not the address bound")
                                 ->type_name("HOST");
    add_tls_options(app, options, no_https_flag);
    app.add_option("--credential", options.credential, "The text that opens a server")
        ->type_name("TEXT")
        ->capture_default_str();
    add_file_option(app, "--scenario", options.scenario, "Simulate the storage that this file describes");
    app.add_flag("--print-scenario", print_scenario, "Print the built-in scenario as JSON and end");
    add_text_encoding_option(app, options.text_encoding);
    app.add_option("--threads", options.threads, "Requests served at once")
        ->type_name("N")
        ->check(CLI::Range(1U, kMaxThreads))
        ->capture_default_str();
    app.add_option("--fault", faults, "Fail the operation with CODE, COUNT times or always; repeatable")
        ->type_name("OPERATION=CODE[,COUNT]")
        ->allow_extra_args(false);
    app.add_option("--delay", delays, "Let the operation take MS milliseconds longer; repeatable")
        ->type_name("OPERATION=MS")
        ->allow_extra_args(false);
    app.add_flag("-v,--verbose", options.verbose, "Log every request on standard error");

    CommandLine result;
    try {
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
        if (print_scenario) {
            result.text = default_scenario_text();
            return result;
        }
        if (no_http && no_https)
            throw CLI::ValidationError("--no-http and --no-https", "leave nothing to serve");
        options.http = no_http ? std::nullopt : std::optional(address_in("--http", http));
        options.https = no_https ? std::nullopt : std::optional(address_in("--https", https));
        if (advertise->count() > 0) options.advertise = host_in("--advertise", options.advertise);
        for (const std::string& text : faults) options.faults.push_back(fault_rule_in(text));
        for (const std::string& text : delays) add_delay(options.delays, text);
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
