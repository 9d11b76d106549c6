#include "tests/entries/async_fixture.h"

#include <sys/mman.h>
#include <unistd.h>

namespace
{

std::size_t page_size()
{
    return static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

} // namespace

UnreadablePage::UnreadablePage()
    : page_(mmap(nullptr, page_size(), PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))
{
    if (page_ == MAP_FAILED) throw std::bad_alloc();
}

UnreadablePage::~UnreadablePage()
{
    munmap(page_, page_size());
}
