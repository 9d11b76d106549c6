// What each of the 74 requests and each type looks like on the wire, blank and filled.
#include "canned_service.h"
#include "contract.h"
#include "registry.h"

#include <gtest/gtest.h>

namespace schema
{

namespace
{

using Proxy = PSVWSSoapBindingProxy;

// Eight kRounds take each choice of each choice type through all its numbers.
constexpr int kRounds = 8;

TEST(WrittenTypes, EachBlankTypeWritesItsDefaultsAndNilsInOrder)
{
    for (const WireClass& wire_class : wire_classes()) {
        if (wire_class.is_message) continue;
        SCOPED_TRACE(wire_class.name);
        EXPECT_EQ(wire_class.make()->text("any"), element("any", blank_text(wire_class.name)));
    }
}

TEST(WrittenTypes, EachFilledTypeAndMessageWritesEveryElementInOrder)
{
    for (const WireClass& wire_class : wire_classes()) {
        SCOPED_TRACE(wire_class.name);
        for (int round = 1; round <= kRounds; ++round) {
            const auto object = wire_class.make();
            Filler filler("any", round);
            object->fill(filler);
            ASSERT_EQ(object->text("any"), rendered(filler.node())) << "round " << round;
        }
    }
}

TEST(WrittenRequests, EachBlankRequestWritesItsDefaultsAndNilsInOrder)
{
    EXPECT_EQ(operation_entries().size(), 74U);
    for (const OperationEntry& operation : operation_entries()) {
        SCOPED_TRACE(operation.name);
        Proxy proxy;
        CannedService service(proxy);
        const auto request = operation.make_request();
        ASSERT_EQ(operation.send(proxy, *request), SOAP_OK);
        EXPECT_EQ(service.sent_content(), element(operation.name, blank_text(operation.name)));
    }
}

TEST(WrittenRequests, EachFilledRequestWritesEveryElementInOrder)
{
    for (const OperationEntry& operation : operation_entries()) {
        SCOPED_TRACE(operation.name);
        for (int round = 1; round <= kRounds; ++round) {
            Proxy proxy;
            CannedService service(proxy);
            const auto request = operation.make_request();
            Filler filler(operation.name, round);
            request->fill(filler);
            ASSERT_EQ(operation.send(proxy, *request), SOAP_OK);
            ASSERT_EQ(service.sent_content(), rendered(filler.node())) << "round " << round;
        }
    }
}

TEST(WrittenRequests, NamesNoTypeAndNoEncodingAnywhere)
{
    for (const OperationEntry& operation : operation_entries()) {
        SCOPED_TRACE(operation.name);
        Proxy proxy;
        CannedService service(proxy);
        const auto request = operation.make_request();
        Filler filler(operation.name, 1);
        request->fill(filler);
        ASSERT_EQ(operation.send(proxy, *request), SOAP_OK);
        for (const char* unwanted : {"xsi:type", "encodingStyle", "Header", " id=", "href"}) {
            EXPECT_EQ(service.sent_body().find(unwanted), std::string::npos) << unwanted;
        }
    }
}

} // namespace

} // namespace schema
