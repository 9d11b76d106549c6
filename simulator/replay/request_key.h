// What a request of a replay is known by.
#ifndef SOAPWRAPPER_SIMULATOR_REPLAY_REQUEST_KEY_H
#define SOAPWRAPPER_SIMULATOR_REPLAY_REQUEST_KEY_H

#include <string>
#include <string_view>

namespace soapwrapper::simulator
{

struct RequestKey {
    std::string operation = "-"; // that, if there is none
    // The SOAP body without what differs from one run to the next: prefixes and attributes, what is secret
    // and what stands in its place, who asks (the elements `sd` and `cred`), tokens, and the host of a
    // server's name.
    std::string text;
};

// Of a request as it came, or as it was recorded.
RequestKey request_key(std::string_view body);

} // namespace soapwrapper::simulator

#endif
