#include "tests/kit/live_tls_sessions.h"

#include "tests/kit/require.h"

#include <openssl/crypto.h>
#include <openssl/types.h>

#include <atomic>

namespace kit
{
namespace
{

std::atomic<long> g_live{0};

void count_new(void* /*session*/, void* /*value*/, CRYPTO_EX_DATA* /*data*/, int /*index*/, long /*number*/,
               void* /*argument*/)
{
    ++g_live;
}

void count_freed(void* /*session*/, void* /*value*/, CRYPTO_EX_DATA* /*data*/, int /*index*/, long /*number*/,
                 void* /*argument*/)
{
    --g_live;
}

// The TLS library tells of each session that it makes or frees whoever keeps data with sessions.
long live_sessions()
{
    static const int index =
        CRYPTO_get_ex_new_index(CRYPTO_EX_INDEX_SSL_SESSION, 0, nullptr, count_new, nullptr, count_freed);
    require(index >= 0, "no place for data of sessions");
    return g_live;
}

} // namespace

LiveTlsSessions::LiveTlsSessions() : before_(live_sessions()) {}

long LiveTlsSessions::count() const
{
    return g_live - before_;
}

} // namespace kit
