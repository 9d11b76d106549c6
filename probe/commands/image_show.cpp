#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/commands/command.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/lists/image_records.h"
#include "probe/login/server_login.h"

#include <memory>

namespace soapwrapper::probe
{
namespace
{

void show_image(const Probe& probe, const ImageArguments& options)
{
    ServerLogin login(probe, options.name, options.login);
    const stsp_lsu_v7_t lsu = lsu_reference(login, options);
    const sts_image_def_v10_t image = image_named(options);
    sts_image_info_v10_t info = {};
    require(probe, slot::stspi_get_image_prop_byname, &lsu, &image, &info);
    show_image_information(probe.output, info);
    login.close();
}

} // namespace

void add_image_show_command(const Command& group, Run& run)
{
    const Command command = group.add_subcommand("show", "Show the properties of one image");
    auto options = std::make_shared<ImageArguments>();
    add_image_arguments(command, *options);
    set_footer(command, "image show Network_storage:filer1.example.com vol1 backup 20240131");
    command.callback(chosen(run, options, show_image));
}

} // namespace soapwrapper::probe
