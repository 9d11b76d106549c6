#include "simulator/service/request_bounds.h"

#include <algorithm>
#include <cstddef>
#include <ios>
#include <istream>

#include "soapwrapperH.h"

namespace soapwrapper::simulator
{
namespace
{

// Bytes that are read at once, ahead of the next look at the lists.
constexpr std::size_t kLargestRead = 1024;

// The length of a list, no further than it matters.
template <class Node>
std::size_t length(const Node* node)
{
    std::size_t count = 0;
    for (; node && count <= kMostNames; node = node->next) ++count;
    return count;
}

std::size_t read_block(soap* context, char* bytes, std::size_t count)
{
    context->is->read(bytes, static_cast<std::streamsize>(std::min(count, kLargestRead)));
    return static_cast<std::size_t>(context->is->gcount());
}

int check_names(soap* context, const char* /*bytes*/, std::size_t /*count*/)
{
    if (length(context->attributes) <= kMostNames && length(context->nlist) <= kMostNames) return SOAP_OK;
    return soap_sender_fault(context, "the request has too many attributes or namespaces", nullptr);
}

} // namespace

void bound_request(soap& context)
{
    context.frecv = read_block;
    context.fpreparerecv = check_names;
}

} // namespace soapwrapper::simulator
