// What a document names and doesn't bring along. None of it is fetched, and the document isn't to be refused
// for what may only be missing for that reason.
#ifndef SOAPWRAPPER_XMLHELPER_UNREAD_PARTS_H
#define SOAPWRAPPER_XMLHELPER_UNREAD_PARTS_H

#include <xercesc/framework/XMLValidityCodes.hpp>

#include <cstddef>
#include <string>
#include <unordered_set>
#include <vector>

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

class UnreadParts
{
  public:
    // The document type begins.
    void begin_type(bool has_internal_subset, bool has_external_subset);
    void end_internal_subset() { in_internal_subset_ = false; }
    // An entity was read as empty.
    void leave_out_entity();
    // The element that is `depth` deep has content that wasn't read, and it ends.
    void leave_out_content(std::size_t depth);
    void end_element(std::size_t depth);

    // Schemas for the namespaces in a list of pairs of a namespace and a location.
    void name_schemas(const XMLCh* pairs);
    bool has_schema_for(const XMLCh* name_space) const;
    // A schema would have taken the place of the document type.
    void replace_type() { is_type_replaced_ = true; }

    // Is the violation, in the element that is `depth` deep, one only as long as these parts are missing?
    // `by_schema`: it is the caller's schema that decides and not the document's own type.
    bool excuse(xercesc::XMLValid::Codes violation, std::size_t depth, bool by_schema) const;
    // The same of a warning that something of the type isn't declared.
    bool excuse_undeclared() const { return has_left_out_declarations_; }

  private:
    bool has_left_out_declarations_ = false;
    bool has_left_out_parameters_ = false;
    bool has_left_out_content_ = false;
    bool in_internal_subset_ = false;
    bool is_type_replaced_ = false;
    std::vector<std::size_t> incomplete_elements_; // their depths, the innermost last
    std::unordered_set<std::u16string> schema_namespaces_;
};

} // namespace Oskelund::Tarnholme::VMware::XMLHelper

#endif
