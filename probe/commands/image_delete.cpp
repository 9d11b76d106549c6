#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/arguments/confirmation.h"
#include "probe/commands/command.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/lists/image_records.h"
#include "probe/login/server_login.h"
#include "probe/output/records.h"
#include "probe/output/text.h"

#include <cstdint>
#include <memory>
#include <string>

namespace soapwrapper::probe
{
namespace
{

struct DeleteOptions : ImageArguments {
    std::int32_t async_flag = 0;
    bool yes = false;
};

void delete_image(const Probe& probe, const DeleteOptions& options)
{
    const std::string name = clean_line(options.basename);
    const std::string date = clean_line(options.date);
    confirm_deletion("image " + name + " of " + date + " in LSU " + clean_line(options.lsu), options.yes);
    ServerLogin login(probe, options.name, options.login);
    const stsp_lsu_v7_t lsu = lsu_reference(login, options);
    const sts_image_def_v10_t image = image_named(options);
    require(probe, slot::stspi_delete_image, &lsu, &image, options.async_flag);
    Properties done;
    done.add("Deleted image", "deleted_image", name);
    done.add("Date", "date", date);
    done.show(probe.output);
    login.close();
}

} // namespace

void add_image_delete_command(const Command& group, Run& run)
{
    const Command command = group.add_subcommand("delete", "Delete an image");
    auto options = std::make_shared<DeleteOptions>();
    add_image_arguments(command, *options);
    command.add_option("--async", options->async_flag, "Flag that the service reads as it likes")
        .type_name("N")
        .capture_default_str();
    add_yes_option(command, options->yes);
    set_footer(command, "image delete Network_storage:filer1.example.com vol1 backup 20240131");
    command.callback(chosen(run, options, delete_image));
}

} // namespace soapwrapper::probe
