#include "xmlhelper/guarded_parser.h"

#include "xmlhelper/exception_text.h"
#include "xmlhelper/metered_source.h"
#include "xmlhelper/tree_walk.h"

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/util/XMLResourceIdentifier.hpp>
#include <xercesc/validators/DTD/DTDEntityDecl.hpp>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{
namespace
{

constexpr std::size_t kMaxAttributes = 512;
constexpr std::size_t kMaxEntityExpansions = 50'000;
constexpr XMLSize_t kMaxParameterEntity = 1024; // its text isn't metered, and may hold a declaration

} // namespace

InputSource* CallersSchemaOnly::resolveEntity(XMLResourceIdentifier* resource)
{
    switch (resource->getResourceIdentifierType()) {
    case XMLResourceIdentifier::SchemaImport:
    case XMLResourceIdentifier::SchemaInclude:
    case XMLResourceIdentifier::SchemaRedefine:
        return nullptr; // as the parser does by itself
    case XMLResourceIdentifier::SchemaGrammar:
        if (utf8_or_empty(resource->getSystemId()) == schema_location_) return nullptr;
        throw ParseRefused("a schema that the document names is not fetched");
    default:
        return new MemBufInputSource(reinterpret_cast<const XMLByte*>(""), 0, "");
    }
}

GuardedParser::GuardedParser(ParseBudget& budget, const std::string& schema_location, bool needs_declarations)
    : XercesDOMParser(nullptr, parse_memory()), budget_(budget), resolver_(schema_location),
      has_schema_(!schema_location.empty()), needs_declarations_(needs_declarations || has_schema_)
{
    security_.setEntityExpansionLimit(kMaxEntityExpansions);
}

void GuardedParser::restrict_to_document()
{
    setXMLEntityResolver(&resolver_);
    setSecurityManager(&security_);
    setLoadExternalDTD(false);
    setLoadSchema(has_schema_);
    setDoXInclude(false);
}

void GuardedParser::parse_within_bounds(const InputSource& source)
{
    parse(MeteredSource(source, budget_, in_prolog_));
    budget_.check();
}

void GuardedParser::descend()
{
    budget_.check();
    if (++depth_ > kMaxDepth) throw ParseRefused("the document is nested too deep");
}

void GuardedParser::startElement(const XMLElementDecl& declaration, unsigned int uri, const XMLCh* prefix,
                                 const RefVectorOf<XMLAttr>& attributes, XMLSize_t attribute_count,
                                 bool is_empty, bool is_root)
{
    in_prolog_ = false;
    budget_.end_declarations();
    if (attribute_count > kMaxAttributes) throw ParseRefused("an element has too many attributes");
    descend();
    XercesDOMParser::startElement(declaration, uri, prefix, attributes, attribute_count, is_empty, is_root);
}

void GuardedParser::endElement(const XMLElementDecl& declaration, unsigned int uri, bool is_root,
                               const XMLCh* prefix)
{
    --depth_;
    XercesDOMParser::endElement(declaration, uri, is_root, prefix);
}

void GuardedParser::startEntityReference(const XMLEntityDecl& declaration)
{
    descend();
    XercesDOMParser::startEntityReference(declaration);
}

void GuardedParser::endEntityReference(const XMLEntityDecl& declaration)
{
    --depth_;
    XercesDOMParser::endEntityReference(declaration);
}

void GuardedParser::begin_declaration()
{
    budget_.check();
    budget_.begin_declaration();
}

void GuardedParser::doctypeDecl(const DTDElementDecl& root, const XMLCh* public_id, const XMLCh* system_id,
                                bool has_internal_subset, bool has_external_subset)
{
    if (has_external_subset) {
        if (needs_declarations_) {
            throw ParseRefused("declarations that the document keeps elsewhere are not fetched");
        }
        // The parser fetches them as long as it validates, even where it is told not to.
        setValidationScheme(Val_Never);
    }
    begin_declaration();
    XercesDOMParser::doctypeDecl(root, public_id, system_id, has_internal_subset, has_external_subset);
}

void GuardedParser::elementDecl(const DTDElementDecl& declaration, bool is_ignored)
{
    XercesDOMParser::elementDecl(declaration, is_ignored);
    begin_declaration();
}

void GuardedParser::attDef(const DTDElementDecl& element, const DTDAttDef& attribute, bool is_ignored)
{
    XercesDOMParser::attDef(element, attribute, is_ignored);
    begin_declaration();
}

void GuardedParser::endAttList(const DTDElementDecl& element)
{
    budget_.end_declarations(); // the defaults of all of them become nodes
    XercesDOMParser::endAttList(element);
    begin_declaration();
}

void GuardedParser::entityDecl(const DTDEntityDecl& declaration, bool is_parameter, bool is_ignored)
{
    if (is_parameter && declaration.getValueLen() > kMaxParameterEntity) {
        throw ParseRefused("a parameter entity of the document is too long");
    }
    XercesDOMParser::entityDecl(declaration, is_parameter, is_ignored);
    begin_declaration();
}

void GuardedParser::notationDecl(const XMLNotationDecl& declaration, bool is_ignored)
{
    XercesDOMParser::notationDecl(declaration, is_ignored);
    begin_declaration();
}

void GuardedParser::endIntSubset()
{
    XercesDOMParser::endIntSubset();
    budget_.end_declarations();
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
