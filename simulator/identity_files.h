// The certificate and the key that the user has.
#ifndef SOAPWRAPPER_SIMULATOR_IDENTITY_FILES_H
#define SOAPWRAPPER_SIMULATOR_IDENTITY_FILES_H

#include "simulator/front/tls_identity.h"

#include <stdexcept>
#include <string>

namespace soapwrapper::simulator
{

// Says which option's file is wrong, and how.
class IdentityError : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

// From PEM files: the certificate with the chain behind it, and its key. Throws an IdentityError.
TlsIdentity read_identity(const std::string& certificate_file, const std::string& key_file);

} // namespace soapwrapper::simulator

#endif
