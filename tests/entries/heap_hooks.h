// Stands between the library and its heap: this program's own malloc and free, and the operators on top of
// them, come before the system's. What the calling thread asks for can be refused, and what it gives back can
// be looked at.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_HEAP_HOOKS_H
#define SOAPWRAPPER_TESTS_ENTRIES_HEAP_HOOKS_H

#include <cstddef>
#include <string_view>

namespace hooks
{

enum class Allocator { kMalloc, kCalloc, kOperatorNew, kOperatorNewNothrow };

// While one lives, the allocator has no memory for blocks of this size; the first `granted` of them it still
// has. One at a time on a thread.
class NoMemory
{
  public:
    NoMemory(Allocator allocator, std::size_t size, std::size_t granted = 0);
    ~NoMemory();
    NoMemory(const NoMemory&) = delete;
    NoMemory& operator=(const NoMemory&) = delete;

    // How many blocks were refused.
    std::size_t refusals() const { return refusals_; }

    bool refuses(Allocator allocator, std::size_t size);

  private:
    Allocator allocator_;
    std::size_t size_;
    std::size_t granted_;
    std::size_t refusals_ = 0;
};

// While one lives, looks for a text in each block that the thread gives back. The text must outlive the
// object. One at a time on a thread.
class FreedBlocks
{
  public:
    explicit FreedBlocks(std::string_view text);
    ~FreedBlocks();
    FreedBlocks(const FreedBlocks&) = delete;
    FreedBlocks& operator=(const FreedBlocks&) = delete;

    // How many blocks were given back, and how many of them still held the text.
    std::size_t count() const { return count_; }
    std::size_t with_text() const { return with_text_; }

    void look_at(const void* block, std::size_t size);

  private:
    std::string_view text_;
    std::size_t count_ = 0;
    std::size_t with_text_ = 0;
};

} // namespace hooks

#endif
