#include "service/tls_sessions.h"

#include "service/clock.h"

#include <gmock/gmock.h>

#include <cstring>
#include <string>

using namespace soapwrapper;

namespace
{

// One that a server gave out just now, told from others by its number.
KnownTlsSession session(unsigned number, long lifetime = 7200)
{
    TlsSession made(SSL_SESSION_new());
    unsigned char id[sizeof number];
    std::memcpy(id, &number, sizeof number);
    SSL_SESSION_set1_id(made.get(), id, sizeof id);
    SSL_SESSION_set_timeout(made.get(), lifetime);
    return {std::move(made), now()};
}

// 0 if there is none.
unsigned number_of(const KnownTlsSession& known)
{
    if (!known.session) return 0;
    unsigned length = 0;
    unsigned number = 0;
    std::memcpy(&number, SSL_SESSION_get_id(known.session.get(), &length), sizeof number);
    return number;
}

class Sessions : public testing::Test
{
  protected:
    unsigned take(const char* host = "filer", int port = 8086)
    {
        return number_of(sessions_.take(host, port));
    }

    TlsSessions sessions_;
};

} // namespace

TEST_F(Sessions, AreGivenOutOnceEachTheNewestFirst)
{
    sessions_.keep("filer", 8086, session(1));
    sessions_.keep("filer", 8086, session(2));
    EXPECT_EQ(take(), 2U);
    EXPECT_EQ(take(), 1U);
    EXPECT_EQ(take(), 0U);
}

TEST_F(Sessions, AreThoseOfOneHostAndPort)
{
    sessions_.keep("filer", 8086, session(1));
    EXPECT_EQ(take("filer", 8085), 0U);
    EXPECT_EQ(take("file", 8086), 0U);
    EXPECT_EQ(take("filer.", 8086), 0U);
    EXPECT_EQ(take(), 1U);
}

TEST_F(Sessions, TellWhenTheirFullHandshakeWas)
{
    KnownTlsSession known = session(1);
    known.full_handshake -= 100;
    const std::int64_t then = known.full_handshake;
    sessions_.keep("filer", 8086, std::move(known));
    EXPECT_EQ(sessions_.take("filer", 8086).full_handshake, then);
}

TEST_F(Sessions, AreNotKeptWhereTheyCantBeResumed)
{
    sessions_.keep("filer", 8086, {TlsSession(SSL_SESSION_new()), now()});
    sessions_.keep("filer", 8086, {});
    EXPECT_EQ(take(), 0U);
}

TEST_F(Sessions, EndWithTheLifetimeThatTheServerGave)
{
    sessions_.keep("filer", 8086, session(1, 0));
    EXPECT_EQ(take(), 0U);
}

TEST_F(Sessions, EndAnHourBehindTheirFullHandshake)
{
    KnownTlsSession known = session(1);
    known.full_handshake -= TlsSessions::kLongestUse;
    sessions_.keep("filer", 8086, std::move(known));
    EXPECT_EQ(take(), 0U);
}

TEST_F(Sessions, OfOneServerAreBoundedAndTheOldestGo)
{
    constexpr unsigned kMost = TlsSessions::kMostPerServer;
    sessions_.keep("other", 8086, session(1000));
    for (unsigned number = 1; number <= kMost + 5; ++number) sessions_.keep("filer", 8086, session(number));
    for (unsigned number = kMost + 5; number > 5; --number) EXPECT_EQ(take(), number);
    EXPECT_EQ(take(), 0U);
    EXPECT_EQ(take("other"), 1000U);
}

TEST_F(Sessions, OfAllServersAreBoundedAndTheOldestGo)
{
    constexpr unsigned kMost = TlsSessions::kMostInAll;
    for (unsigned number = 1; number <= kMost + 5; ++number) {
        sessions_.keep(("filer" + std::to_string(number)).c_str(), 8086, session(number));
    }
    for (unsigned number = 1; number <= kMost + 5; ++number) {
        EXPECT_EQ(take(("filer" + std::to_string(number)).c_str()), number > 5 ? number : 0U);
    }
}

TEST_F(Sessions, OfAServerCanBeForgotten)
{
    sessions_.keep("filer", 8086, session(1));
    sessions_.keep("filer", 8086, session(2));
    sessions_.keep("other", 8086, session(3));
    sessions_.forget("filer", 8086);
    EXPECT_EQ(take(), 0U);
    EXPECT_EQ(take("other"), 3U);
}
