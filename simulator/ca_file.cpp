#include "simulator/ca_file.h"

#include "simulator/front/descriptor.h"

#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace soapwrapper::simulator
{
namespace
{

constexpr mode_t kMode = 0644;

[[noreturn]] void refuse(const std::string& path, const std::string& why)
{
    throw std::runtime_error("--ca-out: \"" + path + "\" can't be written: " + why);
}

// A rename would put a file in the place of a device.
void require_file_or_nothing(const std::string& path)
{
    std::error_code error;
    const std::filesystem::file_type type = std::filesystem::symlink_status(path, error).type();
    if (type != std::filesystem::file_type::not_found && type != std::filesystem::file_type::regular) {
        refuse(path, error ? error.message() : "what is there is no regular file");
    }
}

// In the same folder, which may already have a file of any name.
Descriptor open_beside(const std::string& path, std::string& name)
{
    constexpr int kTries = 10;
    std::random_device draw;
    int fd = -1;
    for (int i = 0; i < kTries && fd < 0 && (i == 0 || errno == EEXIST); ++i) {
        const std::string last = ".soapwrapper-sim-" + std::to_string(draw());
        name = (std::filesystem::path(path).parent_path() / last).string();
        fd = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kMode);
    }
    return Descriptor(fd);
}

// False with errno.
bool write_all(int fd, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = write(fd, text.data(), text.size());
        if (written < 0 && errno != EINTR) return false;
        if (written > 0) text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

} // namespace

void write_ca_file(const std::string& path, std::string_view pem)
{
    require_file_or_nothing(path);
    std::string name;
    Descriptor file = open_beside(path, name);
    if (!file.valid()) refuse(path, std::strerror(errno));
    // Some file systems tell of a full disk when the file is closed.
    if (write_all(file.get(), pem) && close(file.release()) == 0 && rename(name.c_str(), path.c_str()) == 0) {
        return;
    }
    const int error = errno;
    unlink(name.c_str());
    refuse(path, std::strerror(error));
}

} // namespace soapwrapper::simulator
