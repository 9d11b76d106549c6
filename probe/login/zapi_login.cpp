#include "probe/login/zapi_login.h"

#include "plugin/host/host_records.h"
#include "probe/library/credential.h"
#include "probe/library/probe.h"
#include "probe/output/problem.h"

#include <string.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace soapwrapper::probe
{
namespace
{

Credential password_for(const std::string& user, const sts_volume_spec_v11_t& volume)
{
    if (user.empty() || !std::getenv(kZapiPasswordVariable)) {
        throw usage_problem(std::string("the list comes from the second plug-in, which needs a login: give "
                                        "--zapi-user and set ") +
                            kZapiPasswordVariable);
    }
    if (std::strchr(volume.first, ' ')) {
        throw usage_problem("the filer's name holds a blank, behind which the library would look for a user");
    }
    return Credential::from_environment(0, kZapiPasswordVariable);
}

} // namespace

ZapiLogin::ZapiLogin(const Probe& probe, const std::string& user, const sts_volume_spec_v11_t& volume)
    : probe_(probe), user_(user), password_(password_for(user, volume))
{
    probe.session.watch(&password_);
}

void ZapiLogin::put_behind_filer(sts_volume_spec_v11_t& volume) const
{
    const std::size_t filer = strnlen(volume.first, sizeof volume.first);
    const std::string middle = " " + user_ + " ";
    const auto size = static_cast<std::size_t>(password_.record()->len);
    if (filer + middle.size() + size >= sizeof volume.first) {
        throw usage_problem("filer, user and password are too long for the host's record together");
    }
    middle.copy(volume.first + filer, middle.size());
    std::memcpy(volume.first + filer + middle.size(), password_.record()->cert, size);
    volume.first[filer + middle.size() + size] = '\0';
}

ForgottenVolume::~ForgottenVolume()
{
    explicit_bzero(&record, sizeof record);
}

} // namespace soapwrapper::probe
