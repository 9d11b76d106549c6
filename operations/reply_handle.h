// The handles in the replies to opens and starts: an element with a token in it.
#ifndef SOAPWRAPPER_OPERATIONS_REPLY_HANDLE_H
#define SOAPWRAPPER_OPERATIONS_REPLY_HANDLE_H

namespace soapwrapper
{

// The element that a good reply lacks: the handle's own, or the token in it. Null if both are there.
template <class Handle>
const char* missing_of(const Handle* handle, const char* element)
{
    if (!handle) return element;
    return handle->token ? nullptr : "token";
}

} // namespace soapwrapper

#endif
