// What a service shows of itself over TLS, by a handshake of the probe's own.
#ifndef SOAPWRAPPER_PROBE_CHECK_TLS_LOOK_H
#define SOAPWRAPPER_PROBE_CHECK_TLS_LOOK_H

#include "probe/check/certificate.h"
#include "probe/check/connection.h"

#include <openssl/types.h>

#include <string>
#include <vector>

namespace soapwrapper::probe
{

struct TlsRules {
    int oldest_version = 0;            // as the TLS library numbers it
    X509_STORE* authorities = nullptr; // null: those of the system
};

struct TlsLook {
    std::string failure; // of the handshake; empty: it succeeded
    std::string version;
    std::string cipher;
    std::vector<CertificateText> chain; // as the service sends it, its own first; the first few
    std::string untrusted;              // why a check of the certificate fails; empty: it passes
};

// Shakes hands as the library does, but for a certificate that isn't good: that is told and not refused.
TlsLook look_at_tls(const Socket& socket, const std::string& host, const TlsRules& rules, TimeLimit limit);

} // namespace soapwrapper::probe

#endif
