// Names that the service knows, for the command line.
#ifndef SOAPWRAPPER_PROBE_COMPLETION_SERVICE_NAMES_H
#define SOAPWRAPPER_PROBE_COMPLETION_SERVICE_NAMES_H

#include "probe/completion/command_tree.h"

#include <chrono>
#include <string>
#include <vector>

namespace soapwrapper::probe
{

// How long a user who has pressed a key waits for names. What asks for them has less time, since it has to
// log out as well; if it takes longer for that, it does so without anybody waiting.
struct LookupLimits {
    std::chrono::milliseconds waiting{2000};
    std::chrono::milliseconds asking{1500};
};

// The options among those given that a lookup follows too: where the library is and how to log in. None may
// have an effect of its own.
std::vector<std::string> lookup_options(const std::vector<Choice>& given);

// A credential is at hand that can be read without taking it away from somebody: in the environment, or in
// the regular file that the options name.
bool can_log_in(const std::vector<Choice>& given);

// What a list of the service has: has `program`, which is this one, print the list as a document, in a
// process of its own. `command` is that of the list with its arguments, `list` and `keys` are the document's.
// An entry has a text for each key. Empty, if the service can't be asked.
std::vector<std::vector<std::string>>
list_of_service(const std::string& program, const std::vector<std::string>& options,
                const std::vector<std::string>& command, const std::string& list,
                const std::vector<std::string>& keys, const LookupLimits& limits = LookupLimits());

} // namespace soapwrapper::probe

#endif
