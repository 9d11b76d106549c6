// The library beside others in one process. Each case runs in a process of its own, because what is loaded
// first decides.
#include "plugin/host/entry_points.h"
#include "tests/interface/loaded_library.h"
#include "tests/kit/host.h"
#include "tests/kit/log_recorder.h"
#include "tests/kit/new_process.h"
#include "tests/kit/scripted_service.h"
#include "tests/kit/soap_text.h"

#include <gmock/gmock.h>

#include <cstring>
#include <fstream>
#include <memory>
#include <optional>
#include <tuple>

using namespace kit;
using testing::HasSubstr;

namespace
{

// Our library, driven through the tables that it hands out.
class Plugin
{
  public:
    Plugin(int mode, const std::string& configuration) : library_(SOAPWRAPPER_LIBRARY, mode)
    {
        const std::string path = (folder_.path() / "libsoapwrapper.so").string();
        std::ofstream(folder_.path() / "soapwrapper.conf") << configuration;
        EXPECT_EQ(library_.symbol<decltype(stspi_init)>("stspi_init")(11, path.c_str(), &definition_), 0);
        EXPECT_EQ(library_.symbol<decltype(stspi_init3)>("stspi_init3")(11, &definition3_), 0);
    }

    template <class Entry>
    Entry* slot(std::size_t number) const
    {
        return reinterpret_cast<Entry*>(definition_.entry_points[number]);
    }

    const stspi_plugin_def_t& definition() const { return definition_; }
    const stspi_plugin_def3_t& definition3() const { return definition3_; }

  private:
    TemporaryFolder folder_;
    LoadedLibrary library_;
    stspi_plugin_def_t definition_{};
    stspi_plugin_def3_t definition3_{};
};

// A round of calls: discovery, open, a fault with its detail, close. Each needs the wire and the fault glue.
void expect_that_calls_work(const Plugin& plugin, ScriptedService& service)
{
    RecordedSession session;
    auto info = std::make_unique<sts_server_info_v8_t>();
    service.script(answer(reply(
        "getServerPropByNameResponse",
        element("info", element("server", "s") +
                            element("requiredInterface", element("item", "11;1;2;http;" + service.url()))))));
    const auto discover = plugin.slot<decltype(stspi_get_server_prop_byname)>(22);
    EXPECT_EQ(discover(session.get(), "Network_X:host", info.get()), 0);
    EXPECT_STREQ(info->server, "s");

    service.script(answer(reply("openServerResponse", element("serverHandle", element("token", "T")))));
    stsp_server_t* server = nullptr;
    const auto open = plugin.slot<decltype(stspi_open_server)>(29);
    EXPECT_EQ(open(session.get(), "Network_X:host", Credential("c").get(), nullptr, &server), 0);
    ASSERT_NE(server, nullptr);

    const auto close = plugin.slot<decltype(stspi_close_server)>(9);
    service.script(fault_answer(fault(2060013)));
    EXPECT_EQ(close(server), 2060013);
    EXPECT_EQ(session.lines().back(), failure(rendered_fault(2060013)));
    service.script(answer(reply("closeServerResponse")));
    EXPECT_EQ(close(server), 0);
    for (const Request& request : service.requests()) {
        EXPECT_THAT(request.body, HasSubstr("xmlns:ns1=\"" SOAPWRAPPER_SERVICE_NAMESPACE "\""));
        EXPECT_THAT(request.body, testing::Not(HasSubstr("urn:neighbour")));
    }
}

void expect_that_the_neighbour_works(const LoadedLibrary& neighbour)
{
    ScriptedService service;
    char reply_text[64] = "";
    const auto echo = neighbour.symbol<int(const char*, const char*, char*, unsigned long)>("neighbour_echo");
    service.script(answer(envelope("<n:echoResponse xmlns:n=\"urn:neighbour\"><reply>and back</reply>"
                                   "</n:echoResponse>")));
    EXPECT_EQ(echo(service.url().c_str(), "there", reply_text, sizeof reply_text), 0);
    EXPECT_STREQ(reply_text, "and back");
    EXPECT_EQ(service.request_body(0), "<ns:echo><text>there</text></ns:echo>");
    EXPECT_THAT(service.requests().at(0).body, HasSubstr("xmlns:ns=\"urn:neighbour\""));

    service.script(fault_answer(fault(5)));
    EXPECT_EQ(echo(service.url().c_str(), "there", reply_text, sizeof reply_text), 1);
    EXPECT_STREQ(reply_text, "it went wrong");
}

enum class First { kOurs, kTheirs };

class Company : public testing::TestWithParam<std::tuple<First, int>>
{
  protected:
    static First first() { return std::get<0>(GetParam()); }
    static int mode() { return std::get<1>(GetParam()); }

