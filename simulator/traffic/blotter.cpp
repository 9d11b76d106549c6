#include "simulator/traffic/blotter.h"

#include <string>
#include <string_view>

namespace soapwrapper::simulator
{

std::string Blotter::message(std::string_view bytes, bool /*is_cut*/)
{
    return "(" + std::to_string(bytes.size()) + " bytes)";
}

std::string Blotter::text(std::string_view bytes, bool is_cut)
{
    return tokens_.blotted(credential_.blotted(bytes, is_cut));
}

} // namespace soapwrapper::simulator
