#include "tests/torture/subject.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace kit;

namespace torture
{
namespace
{

std::string handle(const char* element_name)
{
    return element(element_name, element("token", "T2"));
}

std::string information()
{
    return element("info", element("server", "the server") + element("sth", element("item", "type")) +
                               element("flags", "1") + element("maxconnect", "2") + element("nconnect", "3") +
                               element("cap", element("item", "4")) +
                               element("requiredInterface", element("item", "11;1;2;http;")) +
                               element("cred", element("item", "5")) + element("ndmpHost", "filer"));
}

// The record, which is untouched after a failure.
struct Information {
    sts_server_info_v8_t record;

    Information() { std::memset(&record, 0, sizeof record); }
    int checked(int status) const
    {
        const auto* bytes = reinterpret_cast<const char*>(&record);
        const bool untouched = std::all_of(bytes, bytes + sizeof record, [](char byte) { return byte == 0; });
        EXPECT_TRUE(status == 0 || untouched);
        return status;
    }
};

// The out handle, which is there after a success only.
int checked(int status, stsp_server_t* made)
{
    EXPECT_EQ(made != nullptr, status == 0);
    if (made) FreeServer()(made);
    return status;
}

int discover(Subject& subject)
{
    const auto info = std::make_unique<Information>();
    return info->checked(get_server_prop_byname()(subject.session.get(), subject.name, &info->record));
}

int open(Subject& subject)
{
    stsp_server_t* made = nullptr;
    const int status =
        open_server()(subject.session.get(), subject.name, subject.credential.get(), nullptr, &made);
    return checked(status, made);
}

int open_target(Subject& subject)
{
    stsp_server_t* made = nullptr;
    const int status =
        open_target_server()(subject.server.get(), "Network_X:t", subject.credential.get(), "", &made);
    return checked(status, made);
}

int close(Subject& subject)
{
    const int status = close_server()(subject.server.get());
    if (status == 0) {
        subject.give_handle_back();
        subject.open_handle();
    }
    return status;
}

int properties(Subject& subject)
{
    const auto info = std::make_unique<Information>();
    return info->checked(get_server_prop()(subject.server.get(), &info->record));
}

} // namespace

std::vector<Entry> server_entries()
{
    const Entry discovery{"stspi_get_server_prop_byname", discover,
                          reply("getServerPropByNameResponse", information())};
    const Entry open_server{"stspi_open_server", open, reply("openServerResponse", handle("serverHandle"))};
    const Entry open_target_server{"stspi_open_target_server", open_target,
                                   reply("openTargetServerResponse", handle("targetServerHandle"))};
    const Entry get_properties{"stspi_get_server_prop", properties,
                               reply("getServerPropResponse", information()), 2060026};
    return {
        discovery.requiring({"info"}),
        open_server.requiring({"serverHandle", "token"}),
        open_target_server.requiring({"targetServerHandle", "token"}),
        {"stspi_close_server", close, reply("closeServerResponse")},
        get_properties.requiring({"info"}),
    };
}

} // namespace torture
