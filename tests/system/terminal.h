// A pseudo-terminal, a program on it, and what stands there in the end.
#ifndef SOAPWRAPPER_TESTS_SYSTEM_TERMINAL_H
#define SOAPWRAPPER_TESTS_SYSTEM_TERMINAL_H

#include <gmock/gmock.h>

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

struct TerminalSize {
    unsigned short rows = 24;
    unsigned short columns = 80;
};

struct TerminalRun {
    int exit_code = -1; // negative: ended by a signal
    std::string text;   // all that was written
};

// Runs a program to its end, with all three streams on a terminal where somebody types `keys`. The
// environment is this one's with the variables given.
inline TerminalRun on_terminal(std::vector<std::string> words,
                               const std::map<std::string, std::string>& environment,
                               const std::string& keys = {}, TerminalSize size = {})
{
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    const winsize window = {size.rows, size.columns, 0, 0};
    int terminal = -1;
    const pid_t id = forkpty(&terminal, nullptr, nullptr, &window);
    if (id < 0) throw std::runtime_error("no pseudo-terminal");
    if (id == 0) {
        for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
        execvp(pointers.front(), pointers.data());
        _exit(127);
    }
    TerminalRun run;
    EXPECT_EQ(write(terminal, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    char bytes[4096];
    for (ssize_t count = 0; (count = read(terminal, bytes, sizeof bytes)) > 0;) {
        run.text.append(bytes, static_cast<std::size_t>(count));
    }
    int status = 0;
    while (waitpid(id, &status, 0) < 0) continue;
    close(terminal);
    run.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    EXPECT_NE(run.exit_code, 127) << words.front();
    return run;
}

// The lines of the screen after all of this, without blanks at their ends and empty lines at the end. It is
// as wide as need be. Throws at what it doesn't know.
inline std::vector<std::string> screen_after(const std::string& text)
{
    std::vector<std::string> lines(1);
    std::size_t row = 0;
    std::size_t column = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r') {
            column = 0;
        } else if (text[i] == '\n') {
            if (++row == lines.size()) lines.emplace_back();
        } else if (text[i] == '\x1b') {
            std::size_t end = i + 2;
            while (end < text.size() && std::isdigit(static_cast<unsigned char>(text[end])) != 0) ++end;
            const std::string number = text.substr(i + 2, end - i - 2);
            const char command = end < text.size() ? text[end] : '\0';
            if (command == 'A') {
                row -= std::min(row, static_cast<std::size_t>(std::stoul(number)));
            } else if (command == 'K' || command == 'J') {
                lines[row].resize(std::min(column, lines[row].size()));
                if (command == 'J') lines.resize(row + 1);
            } else {
                throw std::runtime_error("the terminal doesn't know what to do");
            }
            i = end;
        } else {
            lines[row].resize(std::max(column + 1, lines[row].size()), ' ');
            lines[row][column++] = text[i];
        }
    }
    for (std::string& line : lines) line.erase(line.find_last_not_of(' ') + 1);
    while (!lines.empty() && lines.back().empty()) lines.pop_back();
    return lines;
}

#endif
