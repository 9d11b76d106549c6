// A login that is part of a URL is nobody's business who reads the probe's output.
#ifndef SOAPWRAPPER_PROBE_OUTPUT_URL_LOGIN_H
#define SOAPWRAPPER_PROBE_OUTPUT_URL_LOGIN_H

#include <string>
#include <string_view>

namespace soapwrapper::probe
{

// A URL, without what stands ahead of the host; of what is no URL, without all that stands ahead of the last
// "@".
std::string shown_url(const std::string& url);

// A text, in which URLs may stand, without what stands ahead of their hosts. White space ends a URL, and
// nothing else does: what a quote encloses may be a password with a quote in it.
std::string without_url_logins(std::string_view text);

} // namespace soapwrapper::probe

#endif
