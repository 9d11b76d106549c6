// The client class's table of virtual functions: its order is part of the binary contract.
#include "operations.h"
#include "vtable_slot.h"

#include <gtest/gtest.h>

namespace schema
{

namespace
{

using Proxy = PSVWSSoapBindingProxy;

static_assert(std::is_base_of_v<soap, Proxy>);
static_assert(std::is_convertible_v<Proxy*, soap*>, "the base is public");
static_assert(std::is_same_v<decltype(Proxy::soap_endpoint), const char*>);
// A pointer to the table, the context, the endpoint, and nothing else.
static_assert(sizeof(Proxy) == sizeof(void*) + sizeof(soap) + sizeof(const char*));

static_assert(std::is_constructible_v<Proxy>);
static_assert(std::is_constructible_v<Proxy, const char*>);
static_assert(std::is_constructible_v<Proxy, int>);
static_assert(std::is_constructible_v<Proxy, const char*, int>);
static_assert(std::is_constructible_v<Proxy, int, int>);
static_assert(std::is_constructible_v<Proxy, const soap&>);
static_assert(std::is_constructible_v<Proxy, const soap&, const char*>);
static_assert(std::is_constructible_v<Proxy, const Proxy&>);
static_assert(std::has_virtual_destructor_v<Proxy>);

// The destructor has the slots 0 and 1: one that destroys and one that also gives the memory back.
TEST(ProxySlots, HoldTheGeneralFunctionsBehindTheDestructor)
{
    EXPECT_EQ(vtable_slot(&Proxy::PSVWSSoapBindingProxy_init), 2);
    EXPECT_EQ(vtable_slot(&Proxy::copy), 3);
    EXPECT_EQ(vtable_slot(&Proxy::destroy), 4);
    EXPECT_EQ(vtable_slot(&Proxy::reset), 5);
    EXPECT_EQ(vtable_slot(&Proxy::soap_noheader), 6);
    EXPECT_EQ(vtable_slot(&Proxy::soap_header), 7);
    EXPECT_EQ(vtable_slot(&Proxy::soap_fault), 8);
    EXPECT_EQ(vtable_slot(&Proxy::soap_fault_subcode), 9);
    EXPECT_EQ(vtable_slot(&Proxy::soap_fault_string), 10);
    EXPECT_EQ(vtable_slot(&Proxy::soap_fault_detail), 11);
    EXPECT_EQ(vtable_slot(&Proxy::soap_close_socket), 12);
    EXPECT_EQ(vtable_slot(&Proxy::soap_force_close_socket), 13);
    EXPECT_EQ(vtable_slot(&Proxy::soap_print_fault), 14);
    EXPECT_EQ(vtable_slot(&Proxy::soap_stream_fault), 15);
    EXPECT_EQ(vtable_slot(&Proxy::soap_sprint_fault), 16);
}

TEST(ProxySlots, HoldFourFormsOfEachOf74OperationsInOrder)
{
    int slot = 17;
    each_operation([&](const auto& operation) {
        SCOPED_TRACE(operation.name);
        EXPECT_EQ(vtable_slot(operation.short_form), slot++);
        EXPECT_EQ(vtable_slot(operation.long_form), slot++);
        EXPECT_EQ(vtable_slot(operation.send), slot++);
        EXPECT_EQ(vtable_slot(operation.receive), slot++);
    });
    EXPECT_EQ(slot, 17 + 4 * 74);
}

} // namespace

} // namespace schema
