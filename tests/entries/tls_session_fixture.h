// What the tests of TLS sessions have in common.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_TLS_SESSION_FIXTURE_H
#define SOAPWRAPPER_TESTS_ENTRIES_TLS_SESSION_FIXTURE_H

#include "tests/entries/channel_fixture.h"
#include "tests/kit/certificate.h"
#include "tests/kit/resumption_kinds.h"

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// Where requests wait for each other until all that are expected have come.
class Meeting
{
  public:
    void expect(int count)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        missing_ = count;
    }
    void attend()
    {
        std::unique_lock<std::mutex> lock(mutex_);
        --missing_;
        changed_.notify_all();
        changed_.wait(lock, [this] { return missing_ <= 0; });
    }
    // One of them won't come.
    void excuse()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        --missing_;
        changed_.notify_all();
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    int missing_ = 0;
};

class TlsSessionTest : public Channel
{
  protected:
    // A close over TLS that the service answers.
    void call() { call(closed()); }
    void call(const kit::Answer& good)
    {
        service_.script(good);
        EXPECT_EQ(close_over_tls(), 0);
    }
    // One that comes to a status.
    void failing_call(const kit::Answer& bad, int status = 2060017)
    {
        service_.script(bad);
        EXPECT_EQ(close_over_tls(), status);
    }

    // So many calls of the second service that are all under way at the same time: each takes a session, if
    // there are as many, and each brings one back.
    void calls_together(int count)
    {
        meeting_.expect(count);
        std::vector<std::thread> threads;
        for (int i = 0; i < count; ++i) {
            threads.emplace_back([this] {
                kit::RecordedSession session;
                ServerHandle server = make_server(session, meeting_service_.tls_url(), true);
                const int status = kit::close_server()(server.get());
                EXPECT_EQ(status, 0);
                if (status != 0) return meeting_.excuse();
                server.release();
            });
        }
        for (std::thread& thread : threads) thread.join();
    }

    void expect_handshakes(std::size_t full, std::size_t resumed, std::size_t offered) const
    {
        expect_handshakes(service_, full, resumed, offered);
    }
    static void expect_handshakes(const kit::ScriptedService& service, std::size_t full, std::size_t resumed,
                                  std::size_t offered)
    {
        const kit::Handshakes counted = service.handshakes();
        EXPECT_EQ(counted.full, full);
        EXPECT_EQ(counted.resumed, resumed);
        EXPECT_EQ(counted.offered, offered);
    }

    Meeting meeting_;
    kit::ScriptedService meeting_service_{[this](const kit::Request&) {
        meeting_.attend();
        return closed().bytes;
    }};
};

// The same at each kind of service.
class TlsSessionTestOfKinds : public TlsSessionTest, public testing::WithParamInterface<kit::ResumptionKind>
{
  protected:
    TlsSessionTestOfKinds()
    {
        service_.set_tls_context(GetParam().make_context());
        meeting_service_.set_tls_context(GetParam().make_context());
    }
};

inline std::string kind_name(const testing::TestParamInfo<kit::ResumptionKind>& instance)
{
    return instance.param.name;
}

#endif
