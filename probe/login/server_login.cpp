#include "probe/login/server_login.h"

#include "plugin/host/host_records.h"
#include "probe/arguments/arguments.h"
#include "probe/library/credential.h"
#include "probe/library/probe.h"
#include "probe/library/session.h"
#include "probe/library/slots.h"
#include "probe/login/clear_login.h"
#include "probe/login/server_discovery.h"
#include "probe/output/problem.h"

#include <iostream>
#include <optional>
#include <utility>

namespace soapwrapper::probe
{
namespace
{

Credential read_credential(const LoginOptions& options)
{
    if (options.credential_file.empty()) return Credential::from_environment(options.credential_type);
    Credential::forget_environment();
    return Credential::from_file(options.credential_file, options.credential_type, std::cerr);
}

// Has the session watch a credential for as long as a scope lasts.
class Watch
{
  public:
    Watch(Session& session, const Credential& credential) : session_(session) { session_.watch(&credential); }
    ~Watch() { session_.watch(nullptr); }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

  private:
    Session& session_;
};

} // namespace

OpenServer::~OpenServer()
{
    if (!handle_) return;
    if (const auto problem = close_handle(probe_, slot::stspi_close_server, handle_)) {
        warn("the server could not be closed", *problem);
    }
}

void OpenServer::check() const
{
    if (handle_) return;
    throw Problem(ExitCode::kOperation, "no handle", std::nullopt,
                  "the server was opened, but the library gave no handle for it");
}

void OpenServer::close()
{
    if (!handle_) return;
    // Whatever comes of it, it isn't tried again.
    const auto problem = close_handle(probe_, slot::stspi_close_server, std::exchange(handle_, nullptr));
    if (problem) throw Problem(*problem);
}

ServerLogin::ServerLogin(const Probe& probe, const std::string& name, const LoginOptions& options,
                         const WithCredential& opens_more)
    : server_(probe), target_(probe)
{
    probe.library.entry(slot::stspi_close_server); // what couldn't be closed again isn't opened
    const Credential credential = read_credential(options);
    const Watch watch(probe.session, credential);
    work_.emplace(probe.interruption);
    if (options.no_discovery) {
        claim_name(probe, name);
    } else {
        ServerDiscovery found = discover_server(probe, name);
        if (found.problem) throw Problem(*found.problem);
        selection_ = std::move(found.selection);
    }
    const char* const interface_name = options.required_interface.c_str();
    const int status = call(probe, slot::stspi_open_server, probe.session.record(), name.c_str(),
                            credential.record(), interface_name, server_.address());
    if (options.warns_of_clear_login && credential.record()->len > 0)
        warn_of_clear_login(probe.session, selection_);
    if (const auto problem = problem_of(probe, status)) throw Problem(with_name_trouble(*problem, name));
    server_.check();
    if (opens_more) opens_more(credential.record());
    if (options.target_server.empty()) return;
    require(probe, slot::stspi_open_target_server, handle(), options.target_server.c_str(),
            credential.record(), interface_name, target_.address());
    target_.check();
}

void ServerLogin::close()
{
    target_.close();
    server_.close();
}

stsp_lsu_v7_t lsu_reference(const ServerLogin& login, const LsuArguments& arguments)
{
    stsp_lsu_v7_t lsu = {};
    lsu.server = login.handle();
    put(lsu.name, arguments.lsu);
    return lsu;
}

} // namespace soapwrapper::probe
