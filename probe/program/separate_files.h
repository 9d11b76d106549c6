#ifndef SOAPWRAPPER_PROBE_PROGRAM_SEPARATE_FILES_H
#define SOAPWRAPPER_PROBE_PROGRAM_SEPARATE_FILES_H

namespace soapwrapper::probe
{

struct CommonOptions;

// What is written replaces a file: one that is to be read, or written for another reason, is a Problem.
void require_separate_files(const CommonOptions& options);

} // namespace soapwrapper::probe

#endif
