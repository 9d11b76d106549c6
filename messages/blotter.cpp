#include "messages/blotter.h"

#include "messages/known_secret.h"
#include "messages/lower_case.h"
#include "messages/markup.h"
#include "messages/read_text.h"
#include "messages/token_names.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace soapwrapper::messages
{
namespace
{

constexpr std::size_t kNowhere = std::string_view::npos;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr char kStandIn[] = "***";

std::string_view without_mark(std::string_view bytes)
{
    return bytes.substr(0, kByteOrderMark.size()) == kByteOrderMark ? bytes.substr(kByteOrderMark.size())
                                                                    : bytes;
}

// That an XML declaration tells; empty if it tells none.
std::string encoding_of(std::string_view xml)
{
    if (xml.substr(0, 5) != "<?xml") return {};
    const std::string declaration = lower_case(xml.substr(0, xml.find("?>")));
    const std::size_t name = declaration.find("encoding");
    const std::size_t begin = name == kNowhere ? kNowhere : declaration.find_first_of("\"'", name);
    if (begin == kNowhere) return {};
    const std::size_t end = declaration.find(declaration[begin], begin + 1);
    return declaration.substr(begin + 1, end == kNowhere ? kNowhere : end - begin - 1);
}

// In an encoding in which the names of elements are seen as they are.
bool is_readable_xml(std::string_view bytes)
{
    const std::string_view xml = without_blanks_around(without_mark(bytes));
    if (bytes.find('\0') != kNowhere || (!xml.empty() && xml.front() != '<')) return false;
    const std::string encoding = encoding_of(xml);
    for (const char* known : {"", "utf-8", "iso-8859-1", "us-ascii", "ascii", "latin1"}) {
        if (encoding == known) return true;
    }
    return false;
}

std::string not_kept(const char* why, std::size_t bytes)
{
    return std::string("(") + why + ", " + std::to_string(bytes) + " bytes)";
}

// Elements whose content is secret.
enum class Secret { kCredential, kToken, kArguments };

std::optional<Secret> secret_in(std::string_view name)
{
    constexpr std::size_t kLongest = 8; // of these names
    if (without_prefix(name).size() > kLongest) return std::nullopt;
    const std::string local = lower_case(without_prefix(name));
    if (local == "cert" || local == "password") return Secret::kCredential;
    if (local == "token") return Secret::kToken;
    if (local == "args") return Secret::kArguments;
    return std::nullopt;
}

// To an element of any name, which then has the content: as "href" or "ref".
bool refers_elsewhere(const Tag& tag)
{
    return lower_case(tag.attributes).find("ref") != std::string::npos;
}

bool says_nil(std::string_view attributes)
{
    const std::size_t equals = attributes.find('=');
    const std::string_view name = without_blanks_around(attributes.substr(0, equals));
    const std::string_view value =
        equals == kNowhere ? "" : without_blanks_around(attributes.substr(equals + 1));
    return without_prefix(name) == "nil" &&
           (value == "\"true\"" || value == "'true'" || value == "\"1\"" || value == "'1'");
}

// Where the content ends that begins there and where the end tag begins; the text's end, unless it is sure.
// What is nested must be so without a mistake: another reader might see another end.
Part content_of(std::string_view xml, std::size_t begin, std::string_view name)
{
    const std::string own = lower_case(without_prefix(name));
    std::size_t depth = 0;
    std::size_t depth_of_others = 0;
    for (std::size_t at = xml.find('<', begin); at != kNowhere; at = xml.find('<', at)) {
        const Tag tag = tag_at(xml, at);
        if (tag.end == kNowhere) break;
        const bool is_own = lower_case(without_prefix(tag.name)) == own;
        std::size_t& nested = is_own ? depth : depth_of_others;
        if (tag.kind == TagKind::kStart && !(tag.is_closed && are_sound(tag.attributes))) ++nested;
        if (tag.kind == TagKind::kEnd) {
            if (nested == 0) {
                if (is_own && depth_of_others == 0) return {begin, at};
                break;
            }
            --nested;
        }
        at = tag.end;
    }
    return {begin, xml.size()};
}

// A volume's two texts, without the user and the password that may stand between them.
std::string arguments_of(std::string_view content)
{
    if (content.find('<') != kNowhere) return kStandIn;
    const ReadText text = read_text(content);
    const auto blank = std::find_if(text.bytes.begin(), text.bytes.end(), is_blank);
    if (blank == text.bytes.end() || text.bytes.compare(0, 6, "<?xml ") == 0) return std::string(content);
    const auto at = static_cast<std::size_t>(blank - text.bytes.begin());
    const std::size_t second = text.bytes.rfind(";/");
    const bool has_second = second != std::string::npos && second > at;
    const Part between{text.origins[at].begin, has_second ? text.origins[second].begin : content.size()};
    return with_parts_blotted(content, {between}, std::string(" ") + kStandIn);
}

class Scanner
{
  public:
    Scanner(std::string_view xml, TokenNames& tokens) : xml_(xml), tokens_(tokens) {}

    // Nothing, if what is secret may stand anywhere.
    std::optional<std::string> blotted()
    {
        while (at_ < xml_.size()) {
            const std::size_t bracket = std::min(xml_.find('<', at_), xml_.size());
            result_ += xml_.substr(at_, bracket - at_);
            at_ = bracket;
            if (at_ == xml_.size()) break;
            // In a comment or a section as well: whatever looks like one of them is taken for it.
            const TagBegin begin = tag_begin_at(xml_, at_);
            const std::optional<Secret> secret = secret_in(begin.name);
            if (begin.kind != TagKind::kStart || !secret) {
                result_ += xml_[at_++];
                continue;
            }
            const Tag tag = tag_at(xml_, at_);
            if (refers_elsewhere(tag)) return std::nullopt;
            blot(tag, *secret);
        }
        return std::move(result_);
    }

  private:
    void blot(const Tag& tag, Secret secret)
    {
        result_.append("<").append(tag.name);
        if (tag.end == kNowhere) {
            result_.append(">").append(kStandIn);
            at_ = xml_.size();
            return;
        }
        const bool is_closed = tag.is_closed && are_sound(tag.attributes);
        if (says_nil(tag.attributes)) result_.append(" ").append(tag.attributes);
        result_ += is_closed ? "/>" : ">";
        at_ = tag.end;
        if (is_closed) return;
        const Part content = content_of(xml_, tag.end, tag.name);
        result_ += stand_in(xml_.substr(content.begin, content.end - content.begin), secret,
                            content.end < xml_.size());
        at_ = content.end;
    }

    std::string stand_in(std::string_view content, Secret secret, bool is_whole)
    {
        if (content.empty()) return {};
        const bool is_plain = is_whole && content.find_first_of("<&") == kNowhere;
        if (secret == Secret::kToken && is_plain) return tokens_.name_of(without_blanks_around(content));
        if (secret == Secret::kArguments && is_whole) return arguments_of(content);
        return kStandIn;
    }

    std::string_view xml_;
    TokenNames& tokens_;
    std::size_t at_ = 0;
    std::string result_;
};

} // namespace

std::string Blotter::message(std::string_view bytes, bool is_cut)
{
    if (!is_readable_xml(bytes)) return not_kept("not XML", bytes.size());
    const std::optional<std::string> xml = Scanner(bytes, tokens_).blotted();
    if (!xml) return not_kept("refers to a secret", bytes.size());
    return text(*xml, is_cut);
}

std::string Blotter::text(std::string_view bytes, bool is_cut)
{
    std::string result(bytes);
    for (const KnownSecret& secret : secrets_) result = secret.blotted(result, is_cut);
    return tokens_.blotted(result, is_cut);
}

} // namespace soapwrapper::messages
