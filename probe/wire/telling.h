// How calls that pass through tell of what they were.
#ifndef SOAPWRAPPER_PROBE_WIRE_TELLING_H
#define SOAPWRAPPER_PROBE_WIRE_TELLING_H

#include "probe/wire/tap.h"

#include <cerrno>
#include <optional>

namespace soapwrapper::probe::wire
{

// False: the thread's calls are the probe's own.
bool is_tapped();
Observer* current_observer();

// Keeps errno as the system's call left it.
class KeptError
{
  public:
    KeptError() : error_(errno) {}
    ~KeptError() { errno = error_; }
    KeptError(const KeptError&) = delete;
    KeptError& operator=(const KeptError&) = delete;

    int get() const { return error_; }

  private:
    const int error_;
};

// The caller is C: want of memory, or whatever an observer throws, costs a part of what is seen and no more.
template <class Action>
void guarded(Action action) noexcept
{
    try {
        action();
    } catch (...) {
    }
}

// Tells what came of a connection, unless somebody was told before.
void tell_settled(int socket, int error);

// The connection, if there is somebody to tell of what it transfers.
std::optional<Connection> observed(int socket);

template <class Tell>
void tell(int socket, Tell tell_observer)
{
    const std::optional<Connection> connection = observed(socket);
    Observer* const observer = current_observer();
    if (connection && observer) tell_observer(*observer, *connection);
}

} // namespace soapwrapper::probe::wire

#endif
