#include "service/channel_settings.h"

#include "plugin/base/bounded_text.h"
#include "plugin/base/plugin_globals.h"
#include "service/configuration.h"
#include "service/tls_context.h"

#include <strings.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace soapwrapper
{
namespace
{

constexpr char kCaFile[] = "tls_ca_file";
constexpr char kMinVersion[] = "tls_min_version";
constexpr char kRequireTls[] = "require_tls";
constexpr char kConnectTimeout[] = "connect_timeout";
constexpr char kReplyTimeout[] = "reply_timeout";
constexpr char kTextEncoding[] = "text_encoding";

// Some 24 days: in milliseconds it is still an int.
constexpr long kLongestTimeout = 2147483;

ChannelSettings g_settings;

// The value of a key, if it stands in the file.
class Setting
{
  public:
    explicit Setting(const char* key) : found_(get_conf_setting(nullptr, key, value_)) {}

    bool found() const { return found_; }
    bool is(const char* text) const { return found_ && strcasecmp(value_, text) == 0; }
    const char* text() const { return value_; }

  private:
    char value_[kSettingSize];
    bool found_;
};

// A relative path starts where the file stands that holds it.
std::string path_of(const char* text)
{
    const std::size_t slash = pluginPath.rfind('/');
    if (text[0] == '/' || slash == std::string::npos) return text;
    return pluginPath.substr(0, slash + 1) + text;
}

bool follow_ca_file(int oldest_tls)
{
    const Setting setting(kCaFile);
    if (!setting.found()) return begin_tls_anew(oldest_tls, nullptr);
    return begin_tls_anew(oldest_tls, path_of(setting.text()).c_str());
}

bool follow_min_version(int& oldest)
{
    const Setting setting(kMinVersion);
    if (setting.is("1.2")) oldest = TLS1_2_VERSION;
    if (setting.is("1.3")) oldest = TLS1_3_VERSION;
    return !setting.found() || oldest != TLS1_VERSION;
}

bool follow_require_tls(bool& required)
{
    return get_conf_setting_as_bool(nullptr, kRequireTls, required) || !Setting(kRequireTls).found();
}

// What isn't a number of seconds that can be waited for is none.
int timeout(const char* key)
{
    const Setting setting(key);
    if (!setting.found()) return 0;
    char* end = nullptr;
    const long seconds = std::strtol(setting.text(), &end, 0);
    return *end == '\0' && seconds > 0 && seconds <= kLongestTimeout ? static_cast<int>(seconds) : 0;
}

} // namespace

void read_channel_settings()
{
    ChannelSettings settings;
    int oldest_tls = TLS1_VERSION;
    if (!follow_require_tls(settings.require_tls)) settings.unusable = kRequireTls;
    if (!follow_min_version(oldest_tls)) settings.unusable = kMinVersion;
    if (!follow_ca_file(oldest_tls)) settings.unusable = kCaFile;
    settings.connect_timeout = timeout(kConnectTimeout);
    settings.reply_timeout = timeout(kReplyTimeout);
    settings.texts_are_utf8 = Setting(kTextEncoding).is("UTF-8");
    keep_characters_whole(settings.texts_are_utf8);
    g_settings = settings;
}

const ChannelSettings& channel_settings()
{
    return g_settings;
}

} // namespace soapwrapper
