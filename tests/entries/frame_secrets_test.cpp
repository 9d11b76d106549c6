// A credential is in the memory of a call only until it has been sent.
#include "tests/entries/event_channel_fixture.h"
#include "tests/entries/server_fixture.h"

#include <pthread.h>

#include <functional>

using namespace kit;
using Manner = Answer::Manner;

namespace
{

// Whole groups of three bytes, so that what follows doesn't change how they are encoded.
constexpr std::string_view kSecret = "k7w!-q2Zz#93-secret-";
constexpr std::string_view kEncodedSecret = "azd3IS1xMlp6IzkzLXNlY3JldC"; // its first 19 bytes, a little less

// Without the sanitizer's look at it: most of a stack that has been used is nobody's.
__attribute__((no_sanitize("address"))) bool holds(const std::vector<char>& memory, std::string_view text)
{
    for (std::size_t at = 0; at + text.size() <= memory.size(); ++at) {
        std::size_t same = 0;
        while (same < text.size() && memory.data()[at + same] == text[same]) ++same;
        if (same == text.size()) return true;
    }
    return false;
}

class Secrets : public ServerTest
{
  protected:
    // What is left on the stack of a thread that has made a call.
    static std::vector<char> stack_behind(std::function<void()> call)
    {
        std::vector<char> stack(std::size_t{2} << 20);
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        EXPECT_EQ(pthread_attr_setstack(&attributes, stack.data(), stack.size()), 0);
        const auto start = [](void* argument) -> void* {
            (*static_cast<std::function<void()>*>(argument))();
            return nullptr;
        };
        pthread_t thread;
        EXPECT_EQ(pthread_create(&thread, &attributes, start, &call), 0);
        pthread_join(thread, nullptr);
        pthread_attr_destroy(&attributes);
        return stack;
    }

    void expect_no_secret_behind(const std::function<void()>& call)
    {
        const std::vector<char> stack = stack_behind(call);
        EXPECT_FALSE(holds(stack, kSecret.substr(0, 15)));
        EXPECT_FALSE(holds(stack, kEncodedSecret.substr(0, 20)));
    }

    void expect_no_secret_behind_an_open(const Answer& answer, bool tls = false)
    {
        service_.script(answer);
        ServerHandle source = make_server(session_, tls ? service_.tls_url() : service_.url(), tls);
        stsp_server_t* target = nullptr;
        expect_no_secret_behind(
            [&] { open_target_server()(source.get(), "t", credential_.get(), "", &target); });
        const ServerHandle owner(target);
    }

    static Answer opened_target()
    {
        return answer(
            reply("openTargetServerResponse", element("targetServerHandle", element("token", "T"))));
    }

    const Credential credential_{kSecret};
};

} // namespace

TEST_F(Secrets, AreSentEncoded)
{
    service_.script(opened_target());
    const ServerHandle source = make_server(session_, service_.url());
    stsp_server_t* target = nullptr;
    EXPECT_EQ(open_target_server()(source.get(), "t", credential_.get(), "", &target), 0);
    const ServerHandle owner(target);
    EXPECT_THAT(service_.request_body(0), testing::HasSubstr(kEncodedSecret.substr(0, 20)));
}

TEST_F(Secrets, OfAnOpenAreGoneBehindIt)
{
    expect_no_secret_behind_an_open(opened_target());
    expect_no_secret_behind_an_open(opened_target(), true);
    expect_no_secret_behind_an_open(fault_answer(fault(5)));
}

TEST_F(Secrets, OfAnOpenThatIsNotAnsweredAreGoneBehindIt)
{
    for (const bool tls : {false, true}) {
        for (const Manner manner : {Manner::kCloseAtOnce, Manner::kResetAtOnce, Manner::kCloseMidRequest,
                                    Manner::kRefuseHandshake, Manner::kReset}) {
            expect_no_secret_behind_an_open({manner, ""}, tls);
        }
    }
}

TEST_F(Secrets, OfAServerAndAnEventChannelAreGoneBehindTheirOpen)
{
    host().write_configuration("host=" + service_.url() + "\n");
    service_.script({opened(), opened(), fault_answer(fault(5)), closed()});
    stsp_server_t* server = nullptr;
    stsp_evc_t* channel = nullptr;
    expect_no_secret_behind([&] {
        open_server()(session_.get(), own_name().c_str(), credential_.get(), nullptr, &server);
        open_evchannel()(session_.get(), own_name().c_str(), credential_.get(), nullptr, nullptr, nullptr, 0,
                         0, &channel);
    });
    const ServerHandle owner(server);
    EXPECT_EQ(channel, nullptr);
    EXPECT_EQ(service_.requests().size(), 4U);
}
