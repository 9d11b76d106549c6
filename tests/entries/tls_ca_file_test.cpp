// What the file may hold that tls_ca_file names, and what it comes to where it can't be used.
#include "tests/entries/checked_channel_fixture.h"

#include <fcntl.h>
#include <openssl/ui.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <memory>

using namespace kit;
using testing::ElementsAreArray;

namespace
{

class CaFile : public CheckedChannel
{
  protected:
    CaFile() { show(authority_.issue(for_address())); }
};

class UsableCaFile : public CaFile
{
};

// A file, and what tls_ca_file names where that isn't the file.
struct Unusable {
    const char* what;
    std::function<void(const Authority&, const std::filesystem::path&)> make;
    std::string name = "authorities.pem";
};

void PrintTo(const Unusable& unusable, std::ostream* out)
{
    *out << unusable.what;
}

class UnusableCaFile : public CaFile, public testing::WithParamInterface<Unusable>
{
  protected:
    void expect_nothing_is_sent()
    {
        constexpr char kReason[] = "soapwrapper.conf has a value that can't be followed";
        EXPECT_EQ(close_plainly(), 2060017);
        EXPECT_THAT(session_.lines(),
                    ElementsAreArray(refused_close(service_.url(), kReason, "tls_ca_file")));
        EXPECT_EQ(close_over_tls(), 2060017);
        EXPECT_THAT(session_.lines(),
                    ElementsAreArray(refused_close(service_.tls_url(), kReason, "tls_ca_file")));
        EXPECT_EQ(service_.connections(), 0U);
    }
};

// Counts how often the TLS library wants to ask somebody for a password, and asks nobody.
class NobodyAtTheTerminal
{
  public:
    NobodyAtTheTerminal() : nobody_(UI_create_method("nobody"), UI_destroy_method)
    {
        asked_ = 0;
        UI_method_set_opener(nobody_.get(), [](UI* /*ui*/) {
            ++asked_;
            return 0;
        });
        UI_set_default_method(nobody_.get());
    }
    ~NobodyAtTheTerminal() { UI_set_default_method(UI_OpenSSL()); }
    NobodyAtTheTerminal(const NobodyAtTheTerminal&) = delete;
    NobodyAtTheTerminal& operator=(const NobodyAtTheTerminal&) = delete;

    static int asked() { return asked_; }

