// A client of the simulator's API, over the operations that a SOAP client has there meanwhile.
#ifndef SOAPWRAPPER_TESTS_SYSTEM_SIMULATOR_API_H
#define SOAPWRAPPER_TESTS_SYSTEM_SIMULATOR_API_H

#include "tests/system/simulator_events.h"

#include <nlohmann/json.hpp>

#include <string>
#include <utility>
#include <vector>

namespace simulator_api
{

using namespace simulator_events;
using nlohmann::json;

constexpr char kJson[] = "application/json";

using Fields = std::vector<std::pair<std::string, std::string>>;

// A request of HTTP as it is written; without a Host among the fields, for the address that it goes to. With
// a body, or a method that has one, its length is told.
inline std::string request_text(const std::string& method, const std::string& path, const Fields& fields = {},
                                const std::string& body = "")
{
    std::string text = method + " " + path + " HTTP/1.1\r\n";
    bool has_host = false;
    for (const auto& [name, value] : fields) {
        text += name + ": " + value + "\r\n";
        has_host = has_host || name == "Host";
    }
    if (!has_host) text += "Host: 127.0.0.1\r\n";
    if (method == "POST" || method == "PUT" || !body.empty()) {
        text += "Content-Length: " + std::to_string(body.size()) + "\r\n";
    }
    return text + "\r\n" + body;
}

inline HttpReply send(int port, const std::string& request)
{
    const ClientSocket client(port);
    client.send(request);
    return parse_reply(client.receive_all());
}

inline HttpReply get(int port, const std::string& path, const Fields& fields = {})
{
    return send(port, request_text("GET", path, fields));
}

inline HttpReply post(int port, const std::string& path, const std::string& body = "")
{
    return send(port, request_text("POST", path, {{"Content-Type", kJson}}, body));
}

// The answer's JSON, which is expected to be of that status and type; null if it is none.
inline json json_of(const HttpReply& reply, int status = 200)
{
    EXPECT_EQ(reply.status, status) << reply.body;
    EXPECT_THAT(reply.head, HasSubstr(std::string("\r\nContent-Type: ") + kJson + "\r\n"));
    EXPECT_THAT(reply.head, HasSubstr("\r\nCache-Control: no-store\r\n"));
    EXPECT_THAT(reply.head, HasSubstr("\r\nX-Content-Type-Options: nosniff\r\n"));
    json read = json::parse(reply.body, nullptr, false);
    EXPECT_FALSE(read.is_discarded()) << reply.body;
    return read;
}

// Why a request was refused; empty if it wasn't, or not so.
inline std::string refusal_of(const HttpReply& reply, int status)
{
    const json told = json_of(reply, status);
    return told.is_object() && told.size() == 1 ? told.value("error", "") : "";
}

// One with its number, name or whatever, of an array.
inline json entry_with(const json& array, const char* member, const json& value)
{
    for (const json& each : array) {
        if (each.at(member) == value) return each;
    }
    return nullptr;
}

class ApiClient : public EventsClient
{
  protected:
    explicit ApiClient(const std::string& text = scenario()) : EventsClient(text) {}

    int port() const { return simulator_.http_port(); }
    json get(const std::string& path) const { return json_of(simulator_api::get(port(), path)); }
    std::string refusal(const std::string& path, int status) const
    {
        return refusal_of(simulator_api::get(port(), path), status);
    }
    HttpReply post(const std::string& path, const std::string& body = "") const
    {
        return simulator_api::post(port(), path, body);
    }
    HttpReply remove(const std::string& path) const { return send(port(), request_text("DELETE", path)); }
    using EventsClient::remove;

    json server(const std::string& prefix) const
    {
        return entry_with(get("/api/state").at("servers"), "prefix", prefix);
    }
    json lsu_of(const std::string& prefix, const std::string& name) const
    {
        return entry_with(server(prefix).at("lsus"), "name", name);
    }
};

} // namespace simulator_api

#endif
