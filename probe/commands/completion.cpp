#include "probe/completion/completion.h"
#include "probe/arguments/command_line.h"
#include "probe/commands/command.h"

#include <memory>
#include <ostream>
#include <string>

namespace soapwrapper::probe
{

void add_completion_command(const Command& program, Print& print)
{
    const Command command = program.add_subcommand(
        "completion", "Print the script by which a shell completes this program's words");
    auto shell = std::make_shared<std::string>();
    command.add_option("SHELL", *shell, "bash, zsh or fish")
        .required()
        .type_name("")
        .one_of({"bash", "zsh", "fish"});
    command.footer("Example:\n  source <(soapwrapper-probe completion bash)");
    command.callback(
        [shell, &print] { print = [shell](std::ostream& stream) { stream << completion_script(*shell); }; });
}

} // namespace soapwrapper::probe
