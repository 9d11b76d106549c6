// One client: its handshake, its request, the answer, the goodbye. Driven by a loop that calls it when its
// socket is ready; it never blocks.
#ifndef SOAPWRAPPER_SIMULATOR_FRONT_CONNECTION_H
#define SOAPWRAPPER_SIMULATOR_FRONT_CONNECTION_H

#include "simulator/front/http.h"
#include "simulator/front/limits.h"
#include "simulator/front/stream.h"

#include <cstddef>
#include <string>

namespace soapwrapper::simulator
{

class Connection
{
  public:
    enum class Stage {
        kHandshake,
        kReading,
        kHasRequest, // wholly here; waits to be taken
        kServing,    // taken; waits for answer()
        kWriting,
        kGoodbye,
        kGone
    };

    // `limits` must outlive the connection.
    Connection(Stream stream, std::string client, const Limits& limits, Clock::time_point now);

    Stage stage() const { return stage_; }
    int fd() const { return stream_.fd(); }
    bool is_tls() const { return stream_.is_tls(); }
    const std::string& client() const { return client_; }
    // Whether the request came, or was answered without being served.
    bool had_request() const { return had_request_ || refusal() != 0; }
    // The HTTP status of such an answer, or 0.
    int refusal() const { return reader_.refusal(); }

    // What to poll for.
    short events() const;
    // Goes as far as it can.
    void advance(Clock::time_point now);

    std::string take_request();
    void answer(std::string bytes, Clock::time_point now);
    void abandon() { stage_ = Stage::kGone; }

    // Never, while the request is being served.
    Clock::time_point deadline() const { return deadline_; }

  private:
    void shake_hands();
    void read();
    void write(Clock::time_point now);

    Stream stream_;
    std::string client_;
    const Limits* limits_;
    Stage stage_ = Stage::kHandshake;
    Stream::Result wanted_ = Stream::Result::kWantsRead;
    Clock::time_point deadline_;
    RequestReader reader_;
    bool had_request_ = false;
    std::string out_;
    std::size_t sent_ = 0;
};

} // namespace soapwrapper::simulator

#endif
