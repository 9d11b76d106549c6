#include "probe/lists/image_records.h"

#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/output/output.h"
#include "probe/output/records.h"
#include "probe/output/text.h"

namespace soapwrapper::probe
{

void add_image_arguments(const Command& command, ImageArguments& arguments)
{
    add_lsu_arguments(command, arguments);
    add_text_argument(command, "BASENAME", arguments.basename, sizeof sts_image_def_v10_t::basename,
                      "Base name of the image");
    add_text_argument(command, "DATE", arguments.date, sizeof sts_image_def_v10_t::date,
                      "Date of the image, as the list shows it");
}

sts_image_def_v10_t image_named(const ImageArguments& arguments)
{
    sts_image_def_v10_t image = {};
    put(image.basename, arguments.basename);
    put(image.date, arguments.date);
    return image;
}

EntryList image_list()
{
    return EntryList("images", {{"BASENAME", "basename"},
                                {"DATE", "date"},
                                {"POLICY", "policy"},
                                {"SAVE AS", "save_as", Look::kNumber},
                                {"FLAGS", "flags", Look::kNumber}});
}

void add_image(EntryList& list, const sts_image_def_v10_t& image)
{
    list.add({clean_field(image.basename), clean_field(image.date), clean_field(image.policy), image.saveas,
              image.flags});
}

void show_image_information(Output& output, const sts_image_info_v10_t& info)
{
    Properties properties;
    properties.add("Base name", "basename", clean_field(info.def.basename));
    properties.add("Date", "date", clean_field(info.def.date));
    properties.add("Full date", "full_date", clean_field(info.def.fulldate));
    properties.add("Policy", "policy", clean_field(info.def.policy));
    properties.add("Save as", "save_as", info.def.saveas);
    properties.add("Flags", "flags", info.def.flags);
    properties.add("Format", "format", clean_field(info.def.format));
    properties.add("Server", "server", clean_field(info.server));
    properties.add("LSU", "lsu", clean_field(info.lsu));
    properties.add_size("Size", "size", info.size);
    properties.add_size("Block size", "block_size", info.blockSize);
    properties.add("Status", "status", info.status);
    properties.add("Supplier", "supplier", clean_field(info.def.isid.dpaid));
    properties.add("Supplier version", "supplier_version", clean_field(info.def.isid.dpaver));
    properties.show(output);
}

} // namespace soapwrapper::probe
