#include "simulator/service/damaged_answer.h"

#include "simulator/front/http.h"
#include "simulator/service/trouble.h"

#include <string>
#include <utility>

namespace soapwrapper::simulator
{
namespace
{

Answer without_body(Delivery delivery)
{
    Answer answer;
    answer.delivery = delivery;
    return answer;
}

Answer raw(int status, std::string bytes)
{
    Answer answer;
    answer.status = status;
    answer.body = std::move(bytes);
    answer.delivery = Delivery::kRaw;
    return answer;
}

// Bytes of every value, and no line of HTTP.
std::string garbage()
{
    constexpr int kBytes = 300;
    constexpr unsigned kStep = 167; // odd, so that each of 256 values comes before one comes again
    std::string bytes;
    for (unsigned i = 1; i <= kBytes; ++i) bytes += static_cast<char>(i * kStep & 0xFF);
    return bytes;
}

constexpr char kMalformedChunk[] = "HTTP/1.1 200 OK\r\n"
                                   "Content-Type: text/xml; charset=utf-8\r\n"
                                   "Transfer-Encoding: chunked\r\n"
                                   "Connection: close\r\n"
                                   "\r\n"
                                   "xyz\r\n"
                                   "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n";

} // namespace

Answer damaged(Answer answer, const Trouble& trouble)
{
    switch (trouble.kind) {
    case TroubleKind::kFault:
    case TroubleKind::kDelay:
        break;
    case TroubleKind::kDribble:
        answer.delivery = Delivery::kDribble;
        answer.dribble_time = trouble.time;
        break;
    case TroubleKind::kCut:
        answer.delivery = Delivery::kCut;
        break;
    case TroubleKind::kEmpty:
        return without_body(Delivery::kNothing);
    case TroubleKind::kGarbage:
        return raw(0, garbage());
    case TroubleKind::kMalformedChunk:
        return raw(200, kMalformedChunk);
    case TroubleKind::kHttpError:
        return refusal(trouble.status);
    case TroubleKind::kReset:
        return without_body(Delivery::kReset);
    }
    return answer;
}

int visible_status(const Answer& answer)
{
    const bool is_silent = answer.delivery == Delivery::kNothing || answer.delivery == Delivery::kReset;
    return is_silent ? 0 : answer.status;
}

} // namespace soapwrapper::simulator
