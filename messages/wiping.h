// For texts that may hold what is secret: nothing of them is left behind in memory that was given back.
#ifndef SOAPWRAPPER_MESSAGES_WIPING_H
#define SOAPWRAPPER_MESSAGES_WIPING_H

#include <string>
#include <string_view>

namespace soapwrapper::messages
{

// Overwrites all that the text has room for, and empties it.
void wipe(std::string& text);

// Appends, and overwrites the former place of a text that has to move for it. `more` isn't a part of `text`.
void append_wiping(std::string& text, std::string_view more);

} // namespace soapwrapper::messages

#endif
