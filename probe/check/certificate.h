// Certificates, as people read them.
#ifndef SOAPWRAPPER_PROBE_CHECK_CERTIFICATE_H
#define SOAPWRAPPER_PROBE_CHECK_CERTIFICATE_H

#include <openssl/types.h>

#include <memory>
#include <string>
#include <vector>

namespace soapwrapper::probe
{

struct FreeCertificates {
    void operator()(X509* certificate) const;
    void operator()(X509_STORE* store) const;
};
using Certificate = std::unique_ptr<X509, FreeCertificates>;
using CertificateStore = std::unique_ptr<X509_STORE, FreeCertificates>;

struct CertificateText {
    std::string subject;
    std::string issuer;
    std::string alternatives; // the names and addresses that it is for, with commas; may be empty
    std::string from;         // dates
    std::string until;
    long days_left = 0; // below 0: it has expired
    bool expired = false;
    bool not_yet_valid = false;
    bool signed_by_itself = false;
};

CertificateText text_of(X509* certificate);

// A file with certificates, read as the library reads it.
struct Authorities {
    std::string fault; // why the library can't follow it; empty: it can
    CertificateStore store;
    std::vector<CertificateText> certificates;
};

Authorities read_authorities_file(const std::string& path);

} // namespace soapwrapper::probe

#endif
