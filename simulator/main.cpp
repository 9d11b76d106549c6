#include "messages/recording.h"
#include "messages/recording_reader.h"
#include "simulator/api/admission.h"
#include "simulator/api/api_context.h"
#include "simulator/api/changes.h"
#include "simulator/api/scenarios.h"
#include "simulator/ca_file.h"
#include "simulator/front/descriptor.h"
#include "simulator/front/request_log.h"
#include "simulator/front/server.h"
#include "simulator/front/tls_identity.h"
#include "simulator/identity_files.h"
#include "simulator/listening.h"
#include "simulator/options.h"
#include "simulator/replay/replay.h"
#include "simulator/replayed_file.h"
#include "simulator/routes.h"
#include "simulator/scenario/scenario_error.h"
#include "simulator/scenario_report.h"
#include "simulator/service/interference.h"
#include "simulator/service/service.h"
#include "simulator/storage/current_model.h"
#include "simulator/storage/token_table.h"
#include "simulator/traffic/dump_folder.h"
#include "simulator/traffic/recorder.h"

#include <sys/signalfd.h>

#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

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

// A request that is recorded is a change, and whoever is told of a change is told of the last request.
struct Traffic {
    explicit Traffic(const std::string& credential)
        : recorder(credential, [this] { changes.notify(); }),
          changes(new_token(), [this] { return recorder.last(); })
    {
    }

    Recorder recorder;
    Changes changes; // ends first, with the thread that asks the other
};

void announce_and_run(const Options& options, const Listening& listening, Server& server, RequestLog& log)
{
    if (!options.ca_out.empty()) write_ca_file(options.ca_out, listening.authority);
    for (const std::string& url : listening.urls) std::cout << url << '\n';
    if (!listening.page_url.empty()) std::cout << "page " << listening.page_url << '\n';
    std::cout << "ready" << std::endl;
    if (server.run()) return;
    // A handler is still at work, and what it works on must not be taken down under it.
    log.tell_dropped();
    std::_Exit(0);
}

void simulate(const Options& options)
{
    NamedScenario scenario = named_scenario(options.scenario);
    std::optional<TlsIdentity> identity;
    if (!options.certificate.empty()) identity = read_identity(options.certificate, options.key);
    const Descriptor stop_signals = take_stop_signals();
    Listening listening = listen(options, std::move(identity));
    CurrentModel model(scenario.scenario, listening.interfaces, options.credential);
    Scenarios scenarios(std::move(scenario), model);
    Interference interference(options.troubles);
    RequestLog log(options.verbose);
    Traffic traffic(options.credential);
    std::optional<DumpFolder> dump;
    if (!options.dump.empty()) dump.emplace(options.dump);
    const Backend backend{
        model, interference, log, traffic.recorder, options.text_encoding, dump ? &*dump : nullptr};
    const Api api{model, interference, traffic.recorder, scenarios, traffic.changes, listening.urls};
    const Admission admission(names_for_people(options));
    Server server(std::move(listening.listeners), routes_of(backend, api, admission), options.threads, log,
                  stop_signals.get(), [&interference] { interference.stop(); });
    announce_and_run(options, listening, server, log);
}

void replay(const Options& options)
{
    messages::Recording recording = recording_in_file(options.replay);
    std::optional<TlsIdentity> identity;
    if (!options.certificate.empty()) identity = read_identity(options.certificate, options.key);
    const Descriptor stop_signals = take_stop_signals();
    Listening listening = listen(options, std::move(identity));
    tell_of_recording(recording, std::cout, std::cerr);
    Replay replay(std::move(recording), {listening.http_url, listening.https_url}, options.replay_times);
    RequestLog log(options.verbose);
    Server server(std::move(listening.listeners), replay_routes(replay, log), options.threads, log,
                  stop_signals.get(), [&replay] { replay.stop(); });
    announce_and_run(options, listening, server, log);
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
        if (!command_line.options->replay.empty()) {
            replay(*command_line.options);
        } else {
            simulate(*command_line.options);
        }
        return 0;
    } catch (const ScenarioError& trouble) {
        std::cerr << "soapwrapper-sim: " << trouble.what() << '\n';
        return kExitUsage;
    } catch (const soapwrapper::messages::RecordingError& trouble) {
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
