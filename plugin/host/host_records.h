/* The host's records: fixed-size plain data, allocated and owned by the host. The order of the fields and
 * their widths are the binary interface. Every character array is NUL-terminated and its length includes
 * the terminator, so that an array of 1024 holds at most 1023 characters. Numbers pass between the host
 * and the service bit for bit. */
#ifndef SOAPWRAPPER_PLUGIN_HOST_HOST_RECORDS_H
#define SOAPWRAPPER_PLUGIN_HOST_HOST_RECORDS_H

#include "handles.h"

#include <stdint.h>

enum {
    STS_PROXY_SIZE = 520,
    STS_SERVER_NAME_SIZE = 512,
    STS_SERVER_TYPE_SIZE = 16,
    STS_SERVER_TYPES = 32,
    STS_CAPABILITY_WORDS = 65, /* 32 capabilities a word, numbers 0 to 2079 */
    STS_INTERFACE_SIZE = 512,
    STS_INTERFACES = 32,
    STS_CREDENTIAL_TYPES = 8,
    STS_LSU_NAME_SIZE = 1024,
    STS_IMAGE_EXPORTS = 4,
    STS_EXPORT_HOSTS = 16,
    STS_HOST_TEXT_SIZE = 1024,
    STS_SNAP_NAME_SIZE = 2048,
    STS_VOLUME_TEXT_SIZE = 1024,
    STS_ROLLBACK_ROW_SIZE = 1024,
    STS_PATH_SIZE = 4096
};

/* Levels of the log callback. */
enum {
    STS_LOG_ANOMALY = 2, /* something was odd and the operation goes on */
    STS_LOG_RECORD = 3,  /* the running record: entries, return codes, decisions */
    STS_LOG_FAILURE = 4  /* a failure status is about to be returned */
};

/* Receives every message of the plug-in: the session's id (may be null), the text, the level. The text is
 * valid during the call only. Called on the thread that called the entry, possibly on several at once. The
 * result is ignored. */
typedef int (*sts_log_callback_t)(const char* session_id, const char* message, int level);

/* The session: it must outlive every handle that was opened with it. */
typedef struct sts_session_def_v7 {
    char proxy[STS_PROXY_SIZE];
    const char* session_id;          /* may be null */
    sts_log_callback_t log_callback; /* may be null: then nothing is logged */
    int32_t session_flags;
} sts_session_def_v7_t;

/* A credential: `len` bytes stand directly behind `type`. They are sent from where they stand, and never
 * copied, changed or logged. */
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic" /* C++ has no open array, but its compilers do */
typedef struct sts_cred {
    int32_t len;
    int32_t type;
    unsigned char cert[];
} sts_cred_t;
#pragma GCC diagnostic pop

typedef struct sts_server_info_v8 {
    char server[STS_SERVER_NAME_SIZE];
    char sth[STS_SERVER_TYPES][STS_SERVER_TYPE_SIZE];
    int32_t flags;
    int32_t maxconnect;
    int32_t nconnect;
    uint32_t cap[STS_CAPABILITY_WORDS]; /* capability n is bit n % 32 of word n / 32 */
    /* "major;minor;sdk;type;url" each; the list ends at an empty row */
    char requiredInterface[STS_INTERFACES][STS_INTERFACE_SIZE];
    int32_t cred[STS_CREDENTIAL_TYPES];
    char ndmpHost[STS_SERVER_NAME_SIZE];
} sts_server_info_v8_t;

/* The host's reference to one LSU. */
typedef struct stsp_lsu_v7 {
    stsp_server_t* server;
    char name[STS_LSU_NAME_SIZE];
} stsp_lsu_v7_t;

typedef struct sts_lsu_def_v9 {
    char name[STS_LSU_NAME_SIZE];
    int32_t alloc;
    int32_t storage;
    char description[1024];
    char config[2048];
    int32_t flags;
    int32_t saveas;
    int64_t maxTransfer;
    int64_t blockSize;
    int64_t allocSize;
    char label[64];
} sts_lsu_def_v9_t;

typedef struct sts_lsu_def_v11 {
    int64_t version;
    char name[STS_LSU_NAME_SIZE];
    int32_t alloc;
    int32_t storage;
    char description[1024];
    char config[2048];
    int32_t flags;
    int32_t saveas;
    int64_t maxTransfer;
    int64_t blockSize;
    int64_t allocSize;
    char label[64];
    int32_t repSources;
    int32_t repTargets;
} sts_lsu_def_v11_t;

