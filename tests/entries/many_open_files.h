// A host that has more files open than a select can tell apart.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_MANY_OPEN_FILES_H
#define SOAPWRAPPER_TESTS_ENTRIES_MANY_OPEN_FILES_H

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/select.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

// While one lives, every new descriptor has a number of FD_SETSIZE or more.
class ManyOpenFiles
{
  public:
    ManyOpenFiles()
    {
        getrlimit(RLIMIT_NOFILE, &old_limit_);
        rlimit limit = old_limit_;
        limit.rlim_cur = std::min<rlim_t>(limit.rlim_max, 4 * FD_SETSIZE);
        setrlimit(RLIMIT_NOFILE, &limit);
        int descriptor = 0;
        while (descriptor >= 0 && descriptor < FD_SETSIZE) {
            descriptor = open("/dev/null", O_RDONLY | O_CLOEXEC);
            if (descriptor >= 0) open_.push_back(descriptor);
        }
    }
    ~ManyOpenFiles()
    {
        for (const int descriptor : open_) close(descriptor);
        setrlimit(RLIMIT_NOFILE, &old_limit_);
    }
    ManyOpenFiles(const ManyOpenFiles&) = delete;
    ManyOpenFiles& operator=(const ManyOpenFiles&) = delete;

    // False where the system allows fewer.
    bool are_enough() const { return open_.back() >= FD_SETSIZE; }

  private:
    rlimit old_limit_{};
    std::vector<int> open_;
};

#endif
