#include "simulator/storage/model.h"

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/scenario.h"
#include "simulator/storage/storage.h"
#include "simulator/storage/storage_server.h"

#include <openssl/crypto.h>

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{

Model::Model(const Scenario& scenario, std::vector<std::string> interfaces, std::string credential)
    : interfaces_(std::move(interfaces)), credential_(std::move(credential)), storage_(scenario),
      operations_(scenario.operations)
{
}

void Model::request_arrived()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    storage_.request_arrived();
}

ServerProperties Model::properties_by_name(const std::string& server) const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return describe(storage_.server(storage_.server_index(server)), server);
}

ServerProperties Model::properties(const std::string& token) const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const Session& found = storage_.session(token);
    return describe(storage_.server(found.server), found.name);
}

std::string Model::open_server(const std::string& server, const Credential& credential)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return open_session(server, credential);
}

std::string Model::open_target_server(const std::string& source_token, const std::string& server,
                                      const Credential& credential)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    storage_.session(source_token);
    return open_session(server, credential);
}

void Model::close_server(const std::string& token)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    storage_.close_session(token);
}

std::string Model::open_event_channel(const std::string& server, const Credential& credential,
                                      std::int64_t from)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return storage_.event_channels.open({admit(server, credential), server, from});
}

std::size_t Model::admit(const std::string& name, const Credential& credential) const
{
    // An unknown server is told ahead of a wrong credential.
    const std::size_t index = storage_.server_index(name);
    if (credential.type != kCredentialType || credential.bytes.size() != credential_.size() ||
        CRYPTO_memcmp(credential.bytes.data(), credential_.data(), credential_.size()) != 0) {
        throw Fault(kCredentialRefused, "the credential is refused");
    }
    return index;
}

std::string Model::open_session(const std::string& name, const Credential& credential)
{
    admit(name, credential);
    return storage_.open_session(name);
}

ServerProperties Model::describe(const StorageServer& server, const std::string& name) const
{
    ServerProperties properties;
    properties.name = name;
    properties.types = server.scenario.types;
    properties.flags = server.scenario.flags;
    properties.max_sessions = server.scenario.max_sessions;
    properties.open_sessions = server.open_sessions;
    properties.capabilities = server.scenario.capabilities;
    properties.interfaces = interfaces_;
    properties.credential_types = {kCredentialType};
    properties.ndmp_host = host_of(name);
    return properties;
}

} // namespace soapwrapper::simulator
