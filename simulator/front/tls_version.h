#ifndef SOAPWRAPPER_SIMULATOR_FRONT_TLS_VERSION_H
#define SOAPWRAPPER_SIMULATOR_FRONT_TLS_VERSION_H

namespace soapwrapper::simulator
{

enum class TlsVersion { kTls12, kTls13 };

} // namespace soapwrapper::simulator

#endif
