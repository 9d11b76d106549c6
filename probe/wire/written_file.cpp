#include "probe/wire/written_file.h"

#include "probe/output/descriptor_stream.h"
#include "probe/output/problem.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

namespace soapwrapper::probe::wire
{
namespace
{

Problem unwritable(const std::string& path, const std::string& why)
{
    return usage_problem("the file cannot be written", path + ": " + why);
}

int open_new(const std::string& path)
{
    return open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
}

// Not made, nor cut down.
int open_existing(const std::string& path)
{
    const int descriptor = open(path.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
    struct stat status = {};
    if (descriptor < 0 || fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) return descriptor;
    close(descriptor);
    throw unwritable(path, "it is a link to a regular file");
}

int open_for_writing(const std::string& path)
{
    struct stat status = {};
    if (lstat(path.c_str(), &status) != 0) return open_new(path);
    if (!S_ISREG(status.st_mode)) return open_existing(path);
    // A new one: the old one's permissions and other names are left behind.
    return unlink(path.c_str()) == 0 ? open_new(path) : -1;
}

int require_open(const std::string& path)
{
    const int descriptor = open_for_writing(path);
    if (descriptor < 0) throw unwritable(path, std::strerror(errno));
    return descriptor;
}

} // namespace

WrittenFile::WrittenFile(const std::string& path, const DescriptorBuffer::Wait& wait)
    : descriptor_(require_open(path)), stream_(descriptor_, wait)
{
}

WrittenFile::~WrittenFile()
{
    stream_.flush();
    close(descriptor_);
}

} // namespace soapwrapper::probe::wire
