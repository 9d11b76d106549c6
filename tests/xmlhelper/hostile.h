// Documents that ask for much, and a thread that has little.
#ifndef SOAPWRAPPER_TESTS_XMLHELPER_HOSTILE_H
#define SOAPWRAPPER_TESTS_XMLHELPER_HOSTILE_H

#include "tests/xmlhelper/fixtures.h"

#include <functional>
#include <string>

namespace xmlhelper
{

std::string repeat(std::size_t count, const std::function<std::string(std::size_t)>& piece);
std::string repeat(std::size_t count, const std::string& piece);
// `count` elements in one another.
std::string nested(std::size_t count);
// Names a0 to `count`, with the separator between them.
std::string listed_names(std::size_t count, const std::string& separator);
// A document whose root `r` may hold anything and have the attribute `a`.
std::string with_type(const std::string& declarations, const std::string& content);

// Of a text that must be refused.
std::string error_of(const std::string& text);

// On a thread with as little stack as a host may give one. Sanitized frames are larger.
void on_a_small_stack(const std::function<void()>& action);

} // namespace xmlhelper

#endif
