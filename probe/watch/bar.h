// Progress as a bar of characters that every terminal has.
#ifndef SOAPWRAPPER_PROBE_WATCH_BAR_H
#define SOAPWRAPPER_PROBE_WATCH_BAR_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace soapwrapper::probe
{

// In percent, rounded down, and between 0 and 100; empty, if there is no whole.
std::string percentage(std::int64_t part, std::int64_t whole);

// "[#####...............]  25%"; empty, if there is no whole.
std::string bar(std::int64_t part, std::int64_t whole);

// For what is under way, and nobody knows how far: the mark is at another place at each step.
std::string moving_mark(std::size_t step);

// For what has come to its end.
std::string full_bar();

} // namespace soapwrapper::probe

#endif
