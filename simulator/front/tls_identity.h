// The simulator's TLS identity, and how one is made at the start that is kept in memory only.
#ifndef SOAPWRAPPER_SIMULATOR_FRONT_TLS_IDENTITY_H
#define SOAPWRAPPER_SIMULATOR_FRONT_TLS_IDENTITY_H

#include "simulator/front/secret_text.h"

#include <string>
#include <vector>

namespace soapwrapper::simulator
{

// In PEM.
struct TlsIdentity {
    std::string certificate; // and whatever certificates are sent behind it
    SecretText key;
};

// One that was made here, and the certificate, in PEM, of the authority that signed it.
struct MadeTlsIdentity {
    TlsIdentity identity;
    std::string authority;
};

// A fresh key on P-256 and a certificate, signed by an authority that signs nothing else, for the hosts,
// which are names or addresses, and for those of the loopback. The first host is its common name. Throws a
// std::runtime_error.
MadeTlsIdentity make_tls_identity(const std::vector<std::string>& hosts);

} // namespace soapwrapper::simulator

#endif
