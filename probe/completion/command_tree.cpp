#include "probe/completion/command_tree.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

bool begins_with(const std::string& text, const char* beginning)
{
    return text.rfind(beginning, 0) == 0;
}

std::string name_of(const CLI::Option& option)
{
    return option.get_lnames().empty() ? "-" + option.get_snames().front()
                                       : "--" + option.get_lnames().front();
}

// What the help calls the value of an option, without what it adds on its limits.
std::string value_of(const CLI::Option& option)
{
    const std::string name = option.get_type_name();
    return name.substr(0, name.find(':'));
}

bool takes_many(const CLI::Option& option)
{
    return option.get_items_expected_max() > 1;
}

// Goes along a command line as the parser does.
class Walk
{
  public:
    explicit Walk(const CLI::App& program) : command_(&program) { take_arguments(); }

    void pass(const std::string& word)
    {
        if (pending_) {
            take_value(*pending_, word);
            pending_ = nullptr;
        } else if (is_argument(word)) {
            pass_argument(word);
        } else if (word == "--") {
            options_ended_ = true;
        } else {
            pass_option(word);
        }
    }

    Place place_of(const std::string& current) const
    {
        Place place;
        place.arguments = arguments_;
        place.options = options_;
        const std::size_t sign = current.find('=');
        if (pending_) {
            expect(*pending_, place);
        } else if (!is_argument(current) && sign != std::string::npos) {
            place.lead = current.substr(0, sign + 1);
            if (const auto* option = find_option(current.substr(0, sign))) expect(*option, place);
        } else if (!is_argument(current)) {
            add_options(place);
        } else {
            expect_argument(place);
        }
        return place;
    }

  private:
    bool is_argument(const std::string& word) const { return options_ended_ || !begins_with(word, "-"); }

    void take_arguments()
    {
        expected_.clear();
        for (const CLI::Option* option : command_->get_options()) {
            if (option->get_positional()) expected_.push_back(option);
        }
    }

    const CLI::Option* find_option(const std::string& name) const
    {
        for (const CLI::App* at = command_; at; at = at->get_parent()) {
            if (const CLI::Option* option = at->get_option_no_throw(name)) return option;
        }
        return nullptr;
    }

    void pass_option(const std::string& word)
    {
        const std::size_t sign = word.find('=');
        const CLI::Option* option = find_option(word.substr(0, sign));
        if (!option) return;
        given_.push_back(option);
        if (option->get_items_expected_max() == 0) {
            options_.push_back({name_of(*option), ""});
        } else if (sign == std::string::npos) {
            pending_ = option;
        } else {
            take_value(*option, word.substr(sign + 1));
        }
    }

    void take_value(const CLI::Option& option, const std::string& value)
    {
        options_.push_back({name_of(option), value});
    }

    void pass_argument(const std::string& word)
    {
        if (const CLI::App* below = command_below(word)) {
            command_ = below;
            take_arguments();
        } else if (!expected_.empty()) {
            const CLI::Option& argument = *expected_.front();
            arguments_[argument.get_name()] = word;
            given_.push_back(&argument);
            if (!takes_many(argument)) expected_.erase(expected_.begin());
        }
    }

    const CLI::App* command_below(const std::string& name) const
    {
        for (const CLI::App* below : command_->get_subcommands({})) {
            if (below->get_name() == name) return below;
        }
        return nullptr;
    }

    static void expect(const CLI::Option& option, Place& place)
    {
        place.value = value_of(option);
        place.option = name_of(option);
    }

    void expect_argument(Place& place) const
    {
        for (const CLI::App* below : command_->get_subcommands({})) {
            if (!below->get_group().empty())
                place.choices.push_back({below->get_name(), below->get_description()});
        }
        if (!place.choices.empty()) return;
        if (!expected_.empty() && !is_excluded(*expected_.front())) {
            place.value = expected_.front()->get_name();
        } else if (!options_ended_) {
            add_options(place);
        }
    }

    // An option that can stand there: not a second time, and not beside one that it excludes.
    void add_options(Place& place) const
    {
        for (const CLI::App* at = command_; at; at = at->get_parent()) {
            for (const CLI::Option* option : at->get_options()) {
                const bool is_again =
                    std::count(given_.begin(), given_.end(), option) > 0 && !takes_many(*option);
                if (option->get_positional() || option->get_group().empty() || is_again ||
                    is_excluded(*option))
                    continue;
                place.choices.push_back({name_of(*option), option->get_description()});
            }
        }
    }

    bool is_excluded(const CLI::Option& option) const
    {
        const auto excluded = option.get_excludes();
        return std::any_of(given_.begin(), given_.end(), [&](const CLI::Option* given) {
            return std::count(excluded.begin(), excluded.end(), given) > 0;
        });
    }

    const CLI::App* command_;
    std::vector<const CLI::Option*> expected_; // the arguments that are still to come
    std::vector<const CLI::Option*> given_;
    const CLI::Option* pending_ = nullptr; // the option whose value comes next
    bool options_ended_ = false;
    std::map<std::string, std::string> arguments_;
    std::vector<Choice> options_;
};

} // namespace

Place find_place(const CLI::App& program, const std::vector<std::string>& words, const std::string& current)
{
    Walk walk(program);
    for (const std::string& word : words) walk.pass(word);
    return walk.place_of(current);
}

} // namespace soapwrapper::probe
