// The name and the text of a DOM node, in UTF-8.
#ifndef SOAPWRAPPER_XMLHELPER_DOM_TEXT_H
#define SOAPWRAPPER_XMLHELPER_DOM_TEXT_H

#include "xmlhelper/xml_status.h"

#include <xercesc/dom/DOMNode.hpp>

#include <string>

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

// Is this, in UTF-8, the node's name?
bool has_name(const xercesc::DOMNode* node, const std::string& name);

// The first text or CDATA child of an element, or the node's own value. Throws std::domain_error if it is too
// long.
std::string getNodeTextDom(const xercesc::DOMNode* node);

// Changes the first text child, or a text node itself. Throws std::domain_error if the text is too long.
XMLDocumentStatus replaceNodeTextDom(xercesc::DOMNode* node, const std::string& text);

} // namespace Oskelund::Tarnholme::VMware::XMLHelper

#endif
