// An XML document: parsed from memory or a file, or built from nothing, and written back. A document belongs
// to one thread. Every pointer that is returned is a new object, the caller's to delete before the document.
#ifndef SOAPWRAPPER_XMLHELPER_DOCUMENT_H
#define SOAPWRAPPER_XMLHELPER_DOCUMENT_H

#include "xmlhelper/document_bounds.h" // IWYU pragma: export
#include "xmlhelper/xml_status.h"

#include <xercesc/util/XercesDefs.hpp>

#include <cstddef>
#include <memory>
#include <string>

XERCES_CPP_NAMESPACE_BEGIN
class DOMDocument;
class DOMElement;
class DOMImplementation;
class InputSource;
class XMLFormatTarget;
XERCES_CPP_NAMESPACE_END

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

class MemoryRing;
class XMLDocNode;
class XMLNodeList;
class XMLTextNode;

// Reading refuses, with XML_DOC_PARSE_FAILED, what document_bounds.h tells, all of it and no more, beside
// what is no XML. Nothing is fetched but the schema that the caller names: what a document keeps elsewhere is
// missing, and it isn't refused for that. Writing and copying refuse a tree of more than kMaxWrittenDepth
// levels.
class THXMLDocument
{
  public:
    // An empty document. `status` may be null, as in the other constructors.
    THXMLDocument(XMLDocumentStatus* status, bool is_utf16, THValidationLevel level,
                  const std::string& schema_location);
    THXMLDocument(XMLDocumentStatus* status, THSupportedXmlEncoding encoding, THValidationLevel level,
                  const std::string& schema_location);
    // Loads a file.
    THXMLDocument(const char* path, XMLDocumentStatus* status, THValidationLevel level,
                  const std::string& schema_location, bool path_is_utf8);
    ~THXMLDocument();
    THXMLDocument(const THXMLDocument&) = delete;
    THXMLDocument& operator=(const THXMLDocument&) = delete;

    // What the document held is gone, also when the new text can't be read.
    XMLDocumentStatus parse(const char* bytes, std::size_t count, const char* buffer_name,
                            THSupportedXmlEncoding encoding);
    // 4 bytes a character for XML_ENCODING_UTF32, otherwise 2.
    XMLDocumentStatus parse(const wchar_t* characters, std::size_t count, const char* buffer_name,
                            THSupportedXmlEncoding encoding);
    XMLDocumentStatus parse(const std::wstring& text, const std::string& buffer_name);
    XMLDocumentStatus parse(const std::string& text, const std::string& buffer_name);
    XMLDocumentStatus load(const char* path, bool path_is_utf8);

    // In the document's encoding.
    XMLDocumentStatus save(const char* path, bool is_pretty, bool path_is_utf8);
    XMLDocumentStatus serialize(std::string& text, bool is_pretty, bool keeps_declaration);
    // The same text, one wide character for each of its characters.
    XMLDocumentStatus serialize(std::wstring& text, bool is_pretty, bool keeps_declaration);

    XMLDocumentStatus setRoot(XMLDocNode* node);
    // A copy of another document's node, without a parent; null on failure.
    XMLDocNode* importNode(XMLDocNode* node, bool is_deep);
    XMLDocNode* createElement(const std::string& name);
    XMLTextNode* createTextNode(const std::string& text);
    // Throws std::domain_error without a document.
    XMLDocumentStatus addProcessingInstruction(THSupportedXmlEncoding encoding);

    // Null without a root. Throws std::domain_error for what the subset of XPath doesn't hold.
    XMLNodeList* selectNodes(const std::string& xpath);
    // The first match, or null.
    XMLDocNode* selectSingleNode(const std::string& xpath);
    // Filled on a match only.
    void selectSingleNodeTextString(const std::string& xpath, std::string& text);
    // Filled if the text isn't empty: true for "true" alone.
    void selectSingleNodeTextBoolean(const std::string& xpath, bool& value);

    // Null when there is none.
    XMLDocNode* get_root();
    xercesc::DOMDocument* get_document() { return document_; }
    THSupportedXmlEncoding get_encoding() const { return encoding_; }
    const std::string& get_errorText() const { return error_text_; }
    void set_errorText(const std::string& text) { error_text_ = text; }

  private:
    bool start(XMLDocumentStatus& status);
    XMLDocumentStatus create_empty();
    void discard();
    template <class ParseWith>
    XMLDocumentStatus read(std::size_t size, ParseWith parse_with);
    void write(xercesc::XMLFormatTarget& target, bool is_pretty, bool keeps_declaration);

    xercesc::DOMDocument* document_ = nullptr;
    std::unique_ptr<MemoryRing> memory_;  // what a parsed document stands in
    xercesc::DOMElement* root_ = nullptr; // document_ owns it
    THSupportedXmlEncoding encoding_;
    std::string error_text_;
    const THValidationLevel level_;
    const std::string schema_location_;
    bool platform_started_ = false;
};

// What the parser knows documents by; null if it has none.
xercesc::DOMImplementation* dom_implementation();

} // namespace Oskelund::Tarnholme::VMware::XMLHelper

#endif
