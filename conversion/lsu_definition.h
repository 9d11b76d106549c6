// What the service says of an LSU, in the host's records. A field that no element is meant for stays as it
// stood, and so does one whose element is nil.
#ifndef SOAPWRAPPER_CONVERSION_LSU_DEFINITION_H
#define SOAPWRAPPER_CONVERSION_LSU_DEFINITION_H

#include "plugin/host/host_records.h"

class ns1__LSUDefinition;
class ns1__LSUInformation;

namespace soapwrapper
{

void set_lsu_def_from_soap_v10(sts_lsu_def_v9_t& def, const ns1__LSUDefinition* wire);

// Here a nil label empties the field. `version` is not brought back.
void set_lsu_def_from_soap_v11(sts_lsu_def_v11_t& def, const ns1__LSUDefinition* wire);

void set_lsu_info_from_soap(sts_lsu_info_v11_t& info, const ns1__LSUInformation* wire);

} // namespace soapwrapper

#endif
