// A snapshot's supplier text comes from the service, and may hold anything.
#include "changelist/isid.h"

#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    isid_contents contents{};
    if (!soapwrapper::parse_isid(text, &contents, nullptr)) std::abort();
    // Each mount is a stretch of the text behind a key of its own.
    if (contents.mpfs_vec.size() > size / 6) std::abort();
    for (const mount_path_filer_share& mount : contents.mpfs_vec) {
        if (text.find("mount=" + mount.mount_path) == std::string::npos) std::abort();
        if (text.find(mount.filer_share) == std::string::npos) std::abort();
    }
    return 0;
}
