#include "xmlhelper/document.h"

#include "xmlhelper/exception_text.h"
#include "xmlhelper/guarded_parser.h"
#include "xmlhelper/parse_memory.h"
#include "xmlhelper/parser_setup.h"
#include "xmlhelper/path_input_source.h"
#include "xmlhelper/transcoding.h"
#include "xmlhelper/xml_status.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{
namespace
{

constexpr std::size_t kBytesPerUtf32Character = 4;
constexpr std::size_t kBytesPerUtf16Character = 2;
constexpr std::string_view kUtf32Mark("\xFF\xFE\0\0", 4);

// Null: the document's own declaration decides.
const XMLCh* forced_encoding(THSupportedXmlEncoding encoding)
{
    switch (encoding) {
    case XML_ENCODING_UTF8:
        return u"UTF-8";
    case XML_ENCODING_UTF16:
        return u"UTF-16LE";
    case XML_ENCODING_UTF32:
        return u"UTF-32";
    default:
        return nullptr;
    }
}

} // namespace

// `size` is what the bounds go by, and `parse_with` hands the text to the parser.
template <class ParseWith>
XMLDocumentStatus THXMLDocument::read(std::size_t size, ParseWith parse_with)
{
    discard();
    if (!platform_started_) return XML_DOC_PARSE_FAILED;
    ParseBudget budget(size);
    try {
        ValidatingHandler handler(level_);
        GuardedParser parser(budget);
        configureParser(parser, handler, schema_location_);
        parser.restrict_to_document();
        parse_with(parser);
        document_ = parser.adoptDocument();
    } catch (...) {
        error_text_ = describe_current_exception();
        return XML_DOC_PARSE_FAILED;
    }
    if (!document_) return XML_DOC_PARSE_FAILED;
    memory_ = budget.keep();
    root_ = document_->getDocumentElement();
    return XML_DOC_OK;
}

XMLDocumentStatus THXMLDocument::parse(const char* bytes, std::size_t count, const char* buffer_name,
                                       THSupportedXmlEncoding encoding)
{
    std::string_view text = bytes ? std::string_view(bytes, count) : std::string_view();
    // Of the forced encodings this is the one whose mark the parser doesn't pass over.
    if (encoding == XML_ENCODING_UTF32 && text.substr(0, kUtf32Mark.size()) == kUtf32Mark) {
        text.remove_prefix(kUtf32Mark.size());
    }
    return read(text.size(), [=](GuardedParser& parser) {
        const std::unique_ptr<XMLCh[]> name(transcodeUtf8ToXml(buffer_name ? buffer_name : ""));
        MemBufInputSource source(reinterpret_cast<const XMLByte*>(text.data()), text.size(), name.get());
        if (const XMLCh* forced = forced_encoding(encoding)) source.setEncoding(forced);
        parser.parse_within_bounds(source);
    });
}

XMLDocumentStatus THXMLDocument::parse(const wchar_t* characters, std::size_t count, const char* buffer_name,
                                       THSupportedXmlEncoding encoding)
{
    const std::size_t width =
        encoding == XML_ENCODING_UTF32 ? kBytesPerUtf32Character : kBytesPerUtf16Character;
    return parse(reinterpret_cast<const char*>(characters), count * width, buffer_name, encoding);
}

XMLDocumentStatus THXMLDocument::parse(const std::wstring& text, const std::string& buffer_name)
{
    return parse(text.data(), text.size(), buffer_name.c_str(), XML_ENCODING_UTF32);
}

XMLDocumentStatus THXMLDocument::parse(const std::string& text, const std::string& buffer_name)
{
    return parse(text.data(), text.size(), buffer_name.c_str(), XML_ENCODING_DECLARED);
}

XMLDocumentStatus THXMLDocument::load(const char* path, bool path_is_utf8)
{
    if (!path || !*path) {
        discard();
        error_text_ = "path is null or empty";
        return XML_DOC_PARSE_FAILED;
    }
    return read(file_size(path), [=](GuardedParser& parser) {
        const PathInputSource source(native_path(path, path_is_utf8));
        parser.parse_within_bounds(source);
    });
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
