#include "messages/indented.h"

#include "messages/markup.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper::messages
{
namespace
{

constexpr std::size_t kDeepest = 32;
constexpr std::size_t kIndentation = 2;

class Indenter
{
  public:
    explicit Indenter(std::string_view xml) : xml_(xml) {}

    // False if it isn't well-formed as far as it matters here.
    bool run()
    {
        std::size_t at = 0;
        while (at < xml_.size()) {
            const std::size_t bracket = std::min(xml_.find('<', at), xml_.size());
            if (!add_text(xml_.substr(at, bracket - at))) return false;
            if (bracket == xml_.size()) break;
            const Tag tag = tag_at(xml_, bracket);
            if (tag.end == std::string_view::npos) return false;
            if (!add(tag, xml_.substr(bracket, tag.end - bracket))) return false;
            at = tag.end;
        }
        return open_.empty();
    }

    std::string& result() { return result_; }

  private:
    bool add_text(std::string_view text)
    {
        const bool is_empty = without_blanks_around(text).empty();
        if (open_.empty()) return is_empty;
        blanks_ = is_empty ? text : std::string_view();
        if (!is_empty) {
            result_ += text;
            is_after_text_ = true;
        }
        return true;
    }

    bool add(const Tag& tag, std::string_view bytes)
    {
        if (tag.kind == TagKind::kEnd) {
            if (open_.empty() || open_.back() != tag.name) return false;
            open_.pop_back();
            if (is_after_start_) {
                result_ += blanks_;
            } else if (!is_after_text_) {
                begin_line();
            }
            result_ += bytes;
            is_after_start_ = is_after_text_ = false;
            return true;
        }
        const bool is_section = bytes.substr(0, 3) == "<![";
        if (!is_after_text_ && !is_section) begin_line();
        result_ += bytes;
        is_after_start_ = false;
        is_after_text_ = is_after_text_ || is_section;
        if (tag.kind == TagKind::kStart && !tag.is_closed) {
            open_.push_back(tag.name);
            is_after_start_ = true;
            is_after_text_ = false;
        }
        return open_.size() <= kDeepest;
    }

    void begin_line()
    {
        if (!result_.empty()) result_ += '\n';
        result_.append(open_.size() * kIndentation, ' ');
    }

    std::string_view xml_;
    std::string result_;
    std::vector<std::string_view> open_; // names of elements
    std::string_view blanks_;            // ahead of the tag
    bool is_after_start_ = false;
    bool is_after_text_ = false; // in the same element: no line may begin in a text
};

} // namespace

std::string indented(std::string_view xml)
{
    Indenter indenter(xml);
    return indenter.run() ? std::move(indenter.result()) : std::string(xml);
}

} // namespace soapwrapper::messages
