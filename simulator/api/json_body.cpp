#include "simulator/api/json_body.h"

#include "simulator/api/answers.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <string>
#include <string_view>

namespace soapwrapper::simulator
{
namespace
{

// Those who read JSON call themselves for what is nested, so that deep nesting would end their stack. Nothing
// that is read here needs more than a dozen levels.
constexpr std::size_t kDeepestJson = 64;

// The text need be no JSON.
void require_shallow(std::string_view text)
{
    std::size_t depth = 0;
    bool is_in_string = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (is_in_string) {
            if (c == '\\') ++i;
            is_in_string = c != '"';
        } else if (c == '"') {
            is_in_string = true;
        } else if (c == '[' || c == '{') {
            if (++depth > kDeepestJson) {
                throw ApiError(kHttpBadRequest, "the JSON is nested more than " +
                                                    std::to_string(kDeepestJson) + " levels deep");
            }
        } else if ((c == ']' || c == '}') && depth > 0) {
            --depth;
        }
    }
}

} // namespace

nlohmann::json parse_body(std::string_view text)
{
    require_shallow(text);
    try {
        return nlohmann::json::parse(text);
    } catch (const nlohmann::json::exception& error) {
        throw ApiError(kHttpBadRequest, std::string("the body is no JSON: ") + error.what());
    }
}

} // namespace soapwrapper::simulator
