#include "xmlhelper/document.h"

#include "xmlhelper/exception_text.h"
#include "xmlhelper/file_target.h"
#include "xmlhelper/path_input_source.h"
#include "xmlhelper/tree_walk.h"
#include "xmlhelper/wide_text.h"
#include "xmlhelper/xml_status.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufFormatTarget.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <memory>
#include <stdexcept>
#include <string>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{
namespace
{

constexpr int kInitialCapacity = 1023;

struct Release {
    template <class Released>
    void operator()(Released* object) const
    {
        object->release();
    }
};

// Null: the writer's choice.
const XMLCh* written_encoding(THSupportedXmlEncoding encoding)
{
    switch (encoding) {
    case XML_ENCODING_UTF8:
        return u"UTF-8";
    case XML_ENCODING_UTF16:
        return u"UTF-16";
    case XML_ENCODING_UTF32:
        return u"UTF-32";
    default:
        return nullptr;
    }
}

void set_if_possible(DOMConfiguration& configuration, const XMLCh* parameter, bool value)
{
    if (configuration.canSetParameter(parameter, value)) configuration.setParameter(parameter, value);
}

} // namespace

// Whatever fails is thrown.
void THXMLDocument::write(XMLFormatTarget& target, bool is_pretty, bool keeps_declaration)
{
    auto* implementation = static_cast<DOMImplementationLS*>(dom_implementation());
    const std::unique_ptr<DOMLSSerializer, Release> serializer(implementation->createLSSerializer());
    const std::unique_ptr<DOMLSOutput, Release> output(implementation->createLSOutput());

    DOMConfiguration& configuration = *serializer->getDomConfig();
    if (is_pretty) {
        set_if_possible(configuration, XMLUni::fgDOMWRTFormatPrettyPrint, true);
        set_if_possible(configuration, XMLUni::fgDOMWRTXercesPrettyPrint, false);
    }
    if (encoding_ == XML_ENCODING_UTF16) set_if_possible(configuration, XMLUni::fgDOMWRTBOM, true);
    if (!keeps_declaration) set_if_possible(configuration, XMLUni::fgDOMXMLDeclaration, false);
    if (const XMLCh* encoding = written_encoding(encoding_)) output->setEncoding(encoding);

    output->setByteStream(&target);
    if (!serializer->write(document_, output.get())) throw std::runtime_error("write() failed");
    target.flush();
}

XMLDocumentStatus THXMLDocument::save(const char* path, bool is_pretty, bool path_is_utf8)
{
    if (!document_ || !path) return XML_DOC_SAVE_FAILED;
    try {
        // Ahead of the target, which empties the file.
        if (is_deeper_than(document_, kMaxWrittenDepth))
            throw std::runtime_error("the document is nested too deep");
        FileTarget target(native_path(path, path_is_utf8));
        write(target, is_pretty, true);
    } catch (...) {
        error_text_ = describe_current_exception();
        return XML_DOC_SAVE_FAILED;
    }
    return XML_DOC_OK;
}

XMLDocumentStatus THXMLDocument::serialize(std::string& text, bool is_pretty, bool keeps_declaration)
{
    if (!document_) return XML_DOC_SERIALIZE_FAILED;
    try {
        if (is_deeper_than(document_, kMaxWrittenDepth))
            throw std::runtime_error("the document is nested too deep");
        MemBufFormatTarget target(kInitialCapacity);
        write(target, is_pretty, keeps_declaration);
        text.assign(reinterpret_cast<const char*>(target.getRawBuffer()), target.getLen());
    } catch (...) {
        error_text_ = describe_current_exception();
        return XML_DOC_SERIALIZE_FAILED;
    }
    return XML_DOC_OK;
}

XMLDocumentStatus THXMLDocument::serialize(std::wstring& text, bool is_pretty, bool keeps_declaration)
{
    std::string bytes;
    const XMLDocumentStatus status = serialize(bytes, is_pretty, keeps_declaration);
    if (status == XML_DOC_OK) text = widened(bytes, encoding_);
    return status;
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
