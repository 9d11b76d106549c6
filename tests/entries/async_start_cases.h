// The eighteen starts as a table: how each is called, what it tests and in which order, what it sends, and
// how it spells its log lines.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_ASYNC_START_CASES_H
#define SOAPWRAPPER_TESTS_ENTRIES_ASYNC_START_CASES_H

#include "tests/entries/async_fixture.h"

#include <ostream>
#include <string>
#include <vector>

// Arguments that every start accepts; a test changes what it is about.
struct StartArguments {
    StartArguments();
    StartArguments(const StartArguments&) = delete;
    StartArguments& operator=(const StartArguments&) = delete;

    stsp_server server_record{};
    stsp_server target_server_record{};
    stsp_lsu_v7_t lsu_record{};
    sts_volume_spec_v11_t volume_record;
    sts_snap_def_v11_t snap_record;
    std::vector<sts_lsu_spec_v11_t> target_records;
    std::vector<sts_volume_spec_v11_t> volume_records;
    std::string rollback_rows;

    stsp_server_t* server = &server_record;
    const stsp_lsu_v7_t* lsu = &lsu_record;
    const sts_volume_spec_v11_t* volume = &volume_record;
    const sts_snap_def_v11_t* snap = &snap_record;
    const sts_lsu_spec_v11_t* targets;
    std::uint32_t ntargets = 2;
    const char* topology = "the topology";
    const char* snap_name = "the snapshot's name";
    stsp_server_t* target_server = &target_server_record;
    const char* rollback_list;
    const sts_volume_spec_v11_t* volumes;
    std::uint32_t num_rollbacks = 2;
    std::int32_t rollback_flag = 31;
    std::int32_t diff_flag = 2;
    std::int32_t pendingflag = 21;
    sts_imageset_t image_set = imageset("the image set");
    sts_opname_t name = opname("the operation");
    stsp_async_t** async = nullptr;

  private:
    char service_handle_[3] = "SH";
    char target_service_handle_[3] = "TH";
};

// One test that an entry makes of its arguments.
struct Check {
    const char* what;
    void (*breaks)(StartArguments&);
    int status;
    bool entered; // whether the "enter" line comes first
};

struct StartCase {
    std::string entry;
    std::string operation; // the element of the request
    bool named;
    std::int32_t pendingflag; // what the handle holds
    std::vector<Check> checks;
    std::string members; // of the request, but for the name
    int (*call)(StartArguments&);
    // Log lines that are spelt otherwise than the entry.
    std::string enter_name = entry;
    std::string return_code_name = entry;
    std::string ok_name = entry;

    std::string request() const;
    kit::Answer good_answer() const;
    std::vector<kit::LogLine> lines_until_return_code(int result) const;
};

std::ostream& operator<<(std::ostream& out, const StartCase& start);

const std::vector<StartCase>& start_cases();
const StartCase& start_case(std::string_view entry);

#endif
