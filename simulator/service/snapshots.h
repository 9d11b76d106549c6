// The snapshot catalogue.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_SNAPSHOTS_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_SNAPSHOTS_H

#include "simulator/scenario/records.h"
#include "simulator/service/call.h"

#include <string>

namespace soapwrapper::simulator
{

ns1__SnapInformation* wire_snapshot(const Call& call, const Snapshot& snapshot,
                                    const std::string& server_name, const std::string& lsu_name);

void handle(Call& call, const _ns1__openSnapList& request, _ns1__openSnapListResponse& response);
void handle(Call& call, const _ns1__openSnapListByVolume& request, _ns1__openSnapListResponse& response);
void handle(Call& call, const _ns1__listSnap& request, _ns1__listSnapResponse& response);
void handle(Call& call, const _ns1__closeSnapList& request, _ns1__closeSnapListResponse& response);
void handle(Call& call, const _ns1__getSnapPropByName& request, _ns1__getSnapPropByNameResponse& response);
void handle(Call& call, const _ns1__deleteSnap& request, _ns1__deleteSnapResponse& response);
void handle(Call& call, const _ns1__validateRollback& request, _ns1__validateRollbackResponse& response);

} // namespace soapwrapper::simulator

#endif
