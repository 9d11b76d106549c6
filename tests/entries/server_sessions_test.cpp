#include "tests/kit/host.h"
#include "tests/kit/log_recorder.h"
#include "tests/kit/scripted_service.h"
#include "tests/kit/soap_text.h"

#include <gmock/gmock.h>

using namespace kit;

TEST(OpenServer, SendsTheWholeNameTheSessionAndTheCredential)
{
    ScriptedService service;
    RecordedSession session;
    Host::instance().write_configuration("host=" + service.url() + "\n");
    service.script(answer(reply("openServerResponse", element("serverHandle", element("token", "T1")))));
    service.script(answer(reply("closeServerResponse")));
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open_server()(session.get(), "Network_X:host", Credential("abc", 4).get(), nullptr, &server),
              0);
    EXPECT_EQ(service.request_body(0),
              element("openServer", element("sd", element("proxy", session->proxy) +
                                                      element("id", session.id()) + element("flags", "7")) +
                                        element("server", "Network_X:host") +
                                        element("cred", element("len", "3") + element("type", "4") +
                                                            element("cert", "YWJj")) +
                                        "<ns1:requiredInterface/>"));
    EXPECT_EQ(close_server()(server), 0);
}
