#include "simulator/front/request_head.h"

#include "simulator/front/http.h"
#include "simulator/front/limits.h"

#include <microhttpd.h>
#include <strings.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

const char* field_of(MHD_Connection* connection, const char* name)
{
    return MHD_lookup_connection_value(connection, MHD_HEADER_KIND, name);
}

// The library takes the first of several lengths for the right one.
bool has_several_lengths(MHD_Connection* connection)
{
    int lengths = 0;
    MHD_get_connection_values(
        connection, MHD_HEADER_KIND,
        [](void* count, MHD_ValueKind, const char* name, const char*) {
            if (strcasecmp(name, MHD_HTTP_HEADER_CONTENT_LENGTH) == 0) ++*static_cast<int*>(count);
            return MHD_YES;
        },
        &lengths);
    return lengths > 1;
}

} // namespace

int judge_head(MHD_Connection* connection, std::string_view method, std::string_view version)
{
    const MHD_ConnectionInfo* info =
        MHD_get_connection_info(connection, MHD_CONNECTION_INFO_REQUEST_HEADER_SIZE);
    if (info->header_size > kMaxHead) return MHD_HTTP_REQUEST_HEADER_FIELDS_TOO_LARGE;
    if (version.substr(0, 7) != "HTTP/1." || has_several_lengths(connection)) return MHD_HTTP_BAD_REQUEST;
    if (field_of(connection, MHD_HTTP_HEADER_TRANSFER_ENCODING)) return MHD_HTTP_LENGTH_REQUIRED;
    const char* encoding = field_of(connection, MHD_HTTP_HEADER_CONTENT_ENCODING);
    if (encoding && strcasecmp(encoding, "identity") != 0) return MHD_HTTP_UNSUPPORTED_MEDIA_TYPE;
    const char* length = field_of(connection, MHD_HTTP_HEADER_CONTENT_LENGTH);
    if (!length) return method == MHD_HTTP_METHOD_POST ? MHD_HTTP_LENGTH_REQUIRED : 0;
    std::size_t number = 0; // the library lets digits pass only
    std::from_chars(length, length + std::strlen(length), number);
    return number > kMaxBody ? MHD_HTTP_CONTENT_TOO_LARGE : 0;
}

Fields values_of(MHD_Connection* connection, MHD_ValueKind kind)
{
    using View = std::pair<std::string_view, std::string_view>;
    std::vector<View> views; // made large enough ahead: nothing may throw through the library
    const int count = MHD_get_connection_values_n(connection, kind, nullptr, nullptr);
    views.reserve(static_cast<std::size_t>(std::max(count, 0)));
    MHD_get_connection_values_n(
        connection, kind,
        [](void* all, MHD_ValueKind, const char* name, std::size_t name_size, const char* value,
           std::size_t value_size) {
            static_cast<std::vector<View>*>(all)->emplace_back(std::string_view(name, name_size),
                                                               value ? std::string_view(value, value_size)
                                                                     : std::string_view());
            return MHD_YES;
        },
        &views);
    return {views.begin(), views.end()};
}

} // namespace soapwrapper::simulator
