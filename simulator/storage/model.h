// The simulated storage and who is logged in to it. Any thread may call; what can't be done is thrown as a
// Fault.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_MODEL_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_MODEL_H

#include "simulator/scenario/scenario.h"
#include "simulator/storage/long_operations.h"
#include "simulator/storage/storage.h"
#include "simulator/storage/storage_server.h"

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

constexpr int kCredentialType = 1;

struct Credential {
    int type = kCredentialType;
    std::string bytes;
};

struct ServerProperties {
    std::string name;
    std::vector<std::string> types;
    int flags = 0;
    int max_sessions = 0;
    int open_sessions = 0;
    std::vector<int> capabilities;
    std::vector<std::string> interfaces;
    std::vector<int> credential_types;
    std::string ndmp_host;
};

class Model
{
  public:
    // `interfaces` are the rows that every server names as its own; `credential` is the text that opens it.
    Model(const Scenario& scenario, std::vector<std::string> interfaces, std::string credential);
    Model(const Model&) = delete;
    Model& operator=(const Model&) = delete;

    // Each request tells of itself once, before anything is made of it.
    void request_arrived();

    ServerProperties properties_by_name(const std::string& server) const;
    ServerProperties properties(const std::string& token) const;

    // Both return the token of a session of its own: closing the source leaves the target's open.
    std::string open_server(const std::string& server, const Credential& credential);
    std::string open_target_server(const std::string& source_token, const std::string& server,
                                   const Credential& credential);
    void close_server(const std::string& token);

    // The token of a channel with the server's events from this number on. It is no session.
    std::string open_event_channel(const std::string& server, const Credential& credential,
                                   std::int64_t from);

    // The storage, with nobody else at it for as long as this lives, and with all operations ended whose end
    // has come.
    class Use
    {
      public:
        Storage& operator*() const { return storage_; }
        Storage* operator->() const { return &storage_; }
        OperationRegistry& operations() const { return operations_; }

      private:
        friend class Model;
        explicit Use(Model& model)
            : lock_(model.mutex_), storage_(model.storage_), operations_(model.operations_)
        {
            operations_.end_due(storage_);
        }

        std::unique_lock<std::mutex> lock_;
        Storage& storage_;
        OperationRegistry& operations_;
    };
    Use use() { return Use(*this); }

  private:
    // All with the lock held.
    std::size_t admit(const std::string& name, const Credential& credential) const; // the server's index
    std::string open_session(const std::string& name, const Credential& credential);
    ServerProperties describe(const StorageServer& server, const std::string& name) const;

    const std::vector<std::string> interfaces_;
    const std::string credential_;
    mutable std::mutex mutex_;
    Storage storage_;
    OperationRegistry operations_;
};

} // namespace soapwrapper::simulator

#endif
