#include "service/certificate_authorities.h"

#include "plugin/base/file.h"

#include <fcntl.h>
#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/pemerr.h>
#include <openssl/types.h>
#include <openssl/x509.h>
#include <openssl/x509_vfy.h>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <utility>

namespace soapwrapper
{
namespace
{

constexpr off_t kLargestFile = 16 << 20;

using Bio = std::unique_ptr<BIO, decltype(&BIO_free_all)>;
using Certificate = std::unique_ptr<X509, decltype(&X509_free)>;

// A pipe would have the host wait for somebody to write, a device never end.
File open_regular(const char* path)
{
    const int descriptor = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) return nullptr;
    struct stat found = {};
    const bool fits =
        fstat(descriptor, &found) == 0 && S_ISREG(found.st_mode) && found.st_size <= kLargestFile;
    std::FILE* file = fits ? fdopen(descriptor, "r") : nullptr;
    if (!file) close(descriptor);
    return File(file);
}

// The TLS library would ask for a password on the host's terminal.
int refuse_password(char* /*buffer*/, int /*size*/, int /*writing*/, void* /*context*/)
{
    return -1;
}

bool ended_at_the_end()
{
    const unsigned long error = ERR_peek_last_error();
    return ERR_GET_LIB(error) == ERR_LIB_PEM && ERR_GET_REASON(error) == PEM_R_NO_START_LINE;
}

// How many certificates were added, or below 0 if one of them couldn't be.
int add_all(X509_STORE* store, BIO* text)
{
    for (int count = 0;; ++count) {
        const Certificate certificate(PEM_read_bio_X509_AUX(text, nullptr, refuse_password, nullptr),
                                      X509_free);
        if (!certificate) return ended_at_the_end() ? count : -1;
        if (X509_STORE_add_cert(store, certificate.get()) != 1) return -1;
    }
}

} // namespace

AuthorityStore read_authorities(const char* path)
{
    const File file = open_regular(path);
    if (!file) return nullptr;
    ERR_clear_error();
    const Bio text(BIO_new_fp(file.get(), BIO_NOCLOSE), BIO_free_all);
    AuthorityStore store(X509_STORE_new());
    const bool good = text && store && add_all(store.get(), text.get()) > 0 && std::ferror(file.get()) == 0;
    ERR_clear_error();
    return good ? std::move(store) : nullptr;
}

} // namespace soapwrapper
