// Where the simulator listens, and what it tells clients of that.
#ifndef SOAPWRAPPER_SIMULATOR_LISTENING_H
#define SOAPWRAPPER_SIMULATOR_LISTENING_H

#include "simulator/front/entrance.h"
#include "simulator/front/tls_identity.h"
#include "simulator/options.h"

#include <optional>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

struct Listening {
    std::vector<Listener> listeners;
    std::vector<std::string> urls; // of the service, as it is bound
    std::string page_url;          // empty, unless people have an address of their own
    // Of the service, as clients are told them; empty: it isn't served there.
    std::string http_url;
    std::string https_url;
    std::vector<std::string> interfaces; // that a server names
    std::string authority;               // in PEM; empty if none was made
};

// With the user's own identity, if there is one. Throws a std::runtime_error with a text for the user.
Listening listen(const Options& options, std::optional<TlsIdentity> identity);

// The names, besides "localhost", that people may have the simulator go by.
std::vector<std::string> names_for_people(const Options& options);

} // namespace soapwrapper::simulator

#endif
