// The host that an export is for.
#ifndef SOAPWRAPPER_CONVERSION_EXPORT_HOST_H
#define SOAPWRAPPER_CONVERSION_EXPORT_HOST_H

#include "plugin/host/host_records.h"

#include <string>
#include <vector>

class ns1__HostSpecification;

namespace soapwrapper
{

// Rows beyond the sixteenth run on into what stands behind them in the record, and end with it.
void set_host_spec_from_soap(sts_host_spec_v11_t& host, const ns1__HostSpecification* wire);

// Makes two array objects with operator new; they are the caller's.
void set_host_spec_from_sts(ns1__HostSpecification& wire, const sts_host_spec_v11_t* host);

// All sixteen rows, empty ones too.
std::vector<std::string> texts_of_rows(const char (&rows)[STS_EXPORT_HOSTS][STS_HOST_TEXT_SIZE]);

} // namespace soapwrapper

#endif
