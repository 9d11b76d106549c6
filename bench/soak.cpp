// Very many calls of all kinds of entries on many threads at once: what the library holds in memory and in
// descriptors must be the same after them as before. Run by hand; ends with 1 if something grew.
#include "bench/canned_service.h"
#include "tests/kit/live_tls_sessions.h"
#include "tests/torture/subject.h"

#include <CLI/CLI.hpp>

#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <thread>

using torture::Entry;
using torture::Subject;

namespace
{

constexpr int kRounds = 20;
// Threads come and go between two looks, and leave the allocator a little more or less.
constexpr std::ptrdiff_t kHeapSlack = 256 << 10;
constexpr std::ptrdiff_t kResidentSlack = 16 << 20;
// A full handshake costs as much as ten plain calls.
constexpr std::size_t kCallsPerTlsCall = 16;

std::vector<Entry> all_entries()
{
    std::vector<Entry> all;
    for (auto& some : {torture::server_entries(), torture::catalogue_entries(), torture::start_entries(),
                       torture::follow_entries(), torture::event_entries(), torture::change_list_entries()}) {
        all.insert(all.end(), some.begin(), some.end());
    }
    // Looks into the registry of the open lists, which other threads change meanwhile.
    const auto looks_inside = [](const Entry& entry) { return entry.name == "stspi_list_file_of_three"; };
    all.erase(std::remove_if(all.begin(), all.end(), looks_inside), all.end());
    return all;
}

// The operation that a message is about: the name of the first element in its body.
std::string operation_of(const std::string& message)
{
    constexpr std::string_view kBody = "Body><ns1:";
    const std::size_t begin = message.find(kBody);
    if (begin == std::string::npos) return "";
    const std::size_t name = begin + kBody.size();
    return message.substr(name, message.find_first_of(" />", name) - name);
}

// The replies of all operations, as whole HTTP messages.
class Replies
{
  public:
    explicit Replies(const std::vector<Entry>& entries)
    {
        for (const Entry& entry : entries) {
            for (const auto& texts : {entry.ahead, {entry.good_reply}, entry.behind_success}) {
                for (const std::string& text : texts) {
                    by_response_[operation_of(text)] = kit::http_message(text);
                }
            }
        }
    }

    const std::string& to(const std::string& request) const
    {
        std::string operation = operation_of(request);
        if (operation == "openSnapListByVolume") operation = "openSnapList"; // they share a response
        return by_response_.at(operation + "Response");
    }

  private:
    std::map<std::string, std::string> by_response_;
};

struct Holdings {
    std::ptrdiff_t heap = 0;
    std::ptrdiff_t resident = 0;
    std::ptrdiff_t descriptors = 0;
    long tls_sessions = 0;
};

Holdings holdings(const kit::LiveTlsSessions& tls_sessions)
{
    Holdings now;
    now.tls_sessions = tls_sessions.count();
    malloc_trim(0);
    now.heap = static_cast<std::ptrdiff_t>(mallinfo2().uordblks);
    std::ptrdiff_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages >> pages;
    now.resident = pages * 4096;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        ++now.descriptors;
    }
    return now;
}

class Soak
{
  public:
    Soak(int threads, bool tls_only)
        : calls_per_tls_call_(tls_only ? 1 : kCallsPerTlsCall), replies_(entries_),
          choice_([this](const std::string& r) -> const std::string& { return replies_.to(r); }),
          plain_(choice_, bench::Channel::kPlain), tls_(choice_, bench::Channel::kTlsManyTickets)
    {
        // The file that entries find their service by is the last subject's.
        for (int i = 0; i < threads; ++i) {
            over_tls_.push_back(std::make_unique<Subject>(tls_.url(), true));
            subjects_.push_back(std::make_unique<Subject>(plain_.url(), false));
        }
    }

    // So many calls, each thread's part of them through all entries in turn.
    void run(std::size_t calls)
    {
        std::vector<std::thread> threads;
        const std::size_t share = calls / subjects_.size();
        for (std::size_t i = 0; i < subjects_.size(); ++i) {
            threads.emplace_back([this, i, share] { run_thread(i, share); });
        }
        for (std::thread& thread : threads) thread.join();
    }

    std::size_t failures() const { return failures_; }

  private:
    void run_thread(std::size_t thread, std::size_t calls)
    {
        for (std::size_t call = 0; call < calls; ++call) {
            Subject& subject = *(call % calls_per_tls_call_ == 0 ? over_tls_ : subjects_)[thread];
            const Entry& entry = entries_[(call + thread) % entries_.size()];
            const int status = entry.call(subject);
            subject.session.clear();
            if (status == 0) continue;
            if (failures_++ == 0) std::fprintf(stderr, "%s: %d\n", entry.name.c_str(), status);
        }
    }

    std::size_t calls_per_tls_call_;
    std::vector<Entry> entries_ = all_entries();
    Replies replies_;
    bench::CannedService::Choice choice_;
    bench::CannedService plain_;
    bench::CannedService tls_;
    std::vector<std::unique_ptr<Subject>> over_tls_;
    std::vector<std::unique_ptr<Subject>> subjects_;
    std::atomic<std::size_t> failures_{0};
};

void print(std::size_t calls, const Holdings& now)
{
    std::printf("%10zu calls  %10td bytes of heap  %10td resident  %4td descriptors  %4ld TLS sessions\n",
                calls, now.heap, now.resident, now.descriptors, now.tls_sessions);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv)
{
    std::size_t calls = 1000000;
    int threads = 16;
    bool tls_only = false;
    CLI::App options("Many calls of all kinds of entries on many threads");
    options.add_option("--calls", calls, "How many calls")->capture_default_str();
    options.add_option("--threads", threads, "On how many threads")->capture_default_str();
    options.add_flag("--tls-only", tls_only, "Each call over TLS, and not one of sixteen");
    CLI11_PARSE(options, argc, argv);

    const kit::LiveTlsSessions tls_sessions;
    Soak soak(threads, tls_only);
    const std::size_t round = calls / kRounds;
    soak.run(round); // what is made once, is made now
    const Holdings before = holdings(tls_sessions);
    print(round, before);
    Holdings after;
    for (std::size_t done = 2 * round; done <= calls; done += round) {
        soak.run(round);
        after = holdings(tls_sessions);
        print(done, after);
    }
    const bool flat = after.heap - before.heap <= kHeapSlack &&
                      after.resident - before.resident <= kResidentSlack &&
                      after.descriptors == before.descriptors;
    std::printf("%zu failures, %s\n", soak.failures(), flat ? "flat" : "SOMETHING GREW");
    return flat && soak.failures() == 0 ? 0 : 1;
}
