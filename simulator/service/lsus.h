// The LSU catalogue.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_LSUS_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_LSUS_H

#include "simulator/scenario/records.h"
#include "simulator/service/call.h"

#include <cstddef>
#include <string>

namespace soapwrapper::simulator
{

ns1__LSUInformation* wire_lsu(const Call& call, const LsuProperties& lsu, std::size_t images,
                              const std::string& server_name);

void handle(Call& call, const _ns1__openLSUList& request, _ns1__openLSUListResponse& response);
void handle(Call& call, const _ns1__listLSU& request, _ns1__listLSUResponse& response);
void handle(Call& call, const _ns1__closeLSUList& request, _ns1__closeLSUListResponse& response);
void handle(Call& call, const _ns1__getLSUPropByName& request, _ns1__getLSUPropByNameResponse& response);
void handle(Call& call, const _ns1__getLSUReplicationProp& request,
            _ns1__getLSUReplicationPropResponse& response);
void handle(Call& call, const _ns1__labelLSU& request, _ns1__labelLSUResponse& response);

} // namespace soapwrapper::simulator

#endif
