#ifndef SOAPWRAPPER_SIMULATOR_FRONT_NUMBER_IN_H
#define SOAPWRAPPER_SIMULATOR_FRONT_NUMBER_IN_H

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace soapwrapper::simulator
{

// The whole text as a number, within its type.
template <class Number>
std::optional<Number> number_in(std::string_view text)
{
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

} // namespace soapwrapper::simulator

#endif
