#ifndef SOAPWRAPPER_TESTS_KIT_REQUIRE_H
#define SOAPWRAPPER_TESTS_KIT_REQUIRE_H

#include <stdexcept>

namespace kit
{

// For what the kit can't go on without.
inline void require(bool good, const char* what)
{
    if (!good) throw std::runtime_error(what);
}

} // namespace kit

#endif
