// Memory that an open or a start can't have for a text of its handle: what is handed out can be closed.
#include "tests/entries/async_start_cases.h"
#include "tests/entries/catalogue_cases.h"
#include "tests/entries/event_channel_fixture.h"
#include "tests/entries/heap_hooks.h"

#include <cstring>
#include <optional>

using namespace kit;
using testing::ElementsAre;
using testing::HasSubstr;

namespace
{

const std::string kToken(4999, 't');

// While one lives, the library gets no block of this size once a reply has been read: what the runtime needs
// for the call itself, it has then.
class NoMemoryAfterTheReply
{
  public:
    NoMemoryAfterTheReply(RecordedSession& session, std::size_t size)
        : session_(session), callback_(session->log_callback), size_(size)
    {
        current_ = this;
        session_->log_callback = listen;
    }
    ~NoMemoryAfterTheReply()
    {
        EXPECT_EQ(shortage_ ? shortage_->refusals() : 0, 1U);
        session_->log_callback = callback_;
        current_ = nullptr;
    }
    NoMemoryAfterTheReply(const NoMemoryAfterTheReply&) = delete;
    NoMemoryAfterTheReply& operator=(const NoMemoryAfterTheReply&) = delete;

  private:
    static int listen(const char* session_id, const char* message, int level)
    {
        if (std::strstr(message, "SOAP return code = 0")) {
            current_->shortage_.emplace(hooks::Allocator::kMalloc, current_->size_);
        }
        return current_->callback_(session_id, message, level);
    }

    inline static NoMemoryAfterTheReply* current_ = nullptr;
    RecordedSession& session_;
    sts_log_callback_t callback_;
    std::size_t size_;
    std::optional<hooks::NoMemory> shortage_;
};

class OpenWithoutMemory : public EventChannelTest
{
  protected:
    // An open during which there is no block of this size for the library.
    ServerHandle open_without(std::size_t size)
    {
        service_.script(opened(kToken));
        stsp_server_t* server = nullptr;
        {
            const NoMemoryAfterTheReply shortage(session_, size);
            EXPECT_EQ(open(kName, &server), 0);
        }
        session_.clear();
        return ServerHandle(server);
    }

    stsp_evc_t* open_channel_without(std::size_t size)
    {
        service_.script({opened(), channel_opened(kToken)});
        stsp_evc_t* channel = nullptr;
        const NoMemoryAfterTheReply shortage(session_, size);
        EXPECT_EQ(open_channel(&channel), 0);
        return channel;
    }
};

} // namespace

TEST_F(OpenWithoutMemory, ForATokenLeavesAServerThatACloseRefusesLikeAnyWithoutOne)
{
    const ServerHandle server = open_without(kToken.size() + 1);
    ASSERT_NE(server, nullptr);
    EXPECT_EQ(server->service_handle, nullptr);
    EXPECT_EQ(close_server()(server.get()), 2060022);
    EXPECT_EQ(session_.lines().back(), record("stspi_close_server: soap_endpoint = " + service_.url()));
}

TEST_F(OpenWithoutMemory, ForAnEndpointLeavesAServerThatACloseCantReach)
{
    const ServerHandle server = open_without(soapwrapper::kEndpointSize);
    ASSERT_NE(server, nullptr);
    EXPECT_EQ(server->endpoint, nullptr);
    EXPECT_EQ(close_server()(server.get()), 2060017);
    EXPECT_EQ(service_.connections(), 1U);
    EXPECT_EQ(session_.lines().at(1), record("stspi_close_server: soap_endpoint = "));
    EXPECT_EQ(session_.lines().back().level, STS_LOG_FAILURE);
}

TEST_F(OpenWithoutMemory, ForAnEndpointLeavesASourceThatATargetsOpenSurvives)
{
    const ServerHandle source = open_without(soapwrapper::kEndpointSize);
    stsp_server_t* target = nullptr;
    EXPECT_EQ(open_target_server()(source.get(), "Network_X:t", Credential("").get(), "", &target), 2060017);
    EXPECT_EQ(target, nullptr);
}

