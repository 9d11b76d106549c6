#include "probe/completion/shell_words.h"

#include <cctype>
#include <cstddef>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

bool is_one_of(char byte, std::string_view bytes)
{
    return bytes.find(byte) != std::string_view::npos;
}

bool is_blank(char byte)
{
    return is_one_of(byte, " \t\n");
}

class Splitter
{
  public:
    explicit Splitter(std::string_view line) : line_(line) {}

    std::vector<ShellWord> split()
    {
        bool redirected = false;
        for (;;) {
            while (at_ < line_.size() && is_blank(line_[at_])) ++at_;
            if (skip_redirection()) {
                redirected = true;
                continue;
            }
            word_ = ShellWord();
            word_.begin = at_;
            word_.is_redirected = std::exchange(redirected, false);
            read_word();
            words_.push_back(std::move(word_));
            if (at_ >= line_.size()) return std::move(words_);
        }
    }

  private:
    char next(std::size_t ahead = 0) const { return at_ + ahead < line_.size() ? line_[at_ + ahead] : '\0'; }

    // The sign of one, such as "2>>"; what follows is its file. A process substitution is a word.
    bool skip_redirection()
    {
        std::size_t length = 0;
        while (std::isdigit(static_cast<unsigned char>(next(length))) != 0) ++length;
        if (next(length) == '&' && is_one_of(next(length + 1), "<>")) ++length;
        if (!is_one_of(next(length), "<>") || next(length) == '\0' || next(length + 1) == '(') return false;
        at_ += length;
        while (next() != '\0' && is_one_of(next(), "<>&|")) ++at_;
        return true;
    }

    void read_word()
    {
        expand_tilde();
        while (at_ < line_.size()) {
            const char byte = line_[at_];
            if (take_substitution()) continue;
            if (word_.open_quote == '\0' && (is_blank(byte) || is_one_of(byte, "<>"))) return;
            take(byte);
        }
    }

    void expand_tilde()
    {
        const char* const home = std::getenv("HOME");
        if (!home || next() != '~' || next(1) != '/') return;
        word_.text = home;
        ++at_;
    }

    // "$(...)", "<(...)" and the like, to the parenthesis that closes it.
    bool take_substitution()
    {
        const bool begins = word_.open_quote == '"' ? next() == '$' : is_one_of(next(), "$<>");
        if (word_.open_quote == '\'' || !begins || next(1) != '(') return false;
        word_.is_literal = false;
        at_ += 2;
        for (std::size_t depth = 1; depth > 0 && at_ < line_.size(); ++at_) {
            if (next() == '(') ++depth;
            if (next() == ')') --depth;
        }
        return true;
    }

    void take(char byte)
    {
        ++at_;
        if (byte == word_.open_quote) {
            word_.open_quote = '\0';
        } else if (word_.open_quote == '\'') {
            word_.text += byte;
        } else if (byte == '"' || (byte == '\'' && word_.open_quote == '\0')) {
            word_.open_quote = byte;
        } else if (byte == '\\') {
            take_escaped();
        } else {
            if (byte == '$' || byte == '`') word_.is_literal = false;
            word_.text += byte;
        }
    }

    // Within double quotes a backslash stands for itself, but ahead of these few.
    void take_escaped()
    {
        if (at_ >= line_.size()) return;
        if (word_.open_quote == '"' && !is_one_of(next(), "$`\"\\\n")) word_.text += '\\';
        if (next() != '\n') word_.text += next();
        ++at_;
    }

    const std::string_view line_;
    std::size_t at_ = 0;
    ShellWord word_;
    std::vector<ShellWord> words_;
};

// Outside of quotes.
bool needs_backslash(char byte)
{
    return std::isalnum(static_cast<unsigned char>(byte)) == 0 && !is_one_of(byte, "_-./,:=@%+") &&
           static_cast<unsigned char>(byte) < 0x80U;
}

std::string quoted_byte(char byte, char open_quote)
{
    if (open_quote == '\'') return byte == '\'' ? "'\\''" : std::string(1, byte);
    if (open_quote == '"') {
        // A shell with a history looks for it within double quotes too, where a backslash would stay.
        if (byte == '!') return "\"\\!\"";
        return is_one_of(byte, "$`\"\\") ? std::string("\\") + byte : std::string(1, byte);
    }
    return needs_backslash(byte) ? std::string("\\") + byte : std::string(1, byte);
}

} // namespace

std::vector<ShellWord> split_shell_line(std::string_view line)
{
    return Splitter(line).split();
}

std::optional<std::string> rest_of_word(const std::string& text, std::string_view typed)
{
    ShellWord begun;
    if (!typed.empty()) begun = split_shell_line(typed).front();
    if (!begun.is_literal || text.compare(0, begun.text.size(), begun.text) != 0) return std::nullopt;
    std::string rest;
    for (const char byte : text.substr(begun.text.size())) rest += quoted_byte(byte, begun.open_quote);
    return rest;
}

} // namespace soapwrapper::probe
