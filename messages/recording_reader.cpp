#include "messages/recording_reader.h"

#include "messages/base64.h"
#include "messages/recording.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <istream>
#include <limits>
#include <map>
#include <optional>
#include <streambuf>
#include <string>
#include <utility>
#include <variant>

namespace soapwrapper::messages
{
namespace
{

using Json = nlohmann::json;
using Value = std::variant<std::string, std::int64_t, bool>;

constexpr int kLeastStatus = 100;
constexpr int kGreatestStatus = 999;
constexpr std::size_t kMostMembers = 64; // of a line

// A line, as members of one object: nothing in it is nested, so that no line costs more than its length. The
// names are the parser's.
class Members
{
  public:
    using number_integer_t = Json::number_integer_t;
    using number_unsigned_t = Json::number_unsigned_t;
    using number_float_t = Json::number_float_t;
    using string_t = Json::string_t;
    using binary_t = Json::binary_t;

    bool null() { return refuse("a member is null"); }
    bool boolean(bool value) { return put(value); }
    bool number_integer(number_integer_t value) { return put(std::int64_t{value}); }
    bool number_unsigned(number_unsigned_t value)
    {
        if (value > static_cast<number_unsigned_t>(std::numeric_limits<std::int64_t>::max()))
            return refuse("a number is too great");
        return put(static_cast<std::int64_t>(value));
    }
    bool number_float(number_float_t, const string_t&) { return refuse("a number isn't whole"); }
    bool string(string_t& value) { return put(std::move(value)); }
    bool binary(binary_t&) { return refuse("it isn't text"); }
    bool start_object(std::size_t)
    {
        return depth_++ == 0 || refuse("an object within the object isn't expected");
    }
    bool start_array(std::size_t) { return refuse("an array isn't expected"); }
    bool end_object() { return true; }
    bool end_array() { return true; }
    bool key(string_t& name)
    {
        name_ = std::move(name);
        return true;
    }
    bool parse_error(std::size_t position, const std::string&, const Json::exception&)
    {
        return refuse("it is no JSON from byte " + std::to_string(position) + " on");
    }

    const std::string& why_not() const { return why_not_; }

    template <class Type>
    const Type* find(const std::string& name)
    {
        const auto found = values_.find(name);
        return found == values_.end() ? nullptr : std::get_if<Type>(&found->second);
    }
    void refuse_missing(const std::string& name)
    {
        refuse("the member \"" + name + "\" is missing, or is of another type");
    }
    bool refuse(std::string why)
    {
        if (why_not_.empty()) why_not_ = std::move(why);
        return false;
    }

  private:
    bool put(Value value)
    {
        if (depth_ == 0) return refuse("it is no object");
        if (values_.size() == kMostMembers) return refuse("it has too many members");
        values_.insert_or_assign(name_, std::move(value));
        return true;
    }

