#include "service/contract/service_guide.h"

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper
{

bool GuideTexts::add(const std::string& name, const std::string& text)
{
    return entries_.emplace(name, Entry{text}).second;
}

const std::string* GuideTexts::find(const std::string& name)
{
    const auto found = entries_.find(name);
    if (found == entries_.end()) return nullptr;
    found->second.was_asked_for = true;
    return &found->second.text;
}

std::vector<std::string> GuideTexts::never_asked_for() const
{
    std::vector<std::string> names;
    for (const auto& [name, entry] : entries_) {
        if (!entry.was_asked_for) names.push_back(name);
    }
    return names;
}

namespace
{

bool begins_with(std::string_view text, std::string_view start)
{
    return text.substr(0, start.size()) == start;
}

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// Without the marks of Markdown that the guide has: `code`, [text](link) and \|.
std::string plain(std::string_view markdown)
{
    std::string text;
    for (std::size_t i = 0; i < markdown.size(); ++i) {
        const char c = markdown[i];
        if (static_cast<unsigned char>(c) < ' ') throw std::runtime_error("a control character");
        if (c == '`' || (c == '\\' && markdown.substr(i + 1, 1) == "|")) continue;
        const std::size_t label_end = c == '[' ? markdown.find("](", i) : std::string_view::npos;
        const std::size_t link_end = markdown.find(')', label_end);
        if (label_end == std::string_view::npos || link_end == std::string_view::npos) {
            text += c;
            continue;
        }
        text += plain(markdown.substr(i + 1, label_end - i - 1));
        i = link_end;
    }
    return text;
}

// Of "| one | two |", whose texts may hold \|.
std::vector<std::string_view> cells_of(std::string_view row)
{
    std::vector<std::string_view> cells;
    std::size_t start = 1;
    for (std::size_t i = 1; i < row.size(); ++i) {
        if (row[i] != '|' || row[i - 1] == '\\') continue;
        cells.push_back(trimmed(row.substr(start, i - start)));
        start = i + 1;
    }
    if (start != row.size()) throw std::runtime_error("a row without an end");
    return cells;
}

// Of "`one`, `two`".
std::vector<std::string> names_of(std::string_view cell)
{
    std::vector<std::string> names;
    for (;;) {
        const std::size_t end = cell.find('`', 1);
        if (cell.empty() || cell.front() != '`' || end == std::string_view::npos || end == 1) {
            throw std::runtime_error("a row is to begin with a name, as in | `name` | text |");
        }
        names.emplace_back(cell.substr(1, end - 1));
        cell.remove_prefix(end + 1);
        if (cell.empty()) return names;
        if (!begins_with(cell, ", ")) throw std::runtime_error("names are to have a comma between them");
        cell.remove_prefix(2);
    }
}

class Reader
{
  public:
    ServiceGuide read(std::string_view markdown)
    {
        for (std::size_t number = 1; !markdown.empty(); ++number) {
            const std::size_t end = markdown.find('\n');
            try {
                read_line(markdown.substr(0, end));
            } catch (const std::runtime_error& trouble) {
                throw std::runtime_error("line " + std::to_string(number) + ": " + trouble.what());
            }
            markdown.remove_prefix(end == std::string_view::npos ? markdown.size() : end + 1);
        }
        end_paragraph();
        if (guide_.service.empty()) throw std::runtime_error("there is no paragraph below the title");
        return std::move(guide_);
    }

  private:
    void read_line(std::string_view line)
    {
        if (begins_with(line, "#")) {
            end_paragraph();
            read_heading(line);
        } else if (begins_with(line, "|")) {
            read_row(line);
        } else {
            table_ = Table::kNone;
            if (trimmed(line).empty()) {
                end_paragraph();
            } else if (paragraph_) {
                if (!text_.empty()) text_ += ' ';
                text_ += plain(trimmed(line));
            }
        }
    }

    void read_heading(std::string_view line)
    {
        table_ = Table::kNone;
        if (begins_with(line, "### ")) {
            const std::string_view title = line.substr(4);
            type_ = section_ == "Types" && begins_with(title, "`") ? names_of(title).front() : "";
            paragraph_ = !type_.empty();
            return;
        }
        type_.clear();
        section_ = begins_with(line, "## ") ? line.substr(3) : std::string_view();
        paragraph_ = begins_with(line, "# ");
    }

    // Of the service, or of a type.
    void end_paragraph()
    {
        if (!paragraph_ || text_.empty()) return;
        if (type_.empty()) {
            guide_.service = text_;
        } else {
            add(guide_.types, type_);
        }
        paragraph_ = false;
        text_.clear();
    }

    void add(GuideTexts& texts, const std::string& name)
    {
        if (!texts.add(name, text_)) throw std::runtime_error(name + " is told twice");
    }

    void read_row(std::string_view line)
    {
        if (table_ == Table::kNone) {
            texts_ = texts_under(line);
            table_ = Table::kHead;
            return;
        }
        if (table_ == Table::kHead) {
            table_ = Table::kRows; // of the line that stands between
            return;
        }
        if (!texts_) return;
        const std::vector<std::string_view> cells = cells_of(line);
        if (cells.size() != 2) throw std::runtime_error("a row is to have two cells");
        text_ = plain(cells[1]);
        if (text_.empty()) throw std::runtime_error("a row without a text");
        for (const std::string& name : names_of(cells[0])) {
            add(*texts_, type_.empty() ? name : type_ + "." + name);
        }
        text_.clear();
    }

    // What a table of this head tells; null if it is for readers alone.
    GuideTexts* texts_under(std::string_view head)
    {
        const bool is_of_elements = head == "| Element | Meaning |";
        if (section_ == "Operations" && head == "| Operation | What it does |") return &guide_.operations;
        if (section_ == "Elements of messages" && is_of_elements) return &guide_.message_elements;
        if (section_ != "Types") return nullptr;
        const bool fits = type_.empty() ? head == "| Type | Meaning |" : is_of_elements;
        return fits ? &guide_.types : nullptr;
    }

    enum class Table { kNone, kHead, kRows };

    ServiceGuide guide_;
    std::string_view section_; // of the second level
    std::string type_;         // whose heading is above; empty elsewhere
    bool paragraph_ = false;   // the next one is read
    std::string text_;
    Table table_ = Table::kNone;
    GuideTexts* texts_ = nullptr;
};

} // namespace

ServiceGuide read_service_guide(std::string_view markdown)
{
    return Reader().read(markdown);
}

} // namespace soapwrapper
