// The side door to the storage server: a command, a text out, a text or bytes back.
#include "operations/io_control.h"

#include "operations/reference_checks.h"
#include "plugin/base/bounded_text.h"
#include "plugin/base/session_log.h"
#include "plugin/base/wipe.h"
#include "plugin/host/entry_points.h"
#include "service/service_call.h"
#include "service/wire_session.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

using namespace soapwrapper;

namespace
{

// Who answers for what comes behind the buffer's end.
enum class Bound {
    kHost, // a text is ended behind the whole of it, so that the buffer must have room for whatever may come
    kLibrary // nothing is written there
};

// A text, cut to the bound.
void write_text(char* buffer, std::size_t length, const std::string& args, Bound bound)
{
    V_strlcpy(buffer, args.c_str(), length - 1);
    const std::size_t end = std::strlen(args.c_str());
    if (bound == Bound::kHost || end < length) buffer[end] = '\0';
}

// `count` bytes of what came, which may hold terminators of their own, or as many as fit. A count that
// reaches beyond what came, or below nothing, is bounded by what came.
void write_bytes(char* buffer, std::size_t length, const std::string& args, int count)
{
    const std::size_t told = count < 0 ? args.size() : static_cast<std::size_t>(count);
    const std::size_t come = std::min(told, args.size() + 1); // with the terminator, which may be counted
    const std::size_t written = come < length ? come : whole_characters(args.c_str(), length - 1);
    std::memcpy(buffer, args.c_str(), written);
    buffer[written] = '\0';
}

int control(stsp_server_t* server, int32_t command, char* buffer, int32_t ioflag, int32_t len, Bound bound)
{
    if (!buffer) return STS_ENULLARG;
    if (const int status = check_server(server)) return status;
    const EntryLog log(server->session, "stspi_iocontrol");
    log.enter();
    ServiceCall call(*server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireServerHandle server_handle(server->service_handle);
    _ns1__ioControl request;
    const WipeAtEnd wiped(request.args); // a command may carry credentials
    request.serverHandle = server_handle.get();
    request.command = command;
    request.ioflag = ioflag;
    if ((ioflag & STS_IOCTL_INPUT) != 0) {
        request.args = buffer;
        request.len = len;
    }
    _ns1__ioControlResponse response;
    if (const Failure failure = call.send(&Service::ioControl, request, response)) return *failure;
    // A buffer of no size gets nothing, not even a terminator.
    if ((ioflag & STS_IOCTL_OUTPUT) != 0 && len > 0) {
        const auto length = static_cast<std::size_t>(len);
        if (response.len == 0) {
            write_text(buffer, length, response.args, bound);
        } else {
            write_bytes(buffer, length, response.args, response.len);
        }
    }
    return log.ok();
}

} // namespace

extern "C" int stspi_iocontrol(stsp_server_t* server, int32_t command, char* buffer, int32_t ioflag,
                               int32_t len)
{
    return control(server, command, buffer, ioflag, len, Bound::kHost);
}

int soapwrapper::bounded_io_control(stsp_server_t* server, int32_t command, char* buffer, int32_t ioflag,
                                    int32_t len)
{
    return control(server, command, buffer, ioflag, len, Bound::kLibrary);
}
