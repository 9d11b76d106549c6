// The probe's own functions ahead of the system's, called as the library calls them; and what is secret
// there.
#include "messages/blotter.h"
#include "messages/known_secret.h"
#include "messages/wiping.h"
#include "probe/library/credential.h"
#include "probe/output/problem.h"
#include "probe/wire/config_file.h"
#include "probe/wire/exchange.h"
#include "probe/wire/secrets.h"
#include "probe/wire/tap.h"
#include "probe/wire/tapped_calls.h"
#include "tests/entries/heap_hooks.h"
#include "tests/system/probe_process.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace
{

using namespace soapwrapper::probe::wire;
using soapwrapper::messages::append_wiping;
using soapwrapper::messages::Blotter;
using soapwrapper::messages::KnownSecret;
using soapwrapper::probe::Credential;
using soapwrapper::probe::ExitCode;
using soapwrapper::probe::Problem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

// A listener on the loopback, of which a connection can be had only if it is to take any.
class Listener
{
  public:
    enum class Takes { kAny, kNone };

    explicit Listener(Takes takes = Takes::kAny)
    {
        const Untapped untapped;
        address_.sin_family = AF_INET;
        address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address_;
        bind(socket_, address(), size);
        listen(socket_, takes == Takes::kAny ? 8 : 0);
        getsockname(socket_, reinterpret_cast<sockaddr*>(&address_), &size);
        // What waits to be accepted leaves no room for more.
        for (int i = 0; takes == Takes::kNone && i < 3; ++i) {
            waiting_.push_back(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
            ::connect(waiting_.back(), address(), sizeof address_);
        }
    }
    ~Listener()
    {
        for (const int each : waiting_) close(each);
        close(socket_);
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    const sockaddr* address() const { return reinterpret_cast<const sockaddr*>(&address_); }
    int port() const { return ntohs(address_.sin_port); }
    std::string place() const { return "127.0.0.1:" + std::to_string(port()); }
    int accepted() const { return accept(socket_, nullptr, nullptr); }

  private:
    int socket_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address_ = {};
    std::vector<int> waiting_;
};

// A socket of the library's.
class Client
{
  public:
    explicit Client(int flags = 0) : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | flags, 0)) {}
    ~Client() { end(); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    int get() const { return socket_; }
    int connect(const Listener& listener) const
    {
        return tapped_connect(socket_, listener.address(), sizeof(sockaddr_in));
    }
    void end()
    {
        if (socket_ >= 0) tapped_close(socket_);
        socket_ = -1;
    }

  private:
    int socket_;
};

// Cuts as soon as there is a connection to cut.
class Cutter
{
  public:
    Cutter() = default;
    ~Cutter() { thread_.join(); }
    Cutter(const Cutter&) = delete;
    Cutter& operator=(const Cutter&) = delete;

  private:
    std::thread thread_{[] {
        while (where().empty()) std::this_thread::yield();
        cut();
    }};
};

class ProbeTap : public testing::Test
{
  protected:
    ~ProbeTap() override
    {
        allow();
        observe(nullptr);
    }
};

// Writes down what it is told of.
class Notes : public Observer
{
  public:
    Notes() { observe(this); }

    void connected(const Connection& connection, int error) override
    {
        lines.push_back("connected " + connection.host + " " + connection.address + " " +
                        std::to_string(error));
    }
    void sent(const Connection& /*connection*/, std::string_view bytes) override
    {
        lines.push_back("sent " + std::string(bytes));
    }
    void received(const Connection& /*connection*/, std::string_view bytes) override
    {
        lines.push_back("received " + std::string(bytes));
    }
    void failed(const Connection& connection, const std::string& why) override
    {
        lines.push_back("failed " + connection.address + " " + why);
    }
    void closed(const Connection& connection) override { lines.push_back("closed " + connection.address); }

    std::vector<std::string> lines;
};

TEST_F(ProbeTap, CutEndsAConnectionThatIsBeingMade)
{
    const Listener listener(Listener::Takes::kNone);
    const Client client;
    const Cutter cutter;
    EXPECT_EQ(client.connect(listener), -1);
    EXPECT_EQ(errno, ETIMEDOUT);
    EXPECT_EQ(fcntl(client.get(), F_GETFL) & O_NONBLOCK, 0);
}

TEST_F(ProbeTap, CutEndsAConnectionThatIsBeingMadeAndWaitedForByItself)
{
    const Listener listener(Listener::Takes::kNone);
    const Client client(SOCK_NONBLOCK);
    const Cutter cutter;
    EXPECT_EQ(client.connect(listener), -1);
    EXPECT_EQ(errno, EINPROGRESS);
    pollfd watched = {client.get(), POLLOUT, 0};
    EXPECT_EQ(poll(&watched, 1, -1), 1);
    int error = 0;
    socklen_t size = sizeof error;
    EXPECT_EQ(tapped_getsockopt(client.get(), SOL_SOCKET, SO_ERROR, &error, &size), 0);
    EXPECT_NE(error, 0);
}

TEST_F(ProbeTap, CutEndsTheWaitForAReply)
{
    const Listener listener;
    const Client client;
    const Cutter cutter;
    if (client.connect(listener) != 0) return; // cut already
    char byte = 0;
    EXPECT_LE(tapped_recv(client.get(), &byte, 1, 0), 0);
    EXPECT_LT(tapped_send(client.get(), "x", 1, MSG_NOSIGNAL), 0);
}

TEST_F(ProbeTap, NothingIsBegunWhileConnectionsAreCut)
{
    const Listener listener;
    cut();
    EXPECT_TRUE(is_cut());
    const Client client;
    EXPECT_EQ(client.connect(listener), -1);
    EXPECT_EQ(errno, ETIMEDOUT);
    addrinfo* found = nullptr;
    EXPECT_EQ(tapped_getaddrinfo("127.0.0.1", "80", nullptr, &found), EAI_AGAIN);
    EXPECT_EQ(tapped_sleep(3600), 0U);
    EXPECT_EQ(where(), "");
}

TEST_F(ProbeTap, ASleepEndsWhenItIsCut)
{
    std::thread cutter(cut);
    EXPECT_EQ(tapped_sleep(3600), 0U);
    cutter.join();
}

TEST_F(ProbeTap, ConnectionsCanBeMadeAgainOnceTheyAreAllowed)
{
    const Listener listener;
    cut();
    cut();
    allow();
    EXPECT_FALSE(is_cut());
    const Client client;
    EXPECT_EQ(client.connect(listener), 0);
}

TEST_F(ProbeTap, CutLeavesAloneWhatIsNotTheLibrarys)
{
    const Listener listener;
    Client client;
    ASSERT_EQ(client.connect(listener), 0);
    const int number = client.get();
    client.end();
    int pair[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair), 0);
    EXPECT_EQ(pair[0], number); // the library's once
    const Client own;
    const Untapped untapped;
    EXPECT_EQ(own.connect(listener), 0);
    cut();
    EXPECT_EQ(write(pair[0], "x", 1), 1);
    EXPECT_EQ(send(own.get(), "x", 1, MSG_NOSIGNAL), 1);
    for (const int each : pair) close(each);
}

TEST_F(ProbeTap, TellsWhomTheLibraryWaitsFor)
{
    const Listener listener;
    EXPECT_EQ(where(), "");
    Client client;
    ASSERT_EQ(client.connect(listener), 0);
    EXPECT_EQ(where(), listener.place());
    client.end();
    EXPECT_EQ(where(), "");
}

TEST_F(ProbeTap, KnowsTheNameThatAnAddressWasFoundBy)
{
    const Listener listener;
    addrinfo hints = {};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    ASSERT_EQ(tapped_getaddrinfo("localhost", std::to_string(listener.port()).c_str(), &hints, &found), 0);
    freeaddrinfo(found);
    const Client client;
    ASSERT_EQ(client.connect(listener), 0);
    EXPECT_EQ(where(), "localhost:" + std::to_string(listener.port()) + " (127.0.0.1)");
}

TEST_F(ProbeTap, TellsOfAllThatAConnectionCarries)
{
    const Listener listener;
    Notes notes;
    Client client;
    ASSERT_EQ(client.connect(listener), 0);
    const int peer = listener.accepted();
    EXPECT_EQ(tapped_send(client.get(), "question", 8, 0), 8);
    char room[16];
    EXPECT_EQ(read(peer, room, sizeof room), 8);
    EXPECT_EQ(write(peer, "answer", 6), 6);
    close(peer);
    EXPECT_EQ(tapped_recv(client.get(), room, sizeof room, MSG_PEEK), 6); // it stays to be received
    EXPECT_EQ(tapped_recv(client.get(), room, sizeof room, 0), 6);
    EXPECT_EQ(tapped_recv(client.get(), room, sizeof room, 0), 0);
    client.end();
    EXPECT_THAT(notes.lines, ElementsAre("connected  " + listener.place() + " 0", "sent question",
                                         "received answer", "received ", "closed " + listener.place()));
}

TEST_F(ProbeTap, TellsOfAHostThatIsNotFound)
{
    Notes notes;
    const std::string host(80, 'a'); // more than a name may have, so that nobody is asked
    addrinfo* found = nullptr;
    EXPECT_NE(tapped_getaddrinfo(host.c_str(), "8086", nullptr, &found), 0);
    EXPECT_THAT(notes.lines,
                ElementsAre(MatchesRegex("failed " + host + ":8086 .+"), "closed " + host + ":8086"));
}

TEST_F(ProbeTap, TellsWhatCameOfAConnectionOnceTheLibraryAsks)
{
    const Listener listener;
    Notes notes;
    const Client client(SOCK_NONBLOCK);
    client.connect(listener);
    pollfd watched = {client.get(), POLLOUT, 0};
    ASSERT_EQ(poll(&watched, 1, -1), 1);
    int error = -1;
    socklen_t size = sizeof error;
    EXPECT_EQ(tapped_getsockopt(client.get(), SOL_SOCKET, SO_ERROR, &error, &size), 0);
    EXPECT_EQ(error, 0);
    EXPECT_THAT(notes.lines, ElementsAre("connected  " + listener.place() + " 0"));
}

TEST_F(ProbeTap, KeepsWhatAnObserverDoesFromTheLibrary)
{
    struct Spoiler : Notes {
        void sent(const Connection& /*connection*/, std::string_view /*bytes*/) override
        {
            errno = EIO;
            throw std::runtime_error("no room");
        }
        void failed(const Connection& /*connection*/, const std::string& /*why*/) override { errno = EIO; }
    };
    const Listener listener;
    const Spoiler spoiler;
    const Client client;
    ASSERT_EQ(client.connect(listener), 0);
    EXPECT_EQ(tapped_send(client.get(), "x", 1, 0), 1);
    shutdown(client.get(), SHUT_RDWR);
    EXPECT_EQ(tapped_send(client.get(), "x", 1, MSG_NOSIGNAL), -1);
    EXPECT_EQ(errno, EPIPE);
}

std::string read_by_the_library(const std::string& path)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(tapped_fopen(path.c_str(), "re"), std::fclose);
    std::string bytes;
    for (int byte = 0; file && (byte = std::fgetc(file.get())) != EOF;) bytes += static_cast<char>(byte);
    return file ? bytes : "none";
}

