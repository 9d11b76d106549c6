#include "service/tls_sessions.h"

#include "service/clock.h"

#include <openssl/ssl.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <mutex>
#include <new>
#include <utility>

namespace soapwrapper
{
namespace
{

// 0 for one that is resumed by its id.
std::size_t ticket_size(const SSL_SESSION* session)
{
    const unsigned char* ticket = nullptr;
    std::size_t size = 0;
    SSL_SESSION_get0_ticket(session, &ticket, &size);
    return size;
}

} // namespace

KnownTlsSession TlsSessions::take(const char* host, int port)
{
    const std::int64_t time = now();
    const std::lock_guard<std::mutex> lock(mutex_);
    entries_.remove_if([time](const Entry& entry) { return entry.end <= time; });
    const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) {
        return entry.port == port && entry.host == host;
    });
    if (found == entries_.end()) return {};
    KnownTlsSession known = std::move(found->known);
    entries_.erase(found);
    return known;
}

void TlsSessions::keep(const char* host, int port, KnownTlsSession known)
{
    if (!known.session || SSL_SESSION_is_resumable(known.session.get()) != 1) return;
    if (ticket_size(known.session.get()) > kLargestTicket) return;
    const std::int64_t end = std::min<std::int64_t>(known.full_handshake + kLongestUse,
                                                    now() + SSL_SESSION_get_timeout(known.session.get()));
    const std::lock_guard<std::mutex> lock(mutex_);
    try {
        entries_.push_front({host, port, std::move(known), end});
    } catch (const std::bad_alloc&) {
        return; // the next connection makes a full handshake, and the call at hand has succeeded
    }
    std::size_t of_server = 0;
    for (auto entry = entries_.begin(); entry != entries_.end();) {
        const bool same = entry->port == port && entry->host == host;
        const bool too_many = same && ++of_server > kMostPerServer;
        entry = too_many ? entries_.erase(entry) : std::next(entry);
    }
    if (entries_.size() > kMostInAll) entries_.pop_back();
}

void TlsSessions::forget(const char* host, int port)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    entries_.remove_if([&](const Entry& entry) { return entry.port == port && entry.host == host; });
}

void TlsSessions::forget_all()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    entries_.clear();
}

} // namespace soapwrapper
