// What a request may cost the worker that reads it.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_REQUEST_BOUNDS_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_REQUEST_BOUNDS_H

#include <cstddef>

struct soap;

namespace soapwrapper::simulator
{

// Names of attributes in one request, and namespaces declared around one element: the SOAP runtime searches
// both lists from end to end for each attribute and each element. Clients have about a dozen.
constexpr std::size_t kMostNames = 100;

// For a context that reads its request from a stream. One that goes beyond the bound is not read any
// further and answered with a fault that says so.
void bound_request(soap& context);

} // namespace soapwrapper::simulator

#endif
