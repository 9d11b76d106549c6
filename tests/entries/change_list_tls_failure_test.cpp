// What the entries do where TLS can't even be set up. A program of its own: once the library has made its one
// TLS context, nothing can keep it from having one.
#include "tests/entries/change_list_fixture.h"
#include "tests/entries/runtime_hooks.h"
#include "tests/kit/clock.h"

using namespace change_list;
using namespace kit;
using testing::ElementsAre;

namespace
{

const char kSetUpFailure[] = "SOAP 1.1 fault SOAP-ENV:Server[no subcode]\n\"SSL/TLS error\"\n"
                             "Detail: Can't setup context\nHANDLE_SOAP_FAULT: 2060021";

class ChangeListWithoutTls : public ChangeListTest
{
  protected:
    ChangeListWithoutTls()
    {
        static_cast<void>(hooks::tls_contexts_asked_for());
        server.use_https = true;
    }

    const hooks::NoTlsContexts none;
};

} // namespace

TEST_F(ChangeListWithoutTls, TheOpenFailsAlreadyWithTheSnapshots)
{
    EXPECT_EQ(open(), STS_ESOAPERROR);
    EXPECT_EQ(session.lines().back(), failure("get_transformation_mapping failed"));
    EXPECT_EQ(service.connections(), 0u);
}

TEST_F(ChangeListWithoutTls, AListingFailsBehindItsPauseAndACloseLeavesEverything)
{
    Clock clock;
    clock.set_time(1000);
    char token[] = "C1";
    stsp_change_list held = {};
    held.server = &server;
    held.token = token;
    registry()["C1"].retry_interval = 10;
    registry()["C1"].last_reply_time = 1000;
    sts_file_attr_v11_t entry = {};
    EXPECT_EQ(list_file()(&held, 0, nullptr, &entry), STS_EFAULTDETAIL);
    EXPECT_THAT(clock.sleeps(), ElementsAre(10u));
    EXPECT_THAT(session.lines(),
                ElementsAre(record("stspi_list_file: Sleeping for 10 seconds until list_file can be serviced "
                                   "again."),
                            failure(kSetUpFailure)));
    session.clear();
    EXPECT_EQ(close_list()(&held), STS_EFAULTDETAIL);
    EXPECT_THAT(session.lines(),
                ElementsAre(record("stspi_close_snap_change_list: enter"), failure(kSetUpFailure)));
    EXPECT_EQ(registry().count("C1"), 1u);
    EXPECT_EQ(service.connections(), 0u);
    registry().clear();
}
