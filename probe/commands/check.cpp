#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/check/check_report.h"
#include "probe/check/configuration_check.h"
#include "probe/check/interface_check.h"
#include "probe/check/library_check.h"
#include "probe/check/service_check.h"
#include "probe/commands/command.h"
#include "probe/library/credential.h"
#include "probe/library/plugin_library.h"
#include "probe/library/probe.h"
#include "probe/library/session.h"
#include "probe/library/slots.h"
#include "probe/login/clear_login.h"
#include "probe/login/server_discovery.h"
#include "probe/login/server_login.h"
#include "probe/output/offered_interface.h"
#include "probe/output/output.h"
#include "probe/output/problem.h"

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

namespace soapwrapper::probe
{
namespace
{

struct CheckOptions {
    std::string name; // empty: no service is looked at
    LoginOptions login;
};

CheckReport make_report(Output& output)
{
    return CheckReport(output, output.format() == Format::kAligned && output_takes_colours());
}

// Whatever it was that failed, but for the user's wish to end, is a line of the report.
void report_failure(const Problem& problem, const char* subject, const char* advice, CheckReport& report)
{
    if (problem.code() == ExitCode::kInterrupted) throw Problem(problem);
    std::string text = problem.name();
    if (problem.status()) text += '(' + std::to_string(*problem.status()) + ')';
    text += ": " + problem.meaning();
    if (!problem.detail().empty()) text += "; " + problem.detail();
    report.add(Mark::kWrong, subject, text, advice);
}

bool has_credential(const LoginOptions& login)
{
    return !login.credential_file.empty() || std::getenv(kCredentialVariable);
}

// The library's line on the interface that it chose, or an empty one. None: the service can't be opened.
std::optional<std::string> check_discovery(const Probe& probe, const std::string& name,
                                           const std::optional<std::string>& own_url, CheckReport& report)
{
    const char* const advice = "see the lines above, and --log record";
    try {
        const ServerDiscovery found = discover_server(probe, name);
        const auto offers = offered_interfaces(*found.info, found.selection);
        if (found.problem) report_failure(*found.problem, "discovery", advice, report);
        if (!found.problem) report.add(Mark::kOk, "discovery", "the library has found the service");
        if (!found.problem || !offers.empty()) check_interfaces(offers, own_url, report);
        if (found.problem) return std::nullopt;
        return found.selection;
    } catch (const Problem& problem) {
        report_failure(problem, "discovery", advice, report);
        return std::nullopt;
    }
}

constexpr char kEncryptionAdvice[] =
    "have the service offer https, write https:// where soapwrapper.conf has its "
    "URL, and set require_tls = yes there";

void report_good_login(const Session& session, const std::string& selection, CheckReport& report)
{
    const auto login = sent_login(session);
    const std::string text = "the service has taken the credential";
    if (!login) {
        report.add(Mark::kOk, "login", text);
    } else if (uses_tls(selection, login->url)) {
        report.add(Mark::kOk, "login", text + ", over TLS");
    } else {
        report.add(Mark::kWarning, "login", text + ", which went in the clear", kEncryptionAdvice);
    }
}

// The credential may have been read by others, whatever the service made of it.
void warn_of_failed_login(const Session& session, const std::string& selection, CheckReport& report)
{
    const auto login = sent_login(session);
    if (!login || uses_tls(selection, login->url)) return;
    report.add(Mark::kWarning, "login", "the credential went over " + login->url + " in the clear",
               kEncryptionAdvice);
}

void check_login(const Probe& probe, const CheckOptions& options, const std::string& selection,
                 CheckReport& report)
{
    LoginOptions login = options.login;
    login.no_discovery = true;          // it has just been done, and the library keeps what it found
    login.warns_of_clear_login = false; // the report does
    const char* advice = "look whether the credential is right, and of the right type";
    bool logged_in = false;
    try {
        ServerLogin server(probe, options.name, login);
        report_good_login(probe.session, selection, report);
        logged_in = true;
        advice = "look whether the service has kept the session open";
        server.close();
        report.add(Mark::kOk, "logout", "the session is closed");
    } catch (const Problem& problem) {
        report_failure(problem, logged_in ? "logout" : "login", advice, report);
        if (!logged_in) warn_of_failed_login(probe.session, selection, report);
    }
}

void check_service(const Probe& probe, const CheckOptions& options, const ConfigurationLook& configuration,
                   CheckReport& report)
{
    const std::size_t colon = options.name.find(':');
    try {
        require(probe, slot::stspi_claim, options.name.c_str());
    } catch (const Problem& problem) {
        report_failure(problem, "name", "a server's name begins with Network_", report);
        return;
    }
    if (colon == std::string::npos) {
        report.add(Mark::kWrong, "name", options.name + " has no colon, and so names no host",
                   "write prefix, colon, host");
        return;
    }
    const std::string host = options.name.substr(colon + 1);
    report.add(Mark::kOk, "name", options.name + " is the library's to serve; its host is " + host);
    check_attempts(host, configuration, report);
    const auto selection = check_discovery(probe, options.name, configuration.file.url(host), report);
    if (!selection) {
        report.add(Mark::kInfo, "login", "not tried");
    } else if (!has_credential(options.login)) {
        report.add(Mark::kInfo, "login",
                   std::string("not tried: there is no --credential-file and no ") + kCredentialVariable);
    } else {
        check_login(probe, options, *selection, report);
    }
}

void check(const Probe& probe, const CheckOptions& options)
{
    CheckReport report = make_report(probe.output);
    report.begin_group("Library");
    check_library(probe.library, report);
    report.begin_group("Configuration");
    const ConfigurationLook configuration =
        check_configuration(probe.library.told_path(), probe.library.configuration(), report);
    if (!options.name.empty()) {
        report.begin_group("Service");
        check_service(probe, options, configuration, report);
    }
    report.finish();
}

void check_without_library(const Problem& problem, const LibraryPlaces& places, const CheckOptions& options,
                           Output& output)
{
    CheckReport report = make_report(output);
    report.begin_group("Library");
    report_unusable_library(places, problem, report);
    report.begin_group("Configuration");
    if (const auto told = told_place_ahead(places)) {
        check_configuration(*told, places.configuration, report);
    } else {
        report.add(Mark::kInfo, "file", "not looked at: it stands beside the library");
    }
    if (!options.name.empty()) {
        report.begin_group("Service");
        report.add(Mark::kInfo, "name", "not looked at: that needs the library");
    }
    report.finish();
}

} // namespace

void add_check_command(const Command& program, Run& run)
{
    const Command command = program.add_subcommand(
        "check",
        "Look at an installation ahead of the first backup: the library, its configuration, a service");
    auto options = std::make_shared<CheckOptions>();
    command
        .add_option("NAME", options->name, "Server name: prefix, colon, host; without it no service is asked")
        .type_name("");
    add_credential_options(command, options->login);
    set_footer(command, "check Network_storage:filer1.example.com");
    command.callback([&run, options] {
        run.act = [options](const Probe& probe) { check(probe, *options); };
        run.without_library = [options](const Problem& problem, const LibraryPlaces& places, Output& output) {
            check_without_library(problem, places, *options, output);
        };
    });
}

} // namespace soapwrapper::probe