TEST_F(OpenWithoutMemory, ForTheTokenOfAChannelLeavesOneThatIsClosedUnderAnEmptyToken)
{
    stsp_evc_t* channel = open_channel_without(kToken.size() + 1);
    ASSERT_NE(channel, nullptr);
    EXPECT_EQ(channel->token, nullptr);
    service_.script({channel_closed(), closed()});
    EXPECT_EQ(close_evchannel()(channel), 0);
    EXPECT_EQ(service_.request_body(2), element("closeEventChannel", element("evcHandle", "<ns1:token/>")));
}

TEST_F(OpenWithoutMemory, ForTheEndpointOfAChannelsServerMakesNoChannel)
{
    const LeaksOnPurpose server_that_cant_be_reached;
    service_.script(opened());
    stsp_evc_t* channel = nullptr;
    const NoMemoryAfterTheReply shortage(session_, soapwrapper::kEndpointSize);
    EXPECT_EQ(open_channel(&channel), 2060017);
    EXPECT_EQ(channel, nullptr);
    EXPECT_EQ(service_.connections(), 1U);
}

TEST_F(OpenWithoutMemory, LeavesAChannelOnAServerWithoutAnEndpointThatCanBeClosed)
{
    stsp_evc_t* channel = opened_channel();
    const ServerHandle server(channel->server);
    std::free(server->endpoint);
    server->endpoint = nullptr;
    EXPECT_EQ(close_evchannel()(channel), 2060017) << "and the channel is gone";
    EXPECT_EQ(service_.connections(), 2U);
}

namespace
{

class ListWithoutMemory : public catalogue::CatalogueTest, public testing::WithParamInterface<catalogue::Case>
{
};

} // namespace

INSTANTIATE_TEST_SUITE_P(EveryOpen, ListWithoutMemory,
                         testing::ValuesIn(catalogue::cases(catalogue::Kind::kOpen)), catalogue::name_of);

TEST_P(ListWithoutMemory, ForItsTokenIsRefusedByAllThatReadOrCloseIt)
{
    const auto records = std::make_unique<catalogue::Records>();
    records->server = &server;
    records->lsu = &lsu;
    script(GetParam().reply, token_element(GetParam().content.record, kToken));
    {
        const NoMemoryAfterTheReply shortage(session, kToken.size() + 1);
        EXPECT_EQ(GetParam().call(*records), 0);
    }
    const std::unique_ptr<stsp_list_t> list(records->out.list);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->token, nullptr);
    EXPECT_EQ(catalogue::close_lsu_list()(list.get()), 2060022);
    EXPECT_EQ(catalogue::close_image_list()(list.get()), 2060022);
    EXPECT_EQ(catalogue::close_snap_list()(list.get()), 2060022);
    EXPECT_EQ(catalogue::list_lsu()(list.get(), records->out.name), 2060022);
    EXPECT_EQ(service.connections(), 1U);
}

namespace
{

class StartWithoutMemory : public testing::Test
{
};

} // namespace

TEST_F(StartWithoutMemory, ForItsIdLeavesAHandleThatAsksUnderAnEmptyOne)
{
    ScriptedService service;
    RecordedSession session;
    std::string url = service.url();
    StartArguments arguments;
    stsp_async_t* made = nullptr;
    arguments.server_record.endpoint = url.data();
    arguments.server_record.session = session.get();
    arguments.async = &made;
    const StartCase& start = start_case("stspi_async_create_snap_byname");
    service.script({answer(reply(start.operation + "Response", token_element("opid", kToken))),
                    answer(reply("asyncCancelResponse"))});
    {
        const NoMemoryAfterTheReply shortage(session, kToken.size() + 1);
        EXPECT_EQ(start.call(arguments), 0);
    }
    const AsyncHandle async(made);
    ASSERT_NE(async, nullptr);
    EXPECT_EQ(async->op_token, nullptr);
    EXPECT_EQ(main_slot<decltype(stspi_async_cancel)>(41)(session.get(), async.get()), 0);
    EXPECT_THAT(service.request_body(1), HasSubstr(element("opid", "<ns1:token/>")));
}
