#include "service/wire_session.h"

#include "plugin/host/host_records.h"

namespace soapwrapper
{

WireSession::WireSession(const sts_session_def_v7_t& session) : proxy_(session.proxy)
{
    definition_.flags = session.session_flags;
    if (session.session_id) {
        id_ = session.session_id;
        definition_.id = &id_;
    }
    definition_.proxy = &proxy_;
}

WireCredential::WireCredential(const sts_cred_t& credential)
{
    // The binding only reads the bytes that it sends.
    cert_.__ptr = const_cast<unsigned char*>(credential.cert);
    cert_.__size = credential.len;
    credential_.len = credential.len;
    credential_.type = credential.type;
    credential_.cert = &cert_;
}

} // namespace soapwrapper
