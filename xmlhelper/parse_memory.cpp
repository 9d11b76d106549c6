#include "xmlhelper/parse_memory.h"

#include <xercesc/util/PlatformUtils.hpp>

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <limits>
#include <new>
#include <utility>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{
namespace
{

constexpr std::size_t kMebibyte = 1024 * 1024;
constexpr std::size_t kMinMemory = 64 * kMebibyte;
constexpr std::size_t kMemoryPerByte = 80; // more than the shortest elements need
// Each expansion of an entity takes one block of this size or more, to read the entity's text from.
constexpr std::size_t kLargeBlock = 64 * 1024;
constexpr std::size_t kMaxLargeBlocks = 100'000;
constexpr std::size_t kMaxDeclaration = 256 * 1024;

thread_local ParseBudget* t_budget = nullptr;

void unlink(const MemoryBlock* block)
{
    block->previous->next = block->next;
    block->next->previous = block->previous;
}

class ParseMemory : public MemoryManager
{
  public:
    // An exception may outlive the parser, so it is kept elsewhere.
    MemoryManager* getExceptionMemoryManager() override { return XMLPlatformUtils::fgMemoryManager; }

    void* allocate(XMLSize_t size) override
    {
        if (t_budget) t_budget->refuse_large(size);
        if (size > std::numeric_limits<std::size_t>::max() - sizeof(MemoryBlock)) throw std::bad_alloc();
        auto* block = static_cast<MemoryBlock*>(std::malloc(sizeof(MemoryBlock) + size));
        if (!block) throw std::bad_alloc();
        *block = {block, block, size};
        if (t_budget) t_budget->charge(block);
        return block + 1;
    }

    void deallocate(void* memory) override
    {
        if (!memory) return;
        MemoryBlock* block = static_cast<MemoryBlock*>(memory) - 1;
        if (t_budget) t_budget->credit(block);
        unlink(block);
        std::free(block);
    }
};

std::size_t memory_limit(std::size_t document_size)
{
    constexpr std::size_t kLargest = (std::numeric_limits<std::size_t>::max() - kMinMemory) / kMemoryPerByte;
    return kMinMemory + kMemoryPerByte * std::min(document_size, kLargest);
}

} // namespace

MemoryRing::~MemoryRing()
{
    for (MemoryBlock* block = head_.next; block != &head_;) {
        MemoryBlock* next = block->next;
        std::free(block);
        block = next;
    }
}

void MemoryRing::add(MemoryBlock* block)
{
    block->previous = &head_;
    block->next = head_.next;
    head_.next->previous = block;
    head_.next = block;
}

ParseBudget::ParseBudget(std::size_t document_size)
    : outer_(t_budget), memory_limit_(memory_limit(document_size)), exceptions_(std::uncaught_exceptions())
{
    t_budget = this;
}

ParseBudget::~ParseBudget()
{
    t_budget = outer_;
}

std::unique_ptr<MemoryRing> ParseBudget::keep()
{
    return std::exchange(ring_, std::make_unique<MemoryRing>());
}

void ParseBudget::begin_declaration()
{
    in_declaration_ = true;
    declaration_ = 0;
}

void ParseBudget::check() const
{
    if (excess_) throw ParseRefused(excess_);
}

void ParseBudget::refuse_large(std::size_t size)
{
    if (size < kLargeBlock) return;
    if (size > memory_limit_) excess_ = "the document needs too much memory";
    if (++large_blocks_ > kMaxLargeBlocks) excess_ = "the document expands too many entities";
    // Once: what follows is the way out, with its destructors.
    if (excess_ && !was_interrupted_ && std::uncaught_exceptions() == exceptions_) {
        was_interrupted_ = true;
        check();
    }
}

void ParseBudget::charge(MemoryBlock* block)
{
    ring_->add(block);
    memory_ += block->size;
    if (memory_ > memory_limit_) excess_ = "the document needs too much memory";
    if (in_declaration_ && block->size < kLargeBlock) {
        declaration_ += block->size;
        if (declaration_ > kMaxDeclaration) excess_ = "a declaration of the document is too long";
    }
}

// A block may be older than the budget.
void ParseBudget::credit(const MemoryBlock* block)
{
    memory_ -= std::min(block->size, memory_);
}

MemoryManager* parse_memory()
{
    static ParseMemory memory;
    return &memory;
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
