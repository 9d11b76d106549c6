// The DOM parser, with bounds on what a document may ask of it.
#ifndef SOAPWRAPPER_XMLHELPER_GUARDED_PARSER_H
#define SOAPWRAPPER_XMLHELPER_GUARDED_PARSER_H

#include "xmlhelper/parse_memory.h"

#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLEntityResolver.hpp>

#include <string>

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

// The resolver of everything that isn't the document itself: only the schema that the caller named, and what
// that schema is made of, are ever fetched.
class CallersSchemaOnly : public xercesc::XMLEntityResolver
{
  public:
    explicit CallersSchemaOnly(const std::string& schema_location) : schema_location_(schema_location) {}
    xercesc::InputSource* resolveEntity(xercesc::XMLResourceIdentifier* resource) override;

  private:
    const std::string& schema_location_;
};

class GuardedParser : public xercesc::XercesDOMParser
{
  public:
    // `needs_declarations`: a document that keeps its declarations elsewhere is refused. Otherwise it is read
    // without validation. The schema location is borrowed.
    GuardedParser(ParseBudget& budget, const std::string& schema_location, bool needs_declarations);

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

  private:
    void descend();
    void begin_declaration();

    ParseBudget& budget_;
    CallersSchemaOnly resolver_;
    xercesc::SecurityManager security_;
    const bool has_schema_;
    const bool needs_declarations_;
    std::size_t depth_ = 0;
    bool in_prolog_ = true;
};

} // namespace Oskelund::Tarnholme::VMware::XMLHelper

#endif
