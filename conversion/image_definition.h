// Images. To the service goes the whole record; back comes what a host needs to see, and the rest of the
// host's record stays as it stood, as does a field whose element is nil.
#ifndef SOAPWRAPPER_CONVERSION_IMAGE_DEFINITION_H
#define SOAPWRAPPER_CONVERSION_IMAGE_DEFINITION_H

#include "plugin/host/host_records.h"

class ns1__ArrayOfExport;
class ns1__ImageDefinition;
class ns1__ImageInformation;

namespace soapwrapper
{

// Base name, date, policy, save-as kind and flags.
void set_image_def_from_soap(sts_image_def_v10_t& def, const ns1__ImageDefinition* wire);

// All of it but the exports.
void set_image_info_from_soap(sts_image_info_v10_t& info, const ns1__ImageInformation* wire);

// Writes every export of the list: beyond four it logs an anomaly through `session`, which may be null, and
// goes on, so `exports` must have room for as many as the list holds.
void set_exports_from_soap(sts_export_v7_t* exports, const ns1__ArrayOfExport* wire,
                           const sts_session_def_v7_t* session);

// Fills the wire object with objects from operator new; `def` must outlive it, because the supplier's text
// is not copied.
void set_image_def_from_sts(ns1__ImageDefinition& wire, const sts_image_def_v10_t* def);

// Deletes the branch of the supplier id and nothing else.
void cleanup_image_def(ns1__ImageDefinition& wire);

// Deletes all that set_image_def_from_sts made.
void release_image_def(ns1__ImageDefinition& wire);

// The same for image information. The wire object's `exports` must be there already: it gets four entries,
// always. The definition is an object of its own, from operator new, so that it outlives this function.
void set_image_info_from_sts(ns1__ImageInformation& wire, const sts_image_info_v10_t* info);

// Deletes all that set_image_info_from_sts made. The array object of `exports` is the caller's and is left
// empty.
void release_image_info(ns1__ImageInformation& wire);

} // namespace soapwrapper

#endif
