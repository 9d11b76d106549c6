#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/commands/command.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/login/server_login.h"
#include "probe/output/output.h"
#include "probe/output/records.h"
#include "probe/output/text.h"

#include <memory>

namespace soapwrapper::probe
{
namespace
{

void report(Output& output, const sts_lsu_info_v11_t& info)
{
    const sts_lsu_def_v11_t& def = info.def;
    Properties properties;
    properties.add("Name", "name", clean_field(def.name));
    properties.add("Server", "server", clean_field(info.server));
    properties.add("Label", "label", clean_field(def.label));
    properties.add("Description", "description", clean_field(def.description));
    properties.add("Configuration", "configuration", clean_field(def.config));
    properties.add("Allocation", "allocation", def.alloc);
    properties.add("Storage", "storage", def.storage);
    properties.add("Flags", "flags", def.flags);
    properties.add("Save as", "save_as", def.saveas);
    properties.add_size("Largest transfer", "max_transfer", def.maxTransfer);
    properties.add_size("Block size", "block_size", def.blockSize);
    properties.add_size("Allocation size", "allocation_size", def.allocSize);
    properties.add("Replication sources", "replication_sources", def.repSources);
    properties.add("Replication targets", "replication_targets", def.repTargets);
    properties.add_size("Capacity", "capacity", info.capacity);
    properties.add_size("Physical capacity", "physical_capacity", info.capacityPhys);
    properties.add_size("Used", "used", info.used);
    properties.add_size("Physically used", "physically_used", info.usedPhys);
    properties.add("Images", "images", info.images);
    properties.show(output);
}

void show_lsu(const Probe& probe, const LsuArguments& options)
{
    ServerLogin login(probe, options.name, options.login);
    const stsp_lsu_v7_t lsu = lsu_reference(login, options);
    sts_lsu_info_v11_t info = {};
    require(probe, slot::stspi_get_lsu_prop_byname_v11, &lsu, &info);
    report(probe.output, info);
    login.close();
}

} // namespace

void add_lsu_command(const Command& program, Run& run)
{
    const Command command = program.add_subcommand("lsu", "Show the properties of one LSU");
    auto options = std::make_shared<LsuArguments>();
    add_lsu_arguments(command, *options);
    set_footer(command, "lsu Network_storage:filer1.example.com vol1");
    command.callback(chosen(run, options, show_lsu));
}

} // namespace soapwrapper::probe
