// Who may see the page and use the API. Any site that a browser shows can have it send requests to this
// machine, and read the answers if one of its own names leads here: neither is to come through.
#ifndef SOAPWRAPPER_SIMULATOR_API_ADMISSION_H
#define SOAPWRAPPER_SIMULATOR_API_ADMISSION_H

#include "simulator/front/http.h"

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

class Admission
{
  public:
    // `hosts` are the names by which the simulator goes, besides its numbers and "localhost".
    explicit Admission(const std::vector<std::string>& hosts);

    // Why the request isn't served, if it isn't.
    std::optional<Answer> refusal_for(const Request& request) const;

    // The same handler for those who may ask.
    Handler guarded(Handler handler) const;

  private:
    bool is_own_name(const std::string& host) const;

    std::set<std::string> hosts_; // in small letters
};

} // namespace soapwrapper::simulator

#endif