    std::size_t depth_ = 0;
    std::string name_;
    std::map<std::string, Value> values_;
    std::string why_not_;
};

template <class Type>
Type required(Members& members, const std::string& name)
{
    const Type* value = members.find<Type>(name);
    if (!value) members.refuse_missing(name);
    return value ? *value : Type();
}

std::int64_t number_within(Members& members, const std::string& name, std::int64_t least,
                           std::int64_t greatest)
{
    const auto number = required<std::int64_t>(members, name);
    if (number >= least && number <= greatest) return number;
    members.refuse("the member \"" + name + "\" is out of range");
    return least;
}

std::string body_in(Members& members, const std::string& name)
{
    const std::string* encoded = members.find<std::string>(name + kBase64Suffix);
    if (!encoded) return required<std::string>(members, name);
    std::optional<std::string> bytes = bytes_of_base64(*encoded);
    if (!bytes) members.refuse("the member \"" + name + kBase64Suffix + "\" isn't Base64");
    return std::move(bytes).value_or("");
}

RecordingHead head_in(Members& members)
{
    RecordingHead head;
    if (required<std::int64_t>(members, "recording") != kRecordingVersion) {
        members.refuse("it isn't a recording of version " + std::to_string(kRecordingVersion));
    }
    head.program = required<std::string>(members, "program");
    head.library = required<std::string>(members, "library");
    head.time = required<std::string>(members, "time");
    return head;
}

RecordedExchange exchange_in(Members& members)
{
    constexpr std::int64_t kAny = std::numeric_limits<std::int64_t>::max();
    RecordedExchange exchange;
    exchange.number = static_cast<std::uint64_t>(number_within(members, "number", 0, kAny));
    exchange.time = required<std::string>(members, "time");
    exchange.microseconds = number_within(members, "microseconds", 0, kAny);
    exchange.url = required<std::string>(members, "url");
    exchange.is_tls = required<bool>(members, "tls");
    exchange.operation = required<std::string>(members, "operation");
    exchange.request = body_in(members, "request");
    exchange.status = static_cast<int>(number_within(members, "status", 0, kGreatestStatus));
    exchange.content_type = required<std::string>(members, "contentType");
    exchange.reply = body_in(members, "reply");
    exchange.end = reply_end_of(required<std::string>(members, "end")).value_or(ReplyEnd::kNothing);
    exchange.failure = required<std::string>(members, "failure");
    const bool has_head = exchange.end == ReplyEnd::kWhole || exchange.end == ReplyEnd::kCut;
    if (has_head && exchange.status < kLeastStatus) members.refuse("a reply without an HTTP status");
    if (!reply_end_of(required<std::string>(members, "end"))) members.refuse("an unknown end of a reply");
    return exchange;
}

// The next line without its line feed. What is read is never longer than the bounds.
class Lines
{
  public:
    Lines(std::istream& in, const RecordingBounds& bounds) : bytes_(*in.rdbuf()), bounds_(bounds) {}

    // False at the end.
    bool next(std::string& line)
    {
        line.clear();
        is_whole_ = false;
        ++number_;
        for (int c = bytes_.sbumpc(); c != std::streambuf::traits_type::eof(); c = bytes_.sbumpc()) {
            if (++read_ > bounds_.bytes) refuse("the recording is too long");
            if (c == '\n') {
                is_whole_ = true;
                return true;
            }
            if (line.size() == bounds_.line_bytes) refuse("the line is too long");
            line += static_cast<char>(c);
        }
        return !line.empty();
    }

    bool is_whole() const { return is_whole_; }

    [[noreturn]] void refuse(const std::string& why) const
    {
        throw RecordingError("line " + std::to_string(number_) + ": " + why);
    }

  private:
    std::streambuf& bytes_;
    const RecordingBounds& bounds_;
    std::size_t number_ = 0;
    std::size_t read_ = 0;
    bool is_whole_ = false;
};

// Recordings may stand one behind the other, each with its head.
void put_line(Recording& recording, Members& members)
{
    if (members.find<std::int64_t>("recording")) {
        head_in(members);
    } else {
        recording.exchanges.push_back(exchange_in(members));
    }
}

// What is wrong may be seen by the parser or by `read`.
template <class Read>
void read_line(const Lines& lines, const std::string& line, Read read)
{
    Members members;
    if (Json::sax_parse(line, &members)) read(members);
    if (!members.why_not().empty()) lines.refuse(members.why_not());
}

} // namespace

Recording read_recording(std::istream& in, const RecordingBounds& bounds)
{
    Recording recording;
    Lines lines(in, bounds);
    std::string line;
    if (!lines.next(line)) lines.refuse("the recording is empty");
    read_line(lines, line, [&recording](Members& members) { recording.head = head_in(members); });
    while (lines.next(line)) {
        // A writer that was stopped leaves a part of a line.
        recording.is_cut = !lines.is_whole();
        if (recording.is_cut) break;
        if (recording.exchanges.size() == bounds.exchanges) lines.refuse("there are too many exchanges");
        read_line(lines, line, [&recording](Members& members) { put_line(recording, members); });
    }
    return recording;
}

} // namespace soapwrapper::messages
