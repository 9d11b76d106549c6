// An open server session, as nearly every command needs one.
#ifndef SOAPWRAPPER_TOOLS_SERVER_LOGIN_H
#define SOAPWRAPPER_TOOLS_SERVER_LOGIN_H

#include "plugin/host_records.h"
#include "tools/probe.h"

#include <string>

namespace CLI
{
class App;
}

namespace soapwrapper::probe
{

// How to log in, as the command line tells it.
struct LoginOptions {
    std::string credential_file; // empty: the environment has it
    int credential_type = 1;
    std::string required_interface;
    bool no_discovery = false;
};

void add_login_options(CLI::App& command, LoginOptions& options);

class ServerLogin
{
  public:
    // Reads the credential, discovers the server unless that is forbidden, and opens it. The credential is
    // gone from memory when this returns or throws.
    ServerLogin(const Probe& probe, const std::string& name, const LoginOptions& options);

    // Closes a session that is still open, and warns if that fails.
    ~ServerLogin();
    ServerLogin(const ServerLogin&) = delete;
    ServerLogin& operator=(const ServerLogin&) = delete;

    stsp_server_t* handle() const { return handle_; }

    // The library's line on the interface that discovery chose; empty without discovery.
    const std::string& selection() const { return selection_; }

    // Closes the session. A refusal is thrown.
    void close();

  private:
    const Probe& probe_;
    stsp_server_t* handle_ = nullptr;
    std::string selection_;
};

} // namespace soapwrapper::probe

#endif
