// Who asks, as requests say it: the session, a credential, a server handle. Each object owns what one request
// points at for the length of one call.
#ifndef SOAPWRAPPER_SERVICE_WIRE_SESSION_H
#define SOAPWRAPPER_SERVICE_WIRE_SESSION_H

#include "plugin/host_records.h"

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

// A server handle as the service wants it.
class WireServerHandle
{
  public:
    explicit WireServerHandle(const char* service_handle) : token_(service_handle)
    {
        handle_.token = &token_;
    }
    WireServerHandle(const WireServerHandle&) = delete;
    WireServerHandle& operator=(const WireServerHandle&) = delete;

    ns1__ServerHandle* get() { return &handle_; }

  private:
    std::string token_;
    ns1__ServerHandle handle_;
};

} // namespace soapwrapper

#endif
