// What the entries log, as tests expect it.
#ifndef SOAPWRAPPER_TESTS_KIT_ENTRY_LINES_H
#define SOAPWRAPPER_TESTS_KIT_ENTRY_LINES_H

#include "tests/kit/log_recorder.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace kit
{

using Lines = std::vector<LogLine>;

// The lines of an entry that every call of the service has.
inline LogLine enter(const std::string& entry)
{
    return record(entry + ": enter");
}
inline LogLine return_code(const std::string& entry, int code = 0)
{
    return record(entry + ": SOAP return code = " + std::to_string(code));
}
inline LogLine ok(const std::string& entry)
{
    return record(entry + ": STS_EOK");
}

// Lines of several pieces in one list.
inline Lines joined(std::initializer_list<Lines> pieces)
{
    Lines lines;
    for (const Lines& piece : pieces) lines.insert(lines.end(), piece.begin(), piece.end());
    return lines;
}
inline Lines operator+(const Lines& first, const Lines& second)
{
    return joined({first, second});
}

} // namespace kit

#endif
