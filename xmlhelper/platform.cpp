#include "xmlhelper/platform.h"

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>

#include <mutex>
#include <string>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{
namespace
{

std::mutex g_platform_mutex;

// Without a platform there is no transcoder either; its messages are plain ASCII.
std::string narrow(const XMLCh* text)
{
    std::string narrowed;
    for (; text && *text; ++text) narrowed += *text < 0x80 ? static_cast<char>(*text) : '?';
    return narrowed;
}

} // namespace

bool start_platform(std::string* message)
{
    const std::lock_guard<std::mutex> lock(g_platform_mutex);
    try {
        XMLPlatformUtils::Initialize();
        return true;
    } catch (const XMLException& exception) {
        if (message) *message = narrow(exception.getMessage());
        return false;
    }
}

void end_platform()
{
    const std::lock_guard<std::mutex> lock(g_platform_mutex);
    XMLPlatformUtils::Terminate();
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