TEST(ProbeConfigFile, StandsInForTheOneOfItsFolder)
{
    const TemporaryFolder folder;
    const std::string text = "filer = http://127.0.0.1\n" + std::string("\0\r\n", 3) + "end";
    folder.write("soapwrapper.conf", "the installation's");
    folder.write("other.conf", text);
    {
        const ConfigFile config(folder / "other.conf");
        EXPECT_EQ(config.plugin_path(), folder / "libsoapwrapper.so");
        folder.write("other.conf", "changed");
        EXPECT_EQ(read_by_the_library(folder / "soapwrapper.conf"), text);
        EXPECT_EQ(read_by_the_library(folder / "soapwrapper.conf"), text);
        EXPECT_EQ(read_by_the_library(folder / "other.conf"), "changed");
        EXPECT_EQ(read_by_the_library(folder / "no.conf"), "none");
    }
    EXPECT_EQ(read_by_the_library(folder / "soapwrapper.conf"), "the installation's");
}

TEST(ProbeConfigFile, MustBeReadableAndNotTooLong)
{
    const TemporaryFolder folder;
    folder.write("long.conf", std::string(ConfigFile::kLongest + 1, '#'));
    for (const std::string& path : {(folder / "no.conf").string(), (folder / "").string(),
                                    (folder / "long.conf").string(), std::string()}) {
        try {
            const ConfigFile config(path);
            ADD_FAILURE() << path;
        } catch (const Problem& problem) {
            EXPECT_EQ(problem.code(), ExitCode::kUsage) << path;
        }
    }
    folder.write("long.conf", std::string(ConfigFile::kLongest, '#'));
    EXPECT_NO_THROW(ConfigFile(folder / "long.conf"));
}