  private:
    static inline int asked_ = 0;
    std::unique_ptr<UI_METHOD, decltype(&UI_destroy_method)> nobody_;
};

// A path to the file that is this long, with the file's name at its end.
std::string path_of_length(std::size_t size)
{
    const std::string name = "authorities.pem";
    std::string path = size % 2 == name.size() % 2 ? "" : "/";
    while (path.size() + name.size() < size) path.insert(0, "./");
    return path + name;
}

void write(const std::filesystem::path& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
}

Unusable file_with(const char* what, const std::function<std::string(const Authority&)>& text)
{
    return {what, [text](const Authority& authority, const std::filesystem::path& path) {
                write(path, text(authority));
            }};
}

Unusable device(const char* path)
{
    return {path, [](const Authority&, const std::filesystem::path&) {}, path};
}

std::string cut_in_the_middle(const Authority& authority)
{
    const std::string pem = authority.certificate_pem();
    return pem.substr(0, pem.size() / 2);
}

// The blocks' texts, with this between their first line and the rest.
std::string with_header(const std::string& pem, const std::string& header)
{
    const std::size_t end = pem.find('\n') + 1;
    return pem.substr(0, end) + header + "\n" + pem.substr(end);
}

std::string encrypted_block(const Authority& authority)
{
    return with_header(authority.certificate_pem(),
                       "Proc-Type: 4,ENCRYPTED\nDEK-Info: AES-256-CBC,00112233445566778899AABBCCDDEEFF\n");
}

std::string with_a_changed_byte(std::string pem)
{
    char& byte = pem[pem.find('\n') + 3]; // of the length that the certificate begins with
    byte = byte == 'A' ? 'B' : 'A';
    return pem;
}

std::string key_alone(const Authority& authority)
{
    return authority.issue(Leaf()).key_pem();
}

std::vector<Unusable> unusable_files()
{
    constexpr char kNoBase64[] = "-----BEGIN CERTIFICATE-----\n????\n-----END CERTIFICATE-----\n";
    const auto pem = [](const Authority& authority) { return authority.certificate_pem(); };
    return {
        file_with("empty", [](const Authority&) { return ""; }),
        file_with("line ends alone", [](const Authority&) { return "\n\n\n"; }),
        file_with("binary", [](const Authority&) { return std::string(100000, '\0') + "\x7f\xff\n\x80"; }),
        file_with("text in another encoding",
                  [pem](const Authority& authority) {
                      std::string wide;
                      for (const char byte : pem(authority)) wide += {byte, '\0'};
                      return wide;
                  }),
        file_with("a private key alone", key_alone),
        file_with("an encrypted block", encrypted_block),
        file_with("cut in the middle of a certificate", cut_in_the_middle),
        file_with(
            "a good certificate and a cut one",
            [pem](const Authority& authority) { return pem(authority) + cut_in_the_middle(authority); }),
        file_with("a good certificate and a broken one",
                  [pem](const Authority& authority) {
                      return pem(authority) + with_a_changed_byte(pem(authority));
                  }),
        file_with("a broken certificate and a good one",
                  [pem](const Authority& authority) {
                      return with_a_changed_byte(pem(authority)) + pem(authority);
                  }),
        file_with("a good certificate and one of other characters",
                  [pem, kNoBase64](const Authority& authority) { return pem(authority) + kNoBase64; }),
        file_with("a good certificate and an encrypted one",
                  [pem](const Authority& authority) { return pem(authority) + encrypted_block(authority); }),
        file_with("a good certificate and a broken key",
                  [pem](const Authority& authority) {
                      const std::string key = key_alone(authority);
                      return pem(authority) + key.substr(0, key.size() / 2);
                  }),
        {"missing", [](const Authority&, const std::filesystem::path&) {}},
        {"a folder", [](const Authority&,
                        const std::filesystem::path& path) { std::filesystem::create_directory(path); }},
        {"a pipe that nobody writes to",
         [](const Authority&, const std::filesystem::path& path) { mkfifo(path.c_str(), 0600); }},
        {"a link to itself",
         [](const Authority&, const std::filesystem::path& path) {
             std::filesystem::create_symlink(path, path);
         }},
        {"larger than any",
         [](const Authority& authority, const std::filesystem::path& path) {
             write(path, authority.certificate_pem());
             std::filesystem::resize_file(path, (64UL << 20) + 1);
         }},
        {"at a path that doesn't fit in a line",
         [](const Authority& authority, const std::filesystem::path& path) {
             write(path, authority.certificate_pem());
         },
         path_of_length(1022)},
        device("/dev/zero"),
        device("/dev/tty"),
        device("/proc/self/mem"), // a regular file, which can't be read where it begins
    };
}

} // namespace

TEST_P(UnusableCaFile, FailsEveryCallWithoutAConnection)
{
    const NobodyAtTheTerminal terminal;
    GetParam().make(authority_, ca_file());
    configure("tls_ca_file = " + GetParam().name + "\n");
    expect_nothing_is_sent();
    EXPECT_EQ(terminal.asked(), 0);
}

INSTANTIATE_TEST_SUITE_P(CaFile, UnusableCaFile, testing::ValuesIn(unusable_files()));

TEST_F(UnusableCaFile, ThatMayNotBeReadFailsEveryCallWithoutAConnection)
{
    if (geteuid() == 0) GTEST_SKIP() << "root may read everything";
    write_ca_file(authority_.certificate_pem());
    std::filesystem::permissions(ca_file(), std::filesystem::perms::none);
    configure("tls_ca_file = authorities.pem\n");
    expect_nothing_is_sent();
}

