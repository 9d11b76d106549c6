#include "tests/entries/async_start_cases.h"

#include <algorithm>
#include <stdexcept>

using namespace kit;

namespace
{

constexpr int kNullArgument = 2060001;
constexpr int kBadArgument = 2060022;
constexpr int kNoServiceHandle = 2060026;

constexpr bool kEntered = true;
constexpr bool kSilent = false;

// ---- what each start tests ----

const Check kServer = {"server", [](StartArguments& a) { a.server = nullptr; }, kBadArgument, kSilent};
const Check kLsu = {"reference", [](StartArguments& a) { a.lsu = nullptr; }, kNullArgument, kSilent};
const Check kLsuServer = {"server of the reference", [](StartArguments& a) { a.lsu_record.server = nullptr; },
                          kBadArgument, kSilent};

Check volume_check(bool entered)
{
    return {"volume", [](StartArguments& a) { a.volume = nullptr; }, kNullArgument, entered};
}
Check snap_check(bool entered)
{
    return {"snapshot", [](StartArguments& a) { a.snap = nullptr; }, kNullArgument, entered};
}
Check targets_check(bool entered)
{
    return {"target array", [](StartArguments& a) { a.targets = nullptr; }, kNullArgument, entered};
}
Check service_handle_check(bool entered)
{
    return {"service handle", [](StartArguments& a) { a.server_record.service_handle = nullptr; },
            kNoServiceHandle, entered};
}
const Check kTopology = {"topology", [](StartArguments& a) { a.topology = nullptr; }, kNullArgument,
                         kEntered};
const Check kOut = {"out", [](StartArguments& a) { a.async = nullptr; }, kNullArgument, kEntered};
const Check kVolumes = {"volume array", [](StartArguments& a) { a.volumes = nullptr; }, kNullArgument,
                        kEntered};
const Check kSnapName = {"snapshot name", [](StartArguments& a) { a.snap_name = nullptr; }, kNullArgument,
                         kSilent};
const Check kRollbackList = {"rollback list", [](StartArguments& a) { a.rollback_list = nullptr; },
                             kNullArgument, kSilent};

const std::vector<Check> kCreateChecks = {kServer, volume_check(kEntered), snap_check(kEntered),
                                          targets_check(kEntered), service_handle_check(kEntered)};
const std::vector<Check> kPrepareChecks = {
    kServer, volume_check(kEntered),        snap_check(kEntered), targets_check(kEntered),
    kOut,    service_handle_check(kEntered)};
const std::vector<Check> kTopologyChecks = {
    kServer, volume_check(kEntered),        snap_check(kEntered), targets_check(kEntered), kTopology,
    kOut,    service_handle_check(kEntered)};
const std::vector<Check> kNamedTopologyChecks = {
    kServer,   volume_check(kEntered),        snap_check(kEntered), targets_check(kEntered),
    kTopology, service_handle_check(kEntered)};
const std::vector<Check> kImportChecks = {kServer, volume_check(kEntered), snap_check(kEntered),
                                          service_handle_check(kEntered)};
const std::vector<Check> kDiffChecks = {kServer, service_handle_check(kSilent), snap_check(kEntered),
                                        kVolumes};
const std::vector<Check> kCopyChecks = {kLsu, snap_check(kSilent), targets_check(kSilent), kLsuServer,
                                        service_handle_check(kSilent)};
const std::vector<Check> kRollbackChecks = {
    kLsu,          snap_check(kSilent), volume_check(kSilent),
    kRollbackList, kLsuServer,          service_handle_check(kSilent)};
const std::vector<Check> kPostProcessChecks = {kLsu, kSnapName, kLsuServer};

// ---- what each start sends ----

std::string nothing()
{
    return "";
}

std::string targets_members()
{
    return element("targetLSUSpecs",
                   element("item", lsu_spec_content("target-server-1", "target-lsu-1")) +
                       element("item", lsu_spec_content("target-server-2", "target-lsu-2"))) +
           number("ntargets", 2);
}

std::string snap_targets_members()
{
    return token_element("serverHandle", "SH") + element("sourceVolSpec", nfs_content("volume")) +
           snapshot_element("targetSnapDef", "the snapshot") + targets_members();
}

std::string pending_members()
{
    return element("imageset", "the image set") + number("pendingflag", 21);
}

std::string create_members()
{
    return snap_targets_members() + pending_members();
}

std::string validate_members()
{
    return snap_targets_members() + element("targetTopology", "the topology");
}

std::string provision_members()
{
    return validate_members() + pending_members();
}

std::string copy_members()
{
    return lsu_element("SH", "the LSU") + snapshot_element("snapDef", "the snapshot") + targets_members() +
           pending_members();
}

std::string import_members()
{
    return token_element("serverHandle", "SH") + element("sourceVolSpec", nfs_content("volume")) +
           snapshot_element("sourceSnapDef", "the snapshot") + pending_members();
}

std::string postprocess_members()
{
    return lsu_element("SH", "the LSU") + element("snapName", "the snapshot's name");
}

std::string rollback_members()
{
    return lsu_element("SH", "the LSU") + snapshot_element("snapDef", "the snapshot") +
           token_element("targetServerHandle", "TH") + element("targetVolSpec", nfs_content("volume")) +
           element("rollbackList", element("item", "first row") + element("item", "second row")) +
           number("numRollbacks", 2) + number("rollbackFlag", 31);
}

std::string diff_members(std::string_view diff_flag)
{
    return token_element("serverHandle", "SH") + snapshot_element("snapshot", "the snapshot") +
           token_element("targetServerHandle", "TH") +
           element("rollbackList",
                   element("item", nfs_content("first")) + element("item", nfs_content("second"))) +
           number("numRollbacks", 2) + element("diffFlag", diff_flag);
}

// ---- how each start is called ----

int create(StartArguments& a)
{
    return snapshot_slot<decltype(stspi_async_create_snap_byname)>(2)(
        a.server, a.volume, a.snap, a.targets, a.ntargets, a.async, a.image_set, a.pendingflag);
}
int prepare(StartArguments& a)
{
    return snapshot_slot<decltype(stspi_async_prepare_snap_byname)>(5)(
        a.server, a.volume, a.snap, a.targets, a.ntargets, a.async, a.image_set, a.pendingflag);
}
int copy(StartArguments& a)
{
    return snapshot_slot<decltype(stspi_async_copy_snap_byname)>(1)(a.lsu, a.snap, a.targets, a.ntargets,
                                                                    a.async, a.image_set, a.pendingflag);
}
int postprocess(StartArguments& a)
{
    return snapshot_slot<decltype(stspi_async_postprocess_snap_byname)>(4)(a.lsu, a.snap_name, a.async);
}
int validate(StartArguments& a)
{
    return snapshot_slot<decltype(stspi_async_validate_snap_byname)>(7)(a.server, a.volume, a.snap, a.targets,
                                                                        a.ntargets, a.topology, a.async);
}
int import(StartArguments& a)
{
    return snapshot_slot<decltype(stspi_async_import_snap_byname)>(43)(a.server, a.volume, a.snap,
                                                                       a.image_set, a.pendingflag, a.async);
}
int rollback(StartArguments& a)
{
    return snapshot_slot<decltype(stspi_async_rollback_snap)>(6)(
        a.lsu, a.snap, a.target_server, a.volume, a.rollback_list, a.num_rollbacks, a.rollback_flag, a.async);
}
int provision(StartArguments& a)
{
    return snapshot_slot<decltype(stspi_async_provision_topology)>(37)(
        a.server, a.volume, a.snap, a.targets, a.ntargets, a.topology, a.image_set, a.pendingflag, a.async);
}
int diff(StartArguments& a)
{
    return snapshot_slot<decltype(stspi_async_get_snap_diff)>(3)(a.server, a.snap, a.target_server, a.volumes,
                                                                 a.num_rollbacks, a.diff_flag, a.async);
}

int named_create(StartArguments& a)
{
    return snapshot_slot<decltype(stspi_named_async_create_snap_byname)>(22)(
        a.server, a.volume, a.snap, a.targets, a.ntargets, a.name, a.image_set, a.pendingflag);
}
int named_prepare(StartArguments& a)
{
    return snapshot_slot<decltype(stspi_named_async_prepare_snap_byname)>(25)(
        a.server, a.volume, a.snap, a.targets, a.ntargets, a.name, a.image_set, a.pendingflag);
}
int named_copy(StartArguments& a)
{
    return snapshot_slot<decltype(stspi_named_async_copy_snap_byname)>(21)(
        a.lsu, a.snap, a.targets, a.ntargets, a.name, a.image_set, a.pendingflag);
}
int named_postprocess(StartArguments& a)
{
    return snapshot_slot<decltype(stspi_named_async_postprocess_snap_byname)>(24)(a.lsu, a.snap_name, a.name);
}
int named_validate(StartArguments& a)
{
    return snapshot_slot<decltype(stspi_named_async_validate_snap_byname)>(27)(
        a.server, a.volume, a.snap, a.targets, a.ntargets, a.topology, a.name);
}
int named_import(StartArguments& a)
{
    return snapshot_slot<decltype(stspi_named_async_import_snap_byname)>(44)(
        a.server, a.volume, a.snap, a.image_set, a.pendingflag, a.name);
}
int named_rollback(StartArguments& a)
{
    return snapshot_slot<decltype(stspi_named_async_rollback_snap)>(26)(
        a.lsu, a.snap, a.target_server, a.volume, a.rollback_list, a.num_rollbacks, a.rollback_flag, a.name);
}
int named_provision(StartArguments& a)
{
    return snapshot_slot<decltype(stspi_named_async_provision_topology)>(38)(
        a.server, a.volume, a.snap, a.targets, a.ntargets, a.topology, a.image_set, a.pendingflag, a.name);
}
int named_diff(StartArguments& a)
{
    return snapshot_slot<decltype(stspi_named_async_get_snap_diff)>(23)(
        a.server, a.snap, a.target_server, a.volumes, a.num_rollbacks, a.diff_flag, a.name);
}

std::vector<StartCase> make_cases()
{
    constexpr bool kById = false;
    constexpr bool kNamed = true;
    std::vector<StartCase> cases = {
        {"stspi_async_create_snap_byname", "asyncCreateSnapByName", kById, 21, kCreateChecks,
         create_members(), create},
        {"stspi_async_prepare_snap_byname", "asyncPrepareSnapByName", kById, 21, kPrepareChecks,
         create_members(), prepare},
        {"stspi_async_copy_snap_byname", "asyncCopySnapByName", kById, 21, kCopyChecks, copy_members(), copy},
        {"stspi_async_postprocess_snap_byname", "asyncPostProcessSnapByName", kById, 0, kPostProcessChecks,
         postprocess_members(), postprocess},
        {"stspi_async_validate_snap_byname", "asyncValidateSnapByName", kById, 0, kTopologyChecks,
         validate_members(), validate},
        {"stspi_async_import_snap_byname", "asyncImportSnapByName", kById, 21, kImportChecks,
         import_members(), import},
        {"stspi_async_rollback_snap", "asyncRollbackSnap", kById, 0, kRollbackChecks, rollback_members(),
         rollback},
        {"stspi_async_provision_topology", "asyncProvisionTopology", kById, 21, kTopologyChecks,
         provision_members(), provision},
        {"stspi_async_get_snap_diff", "asyncGetSnapDiff", kById, 0, kDiffChecks, diff_members("2"), diff},

        {"stspi_named_async_create_snap_byname", "namedAsyncCreateSnapByName", kNamed, 0, kCreateChecks,
         create_members(), named_create},
        {"stspi_named_async_prepare_snap_byname", "namedAsyncPrepareSnapByName", kNamed, 0, kCreateChecks,
         create_members(), named_prepare},
        {"stspi_named_async_copy_snap_byname", "namedAsyncCopySnapByName", kNamed, 0, kCopyChecks,
         copy_members(), named_copy},
        {"stspi_named_async_postprocess_snap_byname", "namedAsyncPostProcessSnapByName", kNamed, 0,
         kPostProcessChecks, postprocess_members(), named_postprocess},
        {"stspi_named_async_validate_snap_byname", "namedAsyncValidateSnapByName", kNamed, 0,
         kNamedTopologyChecks, validate_members(), named_validate},
        {"stspi_named_async_import_snap_byname", "namedAsyncImportSnapByName", kNamed, 0, kImportChecks,
         import_members(), named_import},
        {"stspi_named_async_rollback_snap", "namedAsyncRollbackSnap", kNamed, 0, kRollbackChecks,
         rollback_members(), named_rollback},
        {"stspi_named_async_provision_topology", "namedAsyncProvisionTopology", kNamed, 0,
         kNamedTopologyChecks, provision_members(), named_provision},
        {"stspi_named_async_get_snap_diff", "namedAsyncGetSnapDiff", kNamed, 0, kDiffChecks,
         diff_members("true"), named_diff},
    };
    for (StartCase& start : cases) {
        if (start.entry == "stspi_async_postprocess_snap_byname") {
            start.ok_name = "stspi_async_post_process_snap_byname";
        } else if (start.entry == "stspi_async_import_snap_byname") {
            start.enter_name = "stsp_async_import_snap_byname";
        } else if (start.entry == "stspi_named_async_import_snap_byname") {
            start.enter_name = "stsp_named_async_import_snap_byname";
        } else if (start.entry == "stspi_named_async_postprocess_snap_byname") {
            start.return_code_name = "stspi_named_async_post_process_snap_byname";
            start.ok_name = "stspi_named_async_post_process_snap_byname";
        }
    }
    return cases;
}

} // namespace

