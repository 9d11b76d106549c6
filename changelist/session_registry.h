// The state of the open change lists: a host's handle is bare, so what a listing needs between two calls
// lives here, under the list's token.
#ifndef SOAPWRAPPER_CHANGELIST_SESSION_REGISTRY_H
#define SOAPWRAPPER_CHANGELIST_SESSION_REGISTRY_H

#include "plugin/host/host_records.h"

#include <pthread.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

struct mount_path_filer_share {
    std::string mount_path;
    std::string filer_share;
};

// What a snapshot's supplier text says.
struct isid_contents {
    std::vector<mount_path_filer_share> mpfs_vec;
    std::int32_t use_zapi;
};

// A path that begins with `target_path` lay under `original_path` on the source. `prefix` is only logged.
struct snapdiff_repl_pattern {
    std::string prefix;
    std::string target_path;
    std::string original_path;
};

struct snapdiff_session_info {
    std::vector<sts_file_attr_v11_t> entry_buffer; // delivered ahead of time, used as a stack
    std::int64_t last_reply_time = 0;              // seconds since the epoch
    std::int32_t retry_interval = 0;               // seconds; 0: nothing pending
    std::vector<snapdiff_repl_pattern> repl_patterns;
    isid_contents parsed_isid{};
    std::vector<std::string> qtree_paths; // what the list is restricted to
    std::string base_export;              // empty without a base snapshot
    std::string diff_export;
    std::string diff_export_filer;
};

// C linkage keeps the exported symbols bare.
extern "C" {

extern __attribute__((visibility("default"))) std::map<std::string, snapdiff_session_info>
    snapdiff_info_per_session;

// Guards the shape of the map and the table of the listings under way, and no more: one insert, lookup or
// erase. Made by stspi_init3.
extern __attribute__((visibility("default"))) pthread_mutex_t snapdiff_session_map_mutex;

} // extern "C"

#endif
