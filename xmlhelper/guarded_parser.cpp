#include "xmlhelper/guarded_parser.h"

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
    case XMLResourceIdentifier::SchemaGrammar: // the caller's: those that the document names aren't loaded
    case XMLResourceIdentifier::SchemaImport:
    case XMLResourceIdentifier::SchemaInclude:
    case XMLResourceIdentifier::SchemaRedefine:
        return nullptr; // as the parser does by itself
    default:
        unread_.leave_out_entity();
        return new MemBufInputSource(reinterpret_cast<const XMLByte*>(""), 0, "");
    }
}

GuardedParser::GuardedParser(ParseBudget& budget) : XercesDOMParser(nullptr, parse_memory()), budget_(budget)
{
    security_.setEntityExpansionLimit(kMaxEntityExpansions);
}

void GuardedParser::restrict_to_document()
{
    setXMLEntityResolver(&resolver_);
    setSecurityManager(&security_);
    setLoadExternalDTD(false);
    setLoadSchema(false); // but for the caller's, which is loaded regardless
    setDoXInclude(false);
    knows_schemas_ = getDoSchema();
    are_violations_fatal_ = getValidationConstraintFatal();
}

void GuardedParser::parse_within_bounds(const InputSource& source)
{
    system_id_ = source.getSystemId();
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
    if (knows_schemas_) note_schemas(attributes, attribute_count);
    settle_start_tag(uri);
    descend();
    ++element_depth_;
    XercesDOMParser::startElement(declaration, uri, prefix, attributes, attribute_count, is_empty, is_root);
}

void GuardedParser::endElement(const XMLElementDecl& declaration, unsigned int uri, bool is_root,
                               const XMLCh* prefix)
{
    --depth_;
    unread_.end_element(element_depth_--);
    XercesDOMParser::endElement(declaration, uri, is_root, prefix);
}

void GuardedParser::startEntityReference(const XMLEntityDecl& declaration)
{
    descend();
    if (declaration.isExternal()) unread_.leave_out_content(element_depth_);
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
    unread_.begin_type(has_internal_subset, has_external_subset);
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
    unread_.end_internal_subset();
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
