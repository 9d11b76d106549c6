// The children and attributes of a node as lists, selection below it, and what is appended to it.
#include "xmlhelper/node.h"
#include "xmlhelper/node_list.h"
#include "xmlhelper/text_node.h"
#include "xmlhelper/xml_status.h"
#include "xmlhelper/xpath.h"

#include <xercesc/dom/DOM.hpp>

#include <memory>
#include <stdexcept>
#include <string>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

XMLDocNode::XMLDocNode(THXMLDocument* document, const std::string& name, const std::string& text,
                       XMLDocumentStatus* status)
    : XMLDocNode(document, nullptr)
{
    XMLDocumentStatus result = create(name);
    if (result == XML_DOC_OK) {
        XMLTextNode content(document, text, &result);
        if (result == XML_DOC_OK) result = content.appendText(this);
        error_text_ = content.get_errorText();
    }
    if (status) *status = result;
}

XMLNodeList* XMLDocNode::get_childNodes() const
{
    if (!node_ || !node_->getFirstChild()) return nullptr;
    auto children = std::make_unique<XMLNodeList>(document_);
    for (DOMNode* child = node_->getFirstChild(); child; child = child->getNextSibling()) {
        children->add_item(wrapper_of(child));
    }
    return children.release();
}

XMLNamedNodeMap* XMLDocNode::get_attributes() const
{
    DOMNamedNodeMap* attributes = node_ ? node_->getAttributes() : nullptr;
    return attributes ? new XMLNamedNodeMap(document_, attributes) : nullptr;
}

XMLDocumentStatus XMLDocNode::appendElement(XMLDocNode* parentElement)
{
    if (!parentElement) {
        return fail(XML_DOC_APPEND_FAILED,
                    "XMLDocNode::appendElement: cannot call appendChild(), parentElement is NULL");
    }
    DOMElement* parent = parentElement->get_element();
    if (!parent) {
        return fail(XML_DOC_APPEND_FAILED, "XMLDocNode::appendElement: cannot call appendChild(), "
                                           "parentElement->get_element() is NULL");
    }
    DOMElement* pElement = get_element();
    if (!pElement) {
        return fail(XML_DOC_APPEND_FAILED,
                    "XMLDocNode::appendElement: cannot call appendChild(), pElement is NULL");
    }
    try {
        parent->appendChild(pElement);
    } catch (const DOMException&) {
        return fail(XML_DOC_APPEND_FAILED, "XMLDocNode::appendElement: appendChild() failed");
    }
    return XML_DOC_OK;
}

XMLDocumentStatus XMLDocNode::appendChild(XMLDocNode* child)
{
    if (!child) {
        return fail(XML_DOC_APPEND_FAILED,
                    "XMLDocNode::appendElement: cannot call appendChild(), pElement is NULL");
    }
    const XMLDocumentStatus status = child->appendElement(this);
    return status == XML_DOC_OK ? status : fail(status, child->get_errorText());
}

XMLDocumentStatus XMLDocNode::appendChild(XMLTextNode* child)
{
    if (!child) return fail(XML_DOC_APPEND_FAILED, "XMLTextNode::appendText: pText is NULL");
    const XMLDocumentStatus status = child->appendText(this);
    return status == XML_DOC_OK ? status : fail(status, child->get_errorText());
}

XMLDocNode* XMLDocNode::appended(XMLDocNode* child)
{
    std::unique_ptr<XMLDocNode> owned(child);
    if (const XMLDocumentStatus status = appendChild(child)) {
        throw std::domain_error("Failed to append XMLDocNode. Status: " + std::to_string(status));
    }
    return owned.release();
}

XMLDocNode* XMLDocNode::createAndAppendChild(const std::string& name)
{
    XMLDocumentStatus status = XML_DOC_OK;
    auto child = std::make_unique<XMLDocNode>(document_, name, &status);
    if (status) throw std::domain_error("Failed to create XMLDocNode. Status: " + std::to_string(status));
    return appended(child.release());
}

XMLDocNode* XMLDocNode::createAndAppendChild(const std::string& name, const std::string& value)
{
    XMLDocumentStatus status = XML_DOC_OK;
    auto child = std::make_unique<XMLDocNode>(document_, name, value, &status);
    if (status) throw std::domain_error("Failed to create XMLDocNode. Status: " + std::to_string(status));
    return appended(child.release());
}

XMLNodeList* XMLDocNode::selectNodes(const std::string& xpath) const
{
    const bool is_document = node_ && node_->getNodeType() == DOMNode::DOCUMENT_NODE;
    return selectNodesDom(document_, node_, xpath.c_str(), is_document);
}

XMLDocNode* XMLDocNode::selectSingleNode(const std::string& xpath) const
{
    const std::unique_ptr<XMLNodeList> nodes(selectNodes(xpath));
    return nodes ? nodes->get_item(0) : nullptr;
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
