#include "tests/kit/wire_elements.h"

#include "tests/kit/soap_text.h"

namespace kit
{

std::string number(std::string_view name, std::int64_t value)
{
    return element(name, std::to_string(value));
}

std::string text_element(std::string_view name, std::string_view text)
{
    return text.empty() ? "<ns1:" + std::string(name) + "/>" : element(name, text);
}

std::string token_element(std::string_view name, std::string_view token)
{
    return element(name, text_element("token", token));
}

std::string lsu_element(std::string_view token, std::string_view name)
{
    return element("lsu", token_element("serverHandle", token) + element("lsuName", name));
}

std::string empty_isid()
{
    return element("isid", number("version", 0) + "<ns1:dpaid/><ns1:dpaver/><ns1:info></ns1:info>");
}

std::string snap_element(std::string_view name, std::string_view snap)
{
    return element(name, text_element("snapName", snap) + number("snapType", 0) + number("snapFlags", 0) +
                             number("snapSaveas", 0) + empty_isid());
}

} // namespace kit
