// The DOM parser, with bounds on what a document may ask of it.
#ifndef SOAPWRAPPER_XMLHELPER_GUARDED_PARSER_H
#define SOAPWRAPPER_XMLHELPER_GUARDED_PARSER_H

#include "xmlhelper/parse_memory.h"
#include "xmlhelper/unread_parts.h"

#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLEntityResolver.hpp>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

// The resolver of everything that isn't the document itself: only the schema that the caller named, and what
// that schema is made of, are ever fetched.
class CallersSchemaOnly : public xercesc::XMLEntityResolver
{
  public:
    explicit CallersSchemaOnly(UnreadParts& unread) : unread_(unread) {}
    xercesc::InputSource* resolveEntity(xercesc::XMLResourceIdentifier* resource) override;

  private:
    UnreadParts& unread_;
};

// What the parser says of an error.
struct Complaint {
    unsigned int code;
    const XMLCh* domain;
    xercesc::XMLErrorReporter::ErrTypes type;
    std::u16string text;
    std::u16string system_id;
    std::u16string public_id;
    XMLFileLoc line;
    XMLFileLoc column;
};

class GuardedParser : public xercesc::XercesDOMParser
{
  public:
    explicit GuardedParser(ParseBudget& budget);

    // Behind configureParser: what keeps the document from reaching out.
    void restrict_to_document();
    void parse_within_bounds(const xercesc::InputSource& source);

    void startElement(const xercesc::XMLElementDecl& declaration, unsigned int uri, const XMLCh* prefix,
                      const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, XMLSize_t attribute_count,
                      bool is_empty, bool is_root) override;
    void endElement(const xercesc::XMLElementDecl& declaration, unsigned int uri, bool is_root,
                    const XMLCh* prefix) override;
    void startEntityReference(const xercesc::XMLEntityDecl& declaration) override;
    void endEntityReference(const xercesc::XMLEntityDecl& declaration) override;

    void doctypeDecl(const xercesc::DTDElementDecl& root, const XMLCh* public_id, const XMLCh* system_id,
                     bool has_internal_subset, bool has_external_subset) override;
    void elementDecl(const xercesc::DTDElementDecl& declaration, bool is_ignored) override;
    void attDef(const xercesc::DTDElementDecl& element, const xercesc::DTDAttDef& attribute,
                bool is_ignored) override;
    void endAttList(const xercesc::DTDElementDecl& element) override;
    void entityDecl(const xercesc::DTDEntityDecl& declaration, bool is_parameter, bool is_ignored) override;
    void notationDecl(const xercesc::XMLNotationDecl& declaration, bool is_ignored) override;
    void endIntSubset() override;

    void error(unsigned int code, const XMLCh* domain, xercesc::XMLErrorReporter::ErrTypes type,
               const XMLCh* text, const XMLCh* system_id, const XMLCh* public_id, XMLFileLoc line,
               XMLFileLoc column) override;

  private:
    void descend();
    bool is_under_callers_schema() const;
    bool is_violation_of_document(const XMLCh* domain, const XMLCh* system_id) const;
    bool excuse(xercesc::XMLValid::Codes violation);
    void note_schemas(const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, XMLSize_t count);
    void settle_start_tag(unsigned int uri);
    void report(const Complaint& complaint);
    void report_violation_of_start_tag();

    ParseBudget& budget_;
    UnreadParts unread_;
    CallersSchemaOnly resolver_{unread_};
    xercesc::SecurityManager security_;
    std::size_t depth_ = 0;
    std::size_t element_depth_ = 0;
    std::size_t in_entities_ = 0;
    std::size_t entity_begin_ = 0; // how deep the outermost of them is
    std::uint64_t element_names_ = 0;
    bool knows_schemas_ = false;
    bool are_violations_fatal_ = false;
    const XMLCh* system_id_ = nullptr;
    // A start tag comes to be known behind what is wrong with it.
    std::optional<Complaint> violation_of_start_tag_;
};

} // namespace Oskelund::Tarnholme::VMware::XMLHelper

#endif
