// Of what the parser complains of, what is held against the document.
#include "xmlhelper/guarded_parser.h"

#include <string>
#include <xercesc/framework/XMLErrorCodes.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/validators/schema/SchemaSymbols.hpp>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{
namespace
{

std::u16string copy(const XMLCh* text)
{
    return text ? text : u"";
}

// These come up in a start tag, ahead of its event.
bool is_of_a_start_tag(XMLValid::Codes violation)
{
    switch (violation) {
    case XMLValid::ElementNotDefined:
    case XMLValid::GrammarNotFound:
    case XMLValid::AttNotDefinedForElement:
    case XMLValid::RequiredAttrNotProvided:
    case XMLValid::RootElemNotLikeDocType:
        return true;
    default:
        return false;
    }
}

bool is_warning_of_something_undeclared(unsigned int code, const XMLCh* domain)
{
    return (code == XMLErrs::UndeclaredElemInCM || code == XMLErrs::UndeclaredElemInAttList) &&
           XMLString::equals(domain, XMLUni::fgXMLErrDomain);
}

} // namespace

bool GuardedParser::is_under_callers_schema() const
{
    const Grammar* grammar = const_cast<GuardedParser*>(this)->getGrammar(XMLUni::fgZeroLenString);
    return grammar && grammar->getGrammarType() == Grammar::SchemaGrammarType;
}

// And not of the caller's schema.
bool GuardedParser::is_violation_of_document(const XMLCh* domain, const XMLCh* system_id) const
{
    return XMLString::equals(domain, XMLUni::fgValidityDomain) && XMLString::equals(system_id, system_id_);
}

bool GuardedParser::excuse(XMLValid::Codes violation)
{
    if (!unread_.excuse(violation, element_depth_, is_under_callers_schema())) return false;
    if (violation == XMLValid::VC_EntityNotFound) unread_.leave_out_content(element_depth_);
    return true;
}

// With the schemas that an element names its document would be read by them from there on.
void GuardedParser::note_schemas(const RefVectorOf<XMLAttr>& attributes, XMLSize_t count)
{
    for (XMLSize_t i = 0; i < count; ++i) {
        const XMLAttr& attribute = *attributes.elementAt(i);
        const XMLCh* name = attribute.getName();
        const bool is_list = XMLString::equals(name, SchemaSymbols::fgXSI_SCHEMALOCATION);
        if (!is_list && !XMLString::equals(name, SchemaSymbols::fgXSI_NONAMESPACESCHEMALOCATION)) continue;
        if (!XMLString::equals(getScanner()->getURIText(attribute.getURIId()), SchemaSymbols::fgURI_XSI)) {
            continue;
        }
        if (!is_under_callers_schema()) {
            unread_.replace_type();
        } else if (is_list) {
            unread_.name_schemas(attribute.getValue());
        }
    }
}

// An element of a namespace whose schema the document alone names is beyond the caller's.
void GuardedParser::settle_start_tag(unsigned int uri)
{
    if (!violation_of_start_tag_) return;
    const auto violation = static_cast<XMLValid::Codes>(violation_of_start_tag_->code);
    const bool is_excused = is_under_callers_schema() ? unread_.has_schema_for(getScanner()->getURIText(uri))
                                                      : unread_.excuse(violation, element_depth_, false);
    if (is_excused) {
        violation_of_start_tag_.reset();
    } else {
        report_violation_of_start_tag();
    }
}

void GuardedParser::report(const Complaint& complaint)
{
    XercesDOMParser::error(complaint.code, complaint.domain, complaint.type, complaint.text.c_str(),
                           complaint.system_id.c_str(), complaint.public_id.c_str(), complaint.line,
                           complaint.column);
}

// As the parser would have done when it came upon it.
void GuardedParser::report_violation_of_start_tag()
{
    if (!violation_of_start_tag_) return;
    const Complaint complaint = *violation_of_start_tag_;
    violation_of_start_tag_.reset();
    report(complaint);
    if (are_violations_fatal_) throw static_cast<XMLValid::Codes>(complaint.code);
}

void GuardedParser::error(unsigned int code, const XMLCh* domain, XMLErrorReporter::ErrTypes type,
                          const XMLCh* text, const XMLCh* system_id, const XMLCh* public_id, XMLFileLoc line,
                          XMLFileLoc column)
{
    const Complaint complaint{code, domain, type, copy(text), copy(system_id), copy(public_id), line, column};
    if (is_warning_of_something_undeclared(code, domain) && unread_.excuse_undeclared()) return;
    if (is_violation_of_document(domain, system_id)) {
        const auto violation = static_cast<XMLValid::Codes>(code);
        const bool is_excused = excuse(violation);
        const bool waits = !is_excused && knows_schemas_ && is_of_a_start_tag(violation);
        setValidationConstraintFatal(are_violations_fatal_ && !is_excused && !waits);
        if (waits && !violation_of_start_tag_) violation_of_start_tag_ = complaint;
        if (is_excused || waits) return;
    }
    report_violation_of_start_tag();
    report(complaint);
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
