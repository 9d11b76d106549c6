#include "simulator/service/unserved.h"

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/service/call.h"

namespace soapwrapper::simulator
{
namespace
{

[[noreturn]] void refuse()
{
    throw Fault(kNotSupported, "this simulator doesn't serve the operation");
}

} // namespace

void handle(Call&, const _ns1__beginCopyImage&, _ns1__beginCopyImageResponse&)
{
    refuse();
}

void handle(Call&, const _ns1__copyExtent&, _ns1__copyExtentResponse&)
{
    refuse();
}

void handle(Call&, const _ns1__createImage&, _ns1__createImageResponse&)
{
    refuse();
}

void handle(Call&, const _ns1__includeInImage&, _ns1__includeInImageResponse&)
{
    refuse();
}

void handle(Call&, const _ns1__readImageMeta&, _ns1__readImageMetaResponse&)
{
    refuse();
}

void handle(Call&, const _ns1__writeImageMeta&, _ns1__writeImageMetaResponse&)
{
    refuse();
}

} // namespace soapwrapper::simulator
