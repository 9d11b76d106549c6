// The entries of a list of the service's, one a call.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_CHANGE_LIST_LISTING_FIXTURE_H
#define SOAPWRAPPER_TESTS_ENTRIES_CHANGE_LIST_LISTING_FIXTURE_H

#include "tests/entries/change_list_fixture.h"
#include "tests/kit/clock.h"

namespace change_list
{

inline const kit::LogLine kOk = kit::record("stspi_list_file: STS_EOK");
inline const kit::LogLine kFromBuffer = kit::record("stspi_list_file: Returning from buffer: STS_EOK");
inline const kit::LogLine kNoMore = kit::record("stspi_list_file: no more entries");

inline kit::LogLine code(int result, int retry = 0)
{
    return kit::record("stspi_list_file: SOAP return code = " + std::to_string(result) +
                       " retryInterval = " + std::to_string(retry));
}

inline kit::LogLine file_name(const std::string& path)
{
    return kit::record("file name: " + path);
}

class ListingTest : public ChangeListTest
{
  protected:
    ListingTest() { open_at_service(); }
    ~ListingTest() override { close_at_service(); }

    void script_files(const std::string& items, int count, int error = 0, int retry = 0)
    {
        service.script(kit::answer(files_reply(items, count, error, retry)));
    }

    int next() { return list_file()(list, 0, nullptr, entry.get()); }
    // The status, or the path of the entry.
    std::string next_path()
    {
        const int status = next();
        return status == 0 ? entry->name : std::to_string(status);
    }
    snapdiff_session_info& info() { return registry().at("C1"); }

    kit::Clock clock;
    std::unique_ptr<sts_file_attr_v11_t> entry = std::make_unique<sts_file_attr_v11_t>();
};

} // namespace change_list

#endif
