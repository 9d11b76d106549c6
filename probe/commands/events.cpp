#include "plugin/host/event_records.h"
#include "plugin/host/handles.h"
#include "plugin/host/host_records.h"
#include "plugin/host/status.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/commands/command.h"
#include "probe/events/event_channel.h"
#include "probe/events/event_report.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/lists/list_reader.h"
#include "probe/login/server_login.h"
#include "probe/output/problem.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace soapwrapper::probe
{
namespace
{

using std::chrono::milliseconds;

constexpr milliseconds kFirstPause{200};
constexpr milliseconds kLongestPause{5000};

struct EventsOptions : ServerArguments {
    std::int32_t from = 0;
    bool follow = false;
    bool deletes = false;
    int end_status = STS_ENOENT;
};

bool ends_with(const std::string& text, const std::string& end)
{
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// Reads a channel, event by event.
class Reader
{
  public:
    Reader(const Probe& probe, const EventsOptions& options, const EventChannel& channel,
           stsp_server_t* server)
        : probe_(probe), options_(options), channel_(channel), server_(server)
    {
    }

    // To the end of the channel, or to an interruption: the result says that it was one.
    bool read()
    {
        milliseconds pause = kFirstPause;
        while (!probe_.interruption.requested()) {
            if (take()) {
                pause = kFirstPause;
                continue;
            }
            if (!options_.follow) return false;
            probe_.interruption.pause(pause);
            pause = std::min(2 * pause, kLongestPause);
        }
        return true;
    }

  private:
    // False: there is no event at present.
    bool take()
    {
        event_ = ReadEvent();
        const int status = channel_.next(event_.record);
        if (status == options_.end_status) return false;
        check(status);
        const bool whole = !event_.is_detached_activity() || fetch();
        show_event(probe_.output, event_);
        probe_.output.deliver(); // what nobody has seen isn't deleted
        if (options_.deletes && whole) delete_event();
        return true;
    }

    void check(int status)
    {
        const auto problem = problem_of(probe_, status);
        if (problem) {
            // The channel goes on behind an event of a kind that was made later than the library.
            const std::string said = probe_.session.last_failure();
            event_.is_known = !ends_with(said, "Unrecognized inline event type") &&
                              !ends_with(said, "Unrecognized detached event type");
            if (event_.is_known) throw Problem(*problem);
        }
        repeats_ = event_.record.seqno == last_ ? repeats_ + 1 : 0;
        last_ = event_.record.seqno;
        if (repeats_ > kMostRepeats) {
            throw Problem(ExitCode::kOperation, "endless list", std::nullopt,
                          "the service gave the same event more than " + std::to_string(kMostRepeats) +
                              " times over");
        }
    }

    // Another reader may have deleted the event by now: that is no reason to stop. False: there is nothing.
    bool fetch()
    {
        sts_event_v11_t asked = event_.record;
        asked.detached_kind = STS_DETACHED_ACTIVITY_PAYLOAD; // by this number alone the payload is brought
        const auto problem =
            clean_up(probe_, slot::stspi_get_event_payload, server_, &event_.activity, &asked);
        event_.has_activity = !problem;
        if (!problem) return true;
        const auto status = problem->status();
        if (!status || status == STS_ESOAPERROR || status == STS_EFAULTDETAIL) throw Problem(*problem);
        warn("the payload of event " + std::to_string(event_.record.seqno) + " could not be fetched",
             *problem);
        return false;
    }

    void delete_event()
    {
        const auto problem = clean_up(probe_, slot::stspi_delete_event, server_, &event_.record);
        if (problem) throw Problem(*problem);
    }

    const Probe& probe_;
    const EventsOptions& options_;
    const EventChannel& channel_;
    stsp_server_t* const server_;
    ReadEvent event_;
    std::int64_t last_ = 0;
    std::size_t repeats_ = 0;
};

// As Reader::read(): a call that was cut for an interruption is one, too.
bool read_events(const Probe& probe, const EventsOptions& options, const EventChannel& channel,
                 stsp_server_t* server)
{
    try {
        return Reader(probe, options, channel, server).read();
    } catch (const Problem& problem) {
        if (problem.code() != ExitCode::kInterrupted) throw;
        return true;
    }
}

void show_events(const Probe& probe, const EventsOptions& options)
{
    probe.library.entry(slot::stspi_get_event_payload);
    if (options.deletes) probe.library.entry(slot::stspi_delete_event);
    EventChannel channel(probe);
    ServerLogin login(probe, options.name, options.login, [&](const sts_cred_t* credential) {
        channel.open(options.name, credential, options.login.required_interface, options.from);
    });
    const bool interrupted = read_events(probe, options, channel, login.handle());
    channel.close();
    login.close();
    // Nothing else than a signal ends the following, so that it is good.
    if (!interrupted || (options.follow && probe.interruption.take_as_good_end())) return;
    throw probe.interruption.problem("not all events were read");
}

} // namespace

void add_events_command(const Command& program, Run& run)
{
    const Command command = program.add_subcommand("events", "Show the events of a server");
    auto options = std::make_shared<EventsOptions>();
    add_server_arguments(command, *options);
    command.add_option("--from", options->from, "Number of the first event to show")
        .type_name("SEQNO")
        .capture_default_str();
    command.add_flag("--follow", options->follow,
                     "At the end wait for more, until a signal, which is then a good end");
    command.add_flag("--delete", options->deletes, "Delete each event once it was shown");
    add_end_status_option(command, options->end_status);
    set_footer(command, "events Network_storage:filer1.example.com --follow");
    command.callback(chosen(run, options, show_events, JsonForm::kLines));
}

} // namespace soapwrapper::probe
