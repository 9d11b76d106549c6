// What several groups of operations put into their replies and find in their requests.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_WIRE_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_WIRE_H

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/records.h"
#include "simulator/service/call.h"
#include "simulator/storage/storage.h"

#include <cstddef>
#include <optional>
#include <string>

namespace soapwrapper::simulator
{

// A handle of any of the types that hold a token and nothing else.
template <class Handle>
Handle* wire_handle(const Call& call, Handle* (*factory)(soap*, int), const std::string& token)
{
    Handle* handle = call.make(factory);
    handle->token = call.text(token);
    return handle;
}

template <class Handle>
const std::string& token_of(const Handle* handle, const char* element)
{
    return required(required(handle, element).token, "token");
}

// The LSU that a request is about.
Place place_of(Storage& storage, const ns1__LSU* lsu);

ns1__IndependentSupplierId* wire_supplier_id(const Call& call, const std::optional<SupplierId>& isid);

ns1__VolumeSpecification* wire_volume(const Call& call, const Volume& volume);
// A volume of the request, of which the client names one kind.
Volume volume_of(const ns1__VolumeSpecification* wire, const char* element);

// The server that a request means besides its own. An empty token is no handle: it means that one again.
std::size_t target_server_of(const Storage& storage, std::size_t own, const ns1__ServerHandle* target);

// The entries of an array, nil if it has none. The request tells their number besides.
template <class Array>
auto items_of(const Array* array, int told, const char* element)
{
    auto items = array ? array->item : decltype(array->item)();
    if (told < 0 || static_cast<std::size_t>(told) != items.size()) {
        throw Fault(kBadValue,
                    std::string("the request tells another number of entries than its ") + element + " has");
    }
    return items;
}

} // namespace soapwrapper::simulator

#endif
