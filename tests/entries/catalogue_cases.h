// The entries of the catalogues, the exports and the I/O control, one case each: how to call it and what a
// good reply is.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_CATALOGUE_CASES_H
#define SOAPWRAPPER_TESTS_ENTRIES_CATALOGUE_CASES_H

#include "tests/entries/catalogue_fixture.h"

#include <functional>
#include <iosfwd>

namespace catalogue
{

// All that an entry may be given or may write.
struct Records {
    Records();

    stsp_server* server = nullptr;
    stsp_lsu_v7_t* lsu = nullptr;
    stsp_list_t* list = nullptr;
    stsp_image_t image = {nullptr, "T1"};
    struct {
        sts_image_def_v10_t image;
        sts_snap_def_v11_t snap;
        sts_volume_spec_v11_t volume;
        sts_host_spec_v11_t host;
    } in;
    struct {
        stsp_list_t* list;
        char name[STS_LSU_NAME_SIZE];
        sts_lsu_info_v9_t older_lsu;
        sts_lsu_info_v11_t lsu;
        sts_image_def_v10_t image;
        sts_image_info_v10_t image_info;
        sts_snap_def_v11_t snap;
        sts_snap_info_v11_t snap_info;
        sts_volume_spec_v11_t volume;
        sts_lsu_spec_v11_t partners[2];
        char buffer[32];
    } out;
};

enum class Kind { kCall, kOpen, kClose };

// What stands in a good reply.
struct Content {
    std::string text;
    std::string record = ""; // the element that the entry can't do without, if there is one
};

struct Case {
    std::string name;
    std::string request;
    std::string reply;
    Content content;
    Kind kind;
    std::function<int(Records&)> call;
    std::vector<kit::LogLine> after_enter = {};
    std::string return_code_name = ""; // where it isn't the entry's own
};

std::ostream& operator<<(std::ostream& out, const Case& test);

std::vector<Case> cases();
std::vector<Case> cases(Kind kind);
// The calls that are about one record of the reply, and those that aren't.
std::vector<Case> calls_with_record();
std::vector<Case> calls_without_record();

// As the names of parametrised tests.
std::string name_of(const testing::TestParamInfo<Case>& info);

} // namespace catalogue

#endif
