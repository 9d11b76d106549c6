#include "tests/interface/c_host.h"

c_host_layout c_host_layout_seen(void)
{
    const c_host_layout layout = {
        sizeof(stspi_plugin_def_t),
        offsetof(stspi_plugin_def_t, release),
        sizeof(stspi_plugin_def3_t),
        sizeof(sts_session_def_v7_t),
        offsetof(sts_session_def_v7_t, session_id),
        offsetof(sts_session_def_v7_t, log_callback),
        offsetof(sts_session_def_v7_t, session_flags),
        sizeof(sts_cred_t),
        offsetof(sts_cred_t, cert),
        sizeof(sts_server_info_v8_t),
        sizeof(sts_image_info_v10_t),
        sizeof(sts_lsu_info_v11_t),
        sizeof(sts_file_attr_v11_t),
    };
    return layout;
}

int c_host_claims(const stspi_slot_t* table, const char* name)
{
    int (*claim)(const char*) = (int (*)(const char*))table[4];
    return claim(name);
}
