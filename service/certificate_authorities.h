#ifndef SOAPWRAPPER_SERVICE_CERTIFICATE_AUTHORITIES_H
#define SOAPWRAPPER_SERVICE_CERTIFICATE_AUTHORITIES_H

#include <openssl/types.h>
#include <openssl/x509_vfy.h>

#include <memory>

namespace soapwrapper
{

struct FreeAuthorities {
    void operator()(X509_STORE* store) const { X509_STORE_free(store); }
};
using AuthorityStore = std::unique_ptr<X509_STORE, FreeAuthorities>;

// The certificates of a PEM file; what else stands between them is passed over. Null if it isn't a regular
// file of a size within reason, can't be read, holds no certificate, or one that can't be understood.
AuthorityStore read_authorities(const char* path);

} // namespace soapwrapper

#endif
