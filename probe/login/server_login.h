// An open server session, as nearly every command needs one.
#ifndef SOAPWRAPPER_PROBE_LOGIN_SERVER_LOGIN_H
#define SOAPWRAPPER_PROBE_LOGIN_SERVER_LOGIN_H

#include "plugin/host/handles.h"
#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/library/interruption.h"
#include "probe/library/probe.h"

#include <functional>
#include <optional>
#include <string>

namespace soapwrapper::probe
{

// The handle of a server, which is closed on every way out.
class OpenServer
{
  public:
    explicit OpenServer(const Probe& probe) : probe_(probe) {}

    // Closes a server that is still open, and warns if that fails.
    ~OpenServer();
    OpenServer(const OpenServer&) = delete;
    OpenServer& operator=(const OpenServer&) = delete;

    // For the entry that opens the server.
    stsp_server_t** address() { return &handle_; }

    // Of an opened server. The lack of one is thrown.
    void check() const;

    stsp_server_t* get() const { return handle_; }

    // Closes the server, if there is one. A refusal is thrown.
    void close();

  private:
    const Probe& probe_;
    stsp_server_t* handle_ = nullptr;
};

class ServerLogin
{
  public:
    // Reads the credential, discovers the server unless that is forbidden, and opens it, and the target
    // server behind it. The credential is gone from memory when this returns or throws.
    // `opens_more` opens what else needs the credential, once the server is open.
    using WithCredential = std::function<void(const sts_cred_t*)>;
    ServerLogin(const Probe& probe, const std::string& name, const LoginOptions& options,
                const WithCredential& opens_more = {});

    stsp_server_t* handle() const { return server_.get(); }

    // Null if no target server was asked for.
    stsp_server_t* target() const { return target_.get(); }

    // The library's line on the interface that discovery chose; empty without discovery.
    const std::string& selection() const { return selection_; }

    // Closes what is open. A refusal is thrown.
    void close();

  private:
    std::optional<Interruption::Work> work_;
    OpenServer server_;
    OpenServer target_; // is closed ahead of the server that it was opened through
    std::string selection_;
};

stsp_lsu_v7_t lsu_reference(const ServerLogin& login, const LsuArguments& arguments);

} // namespace soapwrapper::probe

#endif
