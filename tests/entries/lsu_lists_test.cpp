#include "tests/entries/catalogue_fixture.h"

using namespace catalogue;
using namespace kit;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace
{

template <class Definition>
Definition filter()
{
    Definition def;
    fill_with_canary(def); // a version and replication counts that nobody may see
    put(def.name, "lsu<1>");
    def.alloc = -1;
    def.storage = 2;
    put(def.description, "free text");
    put(def.config, "a=b");
    def.flags = -3;
    def.saveas = 4;
    def.maxTransfer = -5;
    def.blockSize = 9223372036854775807;
    def.allocSize = 7;
    put(def.label, "blue");
    return def;
}

std::string filter_element()
{
    return element("lsudef", element("version", "0") + element("name", "lsu&lt;1&gt;") +
                                 element("alloc", "-1") + element("storage", "2") +
                                 element("description", "free text") + element("config", "a=b") +
                                 element("flags", "-3") + element("saveas", "4") +
                                 element("maxTransfer", "-5") + element("blockSize", "9223372036854775807") +
                                 element("allocSize", "7") + element("label", "blue") +
                                 element("repSources", "0") + element("repTargets", "0"));
}

std::string open_request(const std::string& lsudef)
{
    return element("openLSUList", token_element("serverHandle", "S1") + lsudef);
}

class LsuLists : public CatalogueTest
{
  protected:
    // An open list with the token "L1" and a log that knows nothing of it.
    stsp_list_t* open_list()
    {
        script("openLSUListResponse", token_element("lsuListHandle", "L1"));
        stsp_list_t* list = nullptr;
        EXPECT_EQ(open_lsu_list_v11()(&server, nullptr, &list), 0);
        session.clear();
        return list;
    }

    void close(stsp_list_t* list)
    {
        script("closeLSUListResponse");
        EXPECT_EQ(close_lsu_list()(list), 0);
    }
};

} // namespace

TEST_F(LsuLists, OpenV11WithoutAFilterSendsANilDefinitionAndMakesAHandle)
{
    script("openLSUListResponse", token_element("lsuListHandle", "L1"));
    stsp_list_t* list = nullptr;
    ASSERT_EQ(open_lsu_list_v11()(&server, nullptr, &list), 0);
    EXPECT_EQ(service.request_body(0), open_request(nil("lsudef")));
    EXPECT_EQ(list->server, &server);
    EXPECT_STREQ(list->token, "L1");
    EXPECT_THAT(session.lines(), ElementsAreArray(good_log("stspi_open_lsu_list_v11")));
    close(list);
}

TEST_F(LsuLists, OpenV10WithoutAFilterLogsUnderItsOwnName)
{
    script("openLSUListResponse", token_element("lsuListHandle", "L1"));
    stsp_list_t* list = nullptr;
    ASSERT_EQ(open_lsu_list_v10()(&server, nullptr, &list), 0);
    EXPECT_EQ(service.request_body(0), open_request(nil("lsudef")));
    EXPECT_THAT(session.lines(), ElementsAreArray(good_log("stspi_open_lsu_list_v10")));
    close(list);
}

TEST_F(LsuLists, OpenV11SendsTheFilterWithoutItsVersionAndReplicationCounts)
{
    const auto def = filter<sts_lsu_def_v11_t>();
    script("openLSUListResponse", token_element("lsuListHandle", "L1"));
    stsp_list_t* list = nullptr;
    ASSERT_EQ(open_lsu_list_v11()(&server, &def, &list), 0);
    EXPECT_EQ(service.request_body(0), open_request(filter_element()));
    close(list);
}

TEST_F(LsuLists, OpenV10SendsTheSameOfTheOlderRecord)
{
    const auto def = filter<sts_lsu_def_v9_t>();
    script("openLSUListResponse", token_element("lsuListHandle", "L1"));
    stsp_list_t* list = nullptr;
    ASSERT_EQ(open_lsu_list_v10()(&server, &def, &list), 0);
    EXPECT_EQ(service.request_body(0), open_request(filter_element()));
    close(list);
}

TEST_F(LsuLists, OpenSendsAnAllEmptyFilterWithItsEmptyTexts)
{
    sts_lsu_def_v11_t def = {};
    script("openLSUListResponse", token_element("lsuListHandle", "L1"));
    stsp_list_t* list = nullptr;
    ASSERT_EQ(open_lsu_list_v11()(&server, &def, &list), 0);
    EXPECT_EQ(service.request_body(0),
              open_request(element("lsudef", element("version", "0") + "<ns1:name/>" + element("alloc", "0") +
                                                 element("storage", "0") + "<ns1:description/><ns1:config/>" +
                                                 element("flags", "0") + element("saveas", "0") +
                                                 element("maxTransfer", "0") + element("blockSize", "0") +
                                                 element("allocSize", "0") + "<ns1:label/>" +
                                                 element("repSources", "0") + element("repTargets", "0"))));
    close(list);
}