typedef struct sts_lsu_info_v9 {
    char server[STS_SERVER_NAME_SIZE];
    sts_lsu_def_v9_t def;
    int64_t capacity;
    int64_t capacityPhys;
    int64_t used;
    int64_t usedPhys;
    int64_t images;
} sts_lsu_info_v9_t;

typedef struct sts_lsu_info_v11 {
    int64_t version;
    char server[STS_SERVER_NAME_SIZE];
    sts_lsu_def_v11_t def;
    int64_t capacity;
    int64_t capacityPhys;
    int64_t used;
    int64_t usedPhys;
    int64_t images;
} sts_lsu_info_v11_t;

/* A server and LSU pair; arrays of it come with a separate count. */
typedef struct sts_lsu_spec_v11 {
    char server[STS_SERVER_NAME_SIZE];
    char lsu[STS_LSU_NAME_SIZE];
} sts_lsu_spec_v11_t;

/* The independent supplier id of an image or a snapshot. */
typedef struct sts_isid {
    int64_t version;
    char dpaid[64];
    char dpaver[32];
    char info[STS_PATH_SIZE];
} sts_isid_t;

typedef struct sts_image_def_v10 {
    int64_t version;
    char basename[1024];
    char date[32];
    char fulldate[32];
    char policy[1024];
    int32_t saveas;
    int32_t flags;
    char format[24];
    sts_isid_t isid;
} sts_image_def_v10_t;

/* One exported mount of an image. */
typedef struct sts_export_v7 {
    int32_t fstype;
    int32_t reserved; /* fstype has a 64-bit slot */
    char mount[1024];
} sts_export_v7_t;

typedef struct sts_image_info_v10 {
    int64_t version;
    sts_image_def_v10_t def;
    char server[STS_SERVER_NAME_SIZE];
    char lsu[STS_LSU_NAME_SIZE];
    int64_t size;
    int64_t blockSize;
    sts_export_v7_t exports[STS_IMAGE_EXPORTS];
    int32_t status;
} sts_image_info_v10_t;

/* The identity of one snapshot. */
typedef struct sts_snap_def_v11 {
    char snapName[STS_SNAP_NAME_SIZE];
    int32_t snapType;
    int32_t snapFlags;
    int32_t snapSaveas;
    sts_isid_t isid;
} sts_snap_def_v11_t;

/* The kinds of a volume. */
enum {
    STS_VOLUME_NFS = 0,    /* first: host, second: export name, third: export path */
    STS_VOLUME_CIFS = 1,   /* first: host, second: share name, third: export path */
    STS_VOLUME_SCSI = 2,   /* first: world-wide node name of the LUN, second: its serial number */
    STS_VOLUME_DEVICE = 3, /* first: device path; never filled by the plug-in */
    STS_VOLUME_NDMP = 4    /* first: filer, second: export path */
};

/* One volume: three texts, whose meaning follows the kind. */
typedef struct sts_volume_spec_v11 {
    char first[STS_VOLUME_TEXT_SIZE];
    char second[STS_VOLUME_TEXT_SIZE];
    char third[STS_VOLUME_TEXT_SIZE];
    int32_t volumeType;
} sts_volume_spec_v11_t;

typedef struct sts_snap_info_v11 {
    sts_snap_def_v11_t snapDef;
    char snapServer[STS_SERVER_NAME_SIZE];
    char snapLsu[STS_LSU_NAME_SIZE];
    sts_volume_spec_v11_t snapVolSpec;
    int32_t snapStatus;
    int64_t snapSize;
} sts_snap_info_v11_t;

/* The host that an export is for. All rows count: an empty one is an empty text, not an absent one. */
typedef struct sts_host_spec_v11 {
    char hostname[STS_EXPORT_HOSTS][STS_HOST_TEXT_SIZE];
    char port[STS_EXPORT_HOSTS][STS_HOST_TEXT_SIZE];
    int32_t flags;
} sts_host_spec_v11_t;

/* One entry of a change list. */
typedef struct sts_file_attr_v11 {
    char name[STS_PATH_SIZE];
    int32_t ftype;
    int32_t changetype;
    int64_t modtime;
    int64_t accesstime;
    int64_t createtime;
    int64_t changetime;
    int64_t size;
    int32_t ownerid;
    int32_t groupid;
    int64_t permissions;
    int32_t inode;
    int32_t gnum;
} sts_file_attr_v11_t;

#endif
