#include "changelist/session_registry.h"
#include "plugin/base/bounded_text.h"
#include "plugin/base/plugin_globals.h"
#include "plugin/host/entry_points.h"
#include "service/channel_settings.h"
#include "service/discovery.h"

#include <openssl/crypto.h>

#include <cstdint>
#include <cstring>
#include <iterator>
#include <map>
#include <string>

using namespace soapwrapper;

// The registry's and discovery's containers stand in one unit, so that they come up and go down in one order.
std::map<std::string, interface_detail> gServerEndPointMap;
std::string pluginPath;
std::map<std::string, snapdiff_session_info> snapdiff_info_per_session;

pthread_mutex_t gMutex;
pthread_mutex_t snapdiff_session_map_mutex;

namespace
{
constexpr unsigned long kInterfaceVersion = 11;
constexpr unsigned long kReleaseNumber = 910000;
constexpr char kPrefix[] = "Network_";
constexpr char kDescription[] = "SOAP Wrapper Plugin";
constexpr std::size_t kReleaseMarkerSize = 6; // what stands ahead of the bare release name
} // namespace

extern "C" {

int32_t stspi_ismt = 0;
const char TH_STATIC_RELEASE_STR[24] = "\n@(#) Tarnholme_9.1.0.1";

const char* get_TH_binary_version1(void)
{
    return TH_STATIC_RELEASE_STR;
}

const char* get_TH_binary_version2(void)
{
    return TH_STATIC_RELEASE_STR + kReleaseMarkerSize;
}

int CRYPTO_thread_setup(void)
{
    OPENSSL_init_crypto(0, nullptr);
    return 0;
}

int CRYPTO_thread_cleanup(int /*argument*/)
{
    OPENSSL_thread_stop();
    return 0;
}

int stspi_init(uint64_t host_version, const char* path, stspi_plugin_def_t* definition)
{
    if (!definition) return STS_ENULLARG;
    // Ahead of the version test, so that a refused load still leaves the path in place.
    pluginPath = path ? path : "";
    read_channel_settings();
    if (host_version < kInterfaceVersion) return STS_EVERSION;

    definition->version = kInterfaceVersion;
    definition->entry_points = PluginEntryPoints_v11;
    V_strlcpy(definition->prefix, kPrefix, sizeof definition->prefix);
    V_strlcpy(definition->description, kDescription, sizeof definition->description);
    definition->flag_a = 1;
    definition->flag_b = 1;
    definition->version_a = kInterfaceVersion;
    definition->level = 2;
    definition->version_b = kInterfaceVersion;
    V_snprintf(definition->release, sizeof definition->release, "%lu %s", kReleaseNumber,
               get_TH_binary_version2());
    return STS_EOK;
}

int stspi_init3(uint64_t /*host_version*/, stspi_plugin_def3_t* definition)
{
    if (!definition) return STS_ENULLARG;
    if (const int result = CRYPTO_thread_setup()) return result;
    pthread_mutex_init(&snapdiff_session_map_mutex, nullptr);
    definition->version = kInterfaceVersion;
    definition->entry_points = PluginEntryPoints3_v11;
    return STS_EOK;
}

int stspi_claim(const char* name)
{
    if (!name) return STS_ENULLARG;
    return std::strncmp(name, kPrefix, std::size(kPrefix) - 1) == 0 ? STS_EOK : STS_ENOTMINE;
}

int stspi_terminate(void)
{
    CRYPTO_thread_cleanup(0);
    pthread_mutex_destroy(&snapdiff_session_map_mutex);
    return STS_EOK;
}

int stspi_copy_image(void)
{
    return STS_EOK;
}

} // extern "C"
