#include "simulator/storage/model.h"

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/scenario.h"
#include "simulator/storage/serial.h"
#include "simulator/storage/storage.h"
#include "simulator/storage/storage_server.h"

#include <openssl/crypto.h>

#include <cstddef>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{

Model::Model(const Scenario& scenario, std::vector<std::string> interfaces, std::string credential,
             Serial started)
    : interfaces_(std::move(interfaces)), credential_(std::move(credential)), storage_(scenario),
      operations_(scenario.operations, started)
{
}

Model::Use::Use(Model& model) : lock_(model.mutex_), model_(model)
{
    model_.operations_.end_due(model_.storage_);
}

std::size_t Model::Use::admit(const std::string& server, const Credential& credential) const
{
    // An unknown server is told ahead of a wrong credential.
    const std::size_t index = model_.storage_.server_index(server);
    const std::string& expected = model_.credential_;
    if (credential.type != kCredentialType || credential.bytes.size() != expected.size() ||
        CRYPTO_memcmp(credential.bytes.data(), expected.data(), expected.size()) != 0) {
        throw Fault(kCredentialRefused, "the credential is refused");
    }
    return index;
}

std::string Model::Use::open_server(const std::string& server, const Credential& credential) const
{
    admit(server, credential);
    return model_.storage_.open_session(server);
}

ServerProperties Model::Use::properties(const std::string& server) const
{
    const StorageServer& described = model_.storage_.server(model_.storage_.server_index(server));
    ServerProperties properties;
    properties.name = server;
    properties.types = described.scenario.types;
    properties.flags = described.scenario.flags;
    properties.max_sessions = described.scenario.max_sessions;
    properties.open_sessions = described.open_sessions;
    properties.capabilities = described.scenario.capabilities;
    properties.interfaces = model_.interfaces_;
    properties.credential_types = {kCredentialType};
    properties.ndmp_host = host_of(server);
    return properties;
}

} // namespace soapwrapper::simulator
