// The kinds of services, by how a session at them is resumed.
#ifndef SOAPWRAPPER_TESTS_KIT_RESUMPTION_KINDS_H
#define SOAPWRAPPER_TESTS_KIT_RESUMPTION_KINDS_H

#include "tests/kit/certificate.h"

#include <openssl/ssl.h>

#include <ostream>

namespace kit
{

struct ResumptionKind {
    const char* name;
    TlsContext (*make_context)();
    int version;
};

inline std::ostream& operator<<(std::ostream& out, const ResumptionKind& kind)
{
    return out << kind.name;
}

inline constexpr ResumptionKind kResumptionKinds[] = {
    {"Tls13ByTicket", [] { return make_tls_server_context(); }, TLS1_3_VERSION},
    {"Tls13ById", [] { return without_tickets(make_tls_server_context()); }, TLS1_3_VERSION},
    {"Tls12ByTicket", [] { return up_to_tls12(make_tls_server_context()); }, TLS1_2_VERSION},
    {"Tls12ById", [] { return without_tickets(up_to_tls12(make_tls_server_context())); }, TLS1_2_VERSION},
};

} // namespace kit

#endif
