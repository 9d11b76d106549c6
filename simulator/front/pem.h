// Keys and certificates as objects of OpenSSL, and as the texts that files hold and the HTTP library takes.
#ifndef SOAPWRAPPER_SIMULATOR_FRONT_PEM_H
#define SOAPWRAPPER_SIMULATOR_FRONT_PEM_H

#include "simulator/front/secret_text.h"

#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/types.h>
#include <openssl/x509.h>

#include <memory>
#include <string>

namespace soapwrapper::simulator
{

using Bio = std::unique_ptr<BIO, decltype(&BIO_free_all)>;
using Certificate = std::unique_ptr<X509, decltype(&X509_free)>;
using Key = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;

// They throw a std::bad_alloc.
std::string pem_of(const Certificate& certificate);
SecretText pem_of(const Key& key); // not encrypted

} // namespace soapwrapper::simulator

#endif
