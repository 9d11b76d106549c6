#include "tests/kit/service_by_operation.h"

#include "tests/kit/soap_text.h"

#include <algorithm>
#include <utility>

namespace kit
{
namespace
{

std::string good_reply(const std::string& operation, const std::string& elements)
{
    // Both ways to open a list of snapshots have the same response.
    const std::string name = operation == "openSnapListByVolume" ? "openSnapList" : operation;
    return http_message(reply(name + "Response", elements));
}

std::string refusal(const std::string& text, int error_code)
{
    return fault_answer(fault(error_code, "SOAP-ENV:Client", text)).bytes;
}

// The first element of the body.
std::string operation_of(const Request& request)
{
    const std::size_t body = request.body.find("Body>");
    const std::size_t begin = request.body.find("<ns1:", body);
    if (body == std::string::npos || begin == std::string::npos) return {};
    return request.body.substr(begin + 5, request.body.find_first_of(" />", begin + 5) - begin - 5);
}

} // namespace

void ServiceByOperation::answer(const std::string& operation, const std::string& elements)
{
    answer_raw(operation, good_reply(operation, elements));
}

void ServiceByOperation::answer_first(const std::string& operation, const std::string& elements)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    first_replies_[operation].push_back(good_reply(operation, elements));
}

void ServiceByOperation::refuse(const std::string& operation, const std::string& text, int error_code)
{
    answer_raw(operation, refusal(text, error_code));
}

void ServiceByOperation::refuse_without_detail(const std::string& operation, const std::string& text)
{
    answer_raw(operation, fault_answer(fault_with_detail("", "SOAP-ENV:Client", text)).bytes);
}

void ServiceByOperation::refuse_first(const std::string& operation, const std::string& text, int error_code)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    first_replies_[operation].push_back(refusal(text, error_code));
}

void ServiceByOperation::answer_raw(const std::string& operation, const std::string& http_reply)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    replies_[operation] = http_reply;
}

void ServiceByOperation::watch(Watcher watcher)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    watcher_ = std::move(watcher);
}

std::vector<std::string> ServiceByOperation::operations() const
{
    std::vector<std::string> operations;
    for (const Request& request : service_.requests()) operations.push_back(operation_of(request));
    return operations;
}

std::string ServiceByOperation::request(const std::string& operation) const
{
    std::string body;
    for (const Request& request : service_.requests()) {
        if (operation_of(request) == operation) body = request.body;
    }
    return body;
}

std::string ServiceByOperation::reply_to(const Request& request)
{
    const std::string operation = operation_of(request);
    std::string reply = http_message("", 404, "Not Found");
    Watcher watcher;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto found = replies_.find(operation);
        if (found != replies_.end()) reply = found->second;
        std::deque<std::string>& first = first_replies_[operation];
        if (!first.empty()) {
            reply = first.front();
            first.pop_front();
        }
        watcher = watcher_;
    }
    const std::vector<std::string> asked = operations();
    if (watcher) watcher(operation, std::count(asked.begin(), asked.end(), operation));
    return reply;
}

} // namespace kit
