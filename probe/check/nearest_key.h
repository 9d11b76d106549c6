// Which key somebody meant who wrote another.
#ifndef SOAPWRAPPER_PROBE_CHECK_NEAREST_KEY_H
#define SOAPWRAPPER_PROBE_CHECK_NEAREST_KEY_H

#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::probe
{

// The key that is nearly the same as this one; empty: none is.
std::string nearest_key(std::string_view written, const std::vector<std::string>& keys);

// The letters and digits of a word, small.
std::string plain_letters(std::string_view word);

} // namespace soapwrapper::probe

#endif
