// A login that everybody on its way can read.
#ifndef SOAPWRAPPER_PROBE_LOGIN_CLEAR_LOGIN_H
#define SOAPWRAPPER_PROBE_LOGIN_CLEAR_LOGIN_H

#include "probe/library/session.h"

#include <optional>
#include <string>

namespace soapwrapper::probe
{

// Whether the library uses TLS at this URL: discovery's choice decides and not the URL, which has a say only
// against it. `selection` is the library's line on that choice; empty without discovery.
bool uses_tls(const std::string& selection, const std::string& url);

// The request by which the credential went to a service in the call that has just been made. None: it didn't
// leave the machine, or the library doesn't tell where to.
std::optional<LoggedRequest> sent_login(const Session& session);

// Warns if the call that has just been made took the credential over a connection without TLS; once in a run.
void warn_of_clear_login(const Session& session, const std::string& selection);

} // namespace soapwrapper::probe

#endif
