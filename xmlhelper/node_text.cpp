#include "xmlhelper/node.h"

#include "xmlhelper/dom_text.h"
#include "xmlhelper/transcoding.h"
#include "xmlhelper/xml_status.h"

#include <strings.h>
#include <xercesc/dom/DOM.hpp>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{
namespace
{

constexpr std::size_t kMaxNumberLength = 20;

bool is_true(const std::string& text)
{
    return strcasecmp(text.c_str(), "true") == 0;
}

std::int64_t number_in(const std::string& text)
{
    if (text.empty() || text.size() > kMaxNumberLength) return 0;
    return std::strtoll(text.c_str(), nullptr, 10);
}

void trim_end(std::string& text)
{
    while (text.size() > 1) {
        if (text.back() == '\n') {
            text.pop_back();
            if (text.size() > 1 && text.back() == '\r') text.pop_back();
        } else if (text.back() == ' ') {
            text.pop_back();
        } else {
            return;
        }
    }
}

} // namespace

std::string XMLDocNode::get_text() const
{
    try {
        return getNodeTextDom(node_);
    } catch (const std::domain_error& error) {
        error_text_ = std::string("Caught domain_error: ") + error.what();
        return EmptyString;
    }
}

const std::string& XMLDocNode::get_text(std::string& text, bool trims) const
{
    text = get_text();
    if (trims) trim_end(text);
    return text;
}

std::string XMLDocNode::getChildNodeText(const std::string& name) const
{
    DOMNode* child = node_ ? node_->getFirstChild() : nullptr;
    while (child && !(child->getNodeType() == DOMNode::ELEMENT_NODE && has_name(child, name))) {
        child = child->getNextSibling();
    }
    return child ? XMLDocNode(document_, child).get_text() : EmptyString;
}

XMLDocumentStatus XMLDocNode::replace_text(const std::string& text)
{
    try {
        return replaceNodeTextDom(node_, text);
    } catch (const std::domain_error& error) {
        return fail(XML_DOC_REPLACE_TEXT_FAILED, std::string("Caught domain_error: ") + error.what());
    } catch (const DOMException&) {
        return fail(XML_DOC_REPLACE_TEXT_FAILED, "XMLDocNode::replace_text: setNodeValue() failed");
    }
}

std::string XMLDocNode::getAttributeString(const std::string& name) const
{
    const DOMElement* element = get_element();
    if (!element) return EmptyString;
    try {
        const XMLCh* converted = transcodeUtf8TagToXmlTag(name);
        return converted ? transcodeXmlToUtf8(element->getAttribute(converted)) : EmptyString;
    } catch (const std::domain_error& error) {
        error_text_ = std::string("Caught domain_error: ") + error.what();
        return EmptyString;
    }
}

bool XMLDocNode::getAttributeBoolean(const std::string& name) const
{
    return is_true(getAttributeString(name));
}

std::int64_t XMLDocNode::getAttributeNumeric(const std::string& name) const
{
    return number_in(getAttributeString(name));
}

bool XMLDocNode::getNodeBoolean() const
{
    return is_true(get_text());
}

std::int64_t XMLDocNode::getNodeNumeric() const
{
    return number_in(get_text());
}

XMLDocumentStatus XMLDocNode::addAttribute(const std::string& name, const std::string& value)
{
    DOMElement* pElement = get_element();
    if (!pElement) {
        return fail(XML_DOC_SET_ATTRIBUTE_FAILED,
                    "XMLDocNode::addAttribute: cannot call setAttribute(), pElement is NULL");
    }
    try {
        const XMLCh* converted_name = transcodeUtf8TagToXmlTag(name);
        const std::unique_ptr<XMLCh[]> converted_value(transcodeUtf8ToXml(value.c_str()));
        if (converted_name) {
            pElement->setAttribute(converted_name, converted_value.get());
            return XML_DOC_OK;
        }
    } catch (const std::domain_error& error) {
        return fail(XML_DOC_SET_ATTRIBUTE_FAILED, std::string("Caught domain_error: ") + error.what());
    } catch (const DOMException&) {
        // As without a name.
    }
    return fail(XML_DOC_SET_ATTRIBUTE_FAILED, "XMLDocNode::addAttribute: setAttribute() failed");
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