TEST_F(LsuLists, OpenChecksTheArgumentsAndThenTheServiceHandle)
{
    stsp_list_t* list = nullptr;
    server.service_handle = nullptr;
    EXPECT_EQ(open_lsu_list_v11()(nullptr, nullptr, &list), STS_ENULLARG);
    EXPECT_EQ(open_lsu_list_v11()(&server, nullptr, nullptr), STS_ENULLARG);
    EXPECT_EQ(open_lsu_list_v11()(&server, nullptr, &list), STS_ENOSERVICEHANDLE);
    EXPECT_EQ(open_lsu_list_v10()(nullptr, nullptr, &list), STS_ENULLARG);
    EXPECT_EQ(open_lsu_list_v10()(&server, nullptr, nullptr), STS_ENULLARG);
    EXPECT_EQ(open_lsu_list_v10()(&server, nullptr, &list), STS_ENOSERVICEHANDLE);
    EXPECT_EQ(list, nullptr);
    expect_silence();
}

TEST_F(LsuLists, ListWritesTheNextName)
{
    stsp_list_t* list = open_list();
    script("listLSUResponse", element("lsu", "lsu7"));
    char name[STS_LSU_NAME_SIZE];
    fill_with_canary(name);
    EXPECT_EQ(list_lsu()(list, name), 0);
    char expected[STS_LSU_NAME_SIZE];
    fill_with_canary(expected);
    put(expected, "lsu7");
    EXPECT_TRUE(same_bytes(name, expected));
    EXPECT_EQ(service.request_body(1), element("listLSU", token_element("lsuListHandle", "L1")));
    EXPECT_THAT(session.lines(), ElementsAreArray(good_log("stspi_list_lsu")));
    close(list);
}

TEST_F(LsuLists, ListCutsANameOf1024CharactersTo1023)
{
    stsp_list_t* list = open_list();
    for (const std::size_t length : {1023u, 1024u, 1025u, 100000u}) {
        script("listLSUResponse", element("lsu", long_text(length)));
        struct {
            char name[STS_LSU_NAME_SIZE];
            char behind[8];
        } buffer;
        fill_with_canary(buffer);
        EXPECT_EQ(list_lsu()(list, buffer.name), 0);
        EXPECT_EQ(std::string(buffer.name), long_text(1023)) << length;
        EXPECT_EQ(buffer.behind[0], kCanary);
    }
    close(list);
}

TEST_F(LsuLists, ListWithoutANameInTheReplyWritesAnEmptyOne)
{
    stsp_list_t* list = open_list();
    script("listLSUResponse");
    char name[STS_LSU_NAME_SIZE] = "before";
    EXPECT_EQ(list_lsu()(list, name), 0);
    EXPECT_STREQ(name, "");
    close(list);
}

TEST_F(LsuLists, ListSurvivesAMissingNameBufferAndSaysSo)
{
    stsp_list_t* list = open_list();
    script("listLSUResponse", element("lsu", "lsu7"));
    EXPECT_EQ(list_lsu()(list, nullptr), 0);
    EXPECT_THAT(session.lines(), ElementsAreArray(log_without_place("stspi_list_lsu", "name")));
    close(list);
}

TEST_F(LsuLists, ListAfterTheEndGivesTheServicesCodeAgainAndAgain)
{
    stsp_list_t* list = open_list();
    char name[STS_LSU_NAME_SIZE] = "before";
    for (const int code : {2060013, 2060013, 4711}) {
        service.script(fault_answer(fault(code)));
        EXPECT_EQ(list_lsu()(list, name), code);
        EXPECT_STREQ(name, "before");
    }
    close(list);
}

TEST_F(LsuLists, ListAndCloseOfANullHandleAreRefusedWithoutALine)
{
    char name[STS_LSU_NAME_SIZE];
    EXPECT_EQ(list_lsu()(nullptr, name), STS_ENULLARG);
    EXPECT_EQ(close_lsu_list()(nullptr), STS_ENULLARG);
    expect_silence();
}

TEST_F(LsuLists, ListAndCloseOfARecordWithoutATokenAreRefusedAfterTheEnterLine)
{
    stsp_list_t list = {&server, nullptr};
    char name[STS_LSU_NAME_SIZE];
    EXPECT_EQ(list_lsu()(&list, name), STS_EBADARG);
    EXPECT_EQ(close_lsu_list()(&list), STS_EBADARG);
    EXPECT_THAT(session.lines(),
                ElementsAre(record("stspi_list_lsu: enter"), record("stspi_close_lsu_list: enter")));
    EXPECT_EQ(service.connections(), 0u);
}

TEST_F(LsuLists, CloseSendsTheTokenAndEndsTheHandle)
{
    stsp_list_t* list = open_list();
    close(list);
    EXPECT_EQ(service.request_body(1), element("closeLSUList", token_element("lsuListHandle", "L1")));
    EXPECT_THAT(session.lines(), ElementsAreArray(good_log("stspi_close_lsu_list")));
}

TEST_F(LsuLists, CloseThatFailsKeepsTheHandleForAnotherTry)
{
    stsp_list_t* list = open_list();
    service.script(fault_answer(fault(2060012)));
    EXPECT_EQ(close_lsu_list()(list), 2060012);
    EXPECT_STREQ(list->token, "L1");
    close(list);
    EXPECT_EQ(service.request_body(2), service.request_body(1));
}
