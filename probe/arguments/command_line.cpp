#include "probe/arguments/command_line.h"

#include <CLI/CLI.hpp>

#include <cstdint>
#include <functional>
#include <optional> // IWYU pragma: keep, for the explicit instantiations
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{

Option Option::required(bool is_required) const
{
    option_->required(is_required);
    return *this;
}

Option Option::type_name(const std::string& name) const
{
    option_->type_name(name);
    return *this;
}

Option Option::capture_default_str() const
{
    option_->capture_default_str();
    return *this;
}

Option Option::one_at_a_time() const
{
    option_->allow_extra_args(false);
    return *this;
}

Option Option::excludes(Option other) const
{
    option_->excludes(other.option_);
    return *this;
}

Option Option::check(const TextCheck& check) const
{
    option_->check(CLI::Validator([check](std::string& text) { return check(text); }, ""));
    return *this;
}

Option Option::one_of(const std::vector<std::string>& values) const
{
    option_->check(CLI::IsMember(values));
    return *this;
}

Option Option::range(std::int64_t least, std::int64_t most) const
{
    option_->check(CLI::Range(least, most).description(""));
    return *this;
}

bool Option::given() const
{
    return !option_->empty();
}

Command Command::add_subcommand(const std::string& name, const std::string& description) const
{
    return Command(app_->add_subcommand(name, description));
}

template <class Value>
Option Command::add_option(const std::string& names, Value& value, const std::string& description) const
{
    return Option(app_->add_option(names, value, description));
}

template Option Command::add_option(const std::string&, std::string&, const std::string&) const;
template Option Command::add_option(const std::string&, std::optional<std::string>&,
                                    const std::string&) const;
template Option Command::add_option(const std::string&, std::vector<std::string>&, const std::string&) const;
template Option Command::add_option(const std::string&, std::int32_t&, const std::string&) const;
template Option Command::add_option(const std::string&, std::uint32_t&, const std::string&) const;
template Option Command::add_option(const std::string&, std::optional<std::uint32_t>&,
                                    const std::string&) const;
template Option Command::add_option(const std::string&, std::size_t&, const std::string&) const;
template Option Command::add_option(const std::string&, std::optional<std::size_t>&,
                                    const std::string&) const;

Option Command::add_text_option(const std::string& name, const TextCheck& take,
                                const std::string& description) const
{
    const auto take_or_throw = [name, take](const std::string& text) {
        const std::string wrong = take(text);
        if (!wrong.empty()) throw CLI::ValidationError(name, wrong);
    };
    return Option(app_->add_option_function<std::string>(name, take_or_throw, description));
}

Option Command::add_flag(const std::string& name, bool& flag, const std::string& description) const
{
    return Option(app_->add_flag(name, flag, description));
}

void Command::callback(std::function<void()> act) const
{
    app_->callback(std::move(act));
}

void Command::footer(const std::string& text) const
{
    app_->footer(text);
}

void Command::require_subcommand() const
{
    app_->require_subcommand(1);
}

void throw_missing(const std::string& what)
{
    throw CLI::RequiredError(what);
}

} // namespace soapwrapper::probe
