// A scripted service, a configuration that leads to it, and the probe to ask it.
#ifndef SOAPWRAPPER_TESTS_SYSTEM_PROBE_FIXTURE_H
#define SOAPWRAPPER_TESTS_SYSTEM_PROBE_FIXTURE_H

#include "probe_process.h"
#include "tests/kit/service_by_operation.h"
#include "tests/kit/soap_text.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <initializer_list>
#include <string>

class ProbeTest : public ::testing::Test
{
  protected:
    static constexpr char kName[] = "Network_store:filer";

    ProbeTest() { folder.write("soapwrapper.conf", "filer = " + service.url() + "\n"); }

    // Runs the probe on the library under test with the configuration of `folder`.
    ProcessResult probe(std::vector<std::string> arguments,
                        const std::map<std::string, std::string>& environment = {},
                        const std::string& out_file = {}) const
    {
        arguments.insert(arguments.end(), {"--library", PROBE_LIBRARY, "--plugin-path",
                                           (folder / "libsoapwrapper.so").string()});
        return run_process(PROBE_PROGRAM, arguments, environment, out_file);
    }

    static std::string items(std::initializer_list<std::string> values)
    {
        std::string xml;
        for (const std::string& value : values) xml += kit::element("item", value);
        return xml;
    }

    static std::string information(std::initializer_list<std::string> interfaces,
                                   const std::string& server = "Network_store:filer.example.com")
    {
        return "<ns1:info><ns1:server>" + server + "</ns1:server><ns1:sth>" +
               items({"SnapVault", "Replica"}) +
               "</ns1:sth><ns1:flags>-3</ns1:flags><ns1:maxconnect>100</ns1:maxconnect>"
               "<ns1:nconnect>7</ns1:nconnect><ns1:cap>" +
               items({"0", "31", "32", "2079"}) + "</ns1:cap><ns1:requiredInterface>" + items(interfaces) +
               "</ns1:requiredInterface><ns1:cred>" + items({"2", "0", "5"}) +
               "</ns1:cred><ns1:ndmpHost>ndmp.example.com</ns1:ndmpHost></ns1:info>";
    }

    // The row of an interface at the scripted service.
    std::string row(const std::string& version) const { return version + ";http;" + service.url(); }

    // A service where a login, its properties and its end succeed.
    void answer_all()
    {
        service.answer("getServerPropByName", information({row("11;1;2")}));
        service.answer("openServer", "<ns1:serverHandle><ns1:token>T-1</ns1:token></ns1:serverHandle>");
        service.answer("getServerProp", information({row("11;1;2")}));
        service.answer("closeServer", "");
    }

    TemporaryFolder folder;
    kit::ServiceByOperation service;
};

#endif
