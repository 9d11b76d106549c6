// What the tests of the channel's settings have in common.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_CHANNEL_FIXTURE_H
#define SOAPWRAPPER_TESTS_ENTRIES_CHANNEL_FIXTURE_H

#include "tests/entries/server_fixture.h"
#include "tests/kit/entry_lines.h"

#include <string>

class Channel : public ServerTest
{
  protected:
    Channel() { host().initialise(); }
    ~Channel() override
    {
        host().remove_configuration();
        host().initialise();
    }

    // The file, as the host's handshake finds it.
    static void configure(const std::string& text)
    {
        host().write_configuration(text);
        host().initialise();
    }

    // A close at the service of this URL, which keeps the handle where it fails.
    int close(const std::string& url, bool use_https)
    {
        session_.clear();
        ServerHandle server = make_server(session_, url, use_https);
        const int status = kit::close_server()(server.get());
        if (status == 0) server.release();
        return status;
    }
    int close_plainly() { return close(service_.url(), false); }
    int close_over_tls() { return close(service_.tls_url(), true); }

    // The lines of such a close that came to this failure of the connection.
    static kit::Lines refused_close(const std::string& url, const std::string& reason,
                                    const std::string& detail)
    {
        return {kit::enter("stspi_close_server"), kit::record("stspi_close_server: soap_endpoint = " + url),
                kit::return_code("stspi_close_server", 28), refusal(reason, detail)};
    }

    static kit::LogLine refusal(const std::string& reason, const std::string& detail)
    {
        return kit::failure("SOAP 1.1 fault SOAP-ENV:Server[no subcode]\n\"" + reason +
                            "\"\nDetail: " + detail + "\n");
    }
};

#endif
