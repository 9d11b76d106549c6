// Long operations: starting one, and following it.
#include "plugin/host/async_records.h"
#include "tests/entries/async_start_cases.h"
#include "tests/torture/subject.h"

using namespace kit;

namespace torture
{
namespace
{

int start(const StartCase& test, Subject& subject)
{
    const stsp_server_t& server = *subject.server;
    StartArguments arguments;
    for (stsp_server_t* record : {&arguments.server_record, &arguments.target_server_record}) {
        record->endpoint = server.endpoint;
        record->session = server.session;
        record->use_https = server.use_https;
    }
    stsp_async_t* made = nullptr;
    arguments.async = &made;
    const int status = test.call(arguments);
    const AsyncHandle owner(made);
    EXPECT_EQ(owner != nullptr, !test.named && status == 0);
    return status;
}

int wait(Subject& subject)
{
    const AsyncHandle async = make_async(subject.server.get());
    sts_async_result_t record{};
    return main_slot<decltype(stspi_async_wait)>(2)(subject.session.get(), async.get(), 1, &record);
}

// A result that comes with the address of a number of the host's.
struct SnapResult {
    std::int32_t count = 0;
    sts_async_snap_result_t record{};

    SnapResult() { record.body.difference.numDiffs = &count; }
    int checked(int status)
    {
        if (status == 0) delete[] record.body.difference.diffs;
        return status;
    }
};

int wait_snap(Subject& subject)
{
    const AsyncHandle async = make_async(subject.server.get());
    const auto result = std::make_unique<SnapResult>();
    return result->checked(snapshot_slot<decltype(stspi_async_wait_snap)>(8)(
        subject.session.get(), async.get(), 1, &result->record));
}

int named_wait_snap(Subject& subject)
{
    const auto result = std::make_unique<SnapResult>();
    return result->checked(snapshot_slot<decltype(stspi_named_async_wait_snap)>(28)(
        subject.server.get(), 1, &result->record, opname("name")));
}

int status(Subject& subject)
{
    return main_slot<decltype(stspi_named_async_status)>(47)(subject.server.get(), opname("name"));
}

int cancel(Subject& subject)
{
    const AsyncHandle async = make_async(subject.server.get());
    return main_slot<decltype(stspi_async_cancel)>(41)(subject.session.get(), async.get());
}

std::string difference()
{
    const std::string item =
        element("item", element("objectName", "/a") + number("objectType", 1) + number("objectState", 2));
    return element(
        "result", number("totalBytesTransferred", 5) + number("error", 0) + number("retryInterval", 0) +
                      number("resultSnapType", 6) +
                      element("getSnapDiff", number("numDiffs", 2) + element("diffObjectList", item + item)));
}

} // namespace

std::vector<Entry> start_entries()
{
    std::vector<Entry> table;
    for (const StartCase& test : start_cases()) {
        const Entry entry{
            test.entry, [&test](Subject& subject) { return start(test, subject); },
            reply(test.operation + "Response", test.named ? "" : token_element("opid", "op-7"))};
        table.push_back(test.named ? entry : entry.requiring({"opid", "token"}));
    }
    return table;
}

std::vector<Entry> follow_entries()
{
    const Entry wait_for_image{
        "stspi_async_wait", wait,
        reply("asyncWaitResponse", element("result", nil("image") + number("bytesTransferred", 5) +
                                                         number("error", 0) + number("delayInSeconds", 1)))};
    const Entry wait_by_id{"stspi_async_wait_snap", wait_snap, reply("asyncWaitSnapResponse", difference())};
    const Entry wait_by_name{"stspi_named_async_wait_snap", named_wait_snap,
                             reply("namedAsyncWaitSnapResponse", difference())};
    return {
        wait_for_image.requiring({"result"}),
        wait_by_id.requiring({"result", "diffObjectList", "item"}),
        wait_by_name.requiring({"result", "diffObjectList", "item"}),
        {"stspi_named_async_status", status, reply("namedAsyncStatusResponse")},
        {"stspi_async_cancel", cancel, reply("asyncCancelResponse")},
    };
}

} // namespace torture
