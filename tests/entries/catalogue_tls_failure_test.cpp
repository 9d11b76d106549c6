// What the entries do where TLS can't even be set up. A program of its own: once the library has made its one
// TLS context, nothing can keep it from having one.
#include "tests/entries/catalogue_cases.h"
#include "tests/entries/runtime_hooks.h"

using namespace catalogue;
using namespace kit;
using testing::ElementsAreArray;

namespace
{

const LogLine& set_up_failure()
{
    static const LogLine line = failure("SOAP 1.1 fault SOAP-ENV:Server[no subcode]\n\"SSL/TLS error\"\n"
                                        "Detail: Can't setup context\nHANDLE_SOAP_FAULT: 2060021");
    return line;
}

class ListsWithoutTls : public CatalogueTest
{
  protected:
    ListsWithoutTls()
    {
        server.use_https = true;
        records->server = &server;
        records->lsu = &lsu;
        records->image.server = &server;
        records->list = &list;
    }

    char token[2] = "L";
    stsp_list_t list = {&server, token};
    std::unique_ptr<Records> records = std::make_unique<Records>();
    const hooks::NoTlsContexts none;
};

class WithoutTls : public ListsWithoutTls, public testing::WithParamInterface<Case>
{
};

INSTANTIATE_TEST_SUITE_P(EveryEntry, WithoutTls, testing::ValuesIn(cases()), name_of);

} // namespace

TEST_P(WithoutTls, EveryEntryFailsBeforeAnyConnectionAndWritesNothing)
{
    EXPECT_EQ(GetParam().call(*records), STS_EFAULTDETAIL);
    std::vector<LogLine> expected = {record(GetParam().name + ": enter")};
    expected.insert(expected.end(), GetParam().after_enter.begin(), GetParam().after_enter.end());
    expected.push_back(set_up_failure());
    EXPECT_THAT(session.lines(), ElementsAreArray(expected));
    EXPECT_EQ(service.connections(), 0u);
    const Records fresh;
    EXPECT_TRUE(same_bytes(records->out, fresh.out));
    EXPECT_STREQ(list.token, "L");
}

TEST_F(ListsWithoutTls, OfLsusAndImagesFailForThatAheadOfAMissingToken)
{
    list.token = nullptr;
    EXPECT_EQ(list_lsu()(&list, records->out.name), STS_EFAULTDETAIL);
    EXPECT_EQ(close_lsu_list()(&list), STS_EFAULTDETAIL);
    EXPECT_EQ(list_image()(&list, &records->out.image), STS_EFAULTDETAIL);
    EXPECT_EQ(close_image_list()(&list), STS_EFAULTDETAIL);
}

TEST_F(ListsWithoutTls, OfSnapshotsMissTheirTokenFirst)
{
    list.token = nullptr;
    EXPECT_EQ(list_snap()(&list, &records->out.snap), STS_EBADARG);
    EXPECT_EQ(close_snap_list()(&list), STS_EBADARG);
}