TEST(ProbeSecrets, AreLearnedFromWhereverACredentialComes)
{
    Secrets secrets;
    const TemporaryFolder folder;
    std::ostringstream warnings;
    const Credential from_file = Credential::from_file(folder.write("login", "file's secret\n"), 1, warnings);
    setenv("SOAPWRAPPER_TEST_SECRET", "variable's secret", 1);
    const Credential from_variable = Credential::from_environment(1, "SOAPWRAPPER_TEST_SECRET");
    EXPECT_EQ(secrets.blotter().text("a file's secret, a variable's secret"), "a ***, a ***");
}

TEST(ProbeSecrets, AreKeptOnlyWhereTheyAreToBeHidden)
{
    const std::string secret = "a secret that is not short";
    const hooks::FreedBlocks freed(secret);
    hide(secret);
    const Secrets secrets;
    EXPECT_EQ(freed.count(), 0U);
}

// All of the ways in which a secret is looked for.
std::vector<std::string> forms_of_the_secret()
{
    return {"secret & not short", "secret &amp; not short", "c2VjcmV0ICYgbm90IHNob3J0",
            "NlY3JldCAmIG5vdCBzaG9yd", "zZWNyZXQgJiBub3Qgc2hvcn"};
}

TEST(ProbeSecrets, AreWipedWithAllTheirForms)
{
    for (const std::string& form : forms_of_the_secret()) {
        std::string found;
        {
            auto known = std::make_unique<KnownSecret>("secret & not short");
            found = known->blotted(form, false);
            const hooks::FreedBlocks freed(form);
            known.reset();
            EXPECT_GT(freed.count(), 0U);
            EXPECT_EQ(freed.with_text(), 0U) << form;
        }
        EXPECT_EQ(found, "***");
    }
}

