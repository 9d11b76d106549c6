// Values of arguments and options, by what the help calls them.
#ifndef SOAPWRAPPER_PROBE_COMPLETION_VALUES_H
#define SOAPWRAPPER_PROBE_COMPLETION_VALUES_H

#include "probe/completion/command_tree.h"

#include <string>
#include <vector>

namespace soapwrapper::probe
{

struct Values {
    std::vector<Choice> words;
    bool are_open = false;  // more of the word is to follow
    bool are_files = false; // the shell knows them
};

// `typed` is what there is of the value. The service is asked if it must be, and a credential is at hand.
Values values_of(const Place& place, const std::string& typed);

} // namespace soapwrapper::probe

#endif
