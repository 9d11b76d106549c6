// A command line as it was typed into bash, and texts as they are to be written there.
#ifndef SOAPWRAPPER_PROBE_COMPLETION_SHELL_WORDS_H
#define SOAPWRAPPER_PROBE_COMPLETION_SHELL_WORDS_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::probe
{

struct ShellWord {
    std::string text;           // without its quoting
    bool is_literal = true;     // false: bash would put something else in its place, which isn't known here
    std::size_t begin = 0;      // where it begins in the line
    char open_quote = '\0';     // the quote that its end is within
    bool is_redirected = false; // a file that the shell reads or writes, and no argument

    // A word that nothing has been typed of.
    bool empty() const { return text.empty() && is_literal; }
};

// The words of a line up to the cursor; the last one is the word at the cursor, which may be empty. Nothing
// is expanded but a tilde ahead of a slash, and nothing is executed.
std::vector<ShellWord> split_shell_line(std::string_view line);

// `text` as it has to be typed behind `typed`, a part of the same word: nothing in it means anything to bash.
// None, if the word can't begin with what was typed.
std::optional<std::string> rest_of_word(const std::string& text, std::string_view typed);

} // namespace soapwrapper::probe

#endif