StartArguments::StartArguments()
    : volume_record(::volume(STS_VOLUME_NFS, "volume")),
      snap_record(snapshot("the snapshot")), target_records{lsu_spec("target-server-1", "target-lsu-1"),
                                                            lsu_spec("target-server-2", "target-lsu-2")},
      volume_records{::volume(STS_VOLUME_NFS, "first"), ::volume(STS_VOLUME_NFS, "second")},
      rollback_rows("first row")
{
    server_record.service_handle = service_handle_;
    target_server_record.service_handle = target_service_handle_;
    lsu_record.server = &server_record;
    set(lsu_record.name, "the LSU");
    targets = target_records.data();
    volumes = volume_records.data();
    rollback_rows.resize(STS_ROLLBACK_ROW_SIZE);
    rollback_rows += "second row";
    rollback_rows.resize(2UL * STS_ROLLBACK_ROW_SIZE);
    rollback_list = rollback_rows.data();
}

std::string StartCase::request() const
{
    return element(operation, members + (named ? element("opname", "the operation") : nothing()));
}

Answer StartCase::good_answer() const
{
    return answer(reply(operation + "Response", named ? nothing() : token_element("opid", "op-7")));
}

std::vector<LogLine> StartCase::lines_until_return_code(int result) const
{
    return {record(enter_name + ": enter"),
            record(return_code_name + ": SOAP return code = " + std::to_string(result))};
}

std::ostream& operator<<(std::ostream& out, const StartCase& start)
{
    return out << start.entry;
}

const std::vector<StartCase>& start_cases()
{
    static const std::vector<StartCase> cases = make_cases();
    return cases;
}

const StartCase& start_case(std::string_view entry)
{
    const auto& all = start_cases();
    const auto found = std::find_if(all.begin(), all.end(), [&](const auto& c) { return c.entry == entry; });
    if (found == all.end()) throw std::logic_error("no such start");
    return *found;
}
