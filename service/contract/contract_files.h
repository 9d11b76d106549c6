// The WSDL and the schema as they are installed: what soapcpp2 made, with what it can't know of or says of
// itself put in.
#ifndef SOAPWRAPPER_SERVICE_CONTRACT_CONTRACT_FILES_H
#define SOAPWRAPPER_SERVICE_CONTRACT_CONTRACT_FILES_H

#include "service/contract/service_guide.h"

#include <string>
#include <string_view>

namespace soapwrapper
{

struct ContractFiles {
    std::string wsdl;
    std::string schema;
    std::string operations; // a line each: the name, a tab, the text
};

// Documents every operation, type and element from the guide, lets each operation declare its fault, and
// names the address. Throws std::runtime_error, with all that is amiss, if the guide leaves something out or
// tells of something that there isn't.
ContractFiles document_contract(std::string_view wsdl, std::string_view schema, ServiceGuide guide,
                                std::string_view address);

} // namespace soapwrapper

#endif
