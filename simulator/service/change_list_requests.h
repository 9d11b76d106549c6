// Listing what differs between two snapshots.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_CHANGE_LIST_REQUESTS_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_CHANGE_LIST_REQUESTS_H

#include "simulator/service/call.h"

namespace soapwrapper::simulator
{

void handle(Call& call, const _ns1__openSnapChangeList& request, _ns1__openSnapChangeListResponse& response);
void handle(Call& call, const _ns1__listFile& request, _ns1__listFileResponse& response);
void handle(Call& call, const _ns1__closeSnapChangeList& request,
            _ns1__closeSnapChangeListResponse& response);

} // namespace soapwrapper::simulator

#endif
