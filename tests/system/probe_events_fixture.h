// A scripted service with an event channel, and the probe to read it.
#ifndef SOAPWRAPPER_TESTS_SYSTEM_PROBE_EVENTS_FIXTURE_H
#define SOAPWRAPPER_TESTS_SYSTEM_PROBE_EVENTS_FIXTURE_H

#include "probe_operations_fixture.h"

#include <string>
#include <vector>

using kit::number;

class ProbeEventsTest : public ProbeOperationsTest
{
  protected:
    ProbeEventsTest()
    {
        service.answer("openEventChannel", element("pevcHandle", element("token", "C-1")));
        service.answer("closeEventChannel", "");
        service.answer("deleteEvent", "");
        service.answer("getEventPayload", element("payload", activity("fetched")));
        service.refuse("getEvent", "nothing more", 2060013);
    }

    ProcessResult run_events(std::vector<std::string> options = {}) const
    {
        options.insert(options.begin(), {"events", kName});
        return run(options);
    }
    static std::vector<std::string> command(std::vector<std::string> options)
    {
        options.insert(options.begin(), {"events", kName});
        return options;
    }

    static std::string event(int seqno, int flags, int type, const std::string& body = {})
    {
        return element("event", number("seqno", seqno) + element("server", "S") + number("flags", flags) +
                                    number("type", type) + (body.empty() ? "" : element("body", body)));
    }
    static std::string operation(const std::string& name, int error = 0)
    {
        return element("op", element("name", name) +
                                 element("result", number("bytesTransferred", 12) + number("error", error)));
    }
    static std::string activity(const std::string& message)
    {
        return element("actv", number("version", 1) + number("action", 2) + element("eventset", "set") +
                                   number("time", 1000) + number("sev", 3) + element("vendorType", "vendor") +
                                   element("lsuName", "vol1") + element("dpaid", "app") +
                                   element("dpaver", "9") + number("dpaext", -4) +
                                   number("msgLen", static_cast<long>(message.size())) +
                                   element("msg", message));
    }
    void tell(const std::string& told) { service.answer_first("getEvent", told); }
    // Inline, of an operation of the name.
    void tell_operation(int seqno, const std::string& name) { tell(event(seqno, 2, 1, operation(name))); }

    // Both logins, the channel and what ends them, with this in between.
    using Operations = std::vector<std::string>;
    static Operations around(const Operations& inner)
    {
        return joined(inner, {"closeEventChannel", "closeServer", "closeServer"});
    }
    static Operations around_a_failure(const Operations& inner)
    {
        return joined(inner, {"closeServer", "closeEventChannel", "closeServer"});
    }

  private:
    static Operations joined(const Operations& inner, const Operations& ends)
    {
        Operations all = {"openServer", "openServer", "openEventChannel"};
        all.insert(all.end(), inner.begin(), inner.end());
        all.insert(all.end(), ends.begin(), ends.end());
        return all;
    }
};

#endif
