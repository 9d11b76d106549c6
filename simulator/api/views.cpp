// The paths that show something.
#include "simulator/api/answers.h"
#include "simulator/api/api_context.h"
#include "simulator/api/endpoints.h"
#include "simulator/api/event_json.h"
#include "simulator/api/parameters.h"
#include "simulator/api/record_json.h"
#include "simulator/api/state_json.h"
#include "simulator/contract/contract.h"
#include "simulator/front/answer_stream.h"
#include "simulator/front/http.h"
#include "simulator/scenario/content.h"
#include "simulator/service/interference.h"
#include "simulator/service/operation_names.h"
#include "simulator/service/trouble_json.h"
#include "simulator/storage/events_view.h"
#include "simulator/storage/model.h"
#include "simulator/storage/operations_view.h"
#include "simulator/storage/storage_view.h"
#include "simulator/traffic/exchange.h"
#include "simulator/traffic/report.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{

using nlohmann::json;

namespace
{

constexpr std::size_t kMostOperations = 200;
constexpr std::size_t kUsualEvents = 200;
constexpr std::size_t kMostEvents = 1000;
constexpr std::size_t kUsualRequests = 100;
constexpr std::size_t kMostRequests = 1000;
constexpr std::size_t kUsualDifferences = 5000;
constexpr std::size_t kMostDifferences = 100000;

EventsWanted events_wanted(const Request& request)
{
    EventsWanted wanted;
    wanted.server = text_parameter(request, "server");
    const std::uint64_t after = number_parameter(request, "after", 0);
    wanted.after =
        static_cast<std::int64_t>(std::min<std::uint64_t>(after, std::numeric_limits<std::int64_t>::max()));
    if (const std::optional<std::string> kind = text_parameter(request, "kind")) {
        wanted.kind = event_kind_of(*kind);
        if (!wanted.kind) throw ApiError(kHttpBadRequest, "there is no such kind of event");
    }
    wanted.most = limit_parameter(request, kUsualEvents, kMostEvents);
    return wanted;
}

json exchange_json(const Exchange& exchange)
{
    constexpr double kMicrosecondsPerMillisecond = 1000;
    return {{"number", exchange.number},
            {"time", exchange.time},
            {"client", exchange.client},
            {"tls", exchange.is_tls},
            {"operation", exchange.operation},
            {"status", exchange.status},
            {"fault", value_or_null<json>(exchange.fault_code)},
            {"outcome", exchange.outcome},
            {"milliseconds", static_cast<double>(exchange.microseconds) / kMicrosecondsPerMillisecond},
            {"requestBytes", exchange.request_bytes},
            {"replyBytes", exchange.reply_bytes},
            {"trouble", exchange.trouble}};
}

json change_json(const FileChange& change)
{
    return {{"path", change.path},
            {"change", name_of(change.kind)},
            {"type", name_of(change.record.type)},
            {"size", change.record.size}};
}

} // namespace

Answer show_state(const ApiCall& call)
{
    const Api& api = call.api;
    // Ahead of what it numbers: a change that comes in between is told once more rather than not at all.
    const std::uint64_t revision = api.changes.revision();
    const StorageView storage = view_of(*api.model.get()->use());
    return json_answer({{"instance", api.changes.instance()},
                        {"release", SOAPWRAPPER_VERSION},
                        {"revision", revision},
                        {"urls", api.urls},
                        {"scenario", api.scenarios.name()},
                        {"time", storage.date},
                        {"servers", servers_json(storage)}});
}

Answer list_operations(const ApiCall& call)
{
    const auto newest = [&call] {
        const std::shared_ptr<Model> model = call.api.model.get();
        const Model::Use storage = model->use();
        return newest_operations(*storage, storage.operations(), kMostOperations);
    };
    return json_answer({{"operations", operations_json(newest())}});
}

Answer list_events(const ApiCall& call)
{
    const EventsWanted wanted = events_wanted(call.request);
    const std::vector<EventView> newest = newest_events(*call.api.model.get()->use(), wanted);
    json events = json::array();
    for (const EventView& event : newest) events.push_back(event_json(event));
    return json_answer({{"events", std::move(events)}});
}

Answer list_requests(const ApiCall& call)
{
    const std::uint64_t after = number_parameter(call.request, "after", 0);
    const std::size_t limit = limit_parameter(call.request, kUsualRequests, kMostRequests);
    json requests = json::array();
    std::uint64_t last = call.api.recorder.last();
    for (const Exchange& exchange : call.api.recorder.after(after, limit)) {
        requests.push_back(exchange_json(exchange));
        last = std::max(last, exchange.number);
    }
    return json_answer(
        {{"instance", call.api.changes.instance()}, {"last", last}, {"requests", std::move(requests)}});
}

Answer show_request(const ApiCall& call)
{
    const std::optional<Exchange> exchange = call.api.recorder.find(call.number);
    if (!exchange) throw ApiError(kHttpNotFound, "there is no request of that number, or no more");
    json fields = json::array();
    for (const auto& [name, value] : exchange->fields) fields.push_back({{"name", name}, {"value", value}});
    json request = exchange_json(*exchange);
    request["request"] = exchange->request;
    request["reply"] = exchange->reply;
    request["requestIsCut"] = exchange->request_is_cut;
    request["replyIsCut"] = exchange->reply_is_cut;
    request["method"] = exchange->method;
    request["path"] = exchange->path;
    request["fields"] = std::move(fields);
    return json_answer(request);
}

Answer send_report(const ApiCall& call)
{
    Answer answer = json_answer(report_of(call.api.recorder.all(), SOAPWRAPPER_VERSION));
    answer.fields.emplace_back("Content-Disposition",
                               "attachment; filename=\"soapwrapper-sim-requests.har\"");
    return answer;
}

Answer list_faults(const ApiCall& call)
{
    json faults = json::array();
    for (const SetTrouble& set : call.api.interference.list()) faults.push_back(to_json(set));
    return json_answer({{"faults", std::move(faults)}});
}

Answer list_differences(const ApiCall& call)
{
    const std::string server = required_parameter(call.request, "server");
    const std::string lsu = required_parameter(call.request, "lsu");
    const std::optional<std::string> base = text_parameter(call.request, "base");
    const std::string later = required_parameter(call.request, "later");
    const std::size_t limit = limit_parameter(call.request, kUsualDifferences, kMostDifferences);
    const SnapshotPair pair = snapshots_of(*call.api.model.get()->use(), server, lsu, base, later);
    const std::vector<FileChange> changes = changes_between(*pair.base.files(), *pair.later.files());
    json told = json::array();
    for (std::size_t i = 0; i < changes.size() && i < limit; ++i) told.push_back(change_json(changes[i]));
    return json_answer(
        {{"changes", std::move(told)}, {"total", changes.size()}, {"isCut", changes.size() > limit}});
}

Answer show_contract(const ApiCall&)
{
    json operations = json::array();
    for (const std::string_view name : operation_names()) {
        operations.push_back({{"name", name}, {"text", text_of(name)}});
    }
    return json_answer({{"operations", std::move(operations)}});
}

Answer show_scenario(const ApiCall& call)
{
    return answer_with(kHttpOk, "application/json", call.api.scenarios.text());
}

Answer watch_changes(const ApiCall& call)
{
    std::shared_ptr<AnswerStream> stream = call.api.changes.open();
    if (!stream) throw ApiError(kHttpUnavailable, "too many are watching already");
    Answer answer = answer_with(kHttpOk, "text/event-stream", "");
    answer.stream = std::move(stream);
    return answer;
}

} // namespace soapwrapper::simulator
