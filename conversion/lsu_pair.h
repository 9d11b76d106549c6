// Server and LSU pairs, single and in arrays.
#ifndef SOAPWRAPPER_CONVERSION_LSU_PAIR_H
#define SOAPWRAPPER_CONVERSION_LSU_PAIR_H

#include "plugin/host/host_records.h"

class ns1__ArrayOfLSUSpecification;
class ns1__LSUSpecification;

namespace soapwrapper
{

void set_lsu_spec_from_soap(sts_lsu_spec_v11_t& spec, const ns1__LSUSpecification* wire);

// Writes as many entries as the wire holds: the caller compares the counts first.
void set_lsu_spec_array_from_soap(sts_lsu_spec_v11_t* specs, const ns1__ArrayOfLSUSpecification* wire);

// Appends `count` objects from operator new; cleanup_lsu_spec_array deletes them. `specs` isn't read when
// the count is 0.
void set_lsu_spec_array_from_sts(ns1__ArrayOfLSUSpecification& wire, const sts_lsu_spec_v11_t* specs,
                                 unsigned int count);
void cleanup_lsu_spec_array(ns1__ArrayOfLSUSpecification& wire);

} // namespace soapwrapper

#endif
