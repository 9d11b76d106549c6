#include "simulator/api/scenarios.h"

#include "simulator/scenario/content.h"
#include "simulator/scenario/default_scenario.h"
#include "simulator/scenario/records.h"
#include "simulator/scenario/scenario.h"
#include "simulator/scenario/scenario_reader.h"
#include "simulator/storage/current_model.h"

#include <algorithm>
#include <mutex>
#include <string>
#include <utility>

namespace soapwrapper::simulator
{

NamedScenario named_scenario(const std::string& file)
{
    if (file.empty()) return {"built-in", std::string(default_scenario_text()), default_scenario()};
    NamedScenario named{file, {}, {}};
    named.scenario = load_scenario(file, &named.text);
    return named;
}

bool has_tree(const Scenario& scenario)
{
    const auto is_tree = [](const Content& content) { return !content.directory().empty(); };
    for (const ServerScenario& server : scenario.servers) {
        for (const LsuScenario& lsu : server.lsus) {
            if (is_tree(lsu.properties.content) ||
                std::any_of(lsu.snapshots.begin(), lsu.snapshots.end(),
                            [&](const Snapshot& snapshot) { return is_tree(snapshot.content); })) {
                return true;
            }
        }
    }
    return false;
}

Scenarios::Scenarios(NamedScenario loaded, CurrentModel& model) : model_(model), loaded_(std::move(loaded)) {}

std::string Scenarios::name() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return loaded_.name;
}

std::string Scenarios::text() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return loaded_.text;
}

void Scenarios::reset()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    model_.load(loaded_.scenario);
}

void Scenarios::load(NamedScenario scenario)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    model_.load(scenario.scenario);
    std::swap(loaded_, scenario);
}

} // namespace soapwrapper::simulator
