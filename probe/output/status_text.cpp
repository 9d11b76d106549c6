#include "probe/output/status_text.h"

#include "plugin/host/status.h"

#include <algorithm>
#include <iterator>

namespace soapwrapper::probe
{
namespace
{

// The name is taken from the constant, so that the two can't part.
#define STATUS(name, meaning)                                                                                \
    StatusText                                                                                               \
    {                                                                                                        \
        name, #name, meaning                                                                                 \
    }

constexpr StatusText kStatuses[] = {
    STATUS(STS_EOK, "the operation succeeded"),
    STATUS(STS_ENULLARG, "a required argument is missing, or the server name has no colon"),
    STATUS(STS_ENOMEM, "there is no memory left for what the service sent"),
    STATUS(STS_EBUSY, "the service is busy and asks to come back later"),
    STATUS(STS_EINTERFACE, "the second plug-in was asked for an interface that it does not have"),
    STATUS(STS_EVERSION, "the host is too old, or the service offers no interface that can be used"),
    STATUS(STS_ENOTMINE, "the server name bears another plug-in's prefix"),
    STATUS(STS_ENOTINIT, "the second plug-in was called before its start"),
    STATUS(STS_EINUSE, "the resource is in use"),
    STATUS(STS_ENOENT, "there are no more entries"),
    STATUS(STS_ESOAPERROR, "the service could not be reached or its answer could not be read"),
    STATUS(STS_ETIMEDOUT, "the filer stayed busy through all retries"),
    STATUS(STS_EFAULTDETAIL, "the service refused without saying why"),
    STATUS(STS_EBADARG, "a handle or a value cannot be used"),
    STATUS(STS_ENOSERVICEHANDLE,
           "the server handle holds no session, or the service could not be reached or understood"),
    STATUS(STS_EPLUGIN, "the service's answer cannot be used, or the second connection would not close"),
};

#undef STATUS

const StatusText* known_status(int status)
{
    const auto* found = std::find_if(std::begin(kStatuses), std::end(kStatuses),
                                     [status](const StatusText& known) { return known.status == status; });
    return found == std::end(kStatuses) ? nullptr : found;
}

} // namespace

StatusText status_text(int status)
{
    const StatusText* known = known_status(status);
    return known ? *known : StatusText{status, "service status", "the storage service's own status"};
}

const char* status_name(int status)
{
    const StatusText* known = known_status(status);
    return known ? known->name : nullptr;
}

} // namespace soapwrapper::probe
