// The TLS sessions that are in the process's memory, whoever holds them.
#ifndef SOAPWRAPPER_TESTS_KIT_LIVE_TLS_SESSIONS_H
#define SOAPWRAPPER_TESTS_KIT_LIVE_TLS_SESSIONS_H

namespace kit
{

// Counts the sessions that were made since the object was, and live. When it is made, there must be none.
class LiveTlsSessions
{
  public:
    LiveTlsSessions();

    long count() const;

  private:
    long before_;
};

} // namespace kit

#endif
