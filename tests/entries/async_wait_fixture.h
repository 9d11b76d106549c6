// What the tests of waits, status and cancel have in common.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_ASYNC_WAIT_FIXTURE_H
#define SOAPWRAPPER_TESTS_ENTRIES_ASYNC_WAIT_FIXTURE_H

#include "tests/entries/async_fixture.h"

#include <cstring>
#include <string>
#include <vector>

// A record in which every byte is the same, padding too, to see afterwards what was written.
template <class Record>
void fill(Record& record, int byte = 'x')
{
    std::memset(&record, byte, sizeof record);
}

template <class Record>
std::string bytes_of(const Record& record)
{
    std::string bytes(sizeof record, '\0');
    std::memcpy(bytes.data(), &record, sizeof record);
    return bytes;
}

template <class Record>
bool is_untouched(const Record& record)
{
    return bytes_of(record) == std::string(sizeof record, 'x');
}

class AsyncWaitTest : public ServerTest
{
  protected:
    AsyncWaitTest()
    {
        set(server_.server_name, own_name());
        server_.endpoint = url_.data();
        server_.service_handle = service_handle_;
        server_.session = session_.get();
        async_ = make_async(&server_);
    }

    void use_https()
    {
        url_ = service_.tls_url();
        server_.endpoint = url_.data();
        server_.use_https = true;
    }

    // Of the session that is handed to the wait, which is not the server's.
    std::string caller_element()
    {
        return kit::element("sd", kit::element("proxy", caller_->proxy) + kit::element("id", caller_.id()) +
                                      number("flags", 7));
    }

    char service_handle_[3] = "SH";
    std::string url_ = service_.url();
    stsp_server server_{};
    kit::RecordedSession caller_;
    AsyncHandle async_;
    kit::Clock clock_;
};

#endif
