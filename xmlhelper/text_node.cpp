#include "xmlhelper/text_node.h"

#include "xmlhelper/document.h"
#include "xmlhelper/transcoding.h"
#include "xmlhelper/xml_status.h"

#include <xercesc/dom/DOM.hpp>

#include <memory>
#include <stdexcept>
#include <string>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

XMLTextNode::XMLTextNode(THXMLDocument* document, const std::string& text, XMLDocumentStatus* status)
    : XMLDocNode(document, nullptr)
{
    const XMLDocumentStatus result = create(text);
    if (status) *status = result;
}

XMLDocumentStatus XMLTextNode::create(const std::string& text)
{
    DOMDocument* document = document_ ? document_->get_document() : nullptr;
    try {
        const std::unique_ptr<XMLCh[]> converted(transcodeUtf8ToXml(text.c_str()));
        if (document) node_ = document->createTextNode(converted.get());
    } catch (const std::domain_error&) {
        node_ = nullptr;
    }
    if (node_) return XML_DOC_OK;
    return fail(XML_DOC_CREATE_TEXT_FAILED, "XMLTextNode::XMLTextNode: createTextNode(" + text + ") failed");
}

XMLDocumentStatus XMLTextNode::appendText(XMLDocNode* parentElement)
{
    if (!parentElement) {
        return fail(XML_DOC_APPEND_FAILED, "XMLTextNode::appendText: parentElement is NULL");
    }
    DOMElement* pDomElement = parentElement->get_element();
    if (!pDomElement) return fail(XML_DOC_APPEND_FAILED, "XMLTextNode::appendText: pDomElement is NULL");
    if (!node_) return fail(XML_DOC_APPEND_FAILED, "XMLTextNode::appendText: pText is NULL");
    try {
        pDomElement->appendChild(node_);
    } catch (const DOMException&) {
        return fail(XML_DOC_APPEND_FAILED, "XMLTextNode::appendText: appendChild() failed");
    }
    return XML_DOC_OK;
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
