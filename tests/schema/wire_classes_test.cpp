// The shape of the generated classes: the conversions work on it directly.
#include "contract.h"
#include "registry.h"
#include "vtable_slot.h"
#include "wire_classes.h"

#include <gtest/gtest.h>

namespace schema
{

namespace
{

using Proxy = PSVWSSoapBindingProxy;

TEST(WireClasses, AreThe58TypesAndThe147MessagesOfTheContract)
{
    std::vector<std::string> expected;
    for (const ComplexType& type : joined({all_types(), all_messages()})) expected.push_back(type.name);
    std::vector<std::string> found;
    for (const WireClass& wire_class : wire_classes()) found.push_back(wire_class.name);
    EXPECT_EQ(found, expected);
    EXPECT_EQ(found.size(), 58U + 147U);
}

TEST(WireClasses, HaveTheirVirtualOperationsInOrderAheadOfTheDestructor)
{
    each_wire_class([](auto tag) {
        using Class = typename decltype(tag)::Class;
        SCOPED_TRACE(tag.name);
        const auto slots = {vtable_slot(&Class::soap_type),      vtable_slot(&Class::soap_default),
                            vtable_slot(&Class::soap_serialize), vtable_slot(&Class::soap_put),
                            vtable_slot(&Class::soap_out),       vtable_slot(&Class::soap_get),
                            vtable_slot(&Class::soap_in),        vtable_slot(&Class::soap_alloc)};
        // Slots 0 to 7; the destructor stands behind them, since nothing stands before.
        int expected = 0;
        for (int slot : slots) EXPECT_EQ(slot, expected++);
        EXPECT_TRUE(std::has_virtual_destructor_v<Class>);
    });
}

TEST(WireClasses, EndWithTheContextThatMadeThem)
{
    each_wire_class([](auto tag) {
        using Class = typename decltype(tag)::Class;
        SCOPED_TRACE(tag.name);
        Class object;
        const auto* begin = reinterpret_cast<const char*>(&object);
        const auto* context = reinterpret_cast<const char*>(&object.soap);
        EXPECT_EQ(static_cast<size_t>(context - begin), sizeof(Class) - sizeof(soap*));
        EXPECT_EQ(object.soap, nullptr);
    });
}

TEST(WireClasses, StartWithEveryMemberAtZero)
{
    for (const WireClass& wire_class : wire_classes()) {
        SCOPED_TRACE(wire_class.name);
        const auto object = wire_class.make();
        object->expect_default();
        EXPECT_EQ(object->maker(), nullptr);
    }
}

TEST(WireClasses, DefaultClearsEveryMemberOfAFilledObject)
{
    for (const WireClass& wire_class : wire_classes()) {
        SCOPED_TRACE(wire_class.name);
        Proxy context;
        Filler filler("any", 2);
        const auto object = wire_class.make();
        object->fill(filler);
        object->set_default(context);
        object->expect_default();
        EXPECT_EQ(object->maker(), &context);
    }
}

TEST(WireClasses, NumberTheChoicesOfEachChoiceTypeFromOne)
{
    EXPECT_EQ(SOAP_UNION__ns1__union_VolumeSpecification_nfs, 1);
    EXPECT_EQ(SOAP_UNION__ns1__union_VolumeSpecification_cifs, 2);
    EXPECT_EQ(SOAP_UNION__ns1__union_VolumeSpecification_scsi, 3);
    EXPECT_EQ(SOAP_UNION__ns1__union_VolumeSpecification_device, 4);
    EXPECT_EQ(SOAP_UNION__ns1__union_VolumeSpecification_ndmp, 5);
    EXPECT_EQ(SOAP_UNION__ns1__union_AIOResultSnap_validateSnap, 1);
    EXPECT_EQ(SOAP_UNION__ns1__union_AIOResultSnap_provisionTopology, 2);
    EXPECT_EQ(SOAP_UNION__ns1__union_AIOResultSnap_createSnap, 3);
    EXPECT_EQ(SOAP_UNION__ns1__union_AIOResultSnap_importSnap, 4);
    EXPECT_EQ(SOAP_UNION__ns1__union_AIOResultSnap_copySnap, 5);
    EXPECT_EQ(SOAP_UNION__ns1__union_AIOResultSnap_getSnapDiff, 6);
    EXPECT_EQ(SOAP_UNION__ns1__union_EventBody_op, 1);
    EXPECT_EQ(SOAP_UNION__ns1__union_EventBody_lsuInfo, 2);
    EXPECT_EQ(SOAP_UNION__ns1__union_EventBody_srvStat, 3);
    EXPECT_EQ(SOAP_UNION__ns1__union_EventBody_lsuStat, 4);
    EXPECT_EQ(SOAP_UNION__ns1__union_EventBody_imgInfo, 5);
    EXPECT_EQ(SOAP_UNION__ns1__union_EventBody_actv, 6);
    EXPECT_EQ(SOAP_UNION__ns1__union_EventBody_srvInfo, 7);
    EXPECT_EQ(SOAP_UNION__ns1__union_EventBody_imgRep, 8);
}

// The same names with different types in different messages.
static_assert(std::is_same_v<decltype(_ns1__asyncGetSnapDiff::diffFlag), int>);
static_assert(std::is_same_v<decltype(_ns1__namedAsyncGetSnapDiff::diffFlag), bool>);
static_assert(std::is_same_v<decltype(_ns1__openSnapChangeList::diffFlag), int>);
static_assert(std::is_same_v<decltype(_ns1__createImage::pendingflag), bool>);
static_assert(std::is_same_v<decltype(_ns1__asyncCreateSnapByName::pendingflag), int>);
static_assert(std::is_same_v<decltype(_ns1__deleteImage::asyncFlag), LONG64>);
static_assert(std::is_same_v<decltype(_ns1__writeImageMeta::buf), xsd__base64Binary>);
static_assert(std::is_same_v<decltype(ns1__ReadResult::buf), xsd__base64Binary*>);
static_assert(std::is_same_v<decltype(_ns1__validateRollback::rollbackList), ns1__ArrayOfString*>);
static_assert(
    std::is_same_v<decltype(_ns1__asyncGetSnapDiff::rollbackList), ns1__ArrayOfVolumeSpecification*>);
static_assert(std::is_same_v<decltype(ns1__EventActivity::dpaext), int*>);
static_assert(std::is_same_v<decltype(ns1__FileAttr::permissions), LONG64*>);
static_assert(std::is_same_v<decltype(ns1__FileAttr::inode), int*>);

static_assert(std::is_same_v<decltype(ns1__ArrayOfInt::item), std::vector<int>>);
static_assert(std::is_same_v<decltype(ns1__ArrayOfString::item), std::vector<std::string>>);
static_assert(
    std::is_same_v<decltype(ns1__ArrayOfLSUSpecification::item), std::vector<ns1__LSUSpecification*>>);
static_assert(std::is_same_v<decltype(ns1__ArrayOfExport::item), std::vector<ns1__Export*>>);
static_assert(
    std::is_same_v<decltype(ns1__ArrayOfVolumeSpecification::item), std::vector<ns1__VolumeSpecification*>>);
static_assert(std::is_same_v<decltype(ns1__ArrayOfFileAttr::item), std::vector<ns1__FileAttr*>>);
static_assert(std::is_same_v<decltype(ns1__ArrayOfDiffObjectSpecification::item),
                             std::vector<ns1__DiffObjectSpecification*>>);

// The fault record is C's: plain members, in this order.
static_assert(offsetof(SOAP_ENV__Fault, faultcode) < offsetof(SOAP_ENV__Fault, faultstring));
static_assert(offsetof(SOAP_ENV__Fault, faultstring) < offsetof(SOAP_ENV__Fault, faultactor));
static_assert(offsetof(SOAP_ENV__Fault, faultactor) < offsetof(SOAP_ENV__Fault, detail));
static_assert(offsetof(SOAP_ENV__Fault, detail) < offsetof(SOAP_ENV__Fault, SOAP_ENV__Code));
static_assert(offsetof(SOAP_ENV__Detail, ns1__STSException_) == 0);
static_assert(offsetof(SOAP_ENV__Detail, __type) == 8);
static_assert(offsetof(SOAP_ENV__Detail, fault) == 16);
static_assert(offsetof(SOAP_ENV__Detail, __any) == 24);

} // namespace

} // namespace schema
