/* Somebody else's plug-in with the same names, as a host may have loaded it before, for all to see. Whoever
 * is diverted to it gets 4711. */
#define DIVERTED 4711
#define VISIBLE __attribute__((visibility("default")))

#define FUNCTION(name)                                                                                       \
    VISIBLE int name(void);                                                                                  \
    VISIBLE int name(void)                                                                                   \
    {                                                                                                        \
        return DIVERTED;                                                                                     \
    }
#define DATA(name)                                                                                           \
    VISIBLE extern long name[64];                                                                            \
    VISIBLE long name[64] = {DIVERTED, DIVERTED, DIVERTED, DIVERTED};

FUNCTION(stspi_init)
FUNCTION(stspi_init3)
FUNCTION(stspi_claim)
FUNCTION(stspi_terminate)
FUNCTION(stspi_copy_image)
FUNCTION(stspi_open_server)
FUNCTION(stspi_open_target_server)
FUNCTION(stspi_close_server)
FUNCTION(stspi_get_server_prop)
FUNCTION(stspi_get_server_prop_byname)
FUNCTION(get_TH_binary_version1)
FUNCTION(get_TH_binary_version2)
FUNCTION(CRYPTO_thread_setup)
FUNCTION(CRYPTO_thread_cleanup)

DATA(PluginEntryPoints_v10)
DATA(PluginEntryPoints_v11)
DATA(PluginEntryPoints3_v11)
DATA(TH_STATIC_RELEASE_STR)
DATA(stspi_ismt)
DATA(snapdiff_info_per_session)
DATA(snapdiff_session_map_mutex)
DATA(pluginPath)
DATA(gMutex)
DATA(gServerEndPointMap)
DATA(namespaces)
