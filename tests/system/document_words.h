// What a program's documents and its help tell of.
#ifndef SOAPWRAPPER_TESTS_SYSTEM_DOCUMENT_WORDS_H
#define SOAPWRAPPER_TESTS_SYSTEM_DOCUMENT_WORDS_H

#include "tests/system/probe_process.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>

// The words of `text` that begin so and go on with characters of `alphabet`, at least one.
inline std::set<std::string> words(const std::string& text, const std::string& beginning,
                                   const char* alphabet)
{
    std::set<std::string> found;
    for (std::size_t at = text.find(beginning); at != std::string::npos; at = text.find(beginning, at + 1)) {
        const std::size_t rest = at + beginning.size();
        const std::size_t end = std::min(text.find_first_not_of(alphabet, rest), text.size());
        if (end > rest) found.insert(text.substr(at, end - at));
    }
    return found;
}

constexpr char kSmallLetters[] = "abcdefghijklmnopqrstuvwxyz-";

// A manual page as it reads, but for the requests at the beginning of lines.
inline std::string read_manual(const std::filesystem::path& page)
{
    std::string text = read_file(page);
    const auto is_mark = [](char c) { return c == '\\' || c == '"'; };
    text.erase(std::remove_if(text.begin(), text.end(), is_mark), text.end());
    return text;
}

#endif
