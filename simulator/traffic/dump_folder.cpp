#include "simulator/traffic/dump_folder.h"

#include "messages/indented.h"
#include "simulator/front/descriptor.h"
#include "simulator/traffic/exchange.h"

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace soapwrapper::simulator
{
namespace
{

constexpr mode_t kFolderMode = 0700;
constexpr mode_t kFileMode = 0600;

[[noreturn]] void refuse(const std::string& path)
{
    throw std::runtime_error("--dump: \"" + path + "\" can't be used: " + std::strerror(errno));
}

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

// The number ahead of the file's first "-"; 0: none.
std::uint64_t number_of(std::string_view name)
{
    constexpr std::uint64_t kGreatest = 1'000'000'000'000;
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
    const bool is_number = error == std::errc() && end != name.data() + name.size() && *end == '-';
    return is_number && number <= kGreatest ? number : 0;
}

std::uint64_t greatest_number(const std::string& path)
{
    const std::unique_ptr<DIR, CloseFolder> folder(opendir(path.c_str()));
    if (!folder) refuse(path);
    std::uint64_t greatest = 0;
    while (const dirent* entry = readdir(folder.get())) {
        greatest = std::max(greatest, number_of(entry->d_name));
    }
    return greatest;
}

// False with errno.
bool write_all(int fd, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = ::write(fd, text.data(), text.size());
        if (written < 0 && errno != EINTR) return false;
        if (written > 0) text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

// Unless that would wait for whoever reads it.
void tell(const std::string& line)
{
    pollfd polled{STDERR_FILENO, POLLOUT, 0};
    if (poll(&polled, 1, 0) == 1) write_all(STDERR_FILENO, line);
}

std::string lines_of(const std::string& xml)
{
    std::string lines = messages::indented(xml);
    if (!lines.empty() && lines.back() != '\n') lines += '\n';
    return lines;
}

} // namespace

DumpFolder::DumpFolder(std::string path) : path_(std::move(path))
{
    if (mkdir(path_.c_str(), kFolderMode) != 0 && errno != EEXIST) refuse(path_);
    folder_ = Descriptor(open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder_.valid() || faccessat(folder_.get(), ".", W_OK | X_OK, AT_EACCESS) != 0) refuse(path_);
    numbers_before_ = greatest_number(path_);
}

void DumpFolder::write(const Exchange& exchange)
{
    const std::string operation = exchange.operation == "-" ? "unknown" : exchange.operation;
    char number[sizeof "18446744073709551615-"];
    std::snprintf(number, sizeof number, "%06" PRIu64 "-", numbers_before_ + exchange.number);
    if (write_file(number + operation + ".request.xml", lines_of(exchange.request)) &&
        write_file(number + operation + ".reply.xml", lines_of(exchange.reply))) {
        return;
    }
    const std::string why = std::strerror(errno);
    if (!has_failed_.exchange(true)) {
        tell("soapwrapper-sim: --dump: a file in \"" + path_ + "\" can't be written: " + why + "\n");
    }
}

// False with errno, and without a file.
bool DumpFolder::write_file(const std::string& name, std::string_view text) const
{
    const int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    Descriptor file(openat(folder_.get(), name.c_str(), flags, kFileMode));
    if (!file.valid()) return false;
    // Some file systems tell of a full disk when the file is closed.
    if (write_all(file.get(), text) && close(file.release()) == 0) return true;
    const int error = errno;
    unlinkat(folder_.get(), name.c_str(), 0);
    errno = error;
    return false;
}

} // namespace soapwrapper::simulator
