#include "tests/entries/catalogue_fixture.h"

using namespace catalogue;
using namespace kit;
using testing::ElementsAre;
using testing::ElementsAreArray;

namespace
{

std::string information(const std::string& label)
{
    return element("info", element("version", "99") + element("server", "srv") +
                               element("def", element("version", "98") + element("name", "lsu1") +
                                                  element("alloc", "1") + element("storage", "-2") +
                                                  element("description", "d") + element("config", "c") +
                                                  element("flags", "3") + element("saveas", "4") +
                                                  element("maxTransfer", "-5") + element("blockSize", "6") +
                                                  element("allocSize", "7") + label +
                                                  element("repSources", "8") + element("repTargets", "9")) +
                               element("capacity", "9223372036854775807") +
                               element("capacityPhys", "-9223372036854775808") + element("used", "12") +
                               element("usedPhys", "-13") + element("images", "14"));
}

// What that gives in a cleared record.
template <class Information>
std::unique_ptr<Information> expected_record()
{
    auto info = std::make_unique<Information>();
    std::memset(static_cast<void*>(info.get()), 0, sizeof *info);
    put(info->server, "srv");
    put(info->def.name, "lsu1");
    info->def.alloc = 1;
    info->def.storage = -2;
    put(info->def.description, "d");
    put(info->def.config, "c");
    info->def.flags = 3;
    info->def.saveas = 4;
    info->def.maxTransfer = -5;
    info->def.blockSize = 6;
    info->def.allocSize = 7;
    info->capacity = 9223372036854775807;
    info->capacityPhys = std::numeric_limits<std::int64_t>::min();
    info->used = 12;
    info->usedPhys = -13;
    info->images = 14;
    return info;
}

std::string pair(const std::string& number)
{
    return element("item", element("server", "s" + number) + element("lsu", "l" + number));
}

std::string request_for(const std::string& nsource, const std::string& ntarget)
{
    return element("getLSUReplicationProp",
                   lsu_element() + element("nsource", nsource) + element("ntarget", ntarget));
}

class LsuProperties : public CatalogueTest
{
};

class LsuReplication : public CatalogueTest
{
  protected:
    LsuReplication()
    {
        fill_with_canary(sources);
        fill_with_canary(targets);
    }

    void script_partners(const std::string& props)
    {
        script("getLSUReplicationPropResponse", element("props", props));
    }

    std::vector<LogLine> mismatch(const std::string& what) const
    {
        const std::string entry = "stspi_get_lsu_replication_prop: ";
        return {record(entry + "enter"), record(entry + "SOAP return code = 0"),
                failure(entry + "Number of " + what + " returned does not match number requested")};
    }

    sts_lsu_spec_v11_t sources[3];
    sts_lsu_spec_v11_t targets[3];
};

} // namespace

TEST_F(LsuProperties, V11RewritesTheWholeRecordAndLeavesTheVersionAtZero)
{
    script("getLSUPropByNameResponse", information(element("label", "blue")));
    auto info = canary_record<sts_lsu_info_v11_t>();
    ASSERT_EQ(get_lsu_prop_byname_v11()(&lsu, info.get()), 0);
    auto expected = expected_record<sts_lsu_info_v11_t>();
    put(expected->def.label, "blue");
    expected->def.repSources = 8;
    expected->def.repTargets = 9;
    EXPECT_TRUE(same_bytes(*info, *expected));
    EXPECT_EQ(service.request_body(0), element("getLSUPropByName", lsu_element()));
    EXPECT_THAT(session.lines(), ElementsAreArray(good_log("stspi_get_lsu_prop_byname_v11")));
}

TEST_F(LsuProperties, V10RewritesTheWholeOlderRecord)
{
    script("getLSUPropByNameResponse", information(element("label", "blue")));
    auto info = canary_record<sts_lsu_info_v9_t>();
    ASSERT_EQ(get_lsu_prop_byname_v10()(&lsu, info.get()), 0);
    auto expected = expected_record<sts_lsu_info_v9_t>();
    put(expected->def.label, "blue");
    EXPECT_TRUE(same_bytes(*info, *expected));
    EXPECT_EQ(service.request_body(0), element("getLSUPropByName", lsu_element()));
    EXPECT_THAT(session.lines(), ElementsAreArray(good_log("stspi_get_lsu_prop_byname_v10")));
}

