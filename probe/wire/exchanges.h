// Makes exchanges of what connections carry.
#ifndef SOAPWRAPPER_PROBE_WIRE_EXCHANGES_H
#define SOAPWRAPPER_PROBE_WIRE_EXCHANGES_H

#include "probe/wire/exchange.h"
#include "probe/wire/http_message.h"
#include "probe/wire/tap.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::probe::wire
{

class Exchanges final : public Observer
{
  public:
    ~Exchanges() override { finish(); }

    // Observes from here on. Each exchange is given to all takers at its end, in their order.
    void give_to(TakeExchange taker);

    // Gives what is under way still, and observes no more.
    void finish() noexcept;

    void connected(const Connection& connection, int error) override;
    void sent(const Connection& connection, std::string_view bytes) override;
    void received(const Connection& connection, std::string_view bytes) override;
    void failed(const Connection& connection, const std::string& why) override;
    void closed(const Connection& connection) override;

  private:
    struct Talk {
        Connection connection;
        HttpMessage request{HttpMessage::Kind::kRequest};
        HttpMessage reply{HttpMessage::Kind::kReply};
        std::string failure;
        bool peer_ended = false;
        std::chrono::system_clock::time_point begun = std::chrono::system_clock::now();
        std::chrono::steady_clock::time_point since = std::chrono::steady_clock::now();
    };
    using Talks = std::map<std::uint64_t, std::unique_ptr<Talk>>;

    Talk& talk_on(const Connection& connection);
    bool is_over(const Connection& connection) const; // its last one is, and no other has begun
    static std::string failure_of(const Talk& talk);
    void give_if_whole(Talk& talk);
    void give(Talk& talk);

    Talks talks_; // null: one is over, and another may begin on the same connection
    std::vector<TakeExchange> takers_;
};

} // namespace soapwrapper::probe::wire

#endif
