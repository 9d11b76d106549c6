#include "simulator/ca_file.h"
#include "simulator/front/address.h"
#include "simulator/front/descriptor.h"
#include "simulator/front/entrance.h"
#include "simulator/front/http.h"
#include "simulator/front/request_log.h"
#include "simulator/front/server.h"
#include "simulator/front/tls_identity.h"
#include "simulator/identity_files.h"
#include "simulator/options.h"
#include "simulator/scenario/default_scenario.h"
#include "simulator/scenario/scenario.h"
#include "simulator/scenario/scenario_error.h"
#include "simulator/scenario/scenario_reader.h"
#include "simulator/scenario_report.h"
#include "simulator/service/interference.h"
#include "simulator/service/service.h"
#include "simulator/storage/current_model.h"
#include "simulator/traffic/dump_folder.h"
#include "simulator/traffic/recorder.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

// Ahead of any thread, so that none of them is interrupted: the loop reads the signals.
Descriptor take_stop_signals()
{
    std::signal(SIGPIPE, SIG_IGN);
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    Descriptor descriptor(signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC));
    if (!descriptor.valid()) throw std::runtime_error("can't wait for signals");
    return descriptor;
}

bool is_wildcard(const std::string& host)
{
    return host == "0.0.0.0" || host == "::";
}

// The host to name to clients. Where the socket is bound to all addresses, the machine's name is.
std::string advertised_host(const Options& options, const Address& bound)
{
    if (!options.advertise.empty()) return options.advertise;
    if (!is_wildcard(bound.host)) return bound.host;
    char name[256] = "";
    if (gethostname(name, sizeof name - 1) != 0 || name[0] == '\0') return "localhost";
    return name;
}

// The interfaces that a server names: what clients of today speak, and for them to pass over, one older than
// that and one newer.
std::vector<std::string> interface_rows(const std::string& http_url, const std::string& https_url)
{
    const std::string& any_url = https_url.empty() ? http_url : https_url;
    const std::string type = https_url.empty() ? "http" : "https";
    std::vector<std::string> rows;
    rows.push_back("11;1;1;" + type + ";" + any_url);
    if (!http_url.empty()) rows.push_back("11;1;2;http;" + http_url);
    if (!https_url.empty()) rows.push_back("11;1;2;https;" + https_url);
    rows.push_back("11;2;0;" + type + ";" + any_url);
    return rows;
}

struct Front {
    std::vector<Listener> listeners;
    std::vector<std::string> urls; // as they are bound
    std::vector<std::string> interfaces;
    std::string authority; // in PEM; empty if none was made
};

// With the user's own identity, if there is one.
Front open_front(const Options& options, std::optional<TlsIdentity> identity)
{
    Front front;
    std::string http_url;
    std::string https_url;
    if (options.http) {
        Descriptor socket = listen_on(*options.http);
        const Address bound = address_of(socket.get());
        front.urls.push_back("http://" + to_string(bound));
        http_url = "http://" + to_string({advertised_host(options, bound), bound.port});
        front.listeners.push_back({std::move(socket), std::nullopt});
    }
    if (options.https) {
        Descriptor socket = listen_on(*options.https);
        const Address bound = address_of(socket.get());
        const std::string host = advertised_host(options, bound);
        front.urls.push_back("https://" + to_string(bound));
        https_url = "https://" + to_string({host, bound.port});
        if (!identity) {
            MadeTlsIdentity made = make_tls_identity({host, bound.host});
            identity = std::move(made.identity);
            front.authority = std::move(made.authority);
        }
        front.listeners.push_back({std::move(socket), std::move(identity), options.newest_tls});
    }
    front.interfaces = interface_rows(http_url, https_url);
    return front;
}

void simulate(const Options& options)
{
    const Scenario scenario = options.scenario.empty() ? default_scenario() : load_scenario(options.scenario);
    std::optional<TlsIdentity> identity;
    if (!options.certificate.empty()) identity = read_identity(options.certificate, options.key);
    const Descriptor stop_signals = take_stop_signals();
    Front front = open_front(options, std::move(identity));
    CurrentModel model(scenario, front.interfaces, options.credential);
    Interference interference(options.troubles);
    RequestLog log(options.verbose);
    Recorder recorder(options.credential);
    std::optional<DumpFolder> dump;
    if (!options.dump.empty()) dump.emplace(options.dump);
    const Backend backend{model, interference, log, recorder, options.text_encoding, dump ? &*dump : nullptr};
    const Handler soap = [&backend](const Request& request) { return serve_request(backend, request); };
    Server server(std::move(front.listeners), {{"POST", "", soap}}, options.threads, log, stop_signals.get(),
                  [&interference] { interference.stop(); });

    if (!options.ca_out.empty()) write_ca_file(options.ca_out, front.authority);
    for (const std::string& url : front.urls) std::cout << url << '\n';
    std::cout << "ready" << std::endl;
    if (server.run()) return;
    // A handler is still at work, and what it works on must not be taken down under it.
    log.tell_dropped();
    std::_Exit(0);
}

} // namespace
} // namespace soapwrapper::simulator

int main(int argc, char** argv)
{
    using namespace soapwrapper::simulator;
    const CommandLine command_line = parse_command_line({argv + 1, argv + argc});
    if (!command_line.options) {
        (command_line.exit_code == 0 ? std::cout : std::cerr) << command_line.text;
        return command_line.exit_code;
    }
    try {
        const std::string& checked = command_line.options->checked_scenario;
        if (!checked.empty()) return report_on_scenario(checked, std::cout);
        simulate(*command_line.options);
        return 0;
    } catch (const ScenarioError& trouble) {
        std::cerr << "soapwrapper-sim: " << trouble.what() << '\n';
        return kExitUsage;
    } catch (const IdentityError& trouble) {
        std::cerr << "soapwrapper-sim: " << trouble.what() << '\n';
        return kExitUsage;
    } catch (const std::exception& trouble) {
        std::cerr << "soapwrapper-sim: " << trouble.what() << '\n';
        return kExitStartFailed;
    }
}
