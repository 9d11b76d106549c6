// Which scenario is simulated, and going back to its beginning.
#ifndef SOAPWRAPPER_SIMULATOR_API_SCENARIOS_H
#define SOAPWRAPPER_SIMULATOR_API_SCENARIOS_H

#include "simulator/scenario/scenario.h"
#include "simulator/storage/current_model.h"

#include <mutex>
#include <string>

namespace soapwrapper::simulator
{

struct NamedScenario {
    std::string name; // "built-in", a file's name or "posted"
    std::string text; // the JSON that it was read from
    Scenario scenario;
};

// The file's, or the built-in one if its name is empty. What is wrong with it is thrown as a ScenarioError.
NamedScenario named_scenario(const std::string& file);

// The files of a volume or a snapshot come from a directory of this machine.
bool has_tree(const Scenario& scenario);

// Any thread may call.
class Scenarios
{
  public:
    // The one that the model was made of.
    Scenarios(NamedScenario loaded, CurrentModel& model);

    std::string name() const;
    std::string text() const;

    void reset();
    void load(NamedScenario scenario);

  private:
    CurrentModel& model_;
    mutable std::mutex mutex_;
    NamedScenario loaded_;
};

} // namespace soapwrapper::simulator

#endif
