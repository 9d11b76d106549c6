#include "probe/program/version.h"

#include "probe/library/library_trial.h"
#include "probe/library/plugin_library.h"
#include "probe/library/plugin_manager.h"
#include "probe/library/release_note.h"
#include "probe/output/output.h"
#include "probe/output/problem.h"
#include "probe/output/records.h"
#include "probe/output/text.h"
#include "probe/program/common_options.h"

#include <optional>
#include <sstream>
#include <string>

namespace soapwrapper::probe
{
namespace
{

void add_library(const LibraryPlaces& places, Properties& properties)
{
    if (const auto trouble = try_library(places)) throw Problem(*trouble);
    if (places.manager) load_plugin_manager(*places.manager);
    const PluginLibrary library(places);
    const ReleaseNote note = release_note_of(library.handle()).value_or(ReleaseNote());
    properties.add("Library", "library", clean_line(library.path()));
    properties.add("Release", "release", clean_field(library.definition().release));
    properties.add("Built as", "library_version", note.version);
    properties.add("Built with gSOAP", "gsoap", note.gsoap);
    properties.add("Built with OpenSSL", "openssl", note.openssl);
    properties.add("Runs with OpenSSL", "openssl_running", tls_library_of(library.handle()));
}

} // namespace

std::string version_text(const CommonOptions& options)
{
    std::ostringstream stream;
    Output output(stream, options.format(), options.separator.value_or(""));
    Properties properties;
    std::optional<Problem> problem;
    if (output.format() == Format::kAligned) {
        stream << "soapwrapper-probe " << SOAPWRAPPER_VERSION << '\n';
    } else {
        properties.add("", "version", SOAPWRAPPER_VERSION);
    }
    try {
        add_library(options.places(), properties);
    } catch (const Problem& found) {
        problem.emplace(found);
        properties.add("Library", "library", clean_line(place_of_library(options.places())));
        properties.add("Problem", "problem", clean_line(found.meaning() + ": " + found.detail()));
    }
    properties.show(output);
    if (problem) output.add_problem(*problem);
    if (output.format() == Format::kJson) output.finish();
    std::string text = stream.str();
    if (!text.empty()) text.pop_back(); // the end of the last line is the parser's
    return text;
}

} // namespace soapwrapper::probe
