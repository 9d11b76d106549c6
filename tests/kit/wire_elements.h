// Elements that stand in many messages.
#ifndef SOAPWRAPPER_TESTS_KIT_WIRE_ELEMENTS_H
#define SOAPWRAPPER_TESTS_KIT_WIRE_ELEMENTS_H

#include <cstdint>
#include <string>
#include <string_view>

namespace kit
{

std::string number(std::string_view name, std::int64_t value);

// An element that may be empty, as requests write it.
std::string text_element(std::string_view name, std::string_view text);

// A handle of any kind within a request or a reply.
std::string token_element(std::string_view name, std::string_view token);

// A reference to an LSU; the one that the fixtures make, where nothing else is said.
std::string lsu_element(std::string_view token = "S1", std::string_view name = "lsu1");

// The supplier id of a cleared record.
std::string empty_isid();

// A snapshot's definition with a name and nothing else, under an element's name.
std::string snap_element(std::string_view name, std::string_view snap);

} // namespace kit

#endif
