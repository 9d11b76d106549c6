// The host's binary interface, field by field: a change of any line here breaks every host.
#include "plugin/host/entry_points.h"
#include "plugin/host/second_plugin.h"

#include <cstddef>

#define FIELD(record, field, offset, size)                                                                   \
    static_assert(offsetof(record, field) == (offset) && sizeof(record::field) == (size), #record "." #field)
#define RECORD(record, size) static_assert(sizeof(record) == (size), #record)

FIELD(stspi_plugin_def_t, version, 0, 8);
FIELD(stspi_plugin_def_t, entry_points, 8, 8);
FIELD(stspi_plugin_def_t, prefix, 16, 32);
FIELD(stspi_plugin_def_t, description, 48, 32);
FIELD(stspi_plugin_def_t, host_private, 80, 448);
FIELD(stspi_plugin_def_t, flag_a, 528, 4);
FIELD(stspi_plugin_def_t, flag_b, 532, 4);
FIELD(stspi_plugin_def_t, version_a, 536, 8);
FIELD(stspi_plugin_def_t, level, 544, 8);
FIELD(stspi_plugin_def_t, version_b, 552, 8);
FIELD(stspi_plugin_def_t, release, 560, 32);
RECORD(stspi_plugin_def_t, 592);

FIELD(stspi_plugin_def3_t, version, 0, 8);
FIELD(stspi_plugin_def3_t, entry_points, 8, 8);
RECORD(stspi_plugin_def3_t, 16);

FIELD(sts_session_def_v7_t, proxy, 0, 520);
FIELD(sts_session_def_v7_t, session_id, 520, 8);
FIELD(sts_session_def_v7_t, log_callback, 528, 8);
FIELD(sts_session_def_v7_t, session_flags, 536, 4);
RECORD(sts_session_def_v7_t, 544);

FIELD(sts_server_info_v8_t, server, 0, 512);
FIELD(sts_server_info_v8_t, sth, 512, 512);
FIELD(sts_server_info_v8_t, flags, 1024, 4);
FIELD(sts_server_info_v8_t, maxconnect, 1028, 4);
FIELD(sts_server_info_v8_t, nconnect, 1032, 4);
FIELD(sts_server_info_v8_t, cap, 1036, 260);
FIELD(sts_server_info_v8_t, requiredInterface, 1296, 16384);
FIELD(sts_server_info_v8_t, cred, 17680, 32);
FIELD(sts_server_info_v8_t, ndmpHost, 17712, 512);
RECORD(sts_server_info_v8_t, 18224);

FIELD(stsp_lsu_v7_t, server, 0, 8);
FIELD(stsp_lsu_v7_t, name, 8, 1024);
RECORD(stsp_lsu_v7_t, 1032);

FIELD(sts_lsu_def_v9_t, name, 0, 1024);
FIELD(sts_lsu_def_v9_t, alloc, 1024, 4);
FIELD(sts_lsu_def_v9_t, storage, 1028, 4);
FIELD(sts_lsu_def_v9_t, description, 1032, 1024);
FIELD(sts_lsu_def_v9_t, config, 2056, 2048);
FIELD(sts_lsu_def_v9_t, flags, 4104, 4);
FIELD(sts_lsu_def_v9_t, saveas, 4108, 4);
FIELD(sts_lsu_def_v9_t, maxTransfer, 4112, 8);
FIELD(sts_lsu_def_v9_t, blockSize, 4120, 8);
FIELD(sts_lsu_def_v9_t, allocSize, 4128, 8);
FIELD(sts_lsu_def_v9_t, label, 4136, 64);
RECORD(sts_lsu_def_v9_t, 4200);

FIELD(sts_lsu_def_v11_t, version, 0, 8);
FIELD(sts_lsu_def_v11_t, name, 8, 1024);
FIELD(sts_lsu_def_v11_t, alloc, 1032, 4);
FIELD(sts_lsu_def_v11_t, storage, 1036, 4);
FIELD(sts_lsu_def_v11_t, description, 1040, 1024);
FIELD(sts_lsu_def_v11_t, config, 2064, 2048);
FIELD(sts_lsu_def_v11_t, flags, 4112, 4);
FIELD(sts_lsu_def_v11_t, saveas, 4116, 4);
FIELD(sts_lsu_def_v11_t, maxTransfer, 4120, 8);
FIELD(sts_lsu_def_v11_t, blockSize, 4128, 8);
FIELD(sts_lsu_def_v11_t, allocSize, 4136, 8);
FIELD(sts_lsu_def_v11_t, label, 4144, 64);
FIELD(sts_lsu_def_v11_t, repSources, 4208, 4);
FIELD(sts_lsu_def_v11_t, repTargets, 4212, 4);
RECORD(sts_lsu_def_v11_t, 4216);

FIELD(sts_lsu_info_v9_t, server, 0, 512);
FIELD(sts_lsu_info_v9_t, def, 512, 4200);
FIELD(sts_lsu_info_v9_t, capacity, 4712, 8);
FIELD(sts_lsu_info_v9_t, capacityPhys, 4720, 8);
FIELD(sts_lsu_info_v9_t, used, 4728, 8);
FIELD(sts_lsu_info_v9_t, usedPhys, 4736, 8);
FIELD(sts_lsu_info_v9_t, images, 4744, 8);
RECORD(sts_lsu_info_v9_t, 4752);

FIELD(sts_lsu_info_v11_t, version, 0, 8);
FIELD(sts_lsu_info_v11_t, server, 8, 512);
FIELD(sts_lsu_info_v11_t, def, 520, 4216);
FIELD(sts_lsu_info_v11_t, capacity, 4736, 8);
FIELD(sts_lsu_info_v11_t, capacityPhys, 4744, 8);
FIELD(sts_lsu_info_v11_t, used, 4752, 8);
FIELD(sts_lsu_info_v11_t, usedPhys, 4760, 8);
FIELD(sts_lsu_info_v11_t, images, 4768, 8);
RECORD(sts_lsu_info_v11_t, 4776);

FIELD(sts_lsu_spec_v11_t, server, 0, 512);
FIELD(sts_lsu_spec_v11_t, lsu, 512, 1024);
RECORD(sts_lsu_spec_v11_t, 1536);

FIELD(sts_isid_t, version, 0, 8);
FIELD(sts_isid_t, dpaid, 8, 64);
FIELD(sts_isid_t, dpaver, 72, 32);
FIELD(sts_isid_t, info, 104, 4096);
RECORD(sts_isid_t, 4200);

FIELD(sts_image_def_v10_t, version, 0, 8);
FIELD(sts_image_def_v10_t, basename, 8, 1024);
FIELD(sts_image_def_v10_t, date, 1032, 32);
FIELD(sts_image_def_v10_t, fulldate, 1064, 32);
FIELD(sts_image_def_v10_t, policy, 1096, 1024);
FIELD(sts_image_def_v10_t, saveas, 2120, 4);
FIELD(sts_image_def_v10_t, flags, 2124, 4);
FIELD(sts_image_def_v10_t, format, 2128, 24);
FIELD(sts_image_def_v10_t, isid, 2152, 4200);
RECORD(sts_image_def_v10_t, 6352);

FIELD(sts_export_v7_t, fstype, 0, 4);
FIELD(sts_export_v7_t, reserved, 4, 4);
FIELD(sts_export_v7_t, mount, 8, 1024);
RECORD(sts_export_v7_t, 1032);

FIELD(sts_image_info_v10_t, version, 0, 8);
FIELD(sts_image_info_v10_t, def, 8, 6352);
FIELD(sts_image_info_v10_t, server, 6360, 512);
FIELD(sts_image_info_v10_t, lsu, 6872, 1024);
FIELD(sts_image_info_v10_t, size, 7896, 8);
FIELD(sts_image_info_v10_t, blockSize, 7904, 8);
FIELD(sts_image_info_v10_t, exports, 7912, 4128);
FIELD(sts_image_info_v10_t, status, 12040, 4);
RECORD(sts_image_info_v10_t, 12048);

FIELD(sts_snap_def_v11_t, snapName, 0, 2048);
FIELD(sts_snap_def_v11_t, snapType, 2048, 4);
FIELD(sts_snap_def_v11_t, snapFlags, 2052, 4);
FIELD(sts_snap_def_v11_t, snapSaveas, 2056, 4);
FIELD(sts_snap_def_v11_t, isid, 2064, 4200);
RECORD(sts_snap_def_v11_t, 6264);

FIELD(sts_volume_spec_v11_t, first, 0, 1024);
FIELD(sts_volume_spec_v11_t, second, 1024, 1024);
FIELD(sts_volume_spec_v11_t, third, 2048, 1024);
FIELD(sts_volume_spec_v11_t, volumeType, 3072, 4);
RECORD(sts_volume_spec_v11_t, 3076);

FIELD(sts_snap_info_v11_t, snapDef, 0, 6264);
FIELD(sts_snap_info_v11_t, snapServer, 6264, 512);
FIELD(sts_snap_info_v11_t, snapLsu, 6776, 1024);
FIELD(sts_snap_info_v11_t, snapVolSpec, 7800, 3076);
FIELD(sts_snap_info_v11_t, snapStatus, 10876, 4);
FIELD(sts_snap_info_v11_t, snapSize, 10880, 8);
RECORD(sts_snap_info_v11_t, 10888);

FIELD(sts_host_spec_v11_t, hostname, 0, 16384);
FIELD(sts_host_spec_v11_t, port, 16384, 16384);
FIELD(sts_host_spec_v11_t, flags, 32768, 4);
RECORD(sts_host_spec_v11_t, 32772);

FIELD(sts_file_attr_v11_t, name, 0, 4096);
FIELD(sts_file_attr_v11_t, ftype, 4096, 4);
FIELD(sts_file_attr_v11_t, changetype, 4100, 4);
FIELD(sts_file_attr_v11_t, modtime, 4104, 8);
FIELD(sts_file_attr_v11_t, accesstime, 4112, 8);
FIELD(sts_file_attr_v11_t, createtime, 4120, 8);
FIELD(sts_file_attr_v11_t, changetime, 4128, 8);
FIELD(sts_file_attr_v11_t, size, 4136, 8);
FIELD(sts_file_attr_v11_t, ownerid, 4144, 4);
FIELD(sts_file_attr_v11_t, groupid, 4148, 4);
FIELD(sts_file_attr_v11_t, permissions, 4152, 8);
FIELD(sts_file_attr_v11_t, inode, 4160, 4);
FIELD(sts_file_attr_v11_t, gnum, 4164, 4);
RECORD(sts_file_attr_v11_t, 4168);

// Of an image handle and of an operation's the host may make its own records, the others are opaque.
FIELD(stsp_image_t, server, 0, 8);
FIELD(stsp_image_t, token, 8, 8);
RECORD(stsp_image_t, 16);

FIELD(stsp_async_t, server, 0, 8);
FIELD(stsp_async_t, op_token, 8, 8);
FIELD(stsp_async_t, pendingflag, 16, 4);
RECORD(stsp_async_t, 24);

// The bytes of a credential follow its two numbers directly.
FIELD(sts_cred_t, len, 0, 4);
FIELD(sts_cred_t, type, 4, 4);
static_assert(offsetof(sts_cred_t, cert) == 8, "sts_cred_t.cert");

// What the second plug-in is given.
FIELD(sts_cred_block, reserved, 0, 8);
FIELD(sts_cred_block, names, 8, 1024);
RECORD(sts_cred_block, 1032);
