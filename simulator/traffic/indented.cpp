#include "simulator/traffic/indented.h"

#include <string>
#include <string_view>

namespace soapwrapper::simulator
{

std::string indented(std::string_view xml)
{
    return std::string(xml);
}

} // namespace soapwrapper::simulator
