#include "xmlhelper/unread_parts.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{
namespace
{

constexpr std::u16string_view kBlanks = u" \t\r\n";

bool is_of_something_undeclared(XMLValid::Codes violation)
{
    switch (violation) {
    case XMLValid::ElementNotDefined:
    case XMLValid::AttNotDefined:
    case XMLValid::AttNotDefinedForElement:
    case XMLValid::NotationNotDeclared:
    case XMLValid::UnknownNotRefAttr:
    case XMLValid::UnknownEntityRefAttr:
    case XMLValid::VC_EntityNotFound:
    case XMLValid::IDNotDeclared:
        return true;
    default:
        return false;
    }
}

} // namespace

void UnreadParts::begin_type(bool has_internal_subset, bool has_external_subset)
{
    in_internal_subset_ = has_internal_subset;
    has_left_out_declarations_ = has_external_subset;
}

void UnreadParts::leave_out_entity()
{
    if (in_internal_subset_) has_left_out_declarations_ = has_left_out_parameters_ = true;
}

void UnreadParts::leave_out_content(std::size_t depth)
{
    has_left_out_content_ = true;
    if (incomplete_elements_.empty() || incomplete_elements_.back() < depth) {
        incomplete_elements_.push_back(depth);
    }
}

void UnreadParts::end_element(std::size_t depth)
{
    if (!incomplete_elements_.empty() && incomplete_elements_.back() == depth)
        incomplete_elements_.pop_back();
}

void UnreadParts::name_schemas(const XMLCh* pairs)
{
    std::u16string_view rest(pairs);
    for (bool is_namespace = true;; is_namespace = !is_namespace) {
        rest.remove_prefix(std::min(rest.find_first_not_of(kBlanks), rest.size()));
        if (rest.empty()) return;
        const std::u16string_view word = rest.substr(0, rest.find_first_of(kBlanks));
        if (is_namespace) schema_namespaces_.emplace(word);
        rest.remove_prefix(word.size());
    }
}

bool UnreadParts::has_schema_for(const XMLCh* name_space) const
{
    return !schema_namespaces_.empty() && schema_namespaces_.count(name_space) != 0;
}

bool UnreadParts::excuse(XMLValid::Codes violation, std::size_t depth, bool by_schema) const
{
    // The tree that the caller gets is held against the schema that the caller named.
    if (by_schema) return violation == XMLValid::VC_EntityNotFound && has_left_out_declarations_;
    if (is_type_replaced_) return true;
    if (has_left_out_declarations_ && is_of_something_undeclared(violation)) return true;
    // The first declaration of a thing counts, which may be one that wasn't read.
    if (has_left_out_parameters_ && violation != XMLValid::RootElemNotLikeDocType) return true;
    if (has_left_out_content_ && violation == XMLValid::IDNotDeclared) return true;
    return !incomplete_elements_.empty() && incomplete_elements_.back() == depth;
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
