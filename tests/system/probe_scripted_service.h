// A storage service with its answers written down beforehand: one HTTP exchange a connection, on a drawn
// port.
#ifndef SOAPWRAPPER_TESTS_SYSTEM_PROBE_SCRIPTED_SERVICE_H
#define SOAPWRAPPER_TESTS_SYSTEM_PROBE_SCRIPTED_SERVICE_H

#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

class ProbeScriptedService
{
  public:
    ProbeScriptedService();
    ~ProbeScriptedService();
    ProbeScriptedService(const ProbeScriptedService&) = delete;
    ProbeScriptedService& operator=(const ProbeScriptedService&) = delete;

    std::string url() const;

    // What to answer to an operation, from now on: the elements of its response.
    void answer(const std::string& operation, const std::string& elements);

    // What to answer to an operation once, ahead of that; several of them in turn.
    void answer_first(const std::string& operation, const std::string& elements);

    // Refuses an operation; `detail` stands in the fault's detail.
    void refuse(const std::string& operation, const std::string& text, const std::string& detail);
    void refuse(const std::string& operation, const std::string& text, int error_code);

    // The same once, in turn with what answer_first() was told.
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
    void serve();
    void exchange(int connection);
    bool readable(int descriptor) const; // false: the service is being stopped

    int listener_ = -1;
    int stop_[2] = {-1, -1};
    unsigned port_ = 0;
    mutable std::mutex mutex_; // guards what follows
    std::map<std::string, std::string> replies_;
    std::map<std::string, std::deque<std::string>> first_replies_;
    std::vector<std::string> operations_;
    std::map<std::string, std::string> requests_;
    Watcher watcher_;
    std::thread thread_; // the last member: it uses all others
};

#endif
