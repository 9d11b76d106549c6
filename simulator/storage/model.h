// The simulated storage and who is logged in to it. Any thread may call; what can't be done is thrown as a
// Fault.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_MODEL_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_MODEL_H

#include "simulator/scenario/scenario.h"
#include "simulator/storage/long_operations.h"
#include "simulator/storage/serial.h"
#include "simulator/storage/storage.h"

#include <cstddef>
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
    // `started` is the number of the operation that was started last.
    Model(const Scenario& scenario, std::vector<std::string> interfaces, std::string credential,
          Serial started = 0);
    Model(const Model&) = delete;
    Model& operator=(const Model&) = delete;

    // The storage, with nobody else at it for as long as this lives, and with all operations ended whose end
    // has come.
    class Use
    {
      public:
        Storage& operator*() const { return model_.storage_; }
        Storage* operator->() const { return &model_.storage_; }
        OperationRegistry& operations() const { return model_.operations_; }

        // The index of the server that goes by the name, or the fault that it isn't opened by the credential.
        std::size_t admit(const std::string& server, const Credential& credential) const;
        // Returns the token of a session of its own.
        std::string open_server(const std::string& server, const Credential& credential) const;
        // What the server says about itself.
        ServerProperties properties(const std::string& server) const;

      private:
        friend class Model;
        explicit Use(Model& model);

        std::unique_lock<std::mutex> lock_;
        Model& model_;
    };
    Use use() { return Use(*this); }

  private:
    const std::vector<std::string> interfaces_;
    const std::string credential_;
    std::mutex mutex_;
    Storage storage_;
    OperationRegistry operations_;
};

} // namespace soapwrapper::simulator

#endif