    // Both libraries, in the order of the case.
    static void with_a_neighbour()
    {
        ScriptedService service;
        const std::string configuration = "host=" + service.url() + "\n";
        std::optional<LoadedLibrary> neighbour;
        if (first() == First::kTheirs) neighbour.emplace(NEIGHBOUR_LIBRARY, mode());
        const Plugin plugin(mode(), configuration);
        if (!neighbour) neighbour.emplace(NEIGHBOUR_LIBRARY, mode());
        expect_that_calls_work(plugin, service);
        expect_that_the_neighbour_works(*neighbour);
        expect_that_calls_work(plugin, service);
    }

    static bool is_ours(const void* address)
    {
        Dl_info info;
        return dladdr(address, &info) != 0 && std::strcmp(info.dli_fname, SOAPWRAPPER_LIBRARY) == 0;
    }

    static void with_an_impostor()
    {
        ScriptedService service;
        std::optional<LoadedLibrary> impostor;
        if (first() == First::kTheirs) impostor.emplace(IMPOSTOR_LIBRARY, RTLD_GLOBAL);
        const Plugin plugin(mode(), "host=" + service.url() + "\n");
        if (!impostor) impostor.emplace(IMPOSTOR_LIBRARY, RTLD_GLOBAL);
        for (std::size_t i = 0; i < STSPI_V11_SLOTS; ++i) {
            const stspi_slot_t slot = plugin.definition().entry_points[i];
            EXPECT_TRUE(!slot || is_ours(reinterpret_cast<const void*>(slot))) << "slot " << i;
        }
        for (std::size_t i = 0; i < STSPI3_V11_SLOTS; ++i) {
            const stspi_slot_t slot = plugin.definition3().entry_points[i];
            EXPECT_TRUE(!slot || is_ours(reinterpret_cast<const void*>(slot))) << "slot " << i;
        }
        EXPECT_TRUE(is_ours(plugin.definition().entry_points));
        EXPECT_TRUE(is_ours(plugin.definition3().entry_points));
        EXPECT_STREQ(plugin.definition().release, "910000 Tarnholme_9.1.0.1");
        expect_that_calls_work(plugin, service);
        EXPECT_EQ(plugin.slot<decltype(stspi_terminate)>(35)(), 0);
    }
};

} // namespace

TEST_P(Company, OfAnotherPluginOnTheSharedRuntimeDoesNeitherHarm)
{
    IN_A_NEW_PROCESS(with_a_neighbour());
}

TEST_P(Company, OfAPluginWithTheSameNamesDoesntDivertOurs)
{
    IN_A_NEW_PROCESS(with_an_impostor());
}

INSTANTIATE_TEST_SUITE_P(Order, Company,
                         testing::Combine(testing::Values(First::kOurs, First::kTheirs),
                                          testing::Values(RTLD_LOCAL, RTLD_GLOBAL)),
                         [](const auto& named) {
                             return std::string(std::get<0>(named.param) == First::kOurs ? "Ours"
                                                                                         : "Theirs") +
                                    "First" + (std::get<1>(named.param) == RTLD_LOCAL ? "Local" : "Global");
                         });
