// Every wire class read back from what a service may send: in order and out of it, with elements that nobody
// knows, elements that stand twice, elements that are nil or missing.
#include "canned_service.h"
#include "contract.h"
#include "registry.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace schema
{

namespace
{

using Proxy = PSVWSSoapBindingProxy;

// Eight kRounds take each choice of each choice type through all its numbers.
constexpr int kRounds = 8;

// The element "any" with this content, which binds the prefix for itself.
std::string document_with(const std::string& content, const std::string& prefix = "ns1:")
{
    const std::string uri = std::string("\"") + kServiceNamespace + "\"";
    std::string document =
        "<" + prefix + "any xmlns:ns1=" + uri + " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"";
    if (prefix.empty()) document += " xmlns=" + uri;
    if (prefix == "other:") document += " xmlns:other=" + uri;
    return document + ">" + content + "</" + prefix + "any>";
}

void expect_all_filled(const Rendering& how)
{
    for (const WireClass& wire_class : wire_classes()) {
        SCOPED_TRACE(wire_class.name);
        for (int round = 1; round <= kRounds; ++round) {
            Filler filler("any", round);
            wire_class.make()->fill(filler);

            Proxy context;
            const auto object = wire_class.make();
            ASSERT_EQ(object->read(context, document_with(inner(filler.node(), how), how.prefix)), SOAP_OK);
            object->expect_filled(round);
        }
    }
}

size_t count_required(const WireClass& wire_class)
{
    const std::vector<Element>& elements = elements_of(wire_class.name);
    return static_cast<size_t>(std::count_if(elements.begin(), elements.end(), [](const Element& element) {
        return element.form == Form::kValue || element.form == Form::kNillable;
    }));
}

void expect_defaults_from(const WireClass& wire_class, const std::string& content)
{
    Filler stale("any", 3);
    Proxy context;
    const auto object = wire_class.make();
    object->fill(stale);
    ASSERT_EQ(object->read(context, document_with(content)), SOAP_OK);
    object->expect_default();
}

TEST(ReadObjects, TakeEveryElementInItsPlace)
{
    expect_all_filled({});
}

TEST(ReadObjects, TakeTheElementsInAnyOrder)
{
    Rendering how;
    how.reversed = true;
    expect_all_filled(how);
}

TEST(ReadObjects, SkipUnknownElementsWithTheirSubtrees)
{
    Rendering how;
    how.with_unknown = true;
    expect_all_filled(how);
}

TEST(ReadObjects, KeepTheFirstOfTwoElementsAndTheFirstChoice)
{
    Rendering how;
    how.each_twice = true;
    expect_all_filled(how);
}

TEST(ReadObjects, AcceptAnyPrefixForTheServiceNamespace)
{
    Rendering how;
    how.prefix = "other:";
    expect_all_filled(how);
    how.prefix = "";
    expect_all_filled(how);
}

TEST(ReadObjects, LeaveEveryMemberAtItsDefaultWhenAllElementsAreMissing)
{
    for (const WireClass& wire_class : wire_classes()) {
        SCOPED_TRACE(wire_class.name);
        expect_defaults_from(wire_class, "");
    }
}

TEST(ReadObjects, ReadANilElementAsANullPointer)
{
    for (const WireClass& wire_class : wire_classes()) {
        SCOPED_TRACE(wire_class.name);
        std::string content;
        for (const Element& element : elements_of(wire_class.name)) {
            if (element.form == Form::kNillable) content += nil(element.name);
        }
        expect_defaults_from(wire_class, content);
    }
}

TEST(ReadObjects, SkipElementsOfAnotherNamespace)
{
    for (const WireClass& wire_class : wire_classes()) {
        SCOPED_TRACE(wire_class.name);
        std::string content;
        for (const Element& element : elements_of(wire_class.name)) {
            content += "<x:" + element.name + " xmlns:x=\"urn:other\">1</x:" + element.name + ">";
        }
        expect_defaults_from(wire_class, content);
    }
}

TEST(ReadObjects, RefuseAMissingElementInStrictModeOnly)
{
    for (const WireClass& wire_class : wire_classes()) {
        SCOPED_TRACE(wire_class.name);
        Proxy strict(SOAP_XML_STRICT);
        const bool lacks_something = count_required(wire_class) > 0;
        EXPECT_EQ(wire_class.make()->read(strict, document_with("")),
                  lacks_something ? SOAP_OCCURS : SOAP_OK);
    }
}

TEST(ReadObjects, AcceptWhatIsWholeInStrictMode)
{
    for (const WireClass& wire_class : wire_classes()) {
        SCOPED_TRACE(wire_class.name);
        Filler filler("any", 1);
        wire_class.make()->fill(filler);
        Proxy strict(SOAP_XML_STRICT);
        const auto object = wire_class.make();
        ASSERT_EQ(object->read(strict, document_with(inner(filler.node()))), SOAP_OK);
        object->expect_filled(1);
    }
}

TEST(ReadObjects, RefuseUnknownElementsInStrictMode)
{
    Rendering how;
    how.with_unknown = true;
    for (const WireClass& wire_class : wire_classes()) {
        SCOPED_TRACE(wire_class.name);
        Filler filler("any", 1);
        wire_class.make()->fill(filler);
        if (filler.node().children.empty()) continue;
        Proxy strict(SOAP_XML_STRICT);
        EXPECT_EQ(wire_class.make()->read(strict, document_with(inner(filler.node(), how))),
                  SOAP_TAG_MISMATCH);
    }
}

TEST(ReadObjects, RefuseASecondOccurrenceInStrictMode)
{
    Rendering how;
    how.each_twice = true;
    for (const WireClass& wire_class : wire_classes()) {
        SCOPED_TRACE(wire_class.name);
        if (count_required(wire_class) == 0) continue;
        Filler filler("any", 1);
        wire_class.make()->fill(filler);
        Proxy strict(SOAP_XML_STRICT);
        EXPECT_EQ(wire_class.make()->read(strict, document_with(inner(filler.node(), how))),
                  SOAP_TAG_MISMATCH);
    }
}

} // namespace

} // namespace schema
