#include "plugin/base/handle_records.h"
#include "tests/interface/c_host.h"
#include "tests/kit/host.h"
#include "tests/kit/log_recorder.h"
#include "tests/kit/scripted_service.h"
#include "tests/kit/soap_text.h"

#include <gmock/gmock.h>

#include <array>
#include <cstring>
#include <fstream>
#include <iterator>
#include <limits>

using kit::Host;

namespace
{

constexpr unsigned char kMark = 0xA5;

// A definition record as bytes, the way the host's binary layout has it.
class Definition
{
  public:
    Definition() { std::memset(&record_, kMark, sizeof record_); }

    stspi_plugin_def_t* get() { return &record_; }

    template <class Value>
    Value at(std::size_t offset) const
    {
        Value value;
        std::memcpy(&value, bytes() + offset, sizeof value);
        return value;
    }
    std::string text_at(std::size_t offset) const
    {
        return {bytes() + offset, strnlen(bytes() + offset, 32)};
    }
    bool is_marked(std::size_t offset, std::size_t size) const
    {
        const std::string_view span(bytes() + offset, size);
        return span.find_first_not_of(static_cast<char>(kMark)) == std::string_view::npos;
    }

  private:
    const char* bytes() const { return reinterpret_cast<const char*>(&record_); }

    stspi_plugin_def_t record_;
};

auto init()
{
    return Host::instance().symbol<decltype(stspi_init)>("stspi_init");
}

auto init3()
{
    return Host::instance().symbol<decltype(stspi_init3)>("stspi_init3");
}

auto claim()
{
    return Host::instance().main_slot<decltype(stspi_claim)>(4);
}

const stspi_slot_t* table(const char* name)
{
    return Host::instance().symbol<const stspi_slot_t>(name);
}

} // namespace

TEST(Handshake, FillsTheDefinitionAtItsOffsets)
{
    Definition definition;
    ASSERT_EQ(init()(11, "/somewhere/libsoapwrapper.so", definition.get()), 0);
    EXPECT_EQ(definition.at<std::uint64_t>(0), 11U);
    EXPECT_EQ(definition.at<const stspi_slot_t*>(8), table("PluginEntryPoints_v11"));
    EXPECT_EQ(definition.text_at(16), "Network_");
    EXPECT_EQ(definition.text_at(48), "SOAP Wrapper Plugin");
    EXPECT_TRUE(definition.is_marked(80, 448));
    EXPECT_EQ(definition.at<std::uint32_t>(528), 1U);
    EXPECT_EQ(definition.at<std::uint32_t>(532), 1U);
    EXPECT_EQ(definition.at<std::uint64_t>(536), 11U);
    EXPECT_EQ(definition.at<std::uint64_t>(544), 2U);
    EXPECT_EQ(definition.at<std::uint64_t>(552), 11U);
    EXPECT_EQ(definition.text_at(560), "910000 Tarnholme_9.1.0.1");
}

TEST(Handshake, WritesItsOwnVersionForAnyHostOf11OrMore)
{
    for (const std::uint64_t version : {std::uint64_t{11}, std::uint64_t{12}, std::uint64_t{1} << 32,
                                        std::numeric_limits<std::uint64_t>::max()}) {
        Definition definition;
        EXPECT_EQ(init()(version, "p", definition.get()), 0) << version;
        EXPECT_EQ(definition.at<std::uint64_t>(0), 11U);
        EXPECT_EQ(definition.at<std::uint64_t>(536), 11U);
        EXPECT_EQ(definition.at<std::uint64_t>(552), 11U);
    }
}

TEST(Handshake, RefusesAnOlderHostWithoutWriting)
{
    for (const std::uint64_t version : {0U, 1U, 9U, 10U}) {
        Definition definition;
        EXPECT_EQ(init()(version, "p", definition.get()), 2060008) << version;
        EXPECT_TRUE(definition.is_marked(0, sizeof(stspi_plugin_def_t)));
    }
}

TEST(Handshake, RefusesANullDefinition)
{
    EXPECT_EQ(init()(11, "p", nullptr), 2060001);
    EXPECT_EQ(init()(10, "p", nullptr), 2060001);
    EXPECT_EQ(init3()(11, nullptr), 2060001);
}

TEST(Handshake, OfTheSnapshotsFillsItsTwoFieldsForAnyHost)
{
    for (const std::uint64_t version :
         {std::uint64_t{0}, std::uint64_t{10}, std::uint64_t{11}, ~std::uint64_t{0}}) {
        stspi_plugin_def3_t definition;
        std::memset(&definition, kMark, sizeof definition);
        EXPECT_EQ(init3()(version, &definition), 0);
        EXPECT_EQ(definition.version, 11U);
        EXPECT_EQ(definition.entry_points, table("PluginEntryPoints3_v11"));
    }
}

TEST(Claim, AcceptsNamesThatBeginWithThePrefix)
{
    EXPECT_EQ(claim()("Network_"), 0);
    EXPECT_EQ(claim()("Network_NTAP"), 0);
    EXPECT_EQ(claim()("Network_NTAP:filer"), 0);
    EXPECT_EQ(claim()("Network_\xff\x01 anything"), 0);
}

TEST(Claim, RefusesEveryOtherName)
{
    for (const char* name : {"network_NTAP", "NETWORK_", "Network", "Network-NTAP", "N", "", " Network_",
                             "network_", "Networ_k", "Disk_"}) {
        EXPECT_EQ(claim()(name), 2060009) << name;
    }
}

TEST(Claim, ReadsNoFurtherThanAShortNamesEnd)
{
    // On the heap and to the byte, so that a read beyond it shows.
    for (std::size_t length = 0; length < 8; ++length) {
        const std::vector<char> name = [&] {
            std::vector<char> text(length + 1, '\0');
            std::memcpy(text.data(), "Network_", length);
            return text;
        }();
        EXPECT_EQ(claim()(name.data()), 2060009) << length;
    }
}

