#include "probe/program/usage.h"

#include "probe/output/nearest.h"
#include "probe/output/text.h"

#include <CLI/CLI.hpp>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

using Words = std::vector<std::string>;

bool begins_with(std::string_view text, std::string_view beginning)
{
    return text.substr(0, beginning.size()) == beginning;
}

bool is_option(const std::string& text)
{
    return text.size() > 1 && text[0] == '-' && text != "--";
}

// "a", "a and b", "a, b and c".
std::string listed(const Words& words, const char* last)
{
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (i > 0) text += i + 1 == words.size() ? std::string(" ") + last + " " : ", ";
        text += words[i];
    }
    return text;
}

std::string did_you_mean(const Words& words)
{
    constexpr std::size_t kMost = 3;
    if (words.empty() || words.size() > kMost) return {};
    return "; did you mean " + listed(words, "or") + "?";
}

// The program, then the group and the command that were named, as far as they were.
std::vector<const CLI::App*> named_apps(const CLI::App& program)
{
    std::vector<const CLI::App*> apps = {&program};
    while (!apps.back()->get_subcommands().empty()) apps.push_back(apps.back()->get_subcommands().front());
    return apps;
}

// The program's name and what was named of its commands.
std::string path_of(const std::vector<const CLI::App*>& apps)
{
    std::string path;
    for (const CLI::App* app : apps) path += (path.empty() ? "" : " ") + app->get_name();
    return path;
}

// The same without the program's name.
std::string command_path(const std::vector<const CLI::App*>& apps)
{
    return path_of({apps.begin() + 1, apps.end()});
}

std::vector<const CLI::App*> commands_of(const CLI::App& app)
{
    return app.get_subcommands([](const CLI::App*) { return true; });
}

// The commands of a group, or all, those in groups with the group's name ahead.
Words command_names(const CLI::App& app)
{
    Words names;
    for (const CLI::App* command : commands_of(app)) {
        names.push_back(command->get_name());
        for (const CLI::App* inner : commands_of(*command)) {
            names.push_back(command->get_name() + " " + inner->get_name());
        }
    }
    return names;
}

Words option_names(const std::vector<const CLI::App*>& apps)
{
    Words names;
    for (const CLI::App* app : apps) {
        for (const CLI::Option* option : app->get_options()) {
            for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
        }
    }
    return names;
}

std::string unknown_option(const std::string& typed, const std::vector<const CLI::App*>& apps)
{
    const std::string name = typed.substr(0, typed.find('='));
    const std::string owner = apps.size() == 1 ? "options" : "options of " + command_path(apps);
    return "there is no " + name + " among the " + owner + did_you_mean(nearest(name, option_names(apps)));
}

// The commands of groups that have this name.
Words without_group(const std::string& typed, const Words& names)
{
    const std::string end = " " + typed;
    Words found;
    for (const std::string& name : names) {
        if (name.size() > end.size() && name.substr(name.size() - end.size()) == end) found.push_back(name);
    }
    return found;
}

std::string unknown_command(const std::string& typed, const std::vector<const CLI::App*>& apps)
{
    const Words names = command_names(*apps.back());
    Words meant = nearest(typed, names);
    if (meant.empty()) meant = without_group(typed, names);
    const std::string group = apps.size() == 1 ? "" : command_path(apps) + " ";
    for (std::string& name : meant) name.insert(0, group);
    return "there is no command " + group + typed + did_you_mean(meant);
}

std::string missing_command(const std::vector<const CLI::App*>& apps)
{
    if (apps.size() == 1) return "a command is missing";
    return apps.back()->get_name() +
           " needs a command behind it: " + listed(command_names(*apps.back()), "or");
}

Words missing_values(const CLI::App& app)
{
    Words names;
    for (const CLI::Option* option : app.get_options()) {
        if (option->get_required() && option->count() == 0) names.push_back(option->get_name());
    }
    return names;
}

// What the parser couldn't place: first an option, since what stands behind one that is mistyped may have
// been taken for an argument.
std::string unplaced(const CLI::App& program)
{
    const Words words = program.remaining(true);
    for (const std::string& word : words) {
        if (is_option(word)) return word;
    }
    return words.empty() ? std::string() : words.front();
}

std::string about_unplaced(const std::string& word, const std::vector<const CLI::App*>& apps)
{
    if (is_option(word)) return unknown_option(word, apps);
    if (!commands_of(*apps.back()).empty()) return unknown_command(word, apps);
    return "the argument " + word + " is one too many";
}

std::string about_missing(const CLI::ParseError& error, const std::vector<const CLI::App*>& apps)
{
    if (!commands_of(*apps.back()).empty()) return missing_command(apps);
    const Words names = missing_values(*apps.back());
    if (names.empty()) return error.what();
    return listed(names, "and") + (names.size() == 1 ? " is" : " are") + " missing";
}

// What the parser says about one option, in words of our own where its own are hard to read.
std::string about_value(const CLI::ParseError& error)
{
    const std::string said = error.what();
    constexpr std::string_view kConversion = "Could not convert: ";
    if (begins_with(said, kConversion)) {
        const std::size_t end = said.find(" = ");
        if (end == std::string::npos) return said;
        return said.substr(kConversion.size(), end - kConversion.size()) +
               " takes a number within its range, not " + said.substr(end + 3);
    }
    const std::string name = said.substr(0, said.find_first_of(": "));
    if (said.find(" required ") != std::string::npos && said.find(" missing") != std::string::npos) {
        return name + " needs a value";
    }
    const std::size_t range = said.find(" not in range ");
    const std::string value_mark = name + ": Value ";
    if (range != std::string::npos && begins_with(said, value_mark)) {
        return name + " takes a number in the range" + said.substr(range + 13) + ", not " +
               said.substr(value_mark.size(), range - value_mark.size());
    }
    const std::size_t excludes = said.find(" excludes ");
    if (excludes != std::string::npos) {
        return said.substr(0, excludes) + " and " + said.substr(excludes + 10) + " cannot be given together";
    }
    return said;
}

// The line of the help that begins so.
std::string usage_line(const CLI::App& program)
{
    const std::string help = program.help();
    const std::size_t begin = help.find("Usage:");
    if (begin == std::string::npos) return {};
    return help.substr(begin, help.find('\n', begin) - begin);
}

} // namespace

std::string usage_trouble(const CLI::App& program, const CLI::ParseError& error)
{
    const std::vector<const CLI::App*> apps = named_apps(program);
    const bool misses = dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
    const bool has_extras = dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr;
    const std::string word = unplaced(program);
    if (has_extras || (misses && !word.empty())) return about_unplaced(word, apps);
    return misses ? about_missing(error, apps) : about_value(error);
}

std::string usage_text(const CLI::App& program, const CLI::ParseError& error)
{
    const std::string usage = usage_line(program);
    return program.get_name() + ": " + clean_line(usage_trouble(program, error)) + '\n' +
           (usage.empty() ? "" : usage + '\n') + "Help:  " + path_of(named_apps(program)) + " --help\n";
}

} // namespace soapwrapper::probe
