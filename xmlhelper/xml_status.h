// The numbers that the helper's callers see.
#ifndef SOAPWRAPPER_XMLHELPER_XML_STATUS_H
#define SOAPWRAPPER_XMLHELPER_XML_STATUS_H

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

// What an operation came to. The text of a failure is in the document or the node.
enum XMLDocumentStatus : int {
    XML_DOC_OK = 0,
    XML_DOC_PLATFORM_FAILED = 1, // the XML platform couldn't start, or has no DOM implementation
    XML_DOC_PARSE_FAILED = 3,    // parsing or loading
    XML_DOC_PROCESSING_INSTRUCTION_FAILED = 4,
    XML_DOC_CREATE_ELEMENT_FAILED = 5,
    XML_DOC_SET_ROOT_FAILED = 6,
    XML_DOC_SAVE_FAILED = 8,
    XML_DOC_APPEND_FAILED = 9,
    XML_DOC_SET_ATTRIBUTE_FAILED = 10,
    XML_DOC_CREATE_TEXT_FAILED = 12,
    XML_DOC_SERIALIZE_FAILED = 14,
    XML_DOC_REPLACE_TEXT_FAILED = 15
};

enum THSupportedXmlEncoding : int {
    XML_ENCODING_DECLARED = 0, // what the document says of itself
    XML_ENCODING_UTF8 = 1,
    XML_ENCODING_UTF16 = 2,
    XML_ENCODING_UTF32 = 3
};

// How strictly a document is read. With a schema or a DTD, the first violation ends the reading at any level
// below 3: at level 0 what was read until then stands.
enum THValidationLevel : int {
    VALIDATION_IGNORE_ERRORS = 0,
    VALIDATION_FATAL_ERRORS = 1,
    VALIDATION_FATAL_WARNINGS = 2,
    VALIDATION_NO_SCHEMA = 3 // no namespaces and no schema either; errors and warnings are fatal
};

} // namespace Oskelund::Tarnholme::VMware::XMLHelper

#endif
