#include "tests/xmlhelper/hostile.h"

#include "tests/kit/small_stack.h"

#include <gtest/gtest.h>

namespace xmlhelper
{

std::string repeat(std::size_t count, const std::function<std::string(std::size_t)>& piece)
{
    std::string text;
    for (std::size_t i = 0; i < count; ++i) text += piece(i);
    return text;
}

std::string repeat(std::size_t count, const std::string& piece)
{
    return repeat(count, [&](std::size_t) { return piece; });
}

std::string nested(std::size_t count)
{
    return repeat(count, "<a>") + repeat(count, "</a>");
}

std::string listed_names(std::size_t count, const std::string& separator)
{
    return repeat(count, [&](std::size_t i) { return (i ? separator : "") + "a" + std::to_string(i); });
}

std::string with_type(const std::string& declarations, const std::string& content)
{
    return "<!DOCTYPE r [<!ELEMENT r ANY><!ATTLIST r a CDATA #IMPLIED>" + declarations + "]>" + content;
}

std::string error_of(const std::string& text)
{
    const OwnedDocument document = empty_document();
    EXPECT_EQ(document->parse(text, ""), XML_DOC_PARSE_FAILED);
    EXPECT_EQ(document->get_document(), nullptr);
    return document->get_errorText();
}

void on_a_small_stack(const std::function<void()>& action)
{
    constexpr std::size_t kSmallStack = 192 * 1024;
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    constexpr std::size_t kStack = 8 * kSmallStack;
#else
    constexpr std::size_t kStack = kSmallStack;
#endif
    kit::run_on_stack_of(kStack, action);
}

} // namespace xmlhelper
