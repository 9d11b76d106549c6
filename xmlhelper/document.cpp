#include "xmlhelper/document.h"

#include "xmlhelper/exception_text.h"
#include "xmlhelper/node.h"
#include "xmlhelper/node_list.h"
#include "xmlhelper/parse_memory.h" // IWYU pragma: keep: a document owns its rings of memory
#include "xmlhelper/platform.h"
#include "xmlhelper/text_node.h"
#include "xmlhelper/tree_walk.h"
#include "xmlhelper/xml_status.h"
#include "xmlhelper/xpath.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/XMLString.hpp>

#include <memory>
#include <stdexcept>
#include <string>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{
namespace
{

const XMLCh* declaration_data(THSupportedXmlEncoding encoding)
{
    switch (encoding) {
    case XML_ENCODING_UTF16:
        return u"version=\"1.0\" encoding=\"UTF-16\"";
    case XML_ENCODING_UTF32:
        return u"version=\"1.0\" encoding=\"UTF-32\"";
    default:
        return u"version=\"1.0\" encoding=\"UTF-8\"";
    }
}

THSupportedXmlEncoding declared_encoding(const DOMDocument* document)
{
    if (!document) return XML_ENCODING_UTF8;
    const std::string declared = utf8_or_empty(document->getXmlEncoding());
    if (XMLString::compareIString(declared.c_str(), "UTF-16") == 0) return XML_ENCODING_UTF16;
    if (XMLString::compareIString(declared.c_str(), "UTF-32") == 0) return XML_ENCODING_UTF32;
    return XML_ENCODING_UTF8;
}

void report(XMLDocumentStatus* destination, XMLDocumentStatus status)
{
    if (destination) *destination = status;
}

} // namespace

DOMImplementation* dom_implementation()
{
    return DOMImplementationRegistry::getDOMImplementation(u"XML 1.0");
}

THXMLDocument::THXMLDocument(XMLDocumentStatus* status, bool is_utf16, THValidationLevel level,
                             const std::string& schema_location)
    : THXMLDocument(status, is_utf16 ? XML_ENCODING_UTF16 : XML_ENCODING_UTF8, level, schema_location)
{
}

THXMLDocument::THXMLDocument(XMLDocumentStatus* status, THSupportedXmlEncoding encoding,
                             THValidationLevel level, const std::string& schema_location)
    : encoding_(encoding), level_(level), schema_location_(schema_location)
{
    XMLDocumentStatus result = XML_DOC_OK;
    if (start(result)) result = create_empty();
    report(status, result);
}

THXMLDocument::THXMLDocument(const char* path, XMLDocumentStatus* status, THValidationLevel level,
                             const std::string& schema_location, bool path_is_utf8)
    : encoding_(XML_ENCODING_UTF8), level_(level), schema_location_(schema_location)
{
    XMLDocumentStatus result = XML_DOC_OK;
    if (start(result)) result = load(path, path_is_utf8);
    encoding_ = declared_encoding(document_);
    report(status, result);
}

THXMLDocument::~THXMLDocument()
{
    discard();
    if (platform_started_) end_platform();
}

bool THXMLDocument::start(XMLDocumentStatus& status)
{
    std::string message;
    platform_started_ = start_platform(&message);
    if (platform_started_) return true;
    error_text_ = "Error during Xerces-c Initialization.  Exception message: " + message;
    status = XML_DOC_PLATFORM_FAILED;
    return false;
}

XMLDocumentStatus THXMLDocument::create_empty()
{
    DOMImplementation* implementation = dom_implementation();
    if (!implementation) {
        error_text_ = "getDomImplementation failed";
        return XML_DOC_PLATFORM_FAILED;
    }
    document_ = implementation->createDocument();
    return addProcessingInstruction(encoding_);
}

void THXMLDocument::discard()
{
    root_.reset();
    if (document_) document_->release();
    document_ = nullptr;
    memory_.reset();
}

XMLDocumentStatus THXMLDocument::addProcessingInstruction(THSupportedXmlEncoding encoding)
{
    if (!document_) throw std::domain_error("pXMLDom is null");
    const DOMProcessingInstruction* instruction =
        document_->createProcessingInstruction(u"xml", declaration_data(encoding));
    return instruction ? XML_DOC_OK : XML_DOC_PROCESSING_INSTRUCTION_FAILED;
}

XMLDocumentStatus THXMLDocument::setRoot(XMLDocNode* node)
{
    if (!document_ || !node || !node->get_element()) return XML_DOC_SET_ROOT_FAILED;
    try {
        document_->appendChild(node->get_element());
    } catch (const DOMException&) {
        error_text_ = "THXMLDocument::setRoot: appendChild() failed";
        return XML_DOC_SET_ROOT_FAILED;
    }
    root_ = std::make_unique<XMLDocNode>(this, node->get_element());
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
    return root_ ? new XMLDocNode(this, root_->get_domNode()) : nullptr;
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
