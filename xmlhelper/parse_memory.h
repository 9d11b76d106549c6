// Bounds on what a document may cost to read. Declarations expand, default and nest, so that a short document
// can ask for any amount of memory and time. Memory, and the texts of entities, pass through the parser's
// allocations.
#ifndef SOAPWRAPPER_XMLHELPER_PARSE_MEMORY_H
#define SOAPWRAPPER_XMLHELPER_PARSE_MEMORY_H

#include <xercesc/framework/MemoryManager.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

// A document went past a bound.
class ParseRefused : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

// Ahead of each block of parse_memory(). Blocks of one parse form a ring.
struct alignas(std::max_align_t) MemoryBlock {
    MemoryBlock* previous;
    MemoryBlock* next;
    std::size_t size;
};

// The blocks of one parse that haven't been given back. The rest goes with the object: the parser doesn't
// clean up everything, neither when it is interrupted nor, of some documents, when it isn't.
class MemoryRing
{
  public:
    MemoryRing() : head_{&head_, &head_, 0} {}
    ~MemoryRing();
    MemoryRing(const MemoryRing&) = delete;
    MemoryRing& operator=(const MemoryRing&) = delete;

    void add(MemoryBlock* block);

  private:
    MemoryBlock head_;
};

// Counts what the thread takes from parse_memory() while the object lives.
class ParseBudget
{
  public:
    explicit ParseBudget(std::size_t document_size);
    // Gives back whatever is left, unless it was kept.
    ~ParseBudget();
    ParseBudget(const ParseBudget&) = delete;
    ParseBudget& operator=(const ParseBudget&) = delete;

    // What is left is a document's now, to go after it.
    std::unique_ptr<MemoryRing> keep();

    std::size_t max_entity_expansions() const { return max_entity_expansions_; }
    // Throws ParseRefused when the document has taken too many steps.
    void spend(std::uint64_t steps);

    // Throws ParseRefused if a bound was passed. Allocations only note it, for the parser allocates in
    // destructors too; all but the large ones, of which there is no end otherwise.
    void check() const;
    void charge(MemoryBlock* block);
    void credit(const MemoryBlock* block);
    void refuse_large(std::size_t size);

  private:
    ParseBudget* const outer_;
    const std::size_t max_memory_;
    const std::size_t max_entity_expansions_;
    const std::size_t max_large_blocks_;
    const std::uint64_t max_steps_;
    const int exceptions_;
    std::unique_ptr<MemoryRing> ring_ = std::make_unique<MemoryRing>();
    std::size_t memory_ = 0;
    std::size_t large_blocks_ = 0;
    std::uint64_t steps_ = 0;
    bool was_interrupted_ = false;
    const char* excess_ = nullptr;
};

// Where the parser and its documents take memory from.
xercesc::MemoryManager* parse_memory();

} // namespace Oskelund::Tarnholme::VMware::XMLHelper

#endif
