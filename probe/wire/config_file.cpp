#include "probe/wire/config_file.h"

#include "probe/output/descriptor.h"
#include "probe/output/problem.h"
#include "probe/wire/real_calls.h"
#include "probe/wire/tapped_calls.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>

namespace soapwrapper::probe::wire
{
namespace
{

namespace fs = std::filesystem;

// What the library opens, and what it gets in its place.
struct Served {
    const char* path = nullptr;  // null: there is none
    const char* bytes = nullptr; // a file in memory
};
Served g_served;

Problem unreadable(const std::string& path, const std::string& why)
{
    return usage_problem("the configuration file cannot be read", path + ": " + why);
}

std::string read_whole(const std::string& path)
{
    const Descriptor file(open(path.c_str(), O_RDONLY | O_NOCTTY | O_CLOEXEC));
    std::string bytes;
    char room[4096];
    for (;;) {
        const ssize_t count = file.get() < 0 ? -1 : read(file.get(), room, sizeof room);
        if (count < 0 && errno == EINTR && file.get() >= 0) continue;
        if (count < 0) throw unreadable(path, std::strerror(errno));
        if (count == 0) return bytes;
        bytes.append(room, static_cast<std::size_t>(count));
        if (bytes.size() > ConfigFile::kLongest) {
            throw unreadable(path, "it is longer than " + std::to_string(ConfigFile::kLongest) + " bytes");
        }
    }
}

// With all of the bytes; below 0: there is no memory for it.
int file_in_memory(std::string_view bytes)
{
    const int descriptor = memfd_create("soapwrapper.conf", MFD_CLOEXEC);
    if (descriptor >= 0) fchmod(descriptor, 0600); // as one that nobody else may change
    while (descriptor >= 0 && !bytes.empty()) {
        const ssize_t count = write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) {
            close(descriptor);
            return -1;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return descriptor;
}

} // namespace

ConfigFile::ConfigFile(const std::string& path) : bytes_(file_in_memory(read_whole(path)))
{
    if (bytes_ < 0) throw unreadable(path, std::strerror(errno));
    const fs::path folder = fs::absolute(path).parent_path();
    plugin_path_ = folder / "libsoapwrapper.so";
    served_path_ = folder / "soapwrapper.conf";
    bytes_path_ = "/proc/self/fd/" + std::to_string(bytes_); // opened, it begins at its beginning each time
    g_served = {served_path_.c_str(), bytes_path_.c_str()};
}

ConfigFile::~ConfigFile()
{
    g_served = {};
    close(bytes_);
}

std::FILE* tapped_fopen(const char* path, const char* mode) noexcept
{
    const bool is_served = g_served.path && path && std::strcmp(path, g_served.path) == 0;
    return real_calls().fopen(is_served ? g_served.bytes : path, mode);
}

} // namespace soapwrapper::probe::wire
