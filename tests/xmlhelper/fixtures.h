// What the tests of the XML helper share.
#ifndef SOAPWRAPPER_TESTS_XMLHELPER_FIXTURES_H
#define SOAPWRAPPER_TESTS_XMLHELPER_FIXTURES_H

#include "xmlhelper/XMLHelper.h"

#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace xmlhelper
{

using namespace Oskelund::Tarnholme::VMware::XMLHelper;

using OwnedDocument = std::unique_ptr<THXMLDocument>;
using OwnedNode = std::unique_ptr<XMLDocNode>;
using OwnedList = std::unique_ptr<XMLNodeList>;

// An empty document.
OwnedDocument empty_document(THSupportedXmlEncoding encoding = XML_ENCODING_UTF8);
// An empty document whose root is the element.
OwnedDocument built(const std::string& root, THSupportedXmlEncoding encoding = XML_ENCODING_UTF8);
// The text must be well-formed.
OwnedDocument parsed(const std::string& text, THValidationLevel level = VALIDATION_IGNORE_ERRORS,
                     const std::string& schema = "");
OwnedNode root_of(THXMLDocument& document);
// The first child of the root.
OwnedNode first_child_of_root(THXMLDocument& document);

// The attribute "n" of each node of a list that was selected; "null" for no list.
std::vector<std::string> numbers(XMLNodeList* list);

std::string text_of_length(std::size_t length, char letter = 'x');

// A folder that goes with the object.
class Folder
{
  public:
    Folder();
    ~Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::string path(const std::string& name) const { return (path_ / name).string(); }
    // Returns the path.
    std::string write(const std::string& name, const std::string& bytes) const;
    std::string read(const std::string& name) const;

  private:
    std::filesystem::path path_;
};

} // namespace xmlhelper

#endif
