#include "simulator/traffic/known_secret.h"

#include <string>
#include <string_view>

namespace soapwrapper::simulator
{

KnownSecret::KnownSecret(const std::string& secret) : texts_{secret} {}

std::string KnownSecret::blotted(std::string_view text, bool /*is_cut*/) const
{
    return std::string(text);
}

} // namespace soapwrapper::simulator
