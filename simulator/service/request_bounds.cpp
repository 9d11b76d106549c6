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

} // namespace

RequestBounds::RequestBounds(soap& context) : context_(context)
{
    context_.user = this;
    context_.frecv = read_block;
    context_.fpreparerecv = check_names;
}

int RequestBounds::check()
{
    exceeded_ = exceeded_ || length(context_.attributes) > kMostNames || length(context_.nlist) > kMostNames;
    if (!exceeded_) return SOAP_OK;
    return soap_sender_fault(&context_, "the request has too many attributes or namespaces", nullptr);
}

std::size_t RequestBounds::read_block(soap* context, char* bytes, std::size_t count)
{
    if (static_cast<RequestBounds*>(context->user)->exceeded_) return 0;
    context->is->read(bytes, static_cast<std::streamsize>(std::min(count, kLargestRead)));
    return static_cast<std::size_t>(context->is->gcount());
}

int RequestBounds::check_names(soap* context, const char* /*bytes*/, std::size_t /*count*/)
{
    return static_cast<RequestBounds*>(context->user)->check();
}

} // namespace soapwrapper::simulator
