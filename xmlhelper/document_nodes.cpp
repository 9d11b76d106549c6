// The nodes of a document: those that it creates, imports and selects.
#include "xmlhelper/document.h"
#include "xmlhelper/exception_text.h"
#include "xmlhelper/node.h"
#include "xmlhelper/node_list.h"
#include "xmlhelper/text_node.h"
#include "xmlhelper/tree_walk.h"
#include "xmlhelper/xml_status.h"
#include "xmlhelper/xpath.h"

#include <xercesc/dom/DOM.hpp>

#include <memory>
#include <string>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

XMLDocumentStatus THXMLDocument::setRoot(XMLDocNode* node)
{
    if (!document_ || !node || !node->get_element()) return XML_DOC_SET_ROOT_FAILED;
    try {
        document_->appendChild(node->get_element());
    } catch (const DOMException&) {
        error_text_ = "THXMLDocument::setRoot: appendChild() failed";
        return XML_DOC_SET_ROOT_FAILED;
    }
    root_ = node->get_element();
    return XML_DOC_OK;
}

XMLDocNode* THXMLDocument::importNode(XMLDocNode* node, bool is_deep)
{
    if (!document_ || !node || !node->get_domNode()) return nullptr;
    if (is_deep && is_deeper_than(node->get_domNode(), kMaxWrittenDepth)) {
        error_text_ = "THXMLDocument::importNode: the node is nested too deep";
        return nullptr;
    }
    try {
        DOMNode* copy = document_->importNode(node->get_domNode(), is_deep);
        return copy ? new XMLDocNode(this, copy) : nullptr;
    } catch (const DOMException&) {
        error_text_ = describe_current_exception();
        return nullptr;
    }
}

XMLDocNode* THXMLDocument::createElement(const std::string& name)
{
    XMLDocumentStatus status = XML_DOC_OK;
    auto node = std::make_unique<XMLDocNode>(this, name, &status);
    if (status == XML_DOC_OK) return node.release();
    error_text_ = node->get_errorText();
    return nullptr;
}

XMLTextNode* THXMLDocument::createTextNode(const std::string& text)
{
    XMLDocumentStatus status = XML_DOC_OK;
    auto node = std::make_unique<XMLTextNode>(this, text, &status);
    if (status == XML_DOC_OK) return node.release();
    error_text_ = node->get_errorText();
    return nullptr;
}

XMLDocNode* THXMLDocument::get_root()
{
    return root_ ? new XMLDocNode(this, root_) : nullptr;
}

XMLNodeList* THXMLDocument::selectNodes(const std::string& xpath)
{
    if (!root_) return nullptr;
    return selectNodesDom(this, document_, xpath.c_str(), true);
}

XMLDocNode* THXMLDocument::selectSingleNode(const std::string& xpath)
{
    const std::unique_ptr<XMLNodeList> nodes(selectNodes(xpath));
    return nodes ? nodes->get_item(0) : nullptr;
}

void THXMLDocument::selectSingleNodeTextString(const std::string& xpath, std::string& text)
{
    const std::unique_ptr<XMLDocNode> node(selectSingleNode(xpath));
    if (node) text = node->get_text();
}

void THXMLDocument::selectSingleNodeTextBoolean(const std::string& xpath, bool& value)
{
    std::string text;
    selectSingleNodeTextString(xpath, text);
    if (!text.empty()) value = text == "true";
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
