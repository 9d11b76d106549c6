#ifndef SOAPWRAPPER_SERVICE_SIGPIPE_GUARD_H
#define SOAPWRAPPER_SERVICE_SIGPIPE_GUARD_H

#include <csignal>

namespace soapwrapper
{

// Keeps a SIGPIPE that the calling thread causes in this scope from the host: a peer that hangs up early is
// an error of the call and nothing else. Other threads and the process's disposition are left alone.
class SigpipeGuard
{
  public:
    SigpipeGuard();
    ~SigpipeGuard();
    SigpipeGuard(const SigpipeGuard&) = delete;
    SigpipeGuard& operator=(const SigpipeGuard&) = delete;

  private:
    sigset_t old_mask_;
    bool was_pending_;
};

} // namespace soapwrapper

#endif
