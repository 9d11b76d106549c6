// All wire classes and all operations under one plain type each, so that a test can go through them in a
// loop.
#ifndef SOAPWRAPPER_TESTS_SCHEMA_REGISTRY_H
#define SOAPWRAPPER_TESTS_SCHEMA_REGISTRY_H

#include "walkers.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "soapwrapperPSVWSSoapBindingProxy.h"

namespace schema
{

// An object of a wire class, whichever it is.
class WireObject
{
  public:
    virtual ~WireObject() = default;
    // Fills every member. What the members point at belongs to the filler.
    virtual void fill(Filler& filler) = 0;
    virtual void expect_filled(int round) = 0;
    virtual void expect_default() = 0;
    // Calls the class's own soap_default.
    virtual void set_default(soap& context) = 0;
    // The context that the object names as its maker.
    virtual const soap* maker() const = 0;
    // Writes the object under this tag, within the body of an envelope.
    virtual std::string text(const std::string& name) = 0;
    // Reads the object from its element "ns1:any", the root of `document`. What is read belongs to `context`.
    virtual int read(PSVWSSoapBindingProxy& context, const std::string& document) = 0;
};

struct WireClass {
    std::string name;        // in the contract: "LSU", "deleteSnap"
    bool is_message = false; // or else a type
    std::function<std::unique_ptr<WireObject>()> make;
};

// Types first, then messages; each in the contract's order.
const std::vector<WireClass>& wire_classes();

struct OperationEntry {
    std::string name;
    std::string response_name;
    std::function<std::unique_ptr<WireObject>()> make_request;
    std::function<std::unique_ptr<WireObject>()> make_response;
    // The four forms. The long one is given an empty action, the send half neither endpoint nor action.
    std::function<int(PSVWSSoapBindingProxy&, WireObject& request, WireObject& response)> call;
    std::function<int(PSVWSSoapBindingProxy&, const char* endpoint, WireObject&, WireObject&)> call_endpoint;
    std::function<int(PSVWSSoapBindingProxy&, WireObject& request)> send;
    std::function<int(PSVWSSoapBindingProxy&, WireObject& response)> receive;
};

// In the order of the proxy's slots.
const std::vector<OperationEntry>& operation_entries();

} // namespace schema

#endif
