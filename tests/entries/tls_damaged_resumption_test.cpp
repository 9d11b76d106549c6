// A resumption that goes wrong at any byte of what the service sends: in the handshake the call begins anew,
// and behind it the call fails; and the request comes to the service once at the most.
#include "tests/entries/damaging_relay.h"
#include "tests/entries/tls_session_fixture.h"

using namespace kit;

namespace
{

// All of a resumed handshake, the tickets, and the beginning of the reply.
constexpr std::size_t kDamagedBytes = 900;
constexpr std::size_t kStep = 29;
// The service's hello is longer, whatever the version.
constexpr std::size_t kSurelyHello = 60;

class TlsDamagedResumption : public TlsSessionTestOfKinds
{
  protected:
    TlsDamagedResumption() { service_.set_tls_context(GetParam().make_context()); }

    int call_through_relay()
    {
        ++calls_;
        return close(relay_.tls_url(), true);
    }

    void expect_calls_to_survive(Damage damage)
    {
        for (std::size_t at = 0; at < kDamagedBytes; at += kStep) {
            SCOPED_TRACE(at);
            EXPECT_EQ(call_through_relay(), 0);
            relay_.damage_next(damage, at);
            const int status = call_through_relay();
            EXPECT_TRUE(status == 0 || (status == 2060017 && at >= kSurelyHello)) << status;
            EXPECT_EQ(call_through_relay(), 0);
        }
        EXPECT_LE(service_.requests().size(), calls_);
    }

    ScriptedService service_{[](const Request&) { return closed().bytes; }};
    DamagingRelay relay_{service_.port()};
    std::size_t calls_ = 0;
};

INSTANTIATE_TEST_SUITE_P(Kinds, TlsDamagedResumption, testing::ValuesIn(kResumptionKinds), kind_name);

} // namespace

TEST_P(TlsDamagedResumption, ByACutFailsNoOtherCall)
{
    expect_calls_to_survive(Damage::kCut);
}

TEST_P(TlsDamagedResumption, ByAnotherByteFailsNoOtherCall)
{
    expect_calls_to_survive(Damage::kChange);
}
