#include "service/reply_bounds.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "soapwrapperH.h"

namespace soapwrapper
{
namespace
{

// So many names are looked through at no cost worth counting; with more of them, a reply may have fewer
// elements. Each byte counts as if an element began with it.
constexpr std::size_t kNamesForFree = 64;
constexpr std::uint64_t kMostSearches = 400000000;

// The length of a list, no further than it matters.
template <class Node>
std::size_t length(const Node* node)
{
    std::size_t count = 0;
    for (; node && count <= kMostNames; node = node->next) ++count;
    return count;
}

int refuse(soap* context, const char* why, int error = SOAP_LENGTH)
{
    return soap_set_receiver_error(context, "The reply is refused", why, error);
}

} // namespace

int ReplyBounds::check(soap* context, std::size_t count)
{
    if (context->zlib_in != SOAP_ZLIB_NONE) {
        inflated_ += count;
        if (inflated_ > kLargestInflated && inflated_ > wire_ * kHighestInflation) {
            return refuse(context, "it is compressed beyond reason");
        }
    }
    const std::size_t names = std::max(length(context->attributes), length(context->nlist));
    if (names > kMostNames) return refuse(context, "it has too many attributes or namespaces");
    if (names > kNamesForFree) searches_ += count * (names - kNamesForFree);
    if (searches_ > kMostSearches) return refuse(context, "it has too many elements for its attributes");
    return SOAP_OK;
}

int ReplyBounds::check_call(soap* context, int result)
{
    if (result == SOAP_OK) return check(context, 0); // what came last hasn't been looked at yet
    // Of a fault that is nested too deeply the runtime tells its HTTP status alone.
    if (context->level > context->maxlevel) return refuse(context, "it is nested too deeply", SOAP_LEVEL);
    return result;
}

} // namespace soapwrapper
