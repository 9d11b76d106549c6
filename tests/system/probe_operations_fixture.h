// A scripted service with long operations, and the probe to start and follow them.
#ifndef SOAPWRAPPER_TESTS_SYSTEM_PROBE_OPERATIONS_FIXTURE_H
#define SOAPWRAPPER_TESTS_SYSTEM_PROBE_OPERATIONS_FIXTURE_H

#include "probe_catalogue_fixture.h"

#include <csignal>
#include <future>
#include <string>
#include <utility>
#include <vector>

// How a long operation stands.
struct Standing {
    int error = 0;
    int retry_interval = 0;
    long bytes = 0;
};

class ProbeOperationsTest : public ProbeCatalogueTest
{
  protected:
    static constexpr int kBusy = 2060005;
    static constexpr char kWithId[] = "asyncWaitSnap";
    static constexpr char kWithName[] = "namedAsyncWaitSnap";

    ProbeOperationsTest()
    {
        for (const char* kind : {"CreateSnapByName", "PrepareSnapByName", "ValidateSnapByName",
                                 "CopySnapByName", "ImportSnapByName", "PostProcessSnapByName",
                                 "RollbackSnap", "ProvisionTopology", "GetSnapDiff"}) {
            service.answer(std::string("async") + kind, element("opid", element("token", "OP-1")));
            service.answer(std::string("namedAsync") + kind, "");
        }
        service.answer("asyncCancel", "");
    }

    // What a wait is answered: how the operation stands, and the result that it has, if any.
    static std::string standing(const Standing& how, const std::string& result = {})
    {
        return element("result", element("totalBytesTransferred", std::to_string(how.bytes)) +
                                     element("error", std::to_string(how.error)) +
                                     element("retryInterval", std::to_string(how.retry_interval)) +
                                     element("resultSnapType", "0") + result);
    }

    static std::string busy(long bytes = 0) { return standing({kBusy, 0, bytes}); }

    static std::string made_snapshot(const std::string& arm)
    {
        return element(arm, element("targetSnapName", "nightly.0") +
                                element("targetSnapLsu",
                                        element("server", "Network_store:filer") + element("lsu", "vol1")));
    }

    static std::string topology(const std::string& arm)
    {
        return element(arm, element("targetTopology", "mirror\nof vol1"));
    }

    // Both waits find the operation ended.
    void answer_waits(const std::string& result, const Standing& how = {})
    {
        for (const char* wait : {kWithId, kWithName}) service.answer(wait, standing(how, result));
    }

    // Runs the probe; `signal` is sent to it when an operation is asked for so many times, ahead of the
    // answer.
    ProcessResult run_and_signal(std::vector<std::string> arguments, const std::string& operation, long times,
                                 int signal = SIGINT, const Process::Streams& streams = Process::Streams())
    {
        std::promise<pid_t> id;
        std::shared_future<pid_t> known = id.get_future().share();
        service.watch([=](const std::string& asked, long times_asked) {
            if (asked == operation && times_asked == times) kill(known.get(), signal);
        });
        Process process(PROBE_PROGRAM, complete(std::move(arguments)), kCredential, streams);
        id.set_value(process.id());
        return process.finish();
    }

    // Runs the probe with a terminal for its standard error.
    ProcessResult run_on_terminal(std::vector<std::string> arguments)
    {
        Process::Streams streams;
        streams.terminal_for_err = true;
        return Process(PROBE_PROGRAM, complete(std::move(arguments)), kCredential, streams).finish();
    }

    std::vector<std::string> complete(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.end(), {"--no-discover", "--library", PROBE_LIBRARY, "--plugin-path",
                                           (folder / "libsoapwrapper.so").string()});
        return arguments;
    }

    const std::map<std::string, std::string> kCredential = {{"SOAPWRAPPER_CREDENTIAL", "open sesame"}};
    const std::vector<std::string> kCreate = {"snapshot",  "create",   kName,
                                              "nightly.0", "--volume", "nfs:filer:/vol/vol1"};
};

#endif
