// The command line, as commands describe themselves to it. They go through here and not to the parser itself,
// because its header costs a compiler several seconds in each file that touches it.
#ifndef SOAPWRAPPER_PROBE_ARGUMENTS_COMMAND_LINE_H
#define SOAPWRAPPER_PROBE_ARGUMENTS_COMMAND_LINE_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace CLI
{
class App;
class Option;
} // namespace CLI

namespace soapwrapper::probe
{

// What is wrong with a text; nothing, if it is good.
using TextCheck = std::function<std::string(const std::string&)>;

// An option or an argument. The parser owns it; a copy means the same one. Each function gives it back, to go
// on with.
class Option
{
  public:
    explicit Option(CLI::Option* option) : option_(option) {}

    Option required(bool is_required = true) const;
    // As the help shows the value. An argument has none.
    Option type_name(const std::string& name) const;
    // The help shows the value that the variable has now.
    Option capture_default_str() const;
    // One value each time it is given, and not all that follow.
    Option one_at_a_time() const;
    Option excludes(Option other) const;
    Option check(const TextCheck& check) const;
    Option one_of(const std::vector<std::string>& values) const;
    Option range(std::int64_t least, std::int64_t most) const;

    bool given() const;

  private:
    CLI::Option* option_;
};

// The program, a group of commands or a command. The parser owns it.
class Command
{
  public:
    explicit Command(CLI::App* app) : app_(app) {}

    Command add_subcommand(const std::string& name, const std::string& description) const;

    // A value may be a text, a number, either of them optional, or a vector of texts.
    template <class Value>
    Option add_option(const std::string& names, Value& value, const std::string& description) const;
    // For what is more than a text: `take` puts it where it belongs.
    Option add_text_option(const std::string& name, const TextCheck& take,
                           const std::string& description) const;
    Option add_flag(const std::string& name, bool& flag, const std::string& description) const;

    // Called once the command line has been read, if the user named the command.
    void callback(std::function<void()> act) const;
    void footer(const std::string& text) const;
    void require_subcommand() const;

  private:
    CLI::App* app_;
};

// For a callback that finds that something is missing.
[[noreturn]] void throw_missing(const std::string& what);

} // namespace soapwrapper::probe

#endif
