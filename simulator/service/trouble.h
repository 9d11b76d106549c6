// What can be made to go wrong with an operation.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_TROUBLE_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_TROUBLE_H

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::simulator
{

enum class TroubleKind {
    kFault,          // is answered with the error code
    kDelay,          // takes longer
    kDribble,        // is performed; the reply comes in small pieces
    kCut,            // is performed; the connection ends in the middle of the reply
    kEmpty,          // the connection ends without an answer
    kGarbage,        // is answered with bytes that are no HTTP
    kMalformedChunk, // is answered with a head, and a chunk whose size can't be read
    kHttpError,      // is answered with the HTTP status
    kReset           // the connection is reset
};

struct Trouble {
    std::string operation;
    TroubleKind kind = TroubleKind::kFault;
    int code = 0;                      // of a fault
    int status = 503;                  // of an HTTP error
    std::chrono::milliseconds time{0}; // of a delay; over which a reply dribbles
    // Of a delay: if above 0, the delays vary. Their logarithm is normal with that deviation, and `time` is
    // their median.
    double sigma = 0;
    std::optional<unsigned> count; // without one, for good
};

constexpr std::chrono::milliseconds kLongestTrouble = std::chrono::hours(1);
constexpr double kLargestSigma = 10;
constexpr int kLeastHttpError = 400;
constexpr int kGreatestHttpError = 599;

// As people write them: "malformed-chunk".
std::string_view name_of(TroubleKind kind);
std::optional<TroubleKind> trouble_kind_of(std::string_view name);
std::vector<std::string_view> trouble_kind_names();

// Whether the operation is performed all the same.
bool is_performed(TroubleKind kind);

} // namespace soapwrapper::simulator

#endif
