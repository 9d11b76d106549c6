// The path map of a mirrored volume: where its paths were on the source.
#ifndef SOAPWRAPPER_CHANGELIST_PATH_MAP_H
#define SOAPWRAPPER_CHANGELIST_PATH_MAP_H

#include "changelist/session_registry.h"
#include "plugin/host/host_records.h"

#include <string>
#include <vector>

namespace soapwrapper
{

// What parse_pattern_xml came to.
enum {
    PATH_MAP_OK = 0, // also without any mapping in the document
    PATH_MAP_NO_DOCUMENT = 1,
    PATH_MAP_NOT_PARSED = 2,
    PATH_MAP_NOT_SELECTED = 4,
    PATH_MAP_WITHOUT_CHILDREN = 5
};

// Reads a document with elements `path_map` at any depth, each with the children `prefix`, `original_path`
// and `target_path`. Appends the paths that the listing is restricted to to `paths`, and a pattern for each
// path that moves to `patterns`; what stands ahead of a failure is appended all the same. `more` becomes
// false as soon as the text is parsed.
int parse_pattern_xml(const char* xml, std::vector<snapdiff_repl_pattern>& patterns,
                      std::vector<std::string>& paths, bool& more, const sts_session_def_v7_t* session);

} // namespace soapwrapper

#endif
