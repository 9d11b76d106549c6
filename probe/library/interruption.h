// When the work is to end before its time: at a signal, or when a limit of time is over. One object for the
// whole run, which sees to it that whatever is open at the service can be closed, and that nothing takes for
// ever.
#ifndef SOAPWRAPPER_PROBE_LIBRARY_INTERRUPTION_H
#define SOAPWRAPPER_PROBE_LIBRARY_INTERRUPTION_H

#include "probe/library/signals.h"
#include "probe/output/descriptor.h"
#include "probe/output/problem.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace soapwrapper::probe
{

class ProgressLine;

struct RunLimits {
    std::optional<std::chrono::milliseconds> call; // each call of the library
    std::optional<std::chrono::milliseconds> run;  // all of them together
    // What a call may take that runs when a signal comes: a login that is cut may leave behind a session that
    // nobody can close.
    std::chrono::milliseconds grace{5000};
    // What all closing may take behind a signal or a limit.
    std::chrono::milliseconds clean_up{5000};
    // What a call that was cut may take to end.
    std::chrono::milliseconds cut{5000};
    // A call that takes longer is shown on the terminal.
    std::chrono::milliseconds unshown{1000};
};

// What the library's network can be told.
struct LibraryNetwork {
    std::function<void()> cut;          // ends its connections and pauses, now and from now on
    std::function<void()> allow;        // takes that back
    std::function<void()> end;          // ends the connections that there are
    std::function<std::string()> where; // whom it waits for; may be empty
};

// Made ahead of every other thread, since it blocks the signals for all of them. One thread works with it.
//
// At the first signal the call that runs may end by itself for a while, and is then cut; after that only
// clean-up is called. A third SIGINT ends the process at once. (Not the second: what sends a signal to a
// program and to its group, as timeout does, sends it twice.)
class Interruption
{
  public:
    // `begin`: of the run, which its limit counts from.
    Interruption(const RunLimits& limits, LibraryNetwork network, ProgressLine& line,
                 std::chrono::steady_clock::time_point begin = std::chrono::steady_clock::now());
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    // Returns as soon as there is an interruption, else when the time is over. The result: there is one, from
    // now or from before.
    bool pause(std::chrono::milliseconds time);

    // Without waiting.
    bool requested() { return pause(std::chrono::milliseconds(0)); }

    // What to throw for it: `interrupted` or `deadline`.
    Problem problem(const std::string& meaning, std::string detail = {});

    // The command was made to be ended by a signal. False: it wasn't one, but the end of the run's time.
    bool take_as_good_end();

    // What the run has come to if nothing else was wrong with it: an interruption that wasn't a good end.
    std::optional<Problem> unanswered();

    // What to say when the process is ended at once: it is called on another thread, with everything else as
    // it happens to stand, and must not wait.
    void set_farewell(std::function<void(const Problem&)> farewell);

    // Waits until something can be written there; false: the work is to end, and nobody takes it in the grace
    // that a call has, too. The time for closing is left alone.
    bool wait_for_room(int descriptor);

    // While one lives, or a call runs, a signal doesn't end the process at once: something may be open at the
    // service, or the command wants to hear of the signal.
    class Work
    {
      public:
        explicit Work(Interruption& interruption);
        ~Work();
        Work(const Work&) = delete;
        Work& operator=(const Work&) = delete;

      private:
        Interruption& interruption_;
    };

    enum class CallKind {
        kWork,   // isn't begun any more once there is an interruption: that is thrown
        kCleanUp // is, for the time that is left for it
    };
    enum class AfterCut {
        kNothing,
        kCloses // the entry closes a login of its own then, and is given the time for it
    };

    // Stands around one call of the library.
    class Call
    {
      public:
        Call(Interruption& interruption, CallKind kind, AfterCut after_cut = AfterCut::kNothing);
        ~Call();
        Call(const Call&) = delete;
        Call& operator=(const Call&) = delete;

        // The call has returned with a failure, about which the library said `detail`. The result: why it was
        // cut, if it was.
        std::optional<Problem> why_cut(const std::string& detail);

      private:
        Interruption& interruption_;
    };

  private:
    using Clock = std::chrono::steady_clock;
    using Time = Clock::time_point;

    // An end that was set for a call.
    struct Limit {
        Time time = Time::max();
        std::chrono::milliseconds length{0}; // as it was given, for a message
    };

    struct Running {
        CallKind kind = CallKind::kWork;
        Time begun;
        Time line_due;                    // to be shown, or shown again
        std::optional<Limit> cut_at = {}; // the call was cut there
        std::string where = {};           // it was cut there too
        AfterCut after_cut = AfterCut::kNothing;
        Time given_up = Time::max(); // a call that doesn't end though it was cut
    };

    // All with mutex_ held.
    bool look();
    void take(int signal);
    void tell_ending();
    bool to_end() const { return noted_ != 0 || deadline_seen_; }
    void bound_clean_up();
    Problem problem_now(const std::string& meaning, std::string detail) const;
    Problem cut_problem(const std::string& detail) const;
    Limit end_of_call() const;
    void cut_call(const Limit& limit);
    void note_cut(const Limit& limit);
    bool closes_yet() const { return running_->after_cut == AfterCut::kCloses && !is_cut_; }
    void give_up_call();
    Time act_on_call();
    Time end_of_waiting_for_room() const;
    std::string where() const;
    void show_waiting(Time now);
    void end_if_nothing_is_open() const;
    [[noreturn]] void end_process(const Problem& problem) const;

    void begin_call(CallKind kind, AfterCut after_cut);
    void end_call();
    std::optional<Problem> why_cut(const std::string& detail);
    void watch();
    void wake() const;

    const RunLimits limits_;
    const LibraryNetwork network_;
    ProgressLine& line_;
    const Time deadline_;
    const EndingSignals signals_;
    const Descriptor wake_;
    const Descriptor ending_seen_; // readable once there is an interruption
    std::mutex mutex_;             // guards what follows; who takes a signal says so before another one looks
    std::condition_variable changed_;
    int noted_ = 0; // the signal that came first
    Time noted_at_;
    int sigints_ = 0;
    bool deadline_seen_ = false;
    bool good_end_ = false;
    int works_ = 0;
    bool is_cut_ = false;    // the network
    bool cut_short_ = false; // a call, since the last one that was begun for work
    Time clean_up_end_ = Time::max();
    std::optional<Running> running_;
    Time next_look_ = Time::max(); // of the watcher
    bool stops_ = false;
    std::function<void(const Problem&)> farewell_;
    std::thread watcher_; // the last member: it uses all others
};

} // namespace soapwrapper::probe

#endif