TEST_F(UnusableCaFile, ThatIsAPipeFailsEveryCallWhateverWasWrittenToIt)
{
    const std::string pem = authority_.certificate_pem();
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    EXPECT_EQ(::write(ends[1], pem.data(), pem.size()), static_cast<ssize_t>(pem.size()));
    ::close(ends[1]);
    configure("tls_ca_file = /proc/self/fd/" + std::to_string(ends[0]) + "\n");
    expect_nothing_is_sent();
    ::close(ends[0]);
}

// Half a file is no smaller choice of authorities.
TEST_F(UnusableCaFile, ThatEndsAnywhereInACertificateFailsEveryCall)
{
    const std::string text = authority_.certificate_pem() + Authority("another").certificate_pem();
    const std::size_t second = text.find('\n', authority_.certificate_pem().size());
    for (std::size_t size = second; size < text.size() - 1; ++size) {
        SCOPED_TRACE(size);
        trust(text.substr(0, size));
        ASSERT_EQ(close_plainly(), 2060017);
    }
    EXPECT_EQ(service_.connections(), 0U);
}

TEST_F(UsableCaFile, IsFoundBesideTheConfiguration)
{
    trust(authority_.certificate_pem());
    expect_accepted();
    show(Authority("another").issue(for_address()));
    expect_refused("unable to get local issuer certificate");
}

TEST_F(UsableCaFile, IsFoundByAnAbsolutePath)
{
    write_ca_file(authority_.certificate_pem());
    configure("tls_ca_file = " + ca_file().string() + "\n");
    expect_accepted();
}

TEST_F(UsableCaFile, IsFoundByTheLongestPathThatFitsInALine)
{
    write_ca_file(authority_.certificate_pem());
    configure("tls_ca_file=" + path_of_length(1023 - std::string("tls_ca_file=").size()));
    expect_accepted();
}

TEST_F(UsableCaFile, IsReadWhenTheHostInitialisesAndNotAtACall)
{
    trust(authority_.certificate_pem());
    std::filesystem::remove(ca_file());
    expect_accepted();
}

// What the machine trusts, it trusts for other ends.
TEST_F(UsableCaFile, StandsInThePlaceOfTheMachinesAuthorities)
{
    setenv("SSL_CERT_FILE", ca_file().c_str(), 1); // the TLS library's way to be told of those
    write_ca_file(authority_.certificate_pem());
    const std::string other = ca_file().string() + ".other";
    write(other, Authority("another").certificate_pem());
    configure("tls_ca_file = authorities.pem.other\n");
    expect_refused("unable to get local issuer certificate");
    unsetenv("SSL_CERT_FILE");
    std::filesystem::remove(other);
}

TEST_F(UsableCaFile, MayHaveOtherThingsBetweenItsCertificates)
{
    const Identity identity = authority_.issue(for_address());
    trust("The authorities\n  of our company\n\n" + Authority("first").certificate_pem() +
          identity.key_pem() + "# and the third\n" + Authority("second").certificate_pem() +
          with_header(identity.key_pem(), "Proc-Type: 4,ENCRYPTED\nDEK-Info: AES-256-CBC,00\n") +
          authority_.certificate_pem() + "\nno more\n");
    expect_accepted();
}

TEST_F(UsableCaFile, MayEndItsLinesLikeAFileOfWindows)
{
    std::string text;
    for (const char byte : authority_.certificate_pem()) text += byte == '\n' ? "\r\n" : std::string(1, byte);
    trust(text);
    expect_accepted();
}

TEST_F(UsableCaFile, MayEndWithoutALineEnd)
{
    std::string text = authority_.certificate_pem();
    text.pop_back();
    trust(text);
    expect_accepted();
}

TEST_F(UsableCaFile, MayHoldACertificateTwice)
{
    trust(authority_.certificate_pem() + authority_.certificate_pem());
    expect_accepted();
}

TEST_F(UsableCaFile, MayHoldAThousandCertificates)
{
    std::string text;
    for (int number = 1; number < 1000; ++number) {
        text += Authority("authority " + std::to_string(number)).certificate_pem();
    }
    trust(text + authority_.certificate_pem());
    expect_accepted();
    show(Authority("another").issue(for_address()));
    expect_refused("unable to get local issuer certificate");
}
