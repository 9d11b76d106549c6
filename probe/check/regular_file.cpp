#include "probe/check/regular_file.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

namespace soapwrapper::probe
{

RegularFile open_regular(const std::string& path, off_t largest)
{
    RegularFile file;
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    struct stat found = {};
    if (descriptor < 0 || fstat(descriptor, &found) != 0) {
        file.kind = errno == ENOENT ? RegularFile::Kind::kMissing : RegularFile::Kind::kUnreadable;
        file.fault = std::string("it cannot be read: ") + std::strerror(errno);
    } else if (!S_ISREG(found.st_mode)) {
        file.kind = RegularFile::Kind::kIrregular;
        file.fault = "it is not a regular file";
    } else if (found.st_size > largest) {
        file.kind = RegularFile::Kind::kTooLarge;
        file.fault = "it is larger than " + std::to_string(largest >> 20) + " MiB";
    } else {
        file.stream.reset(fdopen(descriptor, "r"));
        file.writable_by_all = (found.st_mode & S_IWOTH) != 0;
    }
    if (!file.stream && descriptor >= 0) close(descriptor);
    return file;
}

} // namespace soapwrapper::probe
