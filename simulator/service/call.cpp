#include "simulator/service/call.h"

#include <algorithm>
#include <climits>
#include <new>
#include <string>

namespace soapwrapper::simulator
{

xsd__base64Binary* Call::bytes(const std::string& value) const
{
    xsd__base64Binary* binary = make(soap_new_xsd__base64Binary);
    if (value.empty() || value.size() > INT_MAX) return binary;
    binary->__ptr = static_cast<unsigned char*>(soap_malloc(&arena_, value.size()));
    if (!binary->__ptr) throw std::bad_alloc();
    std::copy(value.begin(), value.end(), binary->__ptr);
    binary->__size = static_cast<int>(value.size());
    return binary;
}

} // namespace soapwrapper::simulator
