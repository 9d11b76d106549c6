// What a handler works with: the storage, and memory for its reply.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_CALL_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_CALL_H

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/storage/model.h"

#include <new>
#include <string>

#include "soapwrapperH.h"

namespace soapwrapper::simulator
{

class Call
{
  public:
    Call(Model& model, soap& arena) : model_(model), arena_(arena) {}

    Model& model() const { return model_; }

    // A new object of the reply, from its generated factory; it lives until the reply is sent.
    template <class Object>
    Object* make(Object* (*factory)(soap*, int)) const
    {
        Object* object = factory(&arena_, -1);
        if (!object) throw std::bad_alloc();
        return object;
    }

    std::string* text(const std::string& value) const
    {
        std::string* copy = make(soap_new_std__string);
        *copy = value;
        return copy;
    }

    // The same for bytes that the message carries in Base64.
    xsd__base64Binary* bytes(const std::string& value) const;

  private:
    Model& model_;
    soap& arena_;
};

// A member of the request that the operation can't do without.
template <class Member>
const Member& required(const Member* member, const char* element)
{
    if (!member) throw Fault(kMissingElement, std::string("the request has no ") + element);
    return *member;
}

inline const std::string& token_of(const ns1__ServerHandle* handle)
{
    return required(required(handle, "serverHandle").token, "token");
}

} // namespace soapwrapper::simulator

#endif
