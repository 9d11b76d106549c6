// The file from which clients learn whom to trust.
#ifndef SOAPWRAPPER_SIMULATOR_CA_FILE_H
#define SOAPWRAPPER_SIMULATOR_CA_FILE_H

#include <string>
#include <string_view>

namespace soapwrapper::simulator
{

// Makes the file, or replaces it, so that a reader finds the whole text or what was there before. Throws a
// std::runtime_error with a text for the user.
void write_ca_file(const std::string& path, std::string_view pem);

} // namespace soapwrapper::simulator

#endif