TEST(ProbeSecrets, LeaveNoFormBehindWhereTheyAreLearned)
{
    for (const std::string& form : forms_of_the_secret()) {
        const std::string secret = "secret & not short";
        const hooks::FreedBlocks freed(form);
        const KnownSecret known(secret);
        EXPECT_EQ(freed.with_text(), 0U) << form;
    }
}

TEST(ProbeSecrets, AreWipedWithTheExchangeThatCarriedThem)
{
    const std::string secret = "a secret that is not short";
    const hooks::FreedBlocks freed(secret);
    {
        Exchange exchange;
        exchange.request_head = exchange.request_body = exchange.reply_head = exchange.reply_body = secret;
        const Exchange moved = std::move(exchange);
        EXPECT_EQ(moved.reply_body, secret);
    }
    EXPECT_EQ(freed.with_text(), 0U);
}

TEST(ProbeSecrets, LeaveNothingBehindInATextThatGrows)
{
    const std::string secret = "a secret that is not short";
    const hooks::FreedBlocks freed(secret);
    std::string text;
    append_wiping(text, secret);
    for (int i = 0; i < 100; ++i) append_wiping(text, "more of it ");
    EXPECT_GT(freed.count(), 0U);
    EXPECT_EQ(freed.with_text(), 0U);
    soapwrapper::messages::wipe(text);
    EXPECT_EQ(text, "");
}

} // namespace
