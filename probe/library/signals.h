// The signals that ask the program to end, taken from their usual effect and read like data.
#ifndef SOAPWRAPPER_PROBE_LIBRARY_SIGNALS_H
#define SOAPWRAPPER_PROBE_LIBRARY_SIGNALS_H

#include "probe/output/descriptor.h"

#include <signal.h>

#include <optional>

namespace soapwrapper::probe
{

// One of the system's that must be there: that it couldn't be made is thrown.
int required(int descriptor);

// SIGINT, SIGTERM and SIGHUP, blocked on this thread and on those that it makes from now on. One that the
// process was told to ignore stays ignored: nohup and shells without job control do that.
class EndingSignals
{
  public:
    EndingSignals();

    // What came and wasn't taken is dropped.
    ~EndingSignals();
    EndingSignals(const EndingSignals&) = delete;
    EndingSignals& operator=(const EndingSignals&) = delete;

    // Readable while a signal is there to be taken.
    int descriptor() const { return descriptor_.get(); }

    // The next one, without waiting.
    std::optional<int> take() const;

    // Gives a signal its usual effect.
    [[noreturn]] static void end_by(int signal);

  private:
    // Blocks ahead of the descriptor's making, and unblocks when that is gone.
    struct Block {
        Block();
        ~Block();
        Block(const Block&) = delete;
        Block& operator=(const Block&) = delete;
        sigset_t signals = {};
        sigset_t mask_before = {};
    };

    const Block block_;
    const Descriptor descriptor_;
};

} // namespace soapwrapper::probe

#endif
