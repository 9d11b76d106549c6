// A wrapper of one DOM node. The document owns the node; deleting the wrapper does nothing to it, and the
// wrapper must not outlive the document. Every pointer that is returned is a new wrapper, the caller's to
// delete.
#ifndef SOAPWRAPPER_XMLHELPER_NODE_H
#define SOAPWRAPPER_XMLHELPER_NODE_H

#include "xmlhelper/xml_status.h"

#include <xercesc/util/XercesDefs.hpp>

#include <cstdint>
#include <string>
#include <type_traits>

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
class DOMNamedNodeMap;
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

class THXMLDocument;
class XMLNamedNodeMap;
class XMLNodeList;
class XMLTextNode;

class XMLDocNode
{
  public:
    XMLDocNode(THXMLDocument* document, xercesc::DOMNode* node);
    // A new element, without a parent, and with a text in it. `status` may be null.
    XMLDocNode(THXMLDocument* document, const std::string& name, XMLDocumentStatus* status);
    XMLDocNode(THXMLDocument* document, const std::string& name, const std::string& text,
               XMLDocumentStatus* status);
    XMLDocNode(const XMLDocNode&) = default;
    XMLDocNode& operator=(const XMLDocNode&) = default;
    virtual ~XMLDocNode() = default;

    XMLDocNode* get_parent() const;
    XMLDocNode* get_next_sibling() const;
    XMLDocNode* get_previous_sibling() const;
    // All children, of every type; null if there is none.
    XMLNodeList* get_childNodes() const;
    // Null for what isn't an element.
    XMLNamedNodeMap* get_attributes() const;

    const std::string& get_nodeName() const;
    const XMLCh* get_nodeNameXml() const;

    // The first text or CDATA child of an element, or the node's own value. Empty, with an error text, if it
    // is too long to convert. With `trims`, blanks and line ends at its end go, as long as a character stays.
    const std::string& get_text(std::string& text, bool trims) const;
    std::string get_text() const;
    const std::string& getNodeText(std::string& text, bool trims) const { return get_text(text, trims); }
    // The text of the first child element of the name; empty without one.
    std::string getChildNodeText(const std::string& name) const;
    // Changes the first text child, or a text node itself.
    XMLDocumentStatus replace_text(const std::string& text);

    // Empty without the attribute; true for "true" in any case; 0 for what isn't 1 to 20 characters.
    std::string getAttributeString(const std::string& name) const;
    bool getAttributeBoolean(const std::string& name) const;
    std::int64_t getAttributeNumeric(const std::string& name) const;
    bool getNodeBoolean() const;
    std::int64_t getNodeNumeric() const;
    XMLDocumentStatus addAttribute(const std::string& name, const std::string& value);
    XMLDocumentStatus setAttribute(const std::string& name, const std::string& value)
    {
        return addAttribute(name, value);
    }

    // Puts this element behind the parent's children.
    XMLDocumentStatus appendElement(XMLDocNode* parentElement);
    XMLDocumentStatus appendChild(XMLDocNode* child);
    XMLDocumentStatus appendChild(XMLTextNode* child);
    // A new element behind the children, with a value in it. Throw std::domain_error on failure.
    XMLDocNode* createAndAppendChild(const std::string& name);
    XMLDocNode* createAndAppendChild(const std::string& name, const std::string& value);
    template <class Boolean, std::enable_if_t<std::is_same_v<Boolean, bool>, int> = 0>
    XMLDocNode* createAndAppendChild(const std::string& name, Boolean value)
    {
        return createAndAppendChild(name, std::string(value ? "true" : "false"));
    }
    template <class Integer,
              std::enable_if_t<std::is_integral_v<Integer> && !std::is_same_v<Integer, bool>, long> = 0>
    XMLDocNode* createAndAppendChild(const std::string& name, Integer value)
    {
        return createAndAppendChild(name, std::to_string(value));
    }

    // Below this node. Throw std::domain_error for what the subset of XPath doesn't hold. The list is null
    // only without a DOM node.
    XMLNodeList* selectNodes(const std::string& xpath) const;
    // The first match, or null.
    XMLDocNode* selectSingleNode(const std::string& xpath) const;

    THXMLDocument* get_document() const { return document_; }
    xercesc::DOMNode* get_domNode() const { return node_; }
    // Null if the node isn't an element.
    xercesc::DOMElement* get_element() const;
    const std::string& get_errorText() const { return error_text_; }

  protected:
    XMLDocNode* wrapper_of(xercesc::DOMNode* node) const;
    // Empty, with an error text, if the text is too long to convert.
    std::string utf8(const XMLCh* text) const;
    XMLDocumentStatus fail(XMLDocumentStatus status, const std::string& message) const;

    THXMLDocument* document_;
    xercesc::DOMNode* node_;
    mutable std::string error_text_;

  private:
    XMLDocumentStatus create(const std::string& name);
    XMLDocNode* appended(XMLDocNode* child);

    mutable std::string name_;
};

} // namespace Oskelund::Tarnholme::VMware::XMLHelper

#endif
