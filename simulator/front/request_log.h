// One line on standard error for each request, where the user asked for it.
#ifndef SOAPWRAPPER_SIMULATOR_FRONT_REQUEST_LOG_H
#define SOAPWRAPPER_SIMULATOR_FRONT_REQUEST_LOG_H

#include "simulator/front/descriptor.h"

#include <unistd.h>

#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>

namespace soapwrapper::simulator
{

// It waits for nobody: while the reader of the descriptor doesn't keep up, lines are dropped and counted.
class RequestLog
{
  public:
    explicit RequestLog(bool is_on, int fd = STDERR_FILENO);
    ~RequestLog() { tell_dropped(); }
    RequestLog(const RequestLog&) = delete;
    RequestLog& operator=(const RequestLog&) = delete;

    // Time, client, operation, outcome. The texts must be printable.
    void line(bool is_tls, std::string_view client, std::string_view operation, std::string_view outcome);

    // How many lines were dropped, if somebody reads again; the next line and the end tell so, too.
    void tell_dropped();

  private:
    // False if that would wait. What has been begun goes on with the next call.
    bool write(std::string_view text);
    bool write_rest();
    bool write_dropped();

    const bool is_on_;
    Descriptor out_;
    std::mutex mutex_;
    std::string rest_; // of a line of which a part has been written
    std::size_t dropped_ = 0;
};

} // namespace soapwrapper::simulator

#endif
