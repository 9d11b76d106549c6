// Exports and volume claims.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_EXPORTS_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_EXPORTS_H

#include "simulator/service/call.h"

namespace soapwrapper::simulator
{

void handle(Call& call, const _ns1__createExport& request, _ns1__createExportResponse& response);
void handle(Call& call, const _ns1__addExport& request, _ns1__addExportResponse& response);
void handle(Call& call, const _ns1__deleteExport& request, _ns1__deleteExportResponse& response);
void handle(Call& call, const _ns1__claimVolume& request, _ns1__claimVolumeResponse& response);

} // namespace soapwrapper::simulator

#endif
