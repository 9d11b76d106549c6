// The login to a filer, which the library finds behind the filer's name in the volume.
#ifndef SOAPWRAPPER_PROBE_LOGIN_ZAPI_LOGIN_H
#define SOAPWRAPPER_PROBE_LOGIN_ZAPI_LOGIN_H

#include "plugin/host/host_records.h"
#include "probe/library/credential.h"
#include "probe/library/probe.h"

#include <string>

namespace soapwrapper::probe
{

inline constexpr char kZapiPasswordVariable[] = "SOAPWRAPPER_ZAPI_PASSWORD";

// While it lives, the password is taken out of every line of the log.
class ZapiLogin
{
  public:
    // The password is the environment's. What is missing, or would be taken apart wrongly, is thrown.
    ZapiLogin(const Probe& probe, const std::string& user, const sts_volume_spec_v11_t& volume);
    ~ZapiLogin() { probe_.session.watch(nullptr); }
    ZapiLogin(const ZapiLogin&) = delete;
    ZapiLogin& operator=(const ZapiLogin&) = delete;

    // "filer user password", as the library takes it apart again, in the place of the filer.
    void put_behind_filer(sts_volume_spec_v11_t& volume) const;

  private:
    const Probe& probe_;
    const std::string user_;
    const Credential password_;
};

// A volume whose texts are gone from memory with it.
struct ForgottenVolume {
    sts_volume_spec_v11_t record = {};
    ~ForgottenVolume();
};

} // namespace soapwrapper::probe

#endif
