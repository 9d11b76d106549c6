// Stands between the library and the heap: this program's own malloc and array form of operator new that
// throws nothing come before the system's, as any host's would.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_MEMORY_HOOKS_H
#define SOAPWRAPPER_TESTS_ENTRIES_MEMORY_HOOKS_H

#include <cstddef>

namespace hooks
{

// While one lives, the library gets no block of exactly this size on the calling thread. Everybody else does,
// the standard library on its behalf included.
class NoMemoryFor
{
  public:
    explicit NoMemoryFor(std::size_t size);
    ~NoMemoryFor();
    NoMemoryFor(const NoMemoryFor&) = delete;
    NoMemoryFor& operator=(const NoMemoryFor&) = delete;

    // How often it was asked for one.
    std::size_t refusals() const { return refusals_; }

    // For the hooks: whether this request, from code at this address, gets nothing.
    bool refuses(std::size_t size, const void* caller);

  private:
    std::size_t size_;
    std::size_t refusals_ = 0;
};

} // namespace hooks

#endif
