#include "simulator/replayed_file.h"

#include "messages/recording.h"
#include "messages/recording_reader.h"
#include "simulator/scenario/text.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <fstream>
#include <ios>
#include <map>
#include <ostream>
#include <string>

namespace soapwrapper::simulator
{
namespace
{

using messages::RecordedExchange;
using messages::Recording;
using messages::RecordingError;

[[noreturn]] void refuse(const std::string& path, const std::string& why)
{
    throw RecordingError("--replay: \"" + path + "\": " + why);
}

} // namespace

Recording recording_in_file(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) refuse(path, std::strerror(errno));
    try {
        return messages::read_recording(file);
    } catch (const RecordingError& trouble) {
        refuse(path, trouble.what());
    } catch (const std::ios_base::failure&) {
        refuse(path, "it can't be read");
    }
}

void tell_of_recording(const Recording& recording, std::ostream& out, std::ostream& warnings)
{
    std::map<std::string, std::size_t> operations;
    for (const RecordedExchange& exchange : recording.exchanges) ++operations[printable(exchange.operation)];
    const auto is_unconnected = [](const RecordedExchange& exchange) {
        return exchange.end == messages::ReplyEnd::kUnconnected;
    };
    const auto unconnected =
        std::count_if(recording.exchanges.begin(), recording.exchanges.end(), is_unconnected);

    out << "recording of " << printable(recording.head.program) << ", " << printable(recording.head.time)
        << ": " << recording.exchanges.size() << " exchanges\n";
    for (const auto& [name, count] : operations) out << "operation " << name << " " << count << '\n';
    if (unconnected > 0) {
        warnings << "soapwrapper-sim: --replay: " << unconnected
                 << " connections failed when this was recorded; they will not fail now\n";
    }
    if (recording.is_cut) {
        warnings << "soapwrapper-sim: --replay: the last line isn't whole and is left out\n";
    }
}

} // namespace soapwrapper::simulator
