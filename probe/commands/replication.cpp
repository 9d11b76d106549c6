#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/commands/command.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/login/server_login.h"
#include "probe/output/problem.h"
#include "probe/output/records.h"
#include "probe/output/text.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

constexpr std::uint32_t kMostPartners = 4096;

struct ReplicationOptions : LsuArguments {
    std::optional<std::uint32_t> sources;
    std::optional<std::uint32_t> targets;
};

struct Counts {
    std::uint32_t sources;
    std::uint32_t targets;
};

std::uint32_t usable(std::int32_t told)
{
    if (told >= 0 && static_cast<std::uint32_t>(told) <= kMostPartners) {
        return static_cast<std::uint32_t>(told);
    }
    throw Problem(ExitCode::kOperation, "replication count", std::nullopt,
                  "the service told of " + std::to_string(told) +
                      " partners, which cannot be asked for; say --sources and --targets");
}

// The service wants the exact numbers. Without them on the command line they are those of its own properties.
Counts counts(const Probe& probe, const ReplicationOptions& options, const stsp_lsu_v7_t& lsu)
{
    if (options.sources && options.targets) return {*options.sources, *options.targets};
    sts_lsu_info_v11_t info = {};
    require(probe, slot::stspi_get_lsu_prop_byname_v11, &lsu, &info);
    return {options.sources ? *options.sources : usable(info.def.repSources),
            options.targets ? *options.targets : usable(info.def.repTargets)};
}

void add_partners(EntryList& list, const char* role, const std::vector<sts_lsu_spec_v11_t>& partners)
{
    for (const sts_lsu_spec_v11_t& partner : partners) {
        list.add({role, clean_field(partner.server), clean_field(partner.lsu)});
    }
}

void show_replication(const Probe& probe, const ReplicationOptions& options)
{
    ServerLogin login(probe, options.name, options.login);
    const stsp_lsu_v7_t lsu = lsu_reference(login, options);
    const Counts wanted = counts(probe, options, lsu);
    std::vector<sts_lsu_spec_v11_t> sources(wanted.sources);
    std::vector<sts_lsu_spec_v11_t> targets(wanted.targets);
    require(probe, slot::stspi_get_lsu_replication_prop, &lsu, wanted.sources, sources.data(), wanted.targets,
            targets.data());
    EntryList partners("partners", {{"ROLE", "role"}, {"SERVER", "server"}, {"LSU", "lsu"}});
    add_partners(partners, "source", sources);
    add_partners(partners, "target", targets);
    partners.show(probe.output, Extent::kComplete);
    login.close();
}

void add_count(const Command& command, const char* name, std::optional<std::uint32_t>& count,
               const char* what)
{
    command.add_option(name, count, what).type_name("N").range(0, kMostPartners);
}

} // namespace

void add_replication_command(const Command& program, Run& run)
{
    const Command command = program.add_subcommand("replication", "Show the replication partners of one LSU");
    auto options = std::make_shared<ReplicationOptions>();
    add_lsu_arguments(command, *options);
    add_count(command, "--sources", options->sources,
              "How many sources to ask for; the service answers the exact number only. Default: what the "
              "LSU's properties say");
    add_count(command, "--targets", options->targets, "The same of the targets");
    set_footer(command, "replication Network_storage:filer1.example.com vol1 --sources 0 --targets 2");
    command.callback(chosen(run, options, show_replication));
}

} // namespace soapwrapper::probe
