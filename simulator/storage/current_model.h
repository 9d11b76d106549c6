// The storage that is simulated at present, for as long as no other one takes its place.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_CURRENT_MODEL_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_CURRENT_MODEL_H

#include "simulator/scenario/scenario.h"
#include "simulator/storage/model.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

// Any thread may call.
class CurrentModel
{
  public:
    CurrentModel(const Scenario& scenario, std::vector<std::string> interfaces, std::string credential);

    // Whoever works at a request asks once and keeps to what it got: tokens and indices of one model mean
    // nothing, or something else, in another. A request that is under way while another model takes over is
    // served by the old one, as if it had come earlier; nobody waits for it.
    std::shared_ptr<Model> get() const;

    // Begins anew, with this storage, nobody logged in and no operation. The numbers of operations go on.
    void load(const Scenario& scenario);

  private:
    const std::vector<std::string> interfaces_;
    const std::string credential_;
    mutable std::mutex mutex_;
    std::shared_ptr<Model> model_;
};

} // namespace soapwrapper::simulator

#endif
