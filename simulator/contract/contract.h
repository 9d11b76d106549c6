// The service's contract as clients can ask for it: its WSDL and its schema, which the program carries within
// itself.
#ifndef SOAPWRAPPER_SIMULATOR_CONTRACT_CONTRACT_H
#define SOAPWRAPPER_SIMULATOR_CONTRACT_CONTRACT_H

#include "simulator/front/http.h"

#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::simulator
{

// The WSDL as it is installed, with the address where a service listens by default, and its schema.
std::string_view wsdl_template();
std::string_view schema_text();

// The WSDL of a service at this address.
std::string wsdl_at(std::string_view url);

// What the operation does, in a line or two; empty if there is none of that name.
std::string_view text_of(std::string_view operation);

// The WSDL, with the address by which the client reached the service.
Answer serve_wsdl(const Request& request);
Answer serve_schema(const Request& request);

// Those with a path of their own. The WSDL is asked for as "/?wsdl", and "/" is not for the contract alone.
std::vector<Route> contract_routes();

} // namespace soapwrapper::simulator

#endif
