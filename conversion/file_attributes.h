#ifndef SOAPWRAPPER_CONVERSION_FILE_ATTRIBUTES_H
#define SOAPWRAPPER_CONVERSION_FILE_ATTRIBUTES_H

#include "plugin/host/host_records.h"

class ns1__FileAttr;

namespace soapwrapper
{

// One entry of a change list. A number whose element is nil is 0, so that an entry means the same whatever
// stood in the record before.
void set_file_attr_from_soap(sts_file_attr_v11_t& file, const ns1__FileAttr* wire);

} // namespace soapwrapper

#endif
