// What the shells' completion asks the program for.
#ifndef SOAPWRAPPER_PROBE_COMPLETION_COMPLETION_H
#define SOAPWRAPPER_PROBE_COMPLETION_COMPLETION_H

#include "probe/completion/embedded_file.h"

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace CLI
{
class App;
} // namespace CLI

namespace soapwrapper::probe
{

// The hidden command of the scripts. It isn't parsed as others are: behind it stand a user's unfinished
// words.
inline constexpr char kCompleteCommand[] = "complete";

// The scripts, as they are installed.
std::vector<EmbeddedFile> completion_scripts();

// The script for "bash", "zsh" or "fish".
std::string_view completion_script(const std::string& shell);

// Writes what may stand at the cursor. `words` are what a script gives: "bash", the line up to the cursor,
// and the part of it that will be replaced; or "words" and the words behind the program's name, the one at
// the cursor last.
//
// The first line says what follows: "words"; "open", which are words that want no blank behind them; or
// "files", which the shell finds by itself. A line each for the words: for bash as it is to be typed, else
// the word, a tab and a description.
void write_completions(const CLI::App& program, const std::vector<std::string>& words, std::ostream& stream);

} // namespace soapwrapper::probe

#endif
