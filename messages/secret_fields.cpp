#include "messages/secret_fields.h"

#include "messages/lower_case.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string>
#include <string_view>

namespace soapwrapper::messages
{

bool is_secret_field(std::string_view name)
{
    constexpr std::array<std::string_view, 9> kSecret = {
        "auth", "cookie", "credential", "key", "passwd", "password", "referer", "secret", "token"};
    const std::string lower = lower_case(name);
    return std::any_of(kSecret.begin(), kSecret.end(),
                       [&lower](std::string_view part) { return lower.find(part) != std::string::npos; });
}

} // namespace soapwrapper::messages
