#include "simulator/front/request_log.h"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <mutex>
#include <string>
#include <string_view>

namespace soapwrapper::simulator
{
namespace
{

std::string now_as_text()
{
    using std::chrono::milliseconds;
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    char date[sizeof "2000-01-01T00:00:00"];
    std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &parts);
    const auto millis = std::chrono::duration_cast<milliseconds>(now.time_since_epoch()).count() % 1000;
    char text[sizeof date + sizeof ".000Z"];
    std::snprintf(text, sizeof text, "%s.%03dZ", date, static_cast<int>(millis));
    return text;
}

} // namespace

void RequestLog::line(bool is_tls, std::string_view client, std::string_view operation,
                      std::string_view outcome)
{
    if (!is_on_) return;
    std::string text = now_as_text();
    text.append(is_tls ? " https " : " http ").append(client).append(" ");
    text.append(operation).append(": ").append(outcome).append("\n");
    const std::lock_guard<std::mutex> lock(mutex_);
    std::fwrite(text.data(), 1, text.size(), stderr);
}

} // namespace soapwrapper::simulator
