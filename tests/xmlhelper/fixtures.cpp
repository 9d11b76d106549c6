#include "tests/xmlhelper/fixtures.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace xmlhelper
{

OwnedDocument empty_document(THSupportedXmlEncoding encoding)
{
    XMLDocumentStatus status = XML_DOC_OK;
    auto document = std::make_unique<THXMLDocument>(&status, encoding, VALIDATION_IGNORE_ERRORS, "");
    if (status != XML_DOC_OK) throw std::logic_error(document->get_errorText());
    return document;
}

OwnedDocument built(const std::string& root, THSupportedXmlEncoding encoding)
{
    OwnedDocument document = empty_document(encoding);
    const OwnedNode element(document->createElement(root));
    if (document->setRoot(element.get()) != XML_DOC_OK) throw std::logic_error(document->get_errorText());
    return document;
}

OwnedDocument parsed(const std::string& text, THValidationLevel level, const std::string& schema)
{
    XMLDocumentStatus status = XML_DOC_OK;
    auto document = std::make_unique<THXMLDocument>(&status, false, level, schema);
    if (document->parse(text, "") != XML_DOC_OK) throw std::logic_error(document->get_errorText());
    return document;
}

OwnedNode root_of(THXMLDocument& document)
{
    return OwnedNode(document.get_root());
}

OwnedNode first_child_of_root(THXMLDocument& document)
{
    const OwnedList children(root_of(document)->get_childNodes());
    return OwnedNode(children ? children->get_item(0) : nullptr);
}

std::vector<std::string> numbers(XMLNodeList* list)
{
    const OwnedList owned(list);
    if (!list) return {"null"};
    std::vector<std::string> result;
    for (std::size_t i = 0; i < list->get_length(); ++i) {
        result.push_back(OwnedNode(list->get_item(i))->getAttributeString("n"));
    }
    return result;
}

std::string text_of_length(std::size_t length, char letter)
{
    return std::string(length, letter);
}

Folder::Folder()
{
    std::string name = (std::filesystem::temp_directory_path() / "soapwrapper-xml-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
    path_ = name;
}

Folder::~Folder()
{
    std::filesystem::remove_all(path_);
}

std::string Folder::write(const std::string& name, const std::string& bytes) const
{
    std::ofstream(path(name), std::ios::binary) << bytes;
    return path(name);
}

std::string Folder::read(const std::string& name) const
{
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace xmlhelper
