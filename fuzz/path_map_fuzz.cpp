// The path-map document comes from the storage side, and may be anything.
#include "changelist/path_map.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace soapwrapper;
    const std::string xml(reinterpret_cast<const char*>(data), size);
    std::vector<snapdiff_repl_pattern> patterns;
    std::vector<std::string> paths;
    bool more = true;
    const int result = parse_pattern_xml(xml.c_str(), patterns, paths, more, nullptr);
    const bool was_parsed = result != PATH_MAP_NO_DOCUMENT && result != PATH_MAP_NOT_PARSED;
    if (more == was_parsed || patterns.size() > paths.size()) std::abort();
    if (result != PATH_MAP_OK && result != PATH_MAP_WITHOUT_CHILDREN && !paths.empty()) std::abort();
    return 0;
}
