// Another plug-in of the same host: built on the SOAP runtime that everybody shares, with a namespace table
// and fault glue of its own, and all of it visible.
#include "neighbour.nsmap"
#include "neighbourH.h"

#include <cstdio>
#include <string>

// The result of the runtime; what came back is in `reply`, or what the runtime says of the failure.
extern "C" __attribute__((visibility("default"))) int neighbour_echo(const char* url, const char* text,
                                                                     char* reply, unsigned long size)
{
    soap* context = soap_new();
    std::string answer;
    const int result = soap_call_ns__echo(context, url, "", text, answer);
    if (result != SOAP_OK) {
        soap_set_fault(context);
        const char** reason = soap_faultstring(context);
        answer = *reason ? *reason : "no reason";
    }
    std::snprintf(reply, size, "%s", answer.c_str());
    soap_destroy(context);
    soap_end(context);
    soap_free(context);
    return result;
}
