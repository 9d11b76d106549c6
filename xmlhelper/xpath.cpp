#include "xmlhelper/xpath.h"

#include "xmlhelper/transcoding.h"

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Oskelund::Tarnholme::VMware::XMLHelper
{
namespace
{

constexpr char kEndOfName[] = "@[( \n\t";

bool begins_with(std::string_view text, std::string_view beginning)
{
    return text.substr(0, beginning.size()) == beginning;
}

} // namespace

THXPathNode::THXPathNode(const std::string& step, bool is_first) : context_(XPATH_CHILD)
{
    std::size_t skip = 0;
    if (begins_with(step, "//")) {
        context_ = XPATH_DESCENDANT;
        skip = 2;
    } else if (is_first && begins_with(step, "/*")) {
        context_ = XPATH_ANY_ROOT;
        skip = 2;
    } else if (begins_with(step, "/")) {
        if (is_first) context_ = XPATH_ROOT;
        skip = 1;
    }

    const std::size_t end = step.find_first_of(kEndOfName, skip);
    name_ = step.substr(skip, end - skip);
    if (end != std::string::npos) predicate_ = step.substr(end);

    if (name_ == "..") {
        context_ = XPATH_PARENT;
        name_.clear();
    } else if (name_ == ".") {
        context_ = XPATH_SELF;
        name_.clear();
    }
}

const XMLCh* THXPathNode::getNameXml() const
{
    if (name_xml_) return name_xml_;
    try {
        name_xml_ = transcodeUtf8TagToXmlTag(name_);
    } catch (const std::domain_error& error) {
        error_text_ = std::string("Caught domain_error: ") + error.what();
    }
    return name_xml_;
}

THXPathExpression::THXPathExpression(const std::string& expression)
{
    std::size_t position = 0;
    for (bool is_first = true;; is_first = false) {
        const std::size_t name = expression.find_first_not_of('/', position);
        const std::size_t end = name == std::string::npos ? name : expression.find('/', name);
        steps_.emplace_back(expression.substr(position, end - position), is_first);
        if (end == std::string::npos) return;
        position = end;
    }
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
