#include "plugin/host/handles.h"
#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/commands/command.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/lists/image_records.h"
#include "probe/lists/list_reader.h"
#include "probe/login/server_login.h"
#include "probe/output/records.h"

#include <cstdint>
#include <memory>

namespace soapwrapper::probe
{
namespace
{

struct ImagesOptions : LsuArguments {
    std::int32_t type = 0;
    ListOptions list;
};

void show_images(const Probe& probe, const ImagesOptions& options)
{
    ServerLogin login(probe, options.name, options.login);
    const stsp_lsu_v7_t lsu = lsu_reference(login, options);
    ListHandle list(probe, slot::stspi_close_image_list);
    require(probe, slot::stspi_open_image_list, &lsu, options.type, list.address());
    stsp_list_t* const handle = list.get();

    sts_image_def_v10_t image;
    EntryList images = image_list();
    const ListEnd end = read_list(
        probe, options.list, EntryRoom(image),
        [&] { return call(probe, slot::stspi_list_image, handle, &image); },
        [&] { add_image(images, image); });
    finish_list(probe, images, end);
    list.close();
    login.close();
}

} // namespace

void add_images_command(const Command& program, Run& run)
{
    const Command command = program.add_subcommand("images", "List the images of an LSU");
    auto options = std::make_shared<ImagesOptions>();
    add_lsu_arguments(command, *options);
    command.add_option("--type", options->type, "Type of the list, which the service reads as it likes")
        .type_name("N")
        .capture_default_str();
    add_list_options(command, options->list);
    set_footer(command, "images Network_storage:filer1.example.com vol1");
    command.callback(chosen(run, options, show_images));
}

} // namespace soapwrapper::probe
