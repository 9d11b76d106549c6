// What became of a request to the service, read out of what the library logged of it.
#ifndef SOAPWRAPPER_PROBE_LIBRARY_FAILURE_H
#define SOAPWRAPPER_PROBE_LIBRARY_FAILURE_H

#include "probe/library/session.h"

#include <optional>
#include <string>

namespace soapwrapper::probe
{

// The one that says most of the service comes first.
enum class FailureKind {
    kFault,       // the service refused
    kUnusable,    // the service answered well, but with nothing that can be used
    kHttp,        // the answer is one of HTTP alone
    kUnreadable,  // the answer can't be read
    kTls,         // TLS failed, or couldn't be begun
    kInterrupted, // the connection ended early, or the answer took too long
    kTimedOut,    // there was no connection in time
    kRefused,
    kNoRoute,
    kUnresolved, // the host's name
    kForbidden   // by soapwrapper.conf, or by the URL itself: nothing was tried
};

struct Failure {
    FailureKind kind;
    int status;         // that the library gives it
    std::string what;   // for people; what the service wrote isn't in it, but for an HTTP status
    std::string advice; // what to do; may be empty
};

// None: the request didn't fail, or not on its way to the service and back.
std::optional<Failure> failure_of(const LoggedRequest& request);

// What is wrong, and what to do.
std::string meaning_of(const Failure& failure);

// One of several, with the service's reason, if it gave one. `text` is what was logged of it.
std::string summary_of(const Failure& failure, const std::string& text);

// Whether the request itself, and a credential in it, has left the machine.
bool was_sent(const Failure& failure);

} // namespace soapwrapper::probe

#endif
