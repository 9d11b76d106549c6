// What must not be seen in what is written of the wire.
#ifndef SOAPWRAPPER_PROBE_WIRE_SECRETS_H
#define SOAPWRAPPER_PROBE_WIRE_SECRETS_H

#include "messages/blotter.h"

#include <string_view>

namespace soapwrapper::probe::wire
{

// Learns of secrets for as long as it lives, and wipes them at its end. One at a time.
class Secrets
{
  public:
    Secrets();
    ~Secrets();
    Secrets(const Secrets&) = delete;
    Secrets& operator=(const Secrets&) = delete;

    messages::Blotter& blotter() { return blotter_; }

  private:
    messages::Blotter blotter_;
};

// Tells of a secret before anybody can send it. It is kept only if somebody wants to hide it.
void hide(std::string_view secret);

} // namespace soapwrapper::probe::wire

#endif
