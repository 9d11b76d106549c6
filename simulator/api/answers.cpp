#include "simulator/api/answers.h"

#include "simulator/front/http.h"

#include <nlohmann/json.hpp>

#include <string>
#include <utility>

namespace soapwrapper::simulator
{

Answer answer_with(int status, std::string content_type, std::string body)
{
    Answer answer;
    answer.status = status;
    answer.content_type = std::move(content_type);
    answer.body = std::move(body);
    answer.fields = {{"Cache-Control", "no-store"}, {"X-Content-Type-Options", "nosniff"}};
    return answer;
}

std::string dumped(const nlohmann::json& json)
{
    return json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

Answer json_answer(const nlohmann::json& json, int status)
{
    return answer_with(status, "application/json", dumped(json) + "\n");
}

Answer no_content()
{
    return answer_with(kHttpNoContent, "application/json", "");
}

Answer error_answer(int status, const std::string& text)
{
    return json_answer({{"error", text}}, status);
}

} // namespace soapwrapper::simulator
