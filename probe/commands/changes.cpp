#include "plugin/host/host_records.h"
#include "plugin/host/status.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/arguments/volume_argument.h"
#include "probe/commands/command.h"
#include "probe/library/credential.h"
#include "probe/library/plugin_manager.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/lists/change_doubts.h"
#include "probe/lists/change_list.h"
#include "probe/lists/change_reader.h"
#include "probe/lists/change_route.h"
#include "probe/lists/list_reader.h"
#include "probe/lists/snapshot_records.h"
#include "probe/login/server_login.h"
#include "probe/login/zapi_login.h"
#include "probe/output/problem.h"
#include "probe/output/text.h"

#include <cstdint>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

namespace soapwrapper::probe
{
namespace
{

constexpr char kNoBase[] = "-";

struct ChangesOptions : LsuArguments {
    std::string base;
    std::string diff;
    RouteWishes wishes;
    std::string zapi_user;
    std::int32_t flags = 0;
    ReadingOptions reading{{}, false, {STS_ENOENT, std::nullopt, std::nullopt}};
};

// The library falls back to the service by itself, and says so in its log only.
Route route_of_list(const Probe& probe)
{
    const bool asked = !probe.session.last_record("stspi_open_snap_change_list: SOAP return code").empty();
    return asked ? Route::kService : Route::kZapi;
}

sts_snap_info_v11_t snapshot_information(const Probe& probe, const stsp_lsu_v7_t& lsu,
                                         const std::string& name)
{
    const sts_snap_def_v11_t snap = snapshot_named(name);
    sts_snap_info_v11_t info = {};
    const int status = call(probe, slot::stspi_get_snap_prop_byname, &lsu, &snap, &info);
    if (const auto problem = problem_of(probe, status)) {
        Problem told(problem->code(), problem->name(), problem->status(),
                     "snapshot " + name + " of LSU " + lsu.name + ": " + problem->meaning(),
                     problem->detail());
        told.set_url(problem->url());
        throw Problem(told);
    }
    return info;
}

// Returns the route that the library took. The password is watched for as long as the list is open: it goes
// out again when the list is closed.
Route open_list(const Probe& probe, const ChangesOptions& options, const stsp_lsu_v7_t& lsu,
                ChangeListHandle& list, std::optional<ZapiLogin>& password)
{
    std::unique_ptr<sts_snap_info_v11_t> base;
    if (options.base != kNoBase) {
        base = std::make_unique<sts_snap_info_v11_t>(snapshot_information(probe, lsu, options.base));
    }
    const auto diff = std::make_unique<sts_snap_info_v11_t>(snapshot_information(probe, lsu, options.diff));
    const ChangeRoute plan = plan_route(options.wishes, *diff);
    if (plan.route == Route::kService && !base) {
        throw usage_problem(
            "only the second plug-in lists without a base: the route would be the service; say "
            "--route zapi or name a base");
    }
    ChangeQuestion question{
        {}, options.wishes, options.reading.filters, plan.route, plugin_manager_in_sight()};
    if (base) question.snapshots.push_back({options.base, base.get()});
    question.snapshots.push_back({options.diff, diff.get()});
    for (const std::string& warning : warnings_about(question)) {
        std::cerr << "warning: " << clean_line(warning) << '\n';
    }
    put(diff->snapDef.isid.info, plan.isid);
    ForgottenVolume volume{plan.volume};
    if (plan.route == Route::kZapi) {
        password.emplace(probe, options.zapi_user, volume.record);
        password->put_behind_filer(volume.record);
    }
    const int status =
        call(probe, slot::stspi_open_snap_change_list, &lsu, base ? &base->snapDef : nullptr, &diff->snapDef,
             &volume.record, static_cast<std::uint32_t>(options.flags), list.address());
    if (const auto problem = problem_of(probe, status)) throw Problem(with_cause(*problem, question));
    const Route taken = route_of_list(probe);
    if (taken != plan.route) {
        std::cerr << "warning: the second plug-in did not open the list, so it comes from the service\n";
    }
    return taken;
}

void show_changes(const Probe& probe, const ChangesOptions& options)
{
    ServerLogin login(probe, options.name, options.login);
    const stsp_lsu_v7_t lsu = lsu_reference(login, options);
    std::optional<ZapiLogin> password;
    ChangeListHandle list(probe);
    const Route route = open_list(probe, options, lsu, list, password);
    Credential::forget_environment(kZapiPasswordVariable);
    {
        ChangeReader reader(probe, options.reading, list.get());
        const ListEnd end = reader.read();
        reader.finish(route_name(route), end.extent);
        finish_list(probe, end);
    }
    list.close();
    login.close();
}

std::string refuse_blank(const std::string& user)
{
    return user.find(' ') == std::string::npos ? "" : "a user's name holds no blank";
}

void add_route_options(const Command& command, ChangesOptions& options)
{
    RouteWishes& wishes = options.wishes;
    command
        .add_text_option(
            "--route",
            [&wishes](const std::string& name) {
                wishes.route = name == route_name(Route::kZapi) ? Route::kZapi : Route::kService;
                return std::string();
            },
            "Where the list is to come from; without it the service, or what --isid and --volume make of it")
        .type_name("service|zapi")
        .one_of({route_name(Route::kService), route_name(Route::kZapi)});
    const Option isid = command.add_option("--isid", wishes.isid, "The supplier's text of DIFF");
    isid.type_name("TEXT");
    limit_length(isid, STS_PATH_SIZE);
    command.add_option("--mount", wishes.mount, "Where the host has the volume mounted")
        .type_name("PATH")
        .excludes(isid);
    command
        .add_text_option(
            "--volume",
            [&wishes](const std::string& text) { return parse_volume(text, wishes.volume.emplace()); },
            "The source volume; without it, the one of DIFF")
        .type_name("KIND:FIRST[:SECOND[:THIRD]]");
    command.add_option("--zapi-user", options.zapi_user, "Who logs in to the filer on the route zapi")
        .type_name("NAME")
        .check(refuse_blank);
}

} // namespace

void add_changes_command(const Command& program, Run& run)
{
    const Command command = program.add_subcommand("changes", "List what differs between two snapshots");
    auto options = std::make_shared<ChangesOptions>();
    add_lsu_arguments(command, *options);
    add_text_argument(command, "BASE", options->base, STS_SNAP_NAME_SIZE,
                      "Name of the older snapshot; -: none, all of DIFF is listed");
    add_text_argument(command, "DIFF", options->diff, STS_SNAP_NAME_SIZE, "Name of the newer snapshot");
    add_route_options(command, *options);
    const Option filters = command.add_option("--filter", options->reading.filters,
                                              "List only what lies at or below this path; may be repeated");
    filters.type_name("PATH").one_at_a_time();
    limit_length(filters, kFilterSize);
    command.add_option("--flags", options->flags, "Flags of the list, which the service reads as it likes")
        .type_name("N")
        .capture_default_str();
    command.add_flag("--escape", options->reading.escapes,
                     "Show each byte of a path that is not printable ASCII as a backslash and two digits");
    add_end_status_option(command, options->reading.list.end_status);
    add_limit_option(command, options->reading.list.limit);
    set_footer(command, "changes Network_NTAP:filer1.example.com projects weekly.1 weekly.2 --route service");
    command.callback(chosen(run, options, show_changes, JsonForm::kLines));
}

} // namespace soapwrapper::probe
