#include "probe/check/library_check.h"

#include "probe/check/check_report.h"
#include "probe/library/plugin_library.h"
#include "probe/library/plugin_manager.h"
#include "probe/library/release_note.h"
#include "probe/output/problem.h"
#include "probe/output/text.h"

#include <dlfcn.h>
#include <elf.h>
#include <link.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

const link_map* map_of(void* handle)
{
    const link_map* map = nullptr;
    return dlinfo(handle, RTLD_DI_LINKMAP, &map) == 0 ? map : nullptr;
}

// The texts that entries of this kind in an image's dynamic section point to.
std::vector<std::string> dynamic_texts(const link_map& image, ElfW(Sxword) kind)
{
    const char* texts = nullptr;
    for (const ElfW(Dyn)* entry = image.l_ld; entry->d_tag != DT_NULL; ++entry) {
        if (entry->d_tag == DT_STRTAB) texts = reinterpret_cast<const char*>(entry->d_un.d_ptr);
    }
    std::vector<std::string> found;
    for (const ElfW(Dyn)* entry = image.l_ld; texts && entry->d_tag != DT_NULL; ++entry) {
        if (entry->d_tag == kind) found.emplace_back(texts + entry->d_un.d_val);
    }
    return found;
}

std::string_view file_name(std::string_view path)
{
    return path.substr(path.rfind('/') + 1);
}

// Where the loader found a library that another one names; empty: nowhere that can be known.
std::string place_of(const std::string& needed, const link_map* image)
{
    while (image && image->l_prev) image = image->l_prev;
    for (; image; image = image->l_next) {
        if (file_name(image->l_name) == needed) return image->l_name;
    }
    return {};
}

void report_needs(const PluginLibrary& library, CheckReport& report)
{
    const link_map* const image = map_of(library.handle());
    if (!image) return;
    for (const std::string& needed : dynamic_texts(*image, DT_NEEDED)) {
        const std::string place = place_of(needed, image);
        report.add(Mark::kOk, "needs", needed + (place.empty() ? std::string() : ", found at " + place));
    }
}

void report_release(const PluginLibrary& library, CheckReport& report)
{
    report.add(Mark::kOk, "release", clean_field(library.definition().release));
    const auto note = release_note_of(library.handle());
    const std::string running = tls_library_of(library.handle());
    if (note) {
        report.add(Mark::kInfo, "built with",
                   "gSOAP " + note->gsoap + ", OpenSSL " + note->openssl + "; as " + note->name + ' ' +
                       note->version);
    } else {
        report.add(Mark::kInfo, "built with", "the library does not say");
    }
    if (!running.empty()) report.add(Mark::kInfo, "runs with", "OpenSSL " + running);
}

// The loader's text begins with the name of what it misses.
std::string missing_library(const std::string& reason)
{
    constexpr std::string_view kNotFound = ": cannot open shared object file";
    const std::size_t end = reason.find(kNotFound);
    return end == std::string::npos ? std::string() : reason.substr(0, end);
}

} // namespace

void check_library(const PluginLibrary& library, CheckReport& report)
{
    report.add(Mark::kOk, "found at", library.path());
    if (library.told_path() != library.path()) report.add(Mark::kInfo, "told path", library.told_path());
    report_release(library, report);
    report_needs(library, report);
    const stspi_plugin_def_t& definition = library.definition();
    report.add(Mark::kOk, "handshakes",
               "stspi_init and stspi_init3 succeeded: interface version " +
                   std::to_string(definition.version) + ", names that begin with " +
                   clean_field(definition.prefix));
    report.add(Mark::kInfo, "manager",
               plugin_manager_in_sight()
                   ? "a plug-in manager is there: change lists may come from the filer itself"
                   : "no plug-in manager is loaded: change lists come from the service alone");
}

void report_unusable_library(const LibraryPlaces& places, const Problem& problem, CheckReport& report)
{
    const std::string place = place_of_library(places);
    const std::string missing = missing_library(problem.detail());
    std::string advice = "name the library with --library, or install it again";
    if (!missing.empty() && file_name(missing) != file_name(place)) {
        advice = "install the package that brings " + missing;
    } else if (missing.empty()) {
        advice = "install the library again, from a package for this system";
    }
    report.add(Mark::kWrong, "library", problem.meaning() + ": " + problem.detail(), advice);
}

} // namespace soapwrapper::probe
