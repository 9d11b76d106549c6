#include "probe/wire/watching.h"

#include "messages/recording.h"
#include "messages/utc_time.h"
#include "probe/output/problem.h"
#include "probe/wire/exchange.h"
#include "probe/wire/trace_text.h"

#include <chrono>
#include <optional>
#include <ostream>
#include <string>

namespace soapwrapper::probe::wire
{

void Watching::trace(const std::string& path, std::ostream& errors)
{
    trace_ = &errors;
    if (path != "-") {
        file_.emplace(path, wait_);
        trace_ = &file_->stream();
    }
    exchanges_.give_to([this](const Exchange& exchange) { write_trace(exchange); });
}

void Watching::write_trace(const Exchange& exchange)
{
    if (!trace_->good()) return; // the rest makes no sense without the beginning
    const std::string text = trace_text(++last_, exchange, secrets_.blotter());
    *trace_ << (last_ == 1 ? "" : "\n") << text << std::flush;
}

void Watching::record(const std::string& path, const std::string& library)
{
    const std::string time = messages::utc_time(std::chrono::system_clock::now());
    recorder_.emplace(path, messages::RecordingHead{"soapwrapper-probe " SOAPWRAPPER_VERSION, library, time},
                      secrets_.blotter(), wait_);
    exchanges_.give_to([this](const Exchange& exchange) { recorder_->take(exchange); });
}

std::optional<Problem> Watching::finish()
{
    exchanges_.finish();
    if (trace_ && !trace_->good()) {
        return Problem(ExitCode::kOperation, "trace", std::nullopt, "it could not be written");
    }
    return recorder_ ? recorder_->problem() : std::nullopt;
}

} // namespace soapwrapper::probe::wire
