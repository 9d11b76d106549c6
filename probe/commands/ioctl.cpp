#include "plugin/host/entry_points.h"
#include "probe/arguments/arguments.h"
#include "probe/arguments/command_line.h"
#include "probe/commands/command.h"
#include "probe/library/answer_room.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/login/server_login.h"
#include "probe/output/output.h"
#include "probe/output/problem.h"
#include "probe/output/text.h"

#include <cstddef>
#include <cstdint>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

constexpr std::int32_t kSmallestRoom = 3; // an answer of one character
constexpr std::int32_t kLargestRoom = 16777216;

struct IoctlOptions : ServerArguments {
    std::int32_t command = 0;
    std::optional<std::string> args;
    bool output = false;
    std::int32_t size = 65536;
};

std::int32_t flags_of(const IoctlOptions& options)
{
    return (options.args ? STS_IOCTL_INPUT : 0) | (options.output ? STS_IOCTL_OUTPUT : 0);
}

void show_answer(Output& output, const std::vector<std::string>& lines)
{
    std::string text;
    Table table({});
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (i != 0) text += '\n';
        text += lines[i];
        // A blank keeps an empty line from showing as an empty cell.
        table.add({lines[i].empty() ? " " : lines[i]});
    }
    output.document()["answer"] = text;
    output.print(table);
}

void send_command(const Probe& probe, const IoctlOptions& options)
{
    const auto size = static_cast<std::size_t>(options.size);
    if (options.args && options.args->size() >= size) {
        throw usage_problem("the text of --args does not fit into --size bytes");
    }
    AnswerRoom room;
    if (options.args) room.put(*options.args);
    ServerLogin login(probe, options.name, options.login);
    require(probe, slot::stspi_iocontrol, login.handle(), options.command, room.buffer(), flags_of(options),
            options.size);
    probe.output.document()["command"] = options.command;
    if (options.output) {
        const std::string answer = room.text(size);
        show_answer(probe.output, clean_all_lines(answer));
        // A text keeps two bytes of the room free, counted bytes one.
        const bool full = answer.size() + 2 >= size;
        probe.output.document()["fills_buffer"] = full;
        if (full) std::cerr << "warning: the answer fills the buffer and may be cut; raise --size\n";
    }
    login.close();
}

} // namespace

void add_ioctl_command(const Command& program, Run& run)
{
    const Command command = program.add_subcommand("ioctl", "Pass a control command to the service");
    auto options = std::make_shared<IoctlOptions>();
    add_server_arguments(command, *options);
    command.add_option("COMMAND", options->command, "Number of the command").required().type_name("");
    command.add_option("--args", options->args, "Text to send with it").type_name("TEXT");
    command.add_flag("--output", options->output, "Ask for an answer and print it");
    command.add_option("--size", options->size, "Size of the buffer, in bytes")
        .type_name("N")
        .range(kSmallestRoom, kLargestRoom)
        .capture_default_str();
    set_footer(command, "ioctl Network_storage:filer1.example.com 10104 --args nightly.0 --output");
    command.callback(chosen(run, options, send_command));
}

} // namespace soapwrapper::probe
