// A wrapper of a DOM text node.
#ifndef SOAPWRAPPER_XMLHELPER_TEXT_NODE_H
#define SOAPWRAPPER_XMLHELPER_TEXT_NODE_H

#include "xmlhelper/node.h"
#include "xmlhelper/xml_status.h"

#include <string>

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

class XMLTextNode : public XMLDocNode
{
  public:
    // A new text, without a parent. `status` may be null.
    XMLTextNode(THXMLDocument* document, const std::string& text, XMLDocumentStatus* status);

    // Puts the text behind the parent's children.
    XMLDocumentStatus appendText(XMLDocNode* parentElement);

  private:
    XMLDocumentStatus create(const std::string& text);
};

} // namespace Oskelund::Tarnholme::VMware::XMLHelper

#endif
