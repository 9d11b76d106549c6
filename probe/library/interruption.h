// Ctrl-C and SIGTERM, taken note of where a command waits and has something to say before it ends.
#ifndef SOAPWRAPPER_PROBE_LIBRARY_INTERRUPTION_H
#define SOAPWRAPPER_PROBE_LIBRARY_INTERRUPTION_H

#include <signal.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace soapwrapper::probe
{

// From its making to its end SIGINT and SIGTERM cut short no call of the library, and none is lost while one
// runs: they are found when they are asked for. A third SIGINT ends the process at once, since a call may
// take for ever. Before and after, the signals do what they always do. A signal that the process was told to
// ignore stays ignored.
//
// Made and asked on the one thread that there is; one at a time.
class Interruption
{
  public:
    Interruption();

    // A signal that came and was never asked for takes effect here.
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    // Returns as soon as there is an interruption, else when the time is over. The result: there is one, from
    // now or from before.
    bool pause(std::chrono::milliseconds time);

    // Without waiting.
    bool requested() { return pause(std::chrono::milliseconds(0)); }

  private:
    class Descriptor
    {
      public:
        explicit Descriptor(int descriptor);
        ~Descriptor();
        Descriptor(const Descriptor&) = delete;
        Descriptor& operator=(const Descriptor&) = delete;
        int get() const { return descriptor_; }

      private:
        int descriptor_;
    };

    // Blocks signals on this thread, and on those that it makes.
    class Block
    {
      public:
        Block();
        ~Block();
        Block(const Block&) = delete;
        Block& operator=(const Block&) = delete;
        const sigset_t& signals() const { return signals_; }

      private:
        sigset_t signals_ = {};
        sigset_t mask_before_ = {};
    };

    void watch();
    void take(int signal);
    bool take_pending(); // with mutex_ held

    Block block_;
    const Descriptor signals_;
    const Descriptor stop_;
    std::mutex mutex_; // whoever takes a signal says so before the other one looks
    std::condition_variable changed_;
    int noted_ = 0; // the signal that came first
    int sigints_ = 0;
    bool asked_for_ = false; // somebody was told of it
    std::thread watcher_;    // the last member: it uses all others
};

} // namespace soapwrapper::probe

#endif
