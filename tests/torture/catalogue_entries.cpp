#include "tests/entries/catalogue_cases.h"
#include "tests/torture/subject.h"

using namespace kit;

namespace torture
{
namespace
{

using catalogue::Case;
using catalogue::Kind;
using catalogue::Records;

void free_list(stsp_list_t* list)
{
    std::free(list->token);
    delete list;
}

int call(const Case& test, Subject& subject)
{
    stsp_server_t* server = subject.server.get();
    stsp_lsu_v7_t lsu = {server, "the LSU"};
    auto* list = new stsp_list_t{server, strdup("L")};
    const auto records = std::make_unique<Records>();
    records->server = server;
    records->lsu = &lsu;
    records->list = list;
    records->image.server = server;

    const int status = test.call(*records);
    const bool list_is_gone = test.kind == Kind::kClose && status == 0;
    if (!list_is_gone) free_list(list);
    EXPECT_EQ(records->out.list != nullptr, test.kind == Kind::kOpen && status == 0);
    if (records->out.list) free_list(records->out.list);
    return status;
}

std::vector<std::string> required(const Case& test)
{
    const std::string& record = test.content.record;
    if (record.empty()) return {};
    if (test.kind == Kind::kOpen) return {record, "token"};
    return {record};
}

} // namespace

std::vector<Entry> catalogue_entries()
{
    std::vector<Entry> table;
    for (const Case& test : catalogue::cases()) {
        const Entry entry{test.name, [test](Subject& subject) { return call(test, subject); },
                          reply(test.reply, test.content.text)};
        table.push_back(entry.requiring(required(test)));
    }
    return table;
}

} // namespace torture