TEST_F(LsuProperties, BothVersionsTakeANilLabelForAnEmptyOne)
{
    script("getLSUPropByNameResponse", information(nil("label")));
    auto info = canary_record<sts_lsu_info_v11_t>();
    ASSERT_EQ(get_lsu_prop_byname_v11()(&lsu, info.get()), 0);
    auto expected = expected_record<sts_lsu_info_v11_t>();
    expected->def.repSources = 8;
    expected->def.repTargets = 9;
    EXPECT_TRUE(same_bytes(*info, *expected));

    script("getLSUPropByNameResponse", information(nil("label")));
    auto older = canary_record<sts_lsu_info_v9_t>();
    ASSERT_EQ(get_lsu_prop_byname_v10()(&lsu, older.get()), 0);
    EXPECT_TRUE(same_bytes(*older, *expected_record<sts_lsu_info_v9_t>()));
}

TEST_F(LsuProperties, CutTheServerNameAt511Characters)
{
    script("getLSUPropByNameResponse", element("info", element("server", long_text(512))));
    auto info = canary_record<sts_lsu_info_v11_t>();
    ASSERT_EQ(get_lsu_prop_byname_v11()(&lsu, info.get()), 0);
    EXPECT_EQ(std::string(info->server), long_text(511));
}

TEST_F(LsuProperties, CheckTheArgumentsThenTheServerThenTheServiceHandle)
{
    auto info = canary_record<sts_lsu_info_v11_t>();
    auto older = canary_record<sts_lsu_info_v9_t>();
    lsu.server = nullptr;
    EXPECT_EQ(get_lsu_prop_byname_v11()(nullptr, info.get()), STS_ENULLARG);
    EXPECT_EQ(get_lsu_prop_byname_v11()(&lsu, nullptr), STS_ENULLARG);
    EXPECT_EQ(get_lsu_prop_byname_v11()(&lsu, info.get()), STS_EBADARG);
    EXPECT_EQ(get_lsu_prop_byname_v10()(nullptr, older.get()), STS_ENULLARG);
    EXPECT_EQ(get_lsu_prop_byname_v10()(&lsu, nullptr), STS_ENULLARG);
    EXPECT_EQ(get_lsu_prop_byname_v10()(&lsu, older.get()), STS_EBADARG);
    lsu.server = &server;
    server.service_handle = nullptr;
    EXPECT_EQ(get_lsu_prop_byname_v11()(&lsu, info.get()), STS_ENOSERVICEHANDLE);
    EXPECT_EQ(get_lsu_prop_byname_v10()(&lsu, older.get()), STS_ENOSERVICEHANDLE);
    EXPECT_TRUE(same_bytes(*info, *canary_record<sts_lsu_info_v11_t>()));
    EXPECT_TRUE(same_bytes(*older, *canary_record<sts_lsu_info_v9_t>()));
    expect_silence();
}

TEST_F(LsuReplication, FillsBothArrays)
{
    script_partners(element("source", pair("1") + pair("2")) + element("target", pair("3")));
    ASSERT_EQ(get_lsu_replication_prop()(&lsu, 2, sources, 1, targets), 0);
    EXPECT_STREQ(sources[0].server, "s1");
    EXPECT_STREQ(sources[0].lsu, "l1");
    EXPECT_STREQ(sources[1].server, "s2");
    EXPECT_STREQ(targets[0].lsu, "l3");
    EXPECT_TRUE(same_bytes(sources[2], *canary_record<sts_lsu_spec_v11_t>()));
    EXPECT_TRUE(same_bytes(targets[1], *canary_record<sts_lsu_spec_v11_t>()));
    EXPECT_EQ(service.request_body(0), request_for("2", "1"));
    EXPECT_THAT(session.lines(), ElementsAreArray(good_log("stspi_get_lsu_replication_prop")));
}

TEST_F(LsuReplication, AskedForNoneStillCallsAndIsContentWithNoneInAnyForm)
{
    for (const std::string& props :
         {std::string(), nil("source") + nil("target"), std::string("<ns1:source/><ns1:target/>")}) {
        script_partners(props);
        EXPECT_EQ(get_lsu_replication_prop()(&lsu, 0, nullptr, 0, nullptr), 0) << props;
    }
    EXPECT_EQ(service.request_body(0), request_for("0", "0"));
}

