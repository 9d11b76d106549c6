// A scripted service that answers each operation with what has been written down for it.
#ifndef SOAPWRAPPER_TESTS_KIT_SERVICE_BY_OPERATION_H
#define SOAPWRAPPER_TESTS_KIT_SERVICE_BY_OPERATION_H

#include "tests/kit/certificate.h"
#include "tests/kit/scripted_service.h"

#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace kit
{

class ServiceByOperation
{
  public:
    std::string url() const { return service_.url(); }
    std::string tls_url() const { return service_.tls_url(); }
    void set_tls_context(TlsContext context) { service_.set_tls_context(std::move(context)); }

    // What to answer to an operation, from now on: the elements of its response.
    void answer(const std::string& operation, const std::string& elements);

    // What to answer to an operation once, ahead of that; several of them in turn.
    void answer_first(const std::string& operation, const std::string& elements);

    // Refuses an operation with a fault whose detail bears a status, or with one that has no detail.
    void refuse(const std::string& operation, const std::string& text, int error_code);
    void refuse_without_detail(const std::string& operation, const std::string& text);

    // Refuses an operation once, in turn with what answer_first() was told.
    void refuse_first(const std::string& operation, const std::string& text, int error_code);

    // Answers an operation with bytes of any kind.
    void answer_raw(const std::string& operation, const std::string& http_reply);

    // To be called when an operation has been asked for, ahead of its answer, with how often that was.
    using Watcher = std::function<void(const std::string& operation, long times)>;
    void watch(Watcher watcher);

    // The operations asked for, in order.
    std::vector<std::string> operations() const;

    // The body of the last request of an operation; empty: there was none.
    std::string request(const std::string& operation) const;

  private:
    std::string reply_to(const Request& request);

    std::mutex mutex_; // guards what follows
    std::map<std::string, std::string> replies_;
    std::map<std::string, std::deque<std::string>> first_replies_;
    Watcher watcher_;
    // The last member: its threads use all others.
    ScriptedService service_{[this](const Request& request) { return reply_to(request); }};
};

} // namespace kit

#endif
