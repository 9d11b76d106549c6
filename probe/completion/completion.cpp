#include "probe/completion/completion.h"

#include "probe/completion/command_tree.h"
#include "probe/completion/embedded_file.h"
#include "probe/completion/shell_words.h"
#include "probe/completion/values.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

bool begins_with(std::string_view text, std::string_view beginning)
{
    return text.substr(0, beginning.size()) == beginning;
}

// What can't be typed, would steer a terminal, or would be taken for an option, isn't offered: names are the
// service's.
bool is_fit(const std::string& word)
{
    constexpr std::string_view kReplaced = "\xEF\xBF\xBD";
    return !word.empty() && word.find(kReplaced) == std::string::npos &&
           std::none_of(word.begin(), word.end(),
                        [](char byte) { return static_cast<unsigned char>(byte) < 0x20U || byte == 0x7F; });
}

void write_head(const Values& values, std::ostream& stream)
{
    stream << (values.are_files ? "files" : values.are_open ? "open" : "words") << '\n';
}

Values values_at(const CLI::App& program, const std::vector<std::string>& words, const std::string& current)
{
    const Place place = find_place(program, words, current);
    Values values;
    values.words = place.choices;
    if (!place.value.empty()) values = values_of(place, current.substr(place.lead.size()));
    std::set<std::string> seen;
    std::vector<Choice> fit;
    for (Choice& each : values.words) {
        const bool is_option = !each.text.empty() && each.text.front() == '-';
        if (!is_fit(each.text) || (is_option && !place.value.empty()) || !seen.insert(each.text).second)
            continue;
        each.text.insert(0, place.lead);
        fit.push_back(std::move(each));
    }
    values.words = std::move(fit);
    return values;
}

// The last word may be taken back by what bash itself puts in its place.
void write_for_bash(const CLI::App& program, const std::string& line, const std::string& replaced,
                    std::ostream& stream)
{
    std::vector<ShellWord> typed = split_shell_line(line);
    const ShellWord current = typed.back();
    const std::string_view raw = std::string_view(line).substr(current.begin);
    if (!current.is_literal || raw.size() < replaced.size() ||
        raw.substr(raw.size() - replaced.size()) != replaced) {
        return;
    }
    if (current.is_redirected) {
        stream << "files\n";
        return;
    }
    std::vector<std::string> words;
    for (std::size_t i = 1; i + 1 < typed.size(); ++i) {
        if (!typed[i].is_redirected) words.push_back(typed[i].text);
    }
    const Values values = values_at(program, words, current.text);
    write_head(values, stream);
    const std::string_view kept = raw.substr(0, raw.size() - replaced.size());
    for (const Choice& each : values.words) {
        if (!begins_with(each.text, current.text)) continue;
        if (const auto rest = rest_of_word(each.text, kept)) stream << *rest << '\n';
    }
}

// As much of a description as fits beside a word.
std::string short_description(const std::string& text)
{
    return text.substr(0, std::min(text.find("; "), text.find(". ")));
}

void write_for_others(const CLI::App& program, std::vector<std::string> words, std::ostream& stream)
{
    const std::string current = words.empty() ? "" : words.back();
    if (!words.empty()) words.pop_back();
    const Values values = values_at(program, words, current);
    write_head(values, stream);
    for (const Choice& each : values.words)
        stream << each.text << '\t' << short_description(each.description) << '\n';
}

} // namespace

std::string_view completion_script(const std::string& shell)
{
    const std::string name = shell == "zsh" ? "_soapwrapper-probe" : "soapwrapper-probe." + shell;
    for (const EmbeddedFile& each : completion_scripts()) {
        if (each.name == name) return each.bytes;
    }
    return {};
}

void write_completions(const CLI::App& program, const std::vector<std::string>& words, std::ostream& stream)
{
    if (words.size() == 3 && words.front() == "bash") {
        write_for_bash(program, words[1], words[2], stream);
    } else if (!words.empty() && words.front() == "words") {
        write_for_others(program, {words.begin() + 1, words.end()}, stream);
    }
}

} // namespace soapwrapper::probe
