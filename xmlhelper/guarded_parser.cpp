#include "xmlhelper/guarded_parser.h"

#include "xmlhelper/content_model.h"
#include "xmlhelper/document_bounds.h"
#include "xmlhelper/metered_source.h"
#include "xmlhelper/parse_memory.h"

#include <cstdint>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/util/XMLResourceIdentifier.hpp>
#include <xercesc/validators/DTD/DTDAttDef.hpp>
#include <xercesc/validators/DTD/DTDElementDecl.hpp>
#include <xercesc/validators/DTD/DTDEntityDecl.hpp>

#include <algorithm>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{
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
    security_.setEntityExpansionLimit(budget.max_entity_expansions());
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
    parse(MeteredSource(source, budget_));
    budget_.check();
}

void GuardedParser::descend()
{
    budget_.check();
    const bool is_too_deep = in_entities_ != 0 && depth_ - entity_begin_ >= kMaxEntityDepth;
    if (++depth_ > kMaxDepth || is_too_deep) throw ParseRefused("the document is nested too deep");
}

void GuardedParser::startElement(const XMLElementDecl& declaration, unsigned int uri, const XMLCh* prefix,
                                 const RefVectorOf<XMLAttr>& attributes, XMLSize_t attribute_count,
                                 bool is_empty, bool is_root)
{
    if (attribute_count > kMaxAttributes) throw ParseRefused("an element has too many attributes");
    element_names_ = std::max<std::uint64_t>(element_names_, declaration.getId());
    budget_.spend(depth_ + std::uint64_t{attribute_count} * attribute_count + element_names_ / 8);
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
    if (in_entities_++ == 0) entity_begin_ = depth_;
    descend();
    if (declaration.isExternal()) unread_.leave_out_content(element_depth_);
    XercesDOMParser::startEntityReference(declaration);
}

void GuardedParser::endEntityReference(const XMLEntityDecl& declaration)
{
    --depth_;
    --in_entities_;
    XercesDOMParser::endEntityReference(declaration);
}

void GuardedParser::doctypeDecl(const DTDElementDecl& root, const XMLCh* public_id, const XMLCh* system_id,
                                bool has_internal_subset, bool has_external_subset)
{
    unread_.begin_type(has_internal_subset, has_external_subset);
    XercesDOMParser::doctypeDecl(root, public_id, system_id, has_internal_subset, has_external_subset);
}

void GuardedParser::elementDecl(const DTDElementDecl& declaration, bool is_ignored)
{
    budget_.check();
    if (is_model_too_large(declaration)) throw ParseRefused("a declaration of the document is too long");
    XercesDOMParser::elementDecl(declaration, is_ignored);
}

void GuardedParser::attDef(const DTDElementDecl& element, const DTDAttDef& attribute, bool is_ignored)
{
    budget_.check();
    const std::uint64_t count = element.getAttDefList().getAttDefCount();
    const std::uint64_t values = listed_values(attribute.getEnumeration());
    if (count > kMaxAttributes) throw ParseRefused("an element has too many attributes");
    if (values > kMaxListedValues) throw ParseRefused("a declaration of the document is too long");
    budget_.spend(2 * count + values * values);
    XercesDOMParser::attDef(element, attribute, is_ignored);
}

void GuardedParser::endAttList(const DTDElementDecl& element)
{
    XercesDOMParser::endAttList(element);
    budget_.check();
}

void GuardedParser::entityDecl(const DTDEntityDecl& declaration, bool is_parameter, bool is_ignored)
{
    budget_.check();
    XercesDOMParser::entityDecl(declaration, is_parameter, is_ignored);
}

void GuardedParser::notationDecl(const XMLNotationDecl& declaration, bool is_ignored)
{
    budget_.check();
    XercesDOMParser::notationDecl(declaration, is_ignored);
}

void GuardedParser::endIntSubset()
{
    XercesDOMParser::endIntSubset();
    unread_.end_internal_subset();
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
