#include "simulator/front/http.h"

#include <microhttpd.h>
#include <strings.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace soapwrapper::simulator
{

namespace
{

const std::string* first_of(const Fields& fields, std::string_view name)
{
    const auto found = std::find_if(fields.begin(), fields.end(), [name](const auto& field) {
        return field.first.size() == name.size() &&
               strncasecmp(field.first.data(), name.data(), name.size()) == 0;
    });
    return found == fields.end() ? nullptr : &found->second;
}

} // namespace

const std::string* field_of(const Request& request, std::string_view name)
{
    return first_of(request.fields, name);
}

const std::string* query_of(const Request& request, std::string_view name)
{
    return first_of(request.query, name);
}

Answer refusal(int status)
{
    const std::string reason = MHD_get_reason_phrase_for(static_cast<unsigned>(status));
    return {status, "text/plain", std::to_string(status) + " " + reason + "\n", {}, nullptr};
}

} // namespace soapwrapper::simulator
