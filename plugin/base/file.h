#ifndef SOAPWRAPPER_PLUGIN_BASE_FILE_H
#define SOAPWRAPPER_PLUGIN_BASE_FILE_H

#include <cstdio>
#include <memory>

namespace soapwrapper
{

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
// An open file, or none.
using File = std::unique_ptr<std::FILE, CloseFile>;

} // namespace soapwrapper

#endif
