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

// Of one request, which its context reads from a stream.
class RequestBounds
{
  public:
    // Takes the context's hooks and its user pointer.
    explicit RequestBounds(soap& context);
    RequestBounds(const RequestBounds&) = delete;
    RequestBounds& operator=(const RequestBounds&) = delete;

    // SOAP_OK, or the error of a request that went beyond the bound, with the fault that says so. Such a
    // request isn't read any further. The generated skeleton takes one for whole that ends in its operation's
    // attributes, so this is to be asked ahead of the operation too.
    int check();

  private:
    static std::size_t read_block(soap* context, char* bytes, std::size_t count);
    static int check_names(soap* context, const char* bytes, std::size_t count);

    soap& context_;
    bool exceeded_ = false;
};

} // namespace soapwrapper::simulator

#endif
