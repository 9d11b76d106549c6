// The independent supplier id, the same block in image and snapshot definitions.
#ifndef SOAPWRAPPER_CONVERSION_SUPPLIER_ID_H
#define SOAPWRAPPER_CONVERSION_SUPPLIER_ID_H

#include "plugin/host/host_records.h"

class ns1__IndependentSupplierId;

namespace soapwrapper
{

// A wire object of its own with three more behind it, all from operator new. The bytes of `info` are not
// copied: they stay the host's and must outlive the object.
ns1__IndependentSupplierId* new_supplier_id(const sts_isid_t& isid);

// Deletes what new_supplier_id made and nulls the pointer, which may be null already.
void delete_supplier_id(ns1__IndependentSupplierId*& isid);

} // namespace soapwrapper

#endif
