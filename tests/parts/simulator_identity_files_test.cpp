// The certificate and the key that the simulator reads from files.
#include "simulator/front/pem.h"
#include "simulator/front/secret_text.h"
#include "simulator/front/tls_identity.h"
#include "simulator/identity_files.h"
#include "tests/system/probe_process.h"

#include <gmock/gmock.h>
#include <openssl/pem.h>

#include <sys/stat.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace
{

using namespace soapwrapper::simulator;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class SimulatorIdentityFiles : public testing::Test
{
  protected:
    // What is wrong with these files; empty if nothing is.
    static std::string trouble(const std::string& certificate, const std::string& key)
    {
        try {
            read_identity(certificate, key);
            return {};
        } catch (const IdentityError& error) {
            return error.what();
        }
    }
    std::string trouble_with_certificate(const std::string& file) const { return trouble(file, key_); }
    std::string trouble_with_key(const std::string& file) const { return trouble(certificate_, file); }

    const TemporaryFolder folder_;
    MadeTlsIdentity made_ = make_tls_identity({"localhost"});
    const std::string key_text_{made_.identity.key.view()};
    const std::string certificate_ = folder_.write("certificate.pem", made_.identity.certificate);
    const std::string key_ = folder_.write("key.pem", key_text_);
};

Key key_of(const char* algorithm, const char* curve = nullptr)
{
    return {curve ? EVP_PKEY_Q_keygen(nullptr, nullptr, algorithm, curve)
                  : EVP_PKEY_Q_keygen(nullptr, nullptr, algorithm),
            EVP_PKEY_free};
}

// A certificate that signs itself.
std::string certificate_for(const Key& key)
{
    const Certificate certificate(X509_new(), X509_free);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), 0);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 60);
    X509_set_pubkey(certificate.get(), key.get());
    char digest[64] = "";
    X509_sign(certificate.get(), key.get(),
              EVP_PKEY_get_default_digest_name(key.get(), digest, sizeof digest) == 2 ? nullptr
                                                                                      : EVP_sha256());
    return pem_of(certificate);
}

std::string encrypted(const std::string& pem, bool in_the_old_format)
{
    const Bio reader(BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size())), BIO_free_all);
    const Key key(PEM_read_bio_PrivateKey(reader.get(), nullptr, nullptr, nullptr), EVP_PKEY_free);
    const Bio writer(BIO_new(BIO_s_mem()), BIO_free_all);
    const auto write = in_the_old_format ? PEM_write_bio_PrivateKey_traditional : PEM_write_bio_PrivateKey;
    const unsigned char password[] = "x";
    write(writer.get(), key.get(), EVP_aes_128_cbc(), password, 1, nullptr, nullptr);
    char* text = nullptr;
    const long size = BIO_get_mem_data(writer.get(), &text);
    return {text, static_cast<std::size_t>(size)};
}

TEST_F(SimulatorIdentityFiles, AreReadWithTheChainInItsOrder)
{
    const std::string chain = made_.identity.certificate + made_.authority;
    const TlsIdentity read = read_identity(folder_.write("chain.pem", "a remark\n" + chain), key_);
    EXPECT_EQ(read.certificate, chain);
    EXPECT_EQ(read.key.view(), key_text_);
}

TEST_F(SimulatorIdentityFiles, MayBeOneFile)
{
    const std::string both = folder_.write("both.pem", key_text_ + made_.identity.certificate);
    EXPECT_THAT(trouble(both, both), IsEmpty());
}

TEST_F(SimulatorIdentityFiles, ThatAreNoRegularFilesAreRefusedUnread)
{
    const std::string fifo = folder_ / "fifo";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    for (const std::string& file : {fifo, std::string(folder_ / ""), std::string("/dev/zero")}) {
        const std::string why = "\"" + file + "\" is no regular file";
        EXPECT_EQ(trouble_with_certificate(file), "--certificate: " + why);
        EXPECT_EQ(trouble_with_key(file), "--key: " + why);
    }
}

TEST_F(SimulatorIdentityFiles, ThatAreNotThereAreRefusedWithTheSystemsReason)
{
    const std::string missing = folder_ / "missing";
    const std::string why = "\"" + missing + "\" can't be read: No such file or directory";
    EXPECT_EQ(trouble_with_certificate(missing), "--certificate: " + why);
    EXPECT_EQ(trouble_with_key(missing), "--key: " + why);
}

TEST_F(SimulatorIdentityFiles, MayHave64KibAndNoMore)
{
    constexpr std::size_t kMost = 64 * 1024;
    const auto padded = [](const std::string& pem, std::size_t size) {
        return std::string(size - pem.size() - 1, '#') + "\n" + pem;
    };
    const std::string& certificate = made_.identity.certificate;
    EXPECT_THAT(trouble_with_certificate(folder_.write("a", padded(certificate, kMost))), IsEmpty());
    EXPECT_THAT(trouble_with_key(folder_.write("b", padded(key_text_, kMost))), IsEmpty());
    EXPECT_THAT(trouble_with_certificate(folder_.write("a", padded(certificate, kMost + 1))),
                HasSubstr("is larger than 65536 bytes"));
    EXPECT_THAT(trouble_with_key(folder_.write("b", padded(key_text_, kMost + 1))),
                HasSubstr("is larger than 65536 bytes"));
}

