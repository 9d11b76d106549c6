// An XML document as a row of tags: enough for the documents that soapcpp2 writes, and no parser.
#ifndef SOAPWRAPPER_SERVICE_CONTRACT_XML_TAGS_H
#define SOAPWRAPPER_SERVICE_CONTRACT_XML_TAGS_H

#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper
{

struct XmlTag {
    enum class Kind { kOpen, kClose, kEmpty, kOther };
    Kind kind = Kind::kOther;
    std::string_view before; // the text between the tag before and this one
    std::string_view text;   // the tag itself
    std::string_view prefix; // with its colon
    std::string_view name;   // without the prefix

    bool opens(std::string_view tag_name) const { return kind == Kind::kOpen && name == tag_name; }
    bool closes(std::string_view tag_name) const { return kind == Kind::kClose && name == tag_name; }
    // Empty if there is none.
    std::string attribute(std::string_view attribute_name) const;
};

std::string without_comments(std::string_view xml);

// The last one is empty, and of no kind: ahead of it stands what is behind all others. Throws
// std::runtime_error for a tag without an end.
std::vector<XmlTag> tags_of(std::string_view xml);

// As the content of an element.
std::string xml_escaped(std::string_view text);

} // namespace soapwrapper

#endif
