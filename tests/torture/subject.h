// What a tortured entry works on, and the table of the entries.
#ifndef SOAPWRAPPER_TESTS_TORTURE_SUBJECT_H
#define SOAPWRAPPER_TESTS_TORTURE_SUBJECT_H

#include "plugin/base/handle_records.h"
#include "tests/kit/host.h"
#include "tests/kit/log_recorder.h"
#include "tests/kit/scripted_service.h"
#include "tests/kit/soap_text.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace torture
{

struct FreeServer {
    void operator()(stsp_server_t* server) const;
};

// A host with an open handle at one URL. Entries that find their service by a name find it under `name`.
class Subject
{
  public:
    Subject(const std::string& url, bool tls);
    ~Subject();
    Subject(const Subject&) = delete;
    Subject& operator=(const Subject&) = delete;

    // A handle that was open before may be gone.
    void open_handle();
    void give_handle_back() { server.release(); }

    kit::RecordedSession session;
    kit::Credential credential;
    std::unique_ptr<stsp_server_t, FreeServer> server;
    const char* name;

  private:
    std::string url_;
    bool tls_;
};

struct Entry {
    std::string name;
    // Calls the entry as a host does, and holds what a host may rely on after a failure.
    std::function<int(Subject&)> call;
    // The SOAP text of a reply that makes the call succeed.
    std::string good_reply;
    // What the host sees if there is no answer that can be read.
    int status_without_answer = 2060017;
    // The answers to what the entry asks besides: ahead of the call that is tortured, and behind it, which
    // may depend on how that one ended.
    std::vector<std::string> ahead = {};
    std::vector<std::string> behind_success = {};
    std::vector<std::string> behind_failure = {};
    // The elements of the reply without which it is of no use.
    std::vector<std::string> required = {};

    // The same entry, for which a good reply must hold these elements.
    Entry requiring(std::vector<std::string> elements) const;
    // All that one call of the entry needs, with this answer in the place that is tortured.
    std::vector<kit::Answer> conversation(const kit::Answer& tortured, bool succeeds) const;
};

// One row for each entry, by the kinds of entries.
std::vector<Entry> server_entries();
std::vector<Entry> catalogue_entries();
std::vector<Entry> start_entries();
std::vector<Entry> follow_entries();
std::vector<Entry> event_entries();
std::vector<Entry> change_list_entries();

} // namespace torture

#endif
