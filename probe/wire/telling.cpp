#include "probe/wire/telling.h"

#include "probe/wire/sockets.h"
#include "probe/wire/tap.h"

#include <atomic>
#include <optional>
#include <string>

namespace soapwrapper::probe::wire
{
namespace
{

std::atomic<Observer*> g_observer{nullptr};
thread_local int t_untapped = 0;

} // namespace

bool is_tapped()
{
    return t_untapped == 0;
}

Observer* current_observer()
{
    return g_observer;
}

void tell_settled(int socket, int error)
{
    const std::optional<Tapped> settled = Sockets::instance().settle(socket);
    Observer* const observer = g_observer;
    if (settled && observer) observer->connected(settled->connection, error);
}

std::optional<Connection> observed(int socket)
{
    if (!g_observer) return std::nullopt;
    tell_settled(socket, 0); // nothing is transferred ahead of that
    return Sockets::instance().find(socket);
}

void observe(Observer* observer)
{
    g_observer = observer;
}

void cut()
{
    Sockets::instance().cut();
}

void allow()
{
    Sockets::instance().allow();
}

void end_connections()
{
    Sockets::instance().end_connections();
}

bool was_ended(const Connection& connection)
{
    return Sockets::instance().was_ended(connection);
}

bool is_cut()
{
    return Sockets::instance().is_cut();
}

std::string where()
{
    return Sockets::instance().where();
}

Untapped::Untapped()
{
    ++t_untapped;
}

Untapped::~Untapped()
{
    --t_untapped;
}

} // namespace soapwrapper::probe::wire
