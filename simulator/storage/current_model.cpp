#include "simulator/storage/current_model.h"

#include "simulator/scenario/scenario.h"
#include "simulator/storage/model.h"
#include "simulator/storage/serial.h"

#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{

CurrentModel::CurrentModel(const Scenario& scenario, std::vector<std::string> interfaces,
                           std::string credential)
    : interfaces_(std::move(interfaces)), credential_(std::move(credential)),
      model_(std::make_shared<Model>(scenario, interfaces_, credential_))
{
}

std::shared_ptr<Model> CurrentModel::get() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return model_;
}

void CurrentModel::load(const Scenario& scenario)
{
    const Serial started = get()->use().operations().started();
    auto model = std::make_shared<Model>(scenario, interfaces_, credential_, started);
    const std::lock_guard<std::mutex> lock(mutex_);
    model_.swap(model);
    // The old one, declared ahead of the lock, ends behind it.
}

} // namespace soapwrapper::simulator
