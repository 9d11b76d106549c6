// Selection. The first line of the input is the expression, the rest is the document, or none for one of
// ours.
#include "xmlhelper/XMLHelper.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>

using namespace Oskelund::Tarnholme::VMware::XMLHelper;

namespace
{

constexpr char kDocument[] = "<a>t<b><c/><b><c/></b></b><!-- c --><b/><a><b><c/></b></a></a>";

// A list holds each node once.
void check(const XMLNodeList* list)
{
    std::set<const void*> nodes;
    for (std::size_t i = 0; list && i < list->get_length(); ++i) {
        if (!list->get_domNode(i) || !nodes.insert(list->get_domNode(i)).second) std::abort();
    }
}

template <class Source>
void select(Source& source, const std::string& expression)
{
    try {
        const std::unique_ptr<XMLNodeList> list(source.selectNodes(expression));
        check(list.get());
        const std::unique_ptr<XMLDocNode> first(source.selectSingleNode(expression));
        if (list && (list->get_length() == 0) != !first) std::abort();
    } catch (const std::domain_error&) {
        // Not supported.
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t end = input.find('\n');
    const std::string expression(input.substr(0, end));
    const std::string text(end == std::string_view::npos ? kDocument : input.substr(end + 1));

    XMLDocumentStatus status = XML_DOC_OK;
    THXMLDocument document(&status, false, VALIDATION_IGNORE_ERRORS, "");
    if (document.parse(text, "") != XML_DOC_OK) return 0;
    select(document, expression);
    if (const std::unique_ptr<XMLDocNode> root(document.get_root()); root) select(*root, expression);
    return 0;
}
