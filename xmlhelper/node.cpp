#include "xmlhelper/node.h"

#include "xmlhelper/document.h"
#include "xmlhelper/transcoding.h"
#include "xmlhelper/xml_status.h"

#include <xercesc/dom/DOM.hpp>

#include <stdexcept>
#include <string>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

XMLDocNode::XMLDocNode(THXMLDocument* document, DOMNode* node) : document_(document), node_(node) {}

XMLDocNode::XMLDocNode(THXMLDocument* document, const std::string& name, XMLDocumentStatus* status)
    : XMLDocNode(document, nullptr)
{
    const XMLDocumentStatus result = create(name);
    if (status) *status = result;
}

XMLDocumentStatus XMLDocNode::create(const std::string& name)
{
    DOMDocument* document = document_ ? document_->get_document() : nullptr;
    if (!document) {
        return fail(XML_DOC_CREATE_ELEMENT_FAILED,
                    "XMLDocNode::XMLDocNode: cannot call createElement(), no THXMLDocument supplied");
    }
    try {
        const XMLCh* converted = transcodeUtf8TagToXmlTag(name);
        if (converted) node_ = document->createElement(converted);
    } catch (const DOMException&) {
        node_ = nullptr;
    } catch (const std::domain_error&) {
        node_ = nullptr;
    }
    if (node_) return XML_DOC_OK;
    return fail(XML_DOC_CREATE_ELEMENT_FAILED, "XMLDocNode::XMLDocNode: createElement() failed");
}

XMLDocumentStatus XMLDocNode::fail(XMLDocumentStatus status, const std::string& message) const
{
    error_text_ = message;
    return status;
}

std::string XMLDocNode::utf8(const XMLCh* text) const
{
    try {
        return transcodeXmlToUtf8(text);
    } catch (const std::domain_error& error) {
        error_text_ = std::string("Caught domain_error: ") + error.what();
        return EmptyString;
    }
}

XMLDocNode* XMLDocNode::wrapper_of(DOMNode* node) const
{
    return node ? new XMLDocNode(document_, node) : nullptr;
}

DOMElement* XMLDocNode::get_element() const
{
    if (!node_ || node_->getNodeType() != DOMNode::ELEMENT_NODE) return nullptr;
    return static_cast<DOMElement*>(node_);
}

XMLDocNode* XMLDocNode::get_parent() const
{
    return node_ ? wrapper_of(node_->getParentNode()) : nullptr;
}

XMLDocNode* XMLDocNode::get_next_sibling() const
{
    return node_ ? wrapper_of(node_->getNextSibling()) : nullptr;
}

XMLDocNode* XMLDocNode::get_previous_sibling() const
{
    return node_ ? wrapper_of(node_->getPreviousSibling()) : nullptr;
}

const std::string& XMLDocNode::get_nodeName() const
{
    if (name_.empty()) name_ = utf8(get_nodeNameXml());
    return name_;
}

const XMLCh* XMLDocNode::get_nodeNameXml() const
{
    return node_ ? node_->getNodeName() : nullptr;
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
