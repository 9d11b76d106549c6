// The guide to the service (docs/service.md), as far as the WSDL and the schema are documented from it.
//
// The guide is Markdown of a strict form. The paragraph below its title is about the service. Tables of a
// line's names and its text are read where they stand under one of these headings and have this head:
//
//     ## Operations              | Operation | What it does |
//     ## Types                   | Type | Meaning |             names are `Type` or `Type.element`
//     ### `Type` below it        | Element | Meaning |          and the paragraph above it is about the type
//     ## Elements of messages    | Element | Meaning |          names are `element` or `message.element`
//
// Everything else is for readers alone.
#ifndef SOAPWRAPPER_SERVICE_CONTRACT_SERVICE_GUIDE_H
#define SOAPWRAPPER_SERVICE_CONTRACT_SERVICE_GUIDE_H

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper
{

// Texts by name, each of which somebody has to ask for.
class GuideTexts
{
  public:
    // False if there is one of the name already.
    bool add(const std::string& name, const std::string& text);
    // Null if there is none.
    const std::string* find(const std::string& name);
    std::vector<std::string> never_asked_for() const;

  private:
    struct Entry {
        std::string text;
        bool was_asked_for = false;
    };
    std::map<std::string, Entry> entries_;
};

struct ServiceGuide {
    std::string service;
    GuideTexts operations;
    GuideTexts types; // with their elements, "Type.element"
    GuideTexts message_elements;
};

// Throws std::runtime_error, with the number of the line, for a guide that isn't of the form.
ServiceGuide read_service_guide(std::string_view markdown);

} // namespace soapwrapper

#endif
