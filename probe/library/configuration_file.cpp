#include "probe/library/configuration_file.h"

#include <openssl/tls1.h>
#include <strings.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace soapwrapper::probe
{
namespace
{

// Some 24 days: in milliseconds it is still an int.
constexpr long kLongestTimeout = 2147483;

// As the C library has it in the locale of a host that sets none.
bool is_white_space(char byte)
{
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

std::string without_white_space(std::string_view text)
{
    std::string kept(text);
    kept.erase(std::remove_if(kept.begin(), kept.end(), is_white_space), kept.end());
    return kept;
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && is_white_space(text.front())) text.remove_prefix(1);
    while (!text.empty() && is_white_space(text.back())) text.remove_suffix(1);
    return text;
}

ConfigurationLine read_piece(std::string_view piece)
{
    ConfigurationLine line;
    const std::size_t nul = piece.find('\0');
    line.has_nul = nul != std::string_view::npos;
    piece = piece.substr(0, nul);
    line.text = without_white_space(piece);
    if (line.text.empty()) return line;
    const std::size_t equals = line.text.find('=');
    if (line.text[0] == '#') {
        line.kind = ConfigurationLine::Kind::kComment;
    } else if (equals == std::string::npos) {
        line.kind = ConfigurationLine::Kind::kNoEquals;
    } else {
        line.kind = ConfigurationLine::Kind::kSetting;
        line.key = line.text.substr(0, equals);
        line.value = line.text.substr(equals + 1);
        line.value_has_gaps = trimmed(piece.substr(piece.find('=') + 1)) != line.value;
    }
    return line;
}

bool is_one_of(const std::string& value, std::initializer_list<const char*> words)
{
    return std::any_of(words.begin(), words.end(), [&](const char* word) { return same_key(value, word); });
}

// The oldest version of TLS that may be spoken; none: the value isn't known.
std::optional<int> oldest_tls(const std::optional<std::string>& value)
{
    if (!value) return TLS1_VERSION;
    if (*value == "1.2") return TLS1_2_VERSION;
    if (*value == "1.3") return TLS1_3_VERSION;
    return std::nullopt;
}

} // namespace

bool same_key(std::string_view left, std::string_view right)
{
    return left.size() == right.size() && strncasecmp(left.data(), right.data(), left.size()) == 0;
}

bool ConfigurationLine::key_is_url() const
{
    return key.find("//") != std::string::npos || key.find('@') != std::string::npos;
}

ConfigurationFile::ConfigurationFile(std::string_view bytes)
{
    for (std::size_t number = 1; !bytes.empty();) {
        const std::size_t end = bytes.find('\n');
        const std::size_t whole = end == std::string_view::npos ? bytes.size() : end + 1;
        const std::size_t size = std::min(whole, kLongestLine);
        ConfigurationLine line = read_piece(bytes.substr(0, size));
        line.number = number;
        line.goes_on = size < whole;
        lines_.push_back(std::move(line));
        bytes.remove_prefix(size);
        if (size == whole) ++number;
    }
}

const ConfigurationLine* ConfigurationFile::find(std::string_view key) const
{
    const auto found = std::find_if(lines_.begin(), lines_.end(), [&](const ConfigurationLine& line) {
        return line.kind == ConfigurationLine::Kind::kSetting && same_key(line.key, key);
    });
    return found == lines_.end() ? nullptr : &*found;
}

std::optional<std::string> ConfigurationFile::setting(std::string_view key) const
{
    const ConfigurationLine* const line = find(key);
    return line ? std::optional(line->value) : std::nullopt;
}

std::optional<std::string> ConfigurationFile::url(std::string_view server) const
{
    const ConfigurationLine* const line = find(server);
    return line ? std::optional(line->value.substr(0, kLongestUrl)) : std::nullopt;
}

std::optional<bool> truth_of(const std::string& value)
{
    if (is_one_of(value, {"TRUE", "1", "YES"})) return true;
    if (is_one_of(value, {"FALSE", "0", "NO"})) return false;
    return std::nullopt;
}

std::optional<int> number_of(const std::string& value)
{
    char* end = nullptr;
    const long number = std::strtol(value.c_str(), &end, 0);
    return *end == '\0' ? std::optional(static_cast<int>(number)) : std::nullopt;
}

int limit_of(const std::string& value)
{
    char* end = nullptr;
    const long seconds = std::strtol(value.c_str(), &end, 0);
    return *end == '\0' && seconds > 0 && seconds <= kLongestTimeout ? static_cast<int>(seconds) : 0;
}

ChannelRules channel_rules(const ConfigurationFile& file, bool ca_file_is_good)
{
    ChannelRules rules;
    if (const auto value = file.setting("require_tls")) {
        rules.require_tls = truth_of(*value).value_or(false);
        if (!truth_of(*value)) rules.unusable = "require_tls";
    }
    const std::optional<int> oldest = oldest_tls(file.setting("tls_min_version"));
    rules.oldest_tls = oldest.value_or(TLS1_VERSION);
    if (!oldest) rules.unusable = "tls_min_version";
    if (file.find("tls_ca_file") && !ca_file_is_good) rules.unusable = "tls_ca_file";
    rules.connect_timeout = limit_of(file.setting("connect_timeout").value_or("0"));
    rules.reply_timeout = limit_of(file.setting("reply_timeout").value_or("0"));
    rules.texts_are_utf8 = same_key(file.setting("text_encoding").value_or(""), "UTF-8");
    return rules;
}

std::string configuration_path(const std::string& told_path)
{
    return told_path.substr(0, told_path.rfind('/')) + "/soapwrapper.conf";
}

std::string ca_path(const std::string& value, const std::string& told_path)
{
    const std::size_t slash = told_path.rfind('/');
    if ((!value.empty() && value[0] == '/') || slash == std::string::npos) return value;
    return told_path.substr(0, slash + 1) + value;
}

} // namespace soapwrapper::probe
