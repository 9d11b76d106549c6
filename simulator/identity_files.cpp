#include "simulator/identity_files.h"

#include "simulator/front/descriptor.h"
#include "simulator/front/pem.h"
#include "simulator/front/secret_text.h"
#include "simulator/front/tls_identity.h"

#include <fcntl.h>
#include <openssl/bio.h>
#include <openssl/core_names.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/pemerr.h>
#include <openssl/types.h>
#include <openssl/x509.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

constexpr std::size_t kMaxFile = 64 * 1024;

struct NamedFile {
    const char* option;
    const std::string& path;
};

[[noreturn]] void refuse(const NamedFile& file, const std::string& why)
{
    throw IdentityError(std::string(file.option) + ": \"" + file.path + "\" " + why);
}

// Whatever is there doesn't keep the simulator waiting.
Descriptor open_regular(const NamedFile& file)
{
    Descriptor opened(open(file.path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status {
    };
    if (!opened.valid() || fstat(opened.get(), &status) != 0) {
        refuse(file, std::string("can't be read: ") + std::strerror(errno));
    }
    if (!S_ISREG(status.st_mode)) refuse(file, "is no regular file");
    return opened;
}

SecretText read_text(const NamedFile& file)
{
    const Descriptor opened = open_regular(file);
    SecretText text(kMaxFile + 1);
    std::size_t size = 0;
    while (size <= kMaxFile) {
        const ssize_t count = read(opened.get(), text.data() + size, kMaxFile + 1 - size);
        if (count == 0) break;
        if (count < 0 && errno != EINTR) refuse(file, std::string("can't be read: ") + std::strerror(errno));
        if (count > 0) size += static_cast<std::size_t>(count);
    }
    if (size > kMaxFile) refuse(file, "is larger than " + std::to_string(kMaxFile) + " bytes");
    text.cut(size);
    return text;
}

Bio reader_of(std::string_view text)
{
    return {BIO_new_mem_buf(text.data(), static_cast<int>(text.size())), BIO_free_all};
}

// In place of the library's own, which asks at the terminal.
int give_no_password(char*, int, int, void* asked)
{
    *static_cast<bool*>(asked) = true;
    return -1;
}

std::vector<Certificate> certificates_in(const NamedFile& file)
{
    const SecretText text = read_text(file);
    const Bio reader = reader_of(text.view());
    std::vector<Certificate> certificates;
    bool is_encrypted = false;
    while (X509* next = PEM_read_bio_X509(reader.get(), nullptr, give_no_password, &is_encrypted)) {
        certificates.emplace_back(next, X509_free);
    }
    const bool is_at_end = ERR_GET_REASON(ERR_peek_last_error()) == PEM_R_NO_START_LINE;
    ERR_clear_error();
    if (!is_at_end) refuse(file, "holds a certificate that can't be read");
    if (certificates.empty()) refuse(file, "holds no certificate in PEM");
    return certificates;
}

// The HTTP library would refuse any other without a reason.
bool is_for_tls(const Key& key)
{
    static constexpr std::string_view kCurves[] = {"prime256v1", "secp384r1", "secp521r1"};
    if (EVP_PKEY_is_a(key.get(), "RSA") == 1 || EVP_PKEY_is_a(key.get(), "ED25519") == 1) return true;
    const auto parameter = [&key](const char* name) {
        char value[64] = "";
        EVP_PKEY_get_utf8_string_param(key.get(), name, value, sizeof value, nullptr);
        return std::string(value);
    };
    return EVP_PKEY_is_a(key.get(), "EC") == 1 &&
           parameter(OSSL_PKEY_PARAM_EC_ENCODING) == OSSL_PKEY_EC_ENCODING_GROUP &&
           std::find(std::begin(kCurves), std::end(kCurves), parameter(OSSL_PKEY_PARAM_GROUP_NAME)) !=
               std::end(kCurves);
}

Key key_in(const NamedFile& file)
{
    const SecretText text = read_text(file);
    const Bio reader = reader_of(text.view());
    bool is_encrypted = false;
    Key key(PEM_read_bio_PrivateKey(reader.get(), nullptr, give_no_password, &is_encrypted), EVP_PKEY_free);
    ERR_clear_error();
    if (is_encrypted) refuse(file, "is encrypted, and nobody is asked for its password");
    if (!key) refuse(file, "holds no private key in PEM");
    if (!is_for_tls(key)) {
        refuse(file, "holds a key that is neither RSA nor Ed25519 nor on P-256, P-384 or P-521");
    }
    return key;
}

} // namespace

TlsIdentity read_identity(const std::string& certificate_file, const std::string& key_file)
{
    const std::vector<Certificate> chain = certificates_in({"--certificate", certificate_file});
    const NamedFile second{"--key", key_file};
    const Key key = key_in(second);
    const bool belongs = X509_check_private_key(chain.front().get(), key.get()) == 1;
    ERR_clear_error();
    if (!belongs) refuse(second, "is not the key of the first certificate in \"" + certificate_file + "\"");
    std::string certificates;
    for (const Certificate& each : chain) certificates += pem_of(each);
    return {certificates, pem_of(key)};
}

} // namespace soapwrapper::simulator
