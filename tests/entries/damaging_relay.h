// Stands between the library and a service, and damages what the service sends.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_DAMAGING_RELAY_H
#define SOAPWRAPPER_TESTS_ENTRIES_DAMAGING_RELAY_H

#include <cstddef>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

enum class Damage {
    kCut,   // nothing more comes from that byte on
    kChange // the byte is another, and nothing more comes behind what the service sent with it
};

// Serves one connection after the other.
class DamagingRelay
{
  public:
    explicit DamagingRelay(int service_port);
    ~DamagingRelay();
    DamagingRelay(const DamagingRelay&) = delete;
    DamagingRelay& operator=(const DamagingRelay&) = delete;

    std::string tls_url() const { return "https://127.0.0.1:" + std::to_string(port_); }

    // On the next connection, at this byte of what the service sends, counted from 0.
    void damage_next(Damage damage, std::size_t at);

  private:
    struct Plan {
        Damage damage;
        std::size_t at;
    };
    void serve();
    void relay(int client, std::optional<Plan> plan) const;
    std::optional<Plan> take_plan();

    int service_port_;
    int listener_ = -1;
    int wake_[2] = {-1, -1};
    int port_ = 0;
    std::mutex mutex_;
    std::optional<Plan> plan_;
    std::thread thread_;
};

#endif
