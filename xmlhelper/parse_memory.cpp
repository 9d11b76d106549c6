#include "xmlhelper/parse_memory.h"

#include "xmlhelper/document_bounds.h"

#include <cstdint>
#include <memory>
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

// Each expansion of an entity takes one block of this size or more, to read the entity's text from.
constexpr std::size_t kLargeBlock = 64 * 1024;

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

// `least` and `per_byte` for each byte of the document, as far as numbers go.
template <class Number>
Number limit(Number least, Number per_byte, std::size_t document_size)
{
    const Number largest = (std::numeric_limits<Number>::max() - least) / per_byte;
    return least + per_byte * std::min<Number>(document_size, largest);
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
    : outer_(t_budget), max_memory_(limit(kMinMemory, kMemoryPerByte, document_size)),
      max_entity_expansions_(kMinEntityExpansions + document_size / kBytesPerEntityExpansion),
      // A text of the document's own may take such a block as well.
      max_large_blocks_(2 * max_entity_expansions_ + document_size / kLargeBlock),
      max_steps_(limit(kMinSteps, kStepsPerByte, document_size)), exceptions_(std::uncaught_exceptions())
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

void ParseBudget::spend(std::uint64_t steps)
{
    steps_ += steps;
    if (steps_ > max_steps_) throw ParseRefused("the document takes too much time");
}

void ParseBudget::check() const
{
    if (excess_) throw ParseRefused(excess_);
}

void ParseBudget::refuse_large(std::size_t size)
{
    if (size < kLargeBlock) return;
    if (size > max_memory_) excess_ = "the document needs too much memory";
    if (++large_blocks_ > max_large_blocks_) excess_ = "the document expands too many entities";
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
    if (memory_ > max_memory_) excess_ = "the document needs too much memory";
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
