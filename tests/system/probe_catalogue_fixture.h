// A scripted service whose login works, for the commands that ask it for more.
#ifndef SOAPWRAPPER_TESTS_SYSTEM_PROBE_CATALOGUE_FIXTURE_H
#define SOAPWRAPPER_TESTS_SYSTEM_PROBE_CATALOGUE_FIXTURE_H

#include "probe_fixture.h"
#include "tests/kit/soap_text.h"
#include "tests/kit/wire_elements.h"

#include <string>
#include <vector>

using kit::element;

class ProbeCatalogueTest : public ProbeTest
{
  protected:
    ProbeCatalogueTest() { answer_all(); }

    ProcessResult run(std::vector<std::string> arguments) const
    {
        arguments.emplace_back("--no-discover");
        return probe(arguments, {{"SOAPWRAPPER_CREDENTIAL", "open sesame"}});
    }

    static std::string token(const std::string& name) { return kit::token_element(name, "L-1"); }

    // Lists of all kinds open and close, and end with the usual status.
    void answer_lists()
    {
        service.answer("openLSUList", token("lsuListHandle"));
        service.answer("openImageList", token("imageListHandle"));
        for (const char* open : {"openSnapList", "openSnapListByVolume", "validateRollback"}) {
            service.answer(open, token("snapListHandle"));
        }
        for (const char* kind : {"LSU", "Image", "Snap"}) {
            service.answer(std::string("close") + kind + "List", "");
            service.refuse(std::string("list") + kind, "that was all", 2060013);
        }
    }

    // What an operation was asked, within its envelope.
    std::string asked(const std::string& operation) const { return service.request(operation); }

    // How often an operation was asked for.
    long count(const std::string& operation) const
    {
        const std::vector<std::string> all = service.operations();
        return std::count(all.begin(), all.end(), operation);
    }
};

#endif
