// The simulator's TLS identity, made at the start and kept in memory only.
#ifndef SOAPWRAPPER_SIMULATOR_FRONT_TLS_IDENTITY_H
#define SOAPWRAPPER_SIMULATOR_FRONT_TLS_IDENTITY_H

#include <string>

namespace soapwrapper::simulator
{

// In PEM.
struct TlsIdentity {
    std::string certificate;
    std::string key;
};

// A fresh key on P-256 and a certificate, signed by itself, for the host and for the names of the loopback.
// Throws a std::runtime_error.
TlsIdentity make_tls_identity(const std::string& host);

} // namespace soapwrapper::simulator

#endif