TEST(Claim, RefusesANullName)
{
    EXPECT_EQ(claim()(nullptr), 2060001);
}

TEST(CopyImage, DoesNothingWhateverItIsGiven)
{
    // Whatever the host believes its arguments to be.
    const auto copy_image = Host::instance().symbol<int(void*, long, const char*, int)>("stspi_copy_image");
    EXPECT_EQ(copy_image(nullptr, 0, nullptr, 0), 0);
    EXPECT_EQ(copy_image(Host::instance().symbol<int>("stspi_ismt"), -1, "x", 7), 0);
}

TEST(Release, IsTheTextThatASearchOfTheFileFinds)
{
    const auto* text = Host::instance().symbol<const char>("TH_STATIC_RELEASE_STR");
    constexpr char kExpected[24] = "\n@(#) Tarnholme_9.1.0.1";
    EXPECT_EQ(std::memcmp(text, kExpected, sizeof kExpected), 0);
    std::ifstream file(SOAPWRAPPER_LIBRARY, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    EXPECT_NE(bytes.find(std::string(kExpected, sizeof kExpected)), std::string::npos);
}

TEST(Release, IsGivenWholeAndBare)
{
    using Text = const char*();
    const auto* text = Host::instance().symbol<const char>("TH_STATIC_RELEASE_STR");
    EXPECT_EQ(Host::instance().symbol<Text>("get_TH_binary_version1")(), text);
    EXPECT_EQ(Host::instance().symbol<Text>("get_TH_binary_version2")(), text + 6);
    EXPECT_STREQ(Host::instance().symbol<Text>("get_TH_binary_version2")(), "Tarnholme_9.1.0.1");
}

TEST(Globals, StspiIsmtReads0)
{
    EXPECT_EQ(*Host::instance().symbol<std::int32_t>("stspi_ismt"), 0);
}

TEST(ThreadSupport, StartsAndEndsWith0AnyNumberOfTimes)
{
    const auto setup = Host::instance().symbol<int()>("CRYPTO_thread_setup");
    const auto cleanup = Host::instance().symbol<int(int)>("CRYPTO_thread_cleanup");
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(setup(), 0);
        EXPECT_EQ(cleanup(0), 0);
    }
}

TEST(Terminate, Returns0AndTheHostMayBeginAgain)
{
    const auto terminate = Host::instance().main_slot<decltype(stspi_terminate)>(35);
    stspi_plugin_def3_t definition;
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(terminate(), 0);
        EXPECT_EQ(init3()(11, &definition), 0);
    }
}

TEST(PublicHeaders, MeanTheSameToAHostInC)
{
    const CHostLayout in_c = c_host_layout_seen();
    EXPECT_EQ(in_c.plugin_def, sizeof(stspi_plugin_def_t));
    EXPECT_EQ(in_c.plugin_def_release, 560U);
    EXPECT_EQ(in_c.plugin_def3, sizeof(stspi_plugin_def3_t));
    EXPECT_EQ(in_c.session, sizeof(sts_session_def_v7_t));
    EXPECT_EQ(in_c.session_id, 520U);
    EXPECT_EQ(in_c.session_callback, 528U);
    EXPECT_EQ(in_c.session_flags, 536U);
    EXPECT_EQ(in_c.credential, sizeof(sts_cred_t));
    EXPECT_EQ(in_c.credential_bytes, 8U);
    EXPECT_EQ(in_c.server_info, sizeof(sts_server_info_v8_t));
    EXPECT_EQ(in_c.image_info, sizeof(sts_image_info_v10_t));
    EXPECT_EQ(in_c.lsu_info, sizeof(sts_lsu_info_v11_t));
    EXPECT_EQ(in_c.file_attributes, sizeof(sts_file_attr_v11_t));
    EXPECT_EQ(in_c.operation, 24U);
    EXPECT_EQ(in_c.operation_id, 8U);
}

TEST(PublicHeaders, LetAHostInCDriveEachTableWithoutACast)
{
    EXPECT_EQ(c_host_claims(Host::instance().definition().entry_points, "Network_NTAP"), 0);
    EXPECT_EQ(c_host_claims(Host::instance().definition().entry_points, "Disk_1"), 2060009);

    const auto* old_table = Host::instance().symbol<const stspi_slot_t>("PluginEntryPoints_v10");
    EXPECT_EQ(c_host_claims_of_old(old_table, "Network_NTAP"), 0);
    EXPECT_EQ(c_host_claims_of_old(old_table, "Disk_1"), 2060009);

    const sts_volume_spec_v11_t volume{};
    const auto* second_table = Host::instance().symbol<const stspi_slot_t>("PluginEntryPoints3_v11");
    EXPECT_EQ(c_host_claims_volume(second_table, &volume), 2060022);
}

TEST(PublicHeaders, LetAHostInCStopAnOperationOfWhichItKnowsTheIdAlone)
{
    kit::ScriptedService service;
    service.script(kit::answer(kit::reply("asyncCancelResponse")));
    kit::RecordedSession session;
    std::string url = service.url();
    char service_handle[] = "SH";
    stsp_server server{};
    server.endpoint = url.data();
    server.service_handle = service_handle;
    server.session = session.get();

    char id[] = "op-9";
    EXPECT_EQ(c_host_cancels(Host::instance().definition().entry_points, &server, id), 0);
    EXPECT_THAT(service.request_body(0),
                testing::HasSubstr(kit::element("opid", kit::element("token", "op-9"))));
    EXPECT_STREQ(id, "op-9");
}
