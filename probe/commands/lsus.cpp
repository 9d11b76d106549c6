#include "plugin/host/handles.h"
#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/commands/command.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/lists/list_reader.h"
#include "probe/login/server_login.h"
#include "probe/output/records.h"
#include "probe/output/text.h"

#include <memory>

namespace soapwrapper::probe
{
namespace
{

struct LsusOptions : ServerArguments {
    ListOptions list;
};

struct LsuName {
    char text[STS_LSU_NAME_SIZE];
};

void show_lsus(const Probe& probe, const LsusOptions& options)
{
    ServerLogin login(probe, options.name, options.login);
    ListHandle list(probe, slot::stspi_close_lsu_list);
    require(probe, slot::stspi_open_lsu_list_v11, login.handle(), nullptr, list.address());
    stsp_list_t* const handle = list.get();

    LsuName name;
    EntryList lsus("lsus", {{"LSU", "name"}});
    const ListEnd end = read_list(
        probe, options.list, EntryRoom(name),
        [&] { return call(probe, slot::stspi_list_lsu, handle, name.text); },
        [&] { lsus.add({clean_field(name.text)}); });
    finish_list(probe, lsus, end);
    list.close();
    login.close();
}

} // namespace

void add_lsus_command(const Command& program, Run& run)
{
    const Command command = program.add_subcommand("lsus", "List the LSUs of a server");
    auto options = std::make_shared<LsusOptions>();
    add_server_arguments(command, *options);
    add_list_options(command, options->list);
    set_footer(command, "lsus Network_storage:filer1.example.com");
    command.callback(chosen(run, options, show_lsus));
}

} // namespace soapwrapper::probe
