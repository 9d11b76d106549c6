#include "probe/arguments/confirmation.h"

#include "probe/arguments/command_line.h"
#include "probe/output/problem.h"

#include <unistd.h>

#include <iostream>
#include <optional>
#include <string>

namespace soapwrapper::probe
{

void add_yes_option(const Command& command, bool& yes, const std::string& deed)
{
    command.add_flag("--yes", yes, deed + " without asking; required where there is no terminal to ask on");
}

bool answered_yes(const std::string& question, std::istream& in, std::ostream& out)
{
    out << question << " [y/N] " << std::flush;
    std::string answer;
    std::getline(in, answer);
    return answer == "y" || answer == "Y" || answer == "yes" || answer == "Yes" || answer == "YES";
}

void confirm_deletion(const std::string& thing, bool yes)
{
    confirm("Delete " + thing + "?", "nothing was deleted", yes);
}

void confirm(const std::string& question, const std::string& undone, bool yes)
{
    if (yes) return;
    if (isatty(STDIN_FILENO) == 0 || isatty(STDERR_FILENO) == 0) {
        throw usage_problem(undone + ": there is no terminal to ask on; say --yes");
    }
    // On standard error: the standard output may go to a file.
    if (answered_yes(question, std::cin, std::cerr)) return;
    throw Problem(ExitCode::kOperation, "cancelled", std::nullopt, undone);
}

} // namespace soapwrapper::probe
