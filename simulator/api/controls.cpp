// The paths that change something.
#include "simulator/api/answers.h"
#include "simulator/api/endpoints.h"
#include "simulator/api/json_body.h"
#include "simulator/api/scenarios.h"
#include "simulator/front/http.h"
#include "simulator/scenario/scenario.h"
#include "simulator/scenario/scenario_reader.h"
#include "simulator/service/interference.h"
#include "simulator/service/trouble.h"
#include "simulator/service/trouble_json.h"
#include "simulator/storage/model.h"

#include <nlohmann/json.hpp>

#include <memory>
#include <stdexcept>
#include <utility>

namespace soapwrapper::simulator
{

Answer cancel_operation(const ApiCall& call)
{
    const std::shared_ptr<Model> model = call.api.model.get();
    const Model::Use storage = model->use();
    if (!storage.operations().cancel_by_number(*storage, call.number)) {
        throw ApiError(kHttpConflict, "the operation has ended already");
    }
    return no_content();
}

Answer forget_requests(const ApiCall& call)
{
    call.api.recorder.clear();
    return no_content();
}

Answer add_fault(const ApiCall& call)
{
    Trouble trouble = trouble_from_json(parse_body(call.request.body));
    SetTrouble set{0, trouble, trouble.count, 0};
    try {
        set.number = call.api.interference.add(std::move(trouble));
    } catch (const std::length_error& error) {
        throw ApiError(kHttpConflict, error.what());
    }
    return json_answer(to_json(set), kHttpCreated);
}

Answer remove_fault(const ApiCall& call)
{
    if (!call.api.interference.remove(call.number)) {
        throw ApiError(kHttpNotFound, "there is no fault of that number, or no more");
    }
    return no_content();
}

Answer remove_faults(const ApiCall& call)
{
    call.api.interference.clear();
    return no_content();
}

Answer reset(const ApiCall& call)
{
    call.api.scenarios.reset();
    call.api.interference.reset();
    return no_content();
}

// Somebody elsewhere has no business with this machine's directories.
Answer load_scenario(const ApiCall& call)
{
    const Request& request = call.request;
    Scenario scenario = parse_scenario(request.body);
    if (has_tree(scenario) && !request.is_from_loopback) {
        throw ApiError(kHttpForbidden, "a scenario with a \"tree\" is taken from this machine only");
    }
    call.api.scenarios.load({"posted", request.body, std::move(scenario)});
    return no_content();
}

} // namespace soapwrapper::simulator
