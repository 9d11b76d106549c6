/* A library with the two handshakes and hardly anything behind them, built in several ways. It writes what
 * happens to it into the file that FAKE_PLUGIN_RECORD names. */
#include "plugin/host/entry_points.h"

#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#ifndef FAKE_VERSION
#define FAKE_VERSION 11
#endif
#ifndef FAKE_STATUS
#define FAKE_STATUS STS_EOK
#endif
#ifndef FAKE_HAS_SECOND_TABLE
#define FAKE_HAS_SECOND_TABLE 1
#endif

static void record(const char* what, const char* value)
{
    const char* path = getenv("FAKE_PLUGIN_RECORD");
    FILE* file = path ? fopen(path, "a") : NULL;
    if (!file) return;
    fprintf(file, "%s %s\n", what, value);
    fclose(file);
}

static void record_version(const char* what, uint64_t version)
{
    char text[32];
    snprintf(text, sizeof text, "%lu", (unsigned long)version);
    record(what, text);
}

static int terminate(void)
{
    record("terminate", "called");
    return 0;
}

#ifdef FAKE_CLAIMS
static int claim(const char* name)
{
    record("claim", name);
    return 0;
}
#endif

#ifdef FAKE_EXITS
__attribute__((constructor)) static void end_the_process(void)
{
    puts("on the way out");
    exit(0);
}
#endif

STSPI_EXPORT int stspi_init(uint64_t host_version, const char* path, stspi_plugin_def_t* definition)
{
    static const stspi_slot_t table[STSPI_V11_SLOTS] = {
#ifdef FAKE_CLAIMS
        [4] = (stspi_slot_t)(claim),
#endif
        [35] = (stspi_slot_t)(terminate),
    };
#ifdef FAKE_CRASHES
    raise(SIGSEGV);
#endif
#ifdef FAKE_HANGS
    fputs("hanging\n", stderr);
    for (;;) pause();
#endif
    record_version("init", host_version);
    record("path", path);
    definition->version = FAKE_VERSION;
    definition->entry_points = table;
    return FAKE_STATUS;
}

#ifndef FAKE_LACKS_INIT3
STSPI_EXPORT int stspi_init3(uint64_t host_version, stspi_plugin_def3_t* definition)
{
    static const stspi_slot_t table[STSPI3_V11_SLOTS] = {0};
    record_version("init3", host_version);
    definition->version = FAKE_VERSION;
    definition->entry_points = FAKE_HAS_SECOND_TABLE ? table : NULL;
    return STS_EOK;
}
#endif
