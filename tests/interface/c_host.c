#include "tests/interface/c_host.h"

CHostLayout c_host_layout_seen(void)
{
    const CHostLayout layout = {
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
        sizeof(stsp_async_t),
        offsetof(stsp_async_t, op_token),
    };
    return layout;
}

int c_host_claims(const stspi_slot_t* main_table, const char* name)
{
    stspi_claim_fn* const claim = STSPI_V11_ENTRY(main_table, stspi_claim);
    return claim(name);
}

int c_host_claims_of_old(const stspi_slot_t* old_table, const char* name)
{
    return STSPI_V10_ENTRY(old_table, stspi_claim)(name);
}

int c_host_cancels(const stspi_slot_t* main_table, stsp_server_t* server, char* id)
{
    const sts_session_def_v7_t session = {{0}, NULL, NULL, 0};
    stsp_async_t operation = {NULL, NULL, 0};
    operation.server = server;
    operation.op_token = id;
    return STSPI_V11_ENTRY(main_table, stspi_async_cancel)(&session, &operation);
}

int c_host_claims_volume(const stspi_slot_t* second_table, const sts_volume_spec_v11_t* volume)
{
    return STSPI3_V11_ENTRY(second_table, stspi_claim_volume)(NULL, volume);
}
