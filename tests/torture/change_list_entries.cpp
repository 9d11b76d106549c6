#include "tests/entries/change_list_fixture.h"
#include "tests/torture/subject.h"

using namespace kit;

namespace torture
{
namespace
{

std::string snapshot_at(const std::string& path)
{
    return reply("getSnapPropByNameResponse",
                 change_list::snap_info(change_list::ndmp_element("snapVolSpec", "filer1", path)));
}

// Each subject has a list of its own.
std::string token_of(const Subject& subject)
{
    return "L" + subject.session.id();
}

// A list of the service's, as an open would have made it.
stsp_change_list_t* make_list(const Subject& subject)
{
    auto* list = new stsp_change_list_t();
    list->server = subject.server.get();
    list->token = strdup(token_of(subject).c_str());
    return list;
}

void free_list(stsp_change_list_t* list)
{
    std::free(list->token);
    delete list;
}

int open(Subject& subject)
{
    const auto lsu = std::make_unique<stsp_lsu_v7_t>();
    const auto base = std::make_unique<sts_snap_def_v11_t>();
    const auto diff = std::make_unique<sts_snap_def_v11_t>();
    const auto volume = std::make_unique<sts_volume_spec_v11_t>();
    lsu->server = subject.server.get();
    volume->volumeType = STS_VOLUME_NDMP;
    stsp_change_list_t* made = nullptr;
    const int status = change_list::open_list()(lsu.get(), base.get(), diff.get(), volume.get(), 0, &made);
    EXPECT_EQ(made != nullptr, status == 0);
    if (made) free_list(made);
    return status;
}

int list(Subject& subject)
{
    const auto entry = std::make_unique<sts_file_attr_v11_t>();
    stsp_change_list_t* handle = make_list(subject);
    const int status = change_list::list_file()(handle, 0, nullptr, entry.get());
    EXPECT_STREQ(entry->name, status == 0 ? "/vol/v1/a" : "");
    free_list(handle);
    return status;
}

// A batch comes whole or not at all.
int list_batch(Subject& subject)
{
    const auto entry = std::make_unique<sts_file_attr_v11_t>();
    stsp_change_list_t* handle = make_list(subject);
    const int status = change_list::list_file()(handle, 0, nullptr, entry.get());
    const auto& buffer = change_list::registry().at(token_of(subject)).entry_buffer;
    EXPECT_STREQ(entry->name, status == 0 ? "/vol/v1/a" : "");
    EXPECT_EQ(buffer.size(), status == 0 ? 2u : 0u);
    change_list::registry().clear();
    free_list(handle);
    return status;
}

int close(Subject& subject)
{
    stsp_change_list_t* handle = make_list(subject);
    const int status = change_list::close_list()(handle);
    if (status != 0) free_list(handle);
    return status;
}

} // namespace

std::vector<Entry> change_list_entries()
{
    return {
        {"stspi_open_snap_change_list",
         open,
         reply("openSnapChangeListResponse", change_list::token_element("fileListHandle", "L")),
         2060017,
         {snapshot_at("/vol/v1/.snapshot/a"), snapshot_at("/vol/v1/.snapshot/b")}},
        {"stspi_list_file", list, change_list::files_reply(change_list::file_element("/vol/v1/a"), 1)},
        {"stspi_list_file_of_three", list_batch,
         change_list::files_reply(change_list::file_element("/vol/v1/a") +
                                      change_list::file_element("/vol/v1/b", 1) +
                                      change_list::file_element("/vol/v1/c", 2),
                                  3)},
        {"stspi_close_snap_change_list", close, reply("closeSnapChangeListResponse")},
    };
}

} // namespace torture
