#ifndef SOAPWRAPPER_PROBE_WIRE_TRACE_TEXT_H
#define SOAPWRAPPER_PROBE_WIRE_TRACE_TEXT_H

#include "messages/blotter.h"
#include "probe/wire/exchange.h"

#include <cstdint>
#include <string>

namespace soapwrapper::probe::wire
{

// An exchange for people: a line about it, then "> " ahead of the request's lines, "< " ahead of the reply's
// and
// "! " ahead of what went wrong. What is secret is blotted out, and nothing in it does harm to a terminal.
std::string trace_text(std::uint64_t number, const Exchange& exchange, messages::Blotter& blotter);

} // namespace soapwrapper::probe::wire

#endif
