// What a program has written to a terminal.
#ifndef SOAPWRAPPER_TESTS_PARTS_TERMINAL_TEXT_H
#define SOAPWRAPPER_TESTS_PARTS_TERMINAL_TEXT_H

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstddef>
#include <string>

// All that was written to `terminal`, read from its other end: the system hands it over in its own time, and
// a mark behind it tells its end.
inline std::string taken_from_terminal(int reader, int terminal)
{
    constexpr char kMark = '\x1e';
    EXPECT_EQ(write(terminal, &kMark, 1), 1);
    std::string text;
    while (text.empty() || text.back() != kMark) {
        char bytes[4096];
        const ssize_t count = read(reader, bytes, sizeof bytes);
        if (count <= 0) return text;
        text.append(bytes, static_cast<std::size_t>(count));
    }
    text.pop_back();
    return text;
}

#endif
