#include "simulator/listening.h"

#include "simulator/front/address.h"
#include "simulator/front/descriptor.h"
#include "simulator/front/entrance.h"
#include "simulator/front/http.h"
#include "simulator/front/tls_identity.h"
#include "simulator/front/tls_version.h"
#include "simulator/options.h"

#include <unistd.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

bool is_wildcard(const std::string& host)
{
    return host == "0.0.0.0" || host == "::";
}

// Empty if it has none.
std::string machine_name()
{
    char name[256] = "";
    return gethostname(name, sizeof name - 1) == 0 ? name : "";
}

// The host to name to clients. Where the socket is bound to all addresses, the machine's name is.
std::string advertised_host(const Options& options, const Address& bound)
{
    if (!options.advertise.empty()) return options.advertise;
    if (!is_wildcard(bound.host)) return bound.host;
    const std::string name = machine_name();
    return name.empty() ? "localhost" : name;
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

Listener plain(Descriptor socket, Serves serves)
{
    return {std::move(socket), std::nullopt, TlsVersion::kTls13, serves};
}

} // namespace

Listening listen(const Options& options, std::optional<TlsIdentity> identity)
{
    Listening listening;
    // People have an address of their own, or come in where hosts do.
    const Serves serves = options.page ? Serves::kHosts : Serves::kHostsAndPeopleOnLoopback;
    if (options.http) {
        Descriptor socket = listen_on(*options.http);
        const Address bound = address_of(socket.get());
        listening.urls.push_back("http://" + to_string(bound));
        listening.http_url = "http://" + to_string({advertised_host(options, bound), bound.port});
        listening.listeners.push_back(plain(std::move(socket), serves));
    }
    if (options.https) {
        Descriptor socket = listen_on(*options.https);
        const Address bound = address_of(socket.get());
        const std::string host = advertised_host(options, bound);
        listening.urls.push_back("https://" + to_string(bound));
        listening.https_url = "https://" + to_string({host, bound.port});
        if (!identity) {
            MadeTlsIdentity made = make_tls_identity({host, bound.host});
            identity = std::move(made.identity);
            listening.authority = std::move(made.authority);
        }
        listening.listeners.push_back({std::move(socket), std::move(identity), options.newest_tls, serves});
    }
    if (options.page) {
        Descriptor socket = listen_on(*options.page);
        listening.page_url = "http://" + to_string(address_of(socket.get()));
        listening.listeners.push_back(plain(std::move(socket), Serves::kPeople));
    }
    listening.interfaces = interface_rows(listening.http_url, listening.https_url);
    return listening;
}

std::vector<std::string> names_for_people(const Options& options)
{
    std::vector<std::string> names;
    if (options.page) names.push_back(options.page->host);
    for (const std::string& name : {options.advertise, machine_name()}) {
        if (!name.empty()) names.push_back(name);
    }
    return names;
}

} // namespace soapwrapper::simulator
