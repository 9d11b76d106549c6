// How large the declarations of elements and attributes are.
#ifndef SOAPWRAPPER_XMLHELPER_CONTENT_MODEL_H
#define SOAPWRAPPER_XMLHELPER_CONTENT_MODEL_H

#include <xercesc/validators/DTD/DTDElementDecl.hpp>

#include <cstddef>

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

// The parser follows the model of what an element may contain with a call for each of its levels, once it is
// used.
bool is_model_too_large(const xercesc::DTDElementDecl& declaration);

// In the list of an attribute's values; 0 for null.
std::size_t listed_values(const XMLCh* list);

} // namespace Oskelund::Tarnholme::VMware::XMLHelper

#endif
