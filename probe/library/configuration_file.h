// soapwrapper.conf as the library reads it: in the same pieces, with the same keys and values.
#ifndef SOAPWRAPPER_PROBE_LIBRARY_CONFIGURATION_FILE_H
#define SOAPWRAPPER_PROBE_LIBRARY_CONFIGURATION_FILE_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::probe
{

// A line of the file, or a piece of one that is longer than the library reads at once.
struct ConfigurationLine {
    enum class Kind { kNothing, kComment, kNoEquals, kSetting };

    std::size_t number = 0; // of the line in the file, from 1
    bool goes_on = false;   // the next piece belongs to the same line
    Kind kind = Kind::kNothing;
    std::string text;            // without white space
    std::string key;             // of a setting, as it is written
    std::string value;           // of a setting
    bool value_has_gaps = false; // white space was dropped from within it
    bool has_nul = false;        // the library reads no further than this

    // A URL that has no server's name ahead of it was split at a "=" of its own, and may hold a login.
    bool key_is_url() const;
};

class ConfigurationFile
{
  public:
    explicit ConfigurationFile(std::string_view bytes);

    const std::vector<ConfigurationLine>& lines() const { return lines_; }

    // The line that counts for a key, or null.
    const ConfigurationLine* find(std::string_view key) const;

    // The value of a key, if it stands in the file.
    std::optional<std::string> setting(std::string_view key) const;
    // The URL of a server, cut to the room that the library has for it.
    std::optional<std::string> url(std::string_view server) const;

  private:
    std::vector<ConfigurationLine> lines_;
};

constexpr std::size_t kLongestLine = 1023;
constexpr std::size_t kLongestUrl = 511;

bool same_key(std::string_view left, std::string_view right);

// None: it is no word for either.
std::optional<bool> truth_of(const std::string& value);
// None: not all of it is a number. What has more than 32 bits loses those above.
std::optional<int> number_of(const std::string& value);
// In seconds; 0: no limit, because the value asks for none or isn't one that can be kept.
int limit_of(const std::string& value);

// What the library makes of its settings about the channel to the services.
struct ChannelRules {
    const char* unusable = nullptr; // the key whose value it can't follow: nothing is sent then
    bool require_tls = false;
    int connect_timeout = 0;
    int reply_timeout = 0;
    bool texts_are_utf8 = false;
    int oldest_tls = 0; // as the TLS library numbers it
};

// `ca_file_is_good`: certificates could be read from the file of tls_ca_file, if there is one.
ChannelRules channel_rules(const ConfigurationFile& file, bool ca_file_is_good);

// Where the library looks for the file, and where a path in it leads, if it was told that it stands there
// itself.
std::string configuration_path(const std::string& told_path);
std::string ca_path(const std::string& value, const std::string& told_path);

} // namespace soapwrapper::probe

#endif
