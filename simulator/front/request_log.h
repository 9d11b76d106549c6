// One line on standard error for each request, where the user asked for it.
#ifndef SOAPWRAPPER_SIMULATOR_FRONT_REQUEST_LOG_H
#define SOAPWRAPPER_SIMULATOR_FRONT_REQUEST_LOG_H

#include <mutex>
#include <string_view>

namespace soapwrapper::simulator
{

class RequestLog
{
  public:
    explicit RequestLog(bool is_on) : is_on_(is_on) {}

    // Time, client, operation, outcome. The texts must be printable.
    void line(bool is_tls, std::string_view client, std::string_view operation, std::string_view outcome);

  private:
    const bool is_on_;
    std::mutex mutex_;
};

} // namespace soapwrapper::simulator

#endif