TEST_F(SimulatorIdentityFiles, WithoutWhatTheyAreForAreRefused)
{
    for (const std::string& text :
         {std::string(), std::string("\0\xff\n-----BEGIN", 12), std::string("text")}) {
        EXPECT_THAT(trouble_with_certificate(folder_.write("a", text)),
                    HasSubstr("holds no certificate in PEM"));
        EXPECT_THAT(trouble_with_key(folder_.write("b", text)), HasSubstr("holds no private key in PEM"));
    }
    EXPECT_THAT(trouble_with_certificate(key_), HasSubstr("holds no certificate in PEM"));
    EXPECT_THAT(trouble_with_key(certificate_), HasSubstr("holds no private key in PEM"));
}

TEST_F(SimulatorIdentityFiles, ThatAreCutOffOrBrokenAreRefused)
{
    const std::string& certificate = made_.identity.certificate;
    std::string broken = certificate;
    broken.replace(broken.find("\nMII"), 4, "\nMIX");
    for (const std::string& text :
         {broken, certificate + broken, certificate + certificate.substr(0, certificate.size() / 2)}) {
        EXPECT_THAT(trouble_with_certificate(folder_.write("a", text)),
                    HasSubstr("holds a certificate that can't be read"));
    }
    EXPECT_THAT(trouble_with_key(folder_.write("b", key_text_.substr(0, key_text_.size() / 2))),
                HasSubstr("holds no private key in PEM"));
}

TEST_F(SimulatorIdentityFiles, WithAnEncryptedKeyAreRefusedAndNobodyIsAsked)
{
    for (const bool in_the_old_format : {true, false}) {
        const std::string text = encrypted(key_text_, in_the_old_format);
        EXPECT_THAT(text, HasSubstr("ENCRYPTED"));
        const std::string file = folder_.write("encrypted.pem", text);
        EXPECT_EQ(trouble_with_key(file),
                  "--key: \"" + file + "\" is encrypted, and nobody is asked for its password");
    }
}

TEST_F(SimulatorIdentityFiles, WithAKeyOfAnotherCertificateAreRefused)
{
    const MadeTlsIdentity other = make_tls_identity({"localhost"});
    const std::string file = folder_.write("other.pem", std::string(other.identity.key.view()));
    EXPECT_EQ(trouble_with_key(file),
              "--key: \"" + file + "\" is not the key of the first certificate in \"" + certificate_ + "\"");
    const std::string wrong_order = folder_.write("a", made_.authority + made_.identity.certificate);
    EXPECT_THAT(trouble_with_certificate(wrong_order), StartsWith("--key: "));
}

TEST_F(SimulatorIdentityFiles, MayHoldAnyKindOfKeyThatTlsIsOftenGivenAndNoOther)
{
    const auto trouble_with = [this](const Key& key) {
        return trouble(folder_.write("a", certificate_for(key)),
                       folder_.write("b", std::string(pem_of(key).view())));
    };
    for (const char* curve : {"P-384", "P-521"})
        EXPECT_THAT(trouble_with(key_of("EC", curve)), IsEmpty()) << curve;
    EXPECT_THAT(trouble_with(key_of("ED25519")), IsEmpty());
    const Key rsa(EVP_PKEY_Q_keygen(nullptr, nullptr, "RSA", std::size_t{2048}), EVP_PKEY_free);
    EXPECT_THAT(trouble_with(rsa), IsEmpty());

    const std::string why = "holds a key that is neither RSA nor Ed25519 nor on P-256, P-384 or P-521";
    EXPECT_THAT(trouble_with(key_of("EC", "secp256k1")), HasSubstr(why));
    EXPECT_THAT(trouble_with(key_of("ED448")), HasSubstr(why));
    const Key spelt_out = key_of("EC", "P-256");
    EVP_PKEY_set_utf8_string_param(spelt_out.get(), "encoding", "explicit");
    EXPECT_THAT(trouble_with(spelt_out), HasSubstr(why));
}

TEST(SimulatorSecretText, IsWipedWithWhatItHasBeenCutOff)
{
    constexpr std::string_view kText = "a secret";
    SecretText text(kText);
    const char* bytes = text.data();
    const auto is_zero = [](char c) { return c == '\0'; };
    text.cut(3);
    EXPECT_EQ(text.view(), "a s");
    EXPECT_TRUE(std::all_of(bytes + 3, bytes + kText.size(), is_zero));
    text.wipe();
    EXPECT_THAT(text.view(), IsEmpty());
    EXPECT_TRUE(std::all_of(bytes, bytes + kText.size(), is_zero));
}

TEST(SimulatorSecretText, MovesWithoutACopy)
{
    SecretText text(std::string_view("short"));
    const char* bytes = text.data();
    SecretText moved = std::move(text);
    EXPECT_EQ(moved.data(), bytes);
    EXPECT_EQ(moved.view(), "short");
    EXPECT_THAT(text.view(), IsEmpty()); // NOLINT(bugprone-use-after-move)
}

} // namespace
