#include "probe/check/certificate.h"

#include "probe/check/regular_file.h"

#include <openssl/asn1.h>
#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/pemerr.h>
#include <openssl/x509.h>
#include <openssl/x509_vfy.h>
#include <openssl/x509v3.h>
#include <sys/types.h>
#include <time.h>

#include <cstdio>
#include <memory>
#include <string>

namespace soapwrapper::probe
{
namespace
{

constexpr off_t kLargestFile = 16 << 20;
constexpr int kMostAlternatives = 20;

struct FreeParts {
    void operator()(BIO* text) const { BIO_free_all(text); }
    void operator()(GENERAL_NAMES* names) const { GENERAL_NAMES_free(names); }
};
using Bio = std::unique_ptr<BIO, FreeParts>;
using Names = std::unique_ptr<GENERAL_NAMES, FreeParts>;

std::string content_of(const Bio& memory)
{
    char* bytes = nullptr;
    const long size = BIO_get_mem_data(memory.get(), &bytes);
    return size > 0 ? std::string(bytes, static_cast<std::size_t>(size)) : std::string();
}

std::string text_of_name(const X509_NAME* name)
{
    const Bio text(BIO_new(BIO_s_mem()));
    if (!text || !name) return {};
    X509_NAME_print_ex(text.get(), name, 0,
                       (XN_FLAG_ONELINE | XN_FLAG_SEP_COMMA_PLUS) & ~XN_FLAG_SPC_EQ & ~ASN1_STRFLGS_ESC_MSB);
    return content_of(text);
}

std::string alternatives_of(const X509* certificate)
{
    const Names names(
        static_cast<GENERAL_NAMES*>(X509_get_ext_d2i(certificate, NID_subject_alt_name, nullptr, nullptr)));
    const Bio text(BIO_new(BIO_s_mem()));
    if (!names || !text) return {};
    const int count = sk_GENERAL_NAME_num(names.get());
    for (int i = 0; i < count && i < kMostAlternatives; ++i) {
        if (i > 0) BIO_puts(text.get(), ", ");
        GENERAL_NAME_print(text.get(), sk_GENERAL_NAME_value(names.get(), i));
    }
    if (count > kMostAlternatives) BIO_puts(text.get(), ", ...");
    return content_of(text);
}

std::string date_of(const ASN1_TIME* time)
{
    tm parts = {};
    char text[sizeof "2026-01-12T00:00:00Z  "] = "";
    if (ASN1_TIME_to_tm(time, &parts) != 1) return "?";
    return strftime(text, sizeof text, "%Y-%m-%d", &parts) > 0 ? text : "?";
}

// The TLS library would ask for a password on the terminal.
int refuse_password(char* /*buffer*/, int /*size*/, int /*writing*/, void* /*context*/)
{
    return -1;
}

bool ended_at_the_end()
{
    const unsigned long error = ERR_peek_last_error();
    return ERR_GET_LIB(error) == ERR_LIB_PEM && ERR_GET_REASON(error) == PEM_R_NO_START_LINE;
}

void add_all(Authorities& authorities, BIO* text)
{
    for (;;) {
        const Certificate certificate(PEM_read_bio_X509_AUX(text, nullptr, refuse_password, nullptr));
        if (!certificate) break;
        if (X509_STORE_add_cert(authorities.store.get(), certificate.get()) != 1) {
            authorities.fault = "it holds a certificate that cannot be used";
            return;
        }
        authorities.certificates.push_back(text_of(certificate.get()));
    }
    if (!ended_at_the_end()) {
        authorities.fault =
            "it is broken behind " + std::to_string(authorities.certificates.size()) + " certificates";
    } else if (authorities.certificates.empty()) {
        authorities.fault = "it holds no certificate";
    }
}

} // namespace

void FreeCertificates::operator()(X509* certificate) const
{
    X509_free(certificate);
}

void FreeCertificates::operator()(X509_STORE* store) const
{
    X509_STORE_free(store);
}

CertificateText text_of(X509* certificate)
{
    CertificateText text;
    text.subject = text_of_name(X509_get_subject_name(certificate));
    text.issuer = text_of_name(X509_get_issuer_name(certificate));
    text.alternatives = alternatives_of(certificate);
    const ASN1_TIME* const until = X509_get0_notAfter(certificate);
    text.from = date_of(X509_get0_notBefore(certificate));
    text.until = date_of(until);
    int days = 0;
    int seconds = 0;
    if (ASN1_TIME_diff(&days, &seconds, nullptr, until) == 1) {
        text.days_left = days;
        text.expired = days < 0 || seconds < 0;
    }
    text.not_yet_valid = X509_cmp_current_time(X509_get0_notBefore(certificate)) > 0;
    text.signed_by_itself = X509_check_issued(certificate, certificate) == X509_V_OK;
    return text;
}

Authorities read_authorities_file(const std::string& path)
{
    Authorities authorities;
    const RegularFile file = open_regular(path, kLargestFile);
    authorities.fault = file.fault;
    if (!file.stream) return authorities;
    ERR_clear_error();
    authorities.store.reset(X509_STORE_new());
    const Bio text(BIO_new_fp(file.stream.get(), BIO_NOCLOSE));
    if (text && authorities.store) {
        add_all(authorities, text.get());
    } else {
        authorities.fault = "there is no memory for it";
    }
    if (std::ferror(file.stream.get()) != 0) authorities.fault = "it cannot be read to its end";
    ERR_clear_error();
    if (!authorities.fault.empty()) authorities.store.reset();
    return authorities;
}

} // namespace soapwrapper::probe
