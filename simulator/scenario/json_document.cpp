#include "simulator/scenario/json_document.h"

#include "simulator/scenario/findings.h"
#include "simulator/scenario/text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

using Json = nlohmann::json;

// A scenario has no more than ten levels.
constexpr std::size_t kDeepest = 64;

// Looks a document over that is not in memory yet: one that is nested deep takes many times its own length
// there. The names are the parser's.
class Overview
{
  public:
    using number_integer_t = Json::number_integer_t;
    using number_unsigned_t = Json::number_unsigned_t;
    using number_float_t = Json::number_float_t;
    using string_t = Json::string_t;
    using binary_t = Json::binary_t;

    Overview(std::string_view json, Findings& findings) : json_(json), findings_(findings) {}

    bool null() { return value(); }
    bool boolean(bool) { return value(); }
    bool number_integer(number_integer_t) { return value(); }
    bool number_unsigned(number_unsigned_t) { return value(); }
    bool number_float(number_float_t, const string_t&) { return value(); }
    bool string(string_t&) { return value(); }
    bool binary(binary_t&) { return value(); }
    bool start_object(std::size_t) { return enter(false); }
    bool start_array(std::size_t) { return enter(true); }
    bool end_object() { return leave(); }
    bool end_array() { return leave(); }
    bool key(string_t& name);
    bool parse_error(std::size_t position, const std::string& token, const Json::exception& error);

    bool is_too_deep() const { return is_too_deep_; }

  private:
    struct Level {
        bool is_array;
        std::size_t entries;
        std::string member;
        std::set<std::string> members;
    };

    bool value();
    bool enter(bool is_array);
    bool leave();
    std::string path() const;

    std::string_view json_;
    Findings& findings_;
    std::size_t depth_ = 0;
    bool is_too_deep_ = false;
    std::vector<Level> levels_; // the outer ones
};

bool Overview::value()
{
    if (depth_ == levels_.size() && !levels_.empty()) ++levels_.back().entries;
    return true;
}

// The syntax is looked at to the end: an error in it counts for more.
bool Overview::enter(bool is_array)
{
    value();
    if (++depth_ > kDeepest) {
        is_too_deep_ = true;
    } else {
        levels_.push_back({is_array, 0, {}, {}});
    }
    return true;
}

bool Overview::leave()
{
    if (depth_-- == levels_.size()) levels_.pop_back();
    return true;
}

bool Overview::key(string_t& name)
{
    if (depth_ != levels_.size()) return true;
    Level& level = levels_.back();
    level.member = name;
    if (level.members.insert(name).second) return true;
    findings_.add_warning(path(), "an earlier member has that name already, and counts for nothing");
    return true;
}

// The parser's own text begins with its number for the error, and with a line and a column. It repeats what
// it has read, which may be long, and anything.
bool Overview::parse_error(std::size_t position, const std::string& /*token*/, const Json::exception& error)
{
    const std::string_view ahead = json_.substr(0, position == 0 ? 0 : position - 1);
    const auto line = 1 + std::count(ahead.begin(), ahead.end(), '\n');
    const std::size_t last_end = ahead.rfind('\n');
    const std::size_t column = ahead.size() - (last_end == std::string_view::npos ? 0 : last_end + 1) + 1;
    std::string_view why = error.what();
    for (const std::string_view number : {"] ", ": "}) {
        const std::size_t end = why.find(number);
        if (end != std::string_view::npos) why.remove_prefix(end + number.size());
    }
    findings_.add_error("line " + std::to_string(line) + ", column " + std::to_string(column),
                        printable(why));
    return false;
}

std::string Overview::path() const
{
    std::string path;
    for (const Level& level : levels_) {
        if (level.is_array) {
            path += "[" + std::to_string(level.entries - 1) + "]";
        } else {
            path += (path.empty() ? "" : ".") + printable(level.member);
        }
    }
    return path;
}

} // namespace

std::optional<Json> parse_json(std::string_view json, Findings& findings)
{
    Overview overview(json, findings);
    if (!Json::sax_parse(json, &overview)) return std::nullopt;
    if (overview.is_too_deep()) {
        findings.add_error("the document",
                           "no more than " + std::to_string(kDeepest) + " levels of nesting are expected");
        return std::nullopt;
    }
    return Json::parse(json);
}

} // namespace soapwrapper::simulator
