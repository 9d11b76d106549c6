// Images: how the command line names one, and how they are shown.
#ifndef SOAPWRAPPER_PROBE_LISTS_IMAGE_RECORDS_H
#define SOAPWRAPPER_PROBE_LISTS_IMAGE_RECORDS_H

#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/output/output.h"
#include "probe/output/records.h"

#include <string>

namespace soapwrapper::probe
{

struct ImageArguments : LsuArguments {
    std::string basename;
    std::string date;
};

void add_image_arguments(const Command& command, ImageArguments& arguments);

// The definition with what the command line knows; the rest is empty.
sts_image_def_v10_t image_named(const ImageArguments& arguments);

EntryList image_list();
void add_image(EntryList& list, const sts_image_def_v10_t& image);

void show_image_information(Output& output, const sts_image_info_v10_t& info);

} // namespace soapwrapper::probe

#endif
