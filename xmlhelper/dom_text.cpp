#include "xmlhelper/dom_text.h"

#include "xmlhelper/transcoding.h"
#include "xmlhelper/xml_status.h"

#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/util/XMLString.hpp>

#include <memory>
#include <string>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{
namespace
{

constexpr XMLCh kFirstBeyondAscii = 0x80;

// The child whose text is the node's; null if there is none.
template <class Matches>
DOMNode* first_child(const DOMNode* node, Matches matches)
{
    DOMNode* child = node->getFirstChild();
    while (child && !matches(child->getNodeType())) child = child->getNextSibling();
    return child;
}

} // namespace

bool has_name(const DOMNode* node, const std::string& name)
{
    const XMLCh* candidate = node->getNodeName();
    for (const char byte : name) {
        if (static_cast<unsigned char>(byte) >= kFirstBeyondAscii || *candidate >= kFirstBeyondAscii) {
            return XMLString::stringLen(node->getNodeName()) <= kMaxTranscodedLength &&
                   transcodeXmlToUtf8(node->getNodeName()) == name;
        }
        if (*candidate != static_cast<XMLCh>(byte)) return false;
        ++candidate;
    }
    return *candidate == 0;
}

std::string getNodeTextDom(const DOMNode* node)
{
    if (!node) return EmptyString;
    switch (node->getNodeType()) {
    case DOMNode::ELEMENT_NODE:
    case DOMNode::DOCUMENT_NODE:
    case DOMNode::DOCUMENT_FRAGMENT_NODE: {
        const DOMNode* text = first_child(
            node, [](int type) { return type == DOMNode::TEXT_NODE || type == DOMNode::CDATA_SECTION_NODE; });
        return text ? transcodeXmlToUtf8(text->getNodeValue()) : EmptyString;
    }
    case DOMNode::ATTRIBUTE_NODE:
    case DOMNode::TEXT_NODE:
    case DOMNode::CDATA_SECTION_NODE:
    case DOMNode::PROCESSING_INSTRUCTION_NODE:
    case DOMNode::COMMENT_NODE:
        return transcodeXmlToUtf8(node->getNodeValue());
    default:
        return EmptyString;
    }
}

XMLDocumentStatus replaceNodeTextDom(DOMNode* node, const std::string& text)
{
    if (!node) return XML_DOC_REPLACE_TEXT_FAILED;
    switch (node->getNodeType()) {
    case DOMNode::TEXT_NODE: {
        const std::unique_ptr<XMLCh[]> converted(transcodeUtf8ToXml(text.c_str()));
        node->setNodeValue(converted.get());
        return XML_DOC_OK;
    }
    case DOMNode::ELEMENT_NODE:
    case DOMNode::DOCUMENT_NODE:
    case DOMNode::DOCUMENT_FRAGMENT_NODE:
        return replaceNodeTextDom(first_child(node, [](int type) { return type == DOMNode::TEXT_NODE; }),
                                  text);
    default:
        return XML_DOC_REPLACE_TEXT_FAILED;
    }
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
