// What the tests of discovery have in common.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_DISCOVERY_FIXTURE_H
#define SOAPWRAPPER_TESTS_ENTRIES_DISCOVERY_FIXTURE_H

#include "tests/entries/server_fixture.h"
#include "tests/kit/entry_lines.h"

class Discovery : public ServerTest
{
  protected:
    using Lines = kit::Lines;

    // A host part whose two well-known URLs both lead to this port: the path takes their ":8086" and ":8085".
    static std::string host_part_at(int port) { return "127.0.0.1:" + std::to_string(port) + "/x"; }

    // A URL that can be chosen and called, and where nobody is.
    std::string dead_url(const std::string& path) const { return dead_port_.url() + "/" + path; }

    int ask(const std::string& name)
    {
        session_.clear();
        return kit::get_server_prop_byname()(session_.get(), name.c_str(), info_.get());
    }

    // Asks by a URL in the file, under a host part of the test's own.
    int ask_by_file(const std::string& name, const std::string& url)
    {
        host().write_configuration(name.substr(name.find(':') + 1) + "=" + url + "\n");
        const int status = ask(name);
        host().remove_configuration();
        return status;
    }

    // Where an open would go now.
    std::string endpoint_of_open(const std::string& name)
    {
        session_.clear();
        stsp_server_t* server = nullptr;
        open(name, &server);
        const ServerHandle owner(server);
        constexpr std::string_view kLine = "stspi_open_server: soap_endpoint = ";
        for (const std::string& text : session_.texts()) {
            if (text.rfind(kLine, 0) == 0) return text.substr(kLine.size());
        }
        return "no endpoint was logged";
    }

    // The lines ahead of the first attempt, without a file.
    static Lines opening_lines(const std::string& name)
    {
        const std::string host_part = name.substr(name.find(':') + 1);
        return {line("enter"), line("server_name = " + name), line("new server_name = " + host_part),
                kit::record("find_ss_name_in_conf: Attempting to open config file " + configuration_path()),
                kit::record("find_ss_name_in_conf: Config file not found")};
    }

    static kit::LogLine line(const std::string& text)
    {
        return kit::record("stspi_get_server_prop_byname: " + text);
    }

    kit::DeadPort dead_port_;
    std::unique_ptr<sts_server_info_v8_t> info_ = std::make_unique<sts_server_info_v8_t>();
};

#endif
