// What a reply may cost the host. A service that sends no such reply on purpose never comes near any of this.
#ifndef SOAPWRAPPER_SERVICE_REPLY_BOUNDS_H
#define SOAPWRAPPER_SERVICE_REPLY_BOUNDS_H

#include <cstddef>
#include <cstdint>

struct soap;

namespace soapwrapper
{

// Elements within elements, counted as the reader of the wire classes does. Their own need less than a dozen;
// a fault's chain of subcodes is read on the stack, a level each.
constexpr unsigned int kDeepestLevel = 48;

// Names of attributes in one reply, and namespaces declared around one element: the SOAP runtime searches
// both lists from end to end.
constexpr std::size_t kMostNames = 1000;

// A compressed reply may be larger than the one of these or than the other.
constexpr std::uint64_t kLargestInflated = std::uint64_t{64} << 20;
constexpr std::uint64_t kHighestInflation = 100; // times what came over the wire

// Bytes that are read at once, ahead of the next look at the lists.
constexpr std::size_t kLargestRead = 16384;

// What is counted while a reply comes in.
class ReplyBounds
{
  public:
    void begin() { *this = ReplyBounds(); }
    void came_over_wire(std::size_t count) { wire_ += count; }

    // For a block that the reader is about to read: SOAP_OK, or the error of a reply that goes beyond a
    // bound, which the context's fault then tells.
    int check(soap* context, std::size_t count);
    // The same for the call as a whole, which came to `result` so far.
    int check_call(soap* context, int result);

  private:
    std::uint64_t wire_ = 0;
    std::uint64_t inflated_ = 0;
    std::uint64_t searches_ = 0;
};

} // namespace soapwrapper

#endif
