#include "simulator/replay/request_key.h"

#include "messages/blotter.h"
#include "messages/markup.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace soapwrapper::simulator
{
namespace
{

using messages::Tag;
using messages::TagKind;

constexpr std::size_t kNowhere = std::string_view::npos;

bool is_ignored(std::string_view name)
{
    return name == "sd" || name == "cred" || name == "token";
}

// As operations are named.
bool is_plain(std::string_view name)
{
    constexpr std::size_t kLongest = 64;
    return !name.empty() && name.size() <= kLongest && std::all_of(name.begin(), name.end(), [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
    });
}

// The blotter numbers tokens in the order in which it meets them.
std::string without_token_numbers(std::string_view text)
{
    constexpr std::string_view kBegin = "[token ";
    std::string result;
    for (std::size_t found = text.find(kBegin); found != kNowhere; found = text.find(kBegin)) {
        std::size_t end = found + kBegin.size();
        result += text.substr(0, end);
        while (end < text.size() && std::isdigit(static_cast<unsigned char>(text[end]))) ++end;
        text.remove_prefix(end);
    }
    return result.append(text);
}

// A server is asked for by the host under which it is reached, and the replay's is another.
std::string_view without_host(std::string_view text)
{
    constexpr std::string_view kServerName = "Network_";
    const std::size_t colon = text.find(':');
    return text.substr(0, kServerName.size()) == kServerName && colon != kNowhere ? text.substr(0, colon + 1)
                                                                                  : text;
}

class KeyMaker
{
  public:
    explicit KeyMaker(std::string_view xml) : xml_(xml) {}

    RequestKey make()
    {
        for (std::size_t at = 0; at < xml_.size();) {
            const std::size_t bracket = std::min(xml_.find('<', at), xml_.size());
            put_text(xml_.substr(at, bracket - at));
            if (bracket == xml_.size()) break;
            const Tag tag = messages::tag_at(xml_, bracket);
            if (tag.kind != TagKind::kOther) put_tag(tag);
            at = std::min(tag.end, xml_.size());
        }
        return std::move(key_);
    }

  private:
    void put_text(std::string_view text)
    {
        if (!in_body_ || ignored_ > 0) return;
        key_.text += without_host(messages::without_blanks_around(text));
    }

    void put_tag(const Tag& tag)
    {
        const std::string_view name = messages::without_prefix(tag.name);
        const bool begins = tag.kind == TagKind::kStart;
        if (!in_body_) {
            in_body_ = begins && name == "Body";
            return;
        }
        if (begins && key_.operation == "-" && is_plain(name)) key_.operation = name;
        if (ignored_ == 0) put_name(tag, name);
        if (tag.is_closed) return;
        if (begins && (ignored_ > 0 || is_ignored(name))) ++ignored_;
        if (!begins && ignored_ > 0) --ignored_;
    }

    void put_name(const Tag& tag, std::string_view name)
    {
        key_.text.append(tag.kind == TagKind::kStart ? "<" : "</").append(name);
        if (tag.attributes.find("nil") != kNowhere) key_.text += " nil";
        key_.text += tag.is_closed ? "/>" : ">";
    }

    std::string_view xml_;
    bool in_body_ = false;
    std::size_t ignored_ = 0; // elements that are open, of one whose content is ignored
    RequestKey key_;
};

} // namespace

RequestKey request_key(std::string_view body)
{
    const std::string blotted = messages::Blotter("").message(body, false);
    return KeyMaker(without_token_numbers(blotted)).make();
}

} // namespace soapwrapper::simulator
