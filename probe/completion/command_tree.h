// What may stand at a place of the command line, by what the commands say of themselves.
#ifndef SOAPWRAPPER_PROBE_COMPLETION_COMMAND_TREE_H
#define SOAPWRAPPER_PROBE_COMPLETION_COMMAND_TREE_H

#include <map>
#include <string>
#include <vector>

namespace CLI
{
class App;
} // namespace CLI

namespace soapwrapper::probe
{

// A word that may stand at a place. The description may be empty.
struct Choice {
    std::string text;
    std::string description;
};

// What is known of the place behind some words.
struct Place {
    std::vector<Choice> choices; // commands or options
    std::string value;           // what the help calls the value that is due, such as "LSU"; empty: none is
    std::string option;          // the option that it is a value of; empty: it is an argument
    std::string lead;            // what of the word at the cursor is ahead of the value, as in "--library="

    // What the words ahead say.
    std::map<std::string, std::string> arguments; // by what the help calls them
    std::vector<Choice> options;                  // with their values, in the place of descriptions
};

// The place at which `current`, the word at the cursor, stands behind the words of the program's command
// line.
Place find_place(const CLI::App& program, const std::vector<std::string>& words, const std::string& current);

} // namespace soapwrapper::probe

#endif