TEST_F(LsuReplication, MoreSourcesThanAskedForAreAMismatch)
{
    script_partners(element("source", pair("1") + pair("2") + pair("3")));
    EXPECT_EQ(get_lsu_replication_prop()(&lsu, 2, sources, 0, nullptr), STS_EBADARG);
    EXPECT_THAT(session.lines(), ElementsAreArray(mismatch("sources")));
    EXPECT_TRUE(same_bytes(sources[0], *canary_record<sts_lsu_spec_v11_t>()));
}

TEST_F(LsuReplication, FewerSourcesThanAskedForAreAMismatchToo)
{
    for (const std::string& props : {element("source", pair("1")), nil("source"), std::string()}) {
        session.clear();
        script_partners(props);
        EXPECT_EQ(get_lsu_replication_prop()(&lsu, 2, sources, 0, nullptr), STS_EBADARG);
        EXPECT_THAT(session.lines(), ElementsAreArray(mismatch("sources")));
    }
}

TEST_F(LsuReplication, AReplyWithoutAnyPropertiesIsNoMismatch)
{
    script("getLSUReplicationPropResponse");
    EXPECT_EQ(get_lsu_replication_prop()(&lsu, 2, sources, 1, targets), STS_EPLUGIN);
    EXPECT_EQ(session.lines().back(), failure("stspi_get_lsu_replication_prop: the reply has no props"));
    EXPECT_EQ(session.lines().size(), 3u);
    EXPECT_TRUE(same_bytes(sources[0], *canary_record<sts_lsu_spec_v11_t>()));
}

TEST_F(LsuReplication, SourcesThatWereNotAskedForAreAMismatchAndNotWritten)
{
    script_partners(element("source", pair("1")));
    EXPECT_EQ(get_lsu_replication_prop()(&lsu, 0, nullptr, 0, nullptr), STS_EBADARG);
    EXPECT_THAT(session.lines(), ElementsAreArray(mismatch("sources")));
}

TEST_F(LsuReplication, AMismatchOfTheTargetsComesAfterTheSourcesWereWritten)
{
    script_partners(element("source", pair("1")) + element("target", pair("2") + pair("3")));
    EXPECT_EQ(get_lsu_replication_prop()(&lsu, 1, sources, 1, targets), STS_EBADARG);
    EXPECT_THAT(session.lines(), ElementsAreArray(mismatch("targets")));
    EXPECT_STREQ(sources[0].lsu, "l1");
    EXPECT_TRUE(same_bytes(targets[0], *canary_record<sts_lsu_spec_v11_t>()));
}

TEST_F(LsuReplication, ACountBeyondTheSignedRangeGoesOutBitForBit)
{
    script_partners("");
    EXPECT_EQ(get_lsu_replication_prop()(&lsu, 4294967295u, sources, 0, nullptr), STS_EBADARG);
    EXPECT_EQ(service.request_body(0), request_for("-1", "0"));
}

TEST_F(LsuReplication, ChecksTheReferenceBeforeAnythingIsLogged)
{
    EXPECT_EQ(get_lsu_replication_prop()(nullptr, 1, nullptr, 1, nullptr), STS_ENULLARG);
    lsu.server = nullptr;
    EXPECT_EQ(get_lsu_replication_prop()(&lsu, 1, nullptr, 1, nullptr), STS_EBADARG);
    lsu.server = &server;
    server.service_handle = nullptr;
    EXPECT_EQ(get_lsu_replication_prop()(&lsu, 1, nullptr, 1, nullptr), STS_ENOSERVICEHANDLE);
    expect_silence();
}

TEST_F(LsuReplication, ChecksTheArraysAfterTheEnterLineSourcesFirst)
{
    EXPECT_EQ(get_lsu_replication_prop()(&lsu, 1, nullptr, 1, nullptr), STS_EBADARG);
    EXPECT_EQ(get_lsu_replication_prop()(&lsu, 1, sources, 1, nullptr), STS_EBADARG);
    const std::string entry = "stspi_get_lsu_replication_prop: ";
    EXPECT_THAT(session.lines(),
                ElementsAre(record(entry + "enter"),
                            failure(entry + "Number of sources is greater than 0 but source array is null"),
                            record(entry + "enter"),
                            failure(entry + "Number of targets is greater than 0 but target array is null")));
    EXPECT_EQ(service.connections(), 0u);
}
