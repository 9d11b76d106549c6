// Who asks, as requests say it: the session, a credential, a handle. Each object owns what one request
// points at for the length of one call.
#ifndef SOAPWRAPPER_SERVICE_WIRE_SESSION_H
#define SOAPWRAPPER_SERVICE_WIRE_SESSION_H

#include "plugin/host/host_records.h"

#include <string>

#include "soapwrapperH.h"

namespace soapwrapper
{

// The session record as the service wants it, for the length of one call.
class WireSession
{
  public:
    explicit WireSession(const sts_session_def_v7_t& session);
    WireSession(const WireSession&) = delete;
    WireSession& operator=(const WireSession&) = delete;

    ns1__SessionDefinition* get() { return &definition_; }

  private:
    std::string proxy_;
    std::string id_;
    ns1__SessionDefinition definition_;
};

// A credential as the service wants it. The bytes stay where the host has them.
class WireCredential
{
  public:
    explicit WireCredential(const sts_cred_t& credential);
    WireCredential(const WireCredential&) = delete;
    WireCredential& operator=(const WireCredential&) = delete;

    ns1__Credential* get() { return &credential_; }

  private:
    xsd__base64Binary cert_;
    ns1__Credential credential_;
};

// A handle as the service wants it: most of its handles are nothing but the token that it gave out. A null
// token goes out empty.
template <class Handle>
class WireToken
{
  public:
    explicit WireToken(const char* token) : token_(token ? token : "") { handle_.token = &token_; }
    WireToken(const WireToken&) = delete;
    WireToken& operator=(const WireToken&) = delete;

    Handle* get() { return &handle_; }

  private:
    std::string token_;
    Handle handle_;
};

using WireServerHandle = WireToken<ns1__ServerHandle>;

} // namespace soapwrapper

#endif
