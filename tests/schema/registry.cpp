#include "registry.h"

#include "canned_service.h"
#include "operations.h"
#include "walkers.h"
#include "walks.h"
#include "wire_classes.h"

#include <sstream>

namespace schema
{

namespace
{

using Proxy = PSVWSSoapBindingProxy;

template <class Class>
class ObjectOf : public WireObject
{
  public:
    Class object;

    void fill(Filler& filler) override { walk(filler, object); }
    void expect_filled(int round) override
    {
        FilledCheck check(round);
        walk(check, object);
    }
    void expect_default() override
    {
        DefaultCheck check;
        walk(check, object);
    }
    void set_default(soap& context) override { object.soap_default(&context); }
    const soap* maker() const override { return object.soap; }

    std::string text(const std::string& name) override
    {
        return written_in_body([&](soap* context) {
            object.soap_serialize(context);
            return object.soap_put(context, ("ns1:" + name).c_str(), "");
        });
    }

    int read(Proxy& context, const std::string& document) override
    {
        std::istringstream stream(document);
        context.is = &stream;
        object.soap_default(&context);
        if (soap_begin_recv(&context) == SOAP_OK) object.soap_get(&context, "ns1:any", nullptr);
        if (context.error == SOAP_OK) soap_end_recv(&context);
        context.is = nullptr;
        return context.error;
    }
};

template <class Class>
std::unique_ptr<WireObject> make()
{
    return std::make_unique<ObjectOf<Class>>();
}

template <class Class>
Class& held(WireObject& object)
{
    return static_cast<ObjectOf<Class>&>(object).object;
}

std::vector<WireClass> make_wire_classes()
{
    std::vector<WireClass> all;
    each_wire_class([&](const auto& tag) {
        using Class = typename std::decay_t<decltype(tag)>::Class;
        all.push_back({tag.name, tag.is_message, make<Class>});
    });
    return all;
}

std::vector<OperationEntry> make_operation_entries()
{
    std::vector<OperationEntry> all;
    each_operation([&](const auto& operation) {
        using Request = typename std::decay_t<decltype(operation)>::Request;
        using Response = typename std::decay_t<decltype(operation)>::Response;
        all.push_back(
            {operation.name, operation.response_name, make<Request>, make<Response>,
             [form = operation.short_form](Proxy& proxy, WireObject& request, WireObject& response) {
                 return (proxy.*form)(&held<Request>(request), held<Response>(response));
             },
             [form = operation.long_form](Proxy& proxy, const char* endpoint, WireObject& request,
                                          WireObject& response) {
                 return (proxy.*form)(endpoint, "", &held<Request>(request), held<Response>(response));
             },
             [form = operation.send](Proxy& proxy, WireObject& request) {
                 return (proxy.*form)(nullptr, nullptr, &held<Request>(request));
             },
             [form = operation.receive](Proxy& proxy, WireObject& response) {
                 return (proxy.*form)(held<Response>(response));
             }});
    });
    return all;
}

} // namespace

const std::vector<WireClass>& wire_classes()
{
    static const std::vector<WireClass> all = make_wire_classes();
    return all;
}

const std::vector<OperationEntry>& operation_entries()
{
    static const std::vector<OperationEntry> all = make_operation_entries();
    return all;
}

} // namespace schema
