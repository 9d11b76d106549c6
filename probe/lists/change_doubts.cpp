#include "probe/lists/change_doubts.h"

#include "plugin/host/host_records.h"
#include "plugin/host/status.h"
#include "probe/arguments/volume_argument.h"
#include "probe/lists/change_route.h"
#include "probe/output/problem.h"
#include "probe/output/status_text.h"

#include <string.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

constexpr char kSnapshots[] = "/.snapshot/";

template <std::size_t Size>
std::string text_of(const char (&field)[Size])
{
    return {field, strnlen(field, Size)};
}

// Whether the path is the folder or lies in it.
bool lies_in(const std::string& path, std::string folder)
{
    while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
    if (folder.empty() || path.compare(0, folder.size(), folder) != 0) return false;
    return path.size() == folder.size() || folder == "/" || path[folder.size()] == '/';
}

// The volume itself, of a snapshot on it that is read by NDMP.
sts_volume_spec_v11_t volume_below(const sts_volume_spec_v11_t& volume)
{
    sts_volume_spec_v11_t below = volume;
    if (volume.volumeType != STS_VOLUME_NDMP) return below;
    const std::size_t end = text_of(volume.second).find(kSnapshots);
    if (end != std::string::npos) memset(below.second + end, 0, sizeof below.second - end);
    return below;
}

std::string place_of(const sts_volume_spec_v11_t& volume)
{
    return volume_text(volume_below(volume));
}

// "weekly.1 lies on VOLUME and weekly.2 on VOLUME"; empty: both lie on one.
std::string two_volumes(const ChangeQuestion& question)
{
    const NamedSnapshot& base = question.snapshots.front();
    const NamedSnapshot& diff = question.snapshots.back();
    const std::string first = place_of(base.info->snapVolSpec);
    const std::string second = place_of(diff.info->snapVolSpec);
    if (first == second) return {};
    return base.name + " lies on " + first + " and " + diff.name + " on " + second +
           ", and a list is of two snapshots of one volume";
}

std::string about_filter(const std::string& filter, const ChangeQuestion& question)
{
    const auto& mount = question.wishes.mount;
    if (mount && lies_in(filter, *mount)) {
        std::string below = filter.substr(std::min(filter.size(), mount->size()));
        if (below.empty() || below.front() != '/') below.insert(0, "/");
        return "the filter " + filter +
               " begins with the mount, but a filter is a path below the volume: " + below + " may be meant";
    }
    if (filter.find(kSnapshots) == std::string::npos) return {};
    for (const NamedSnapshot& snapshot : question.snapshots) {
        if (lies_in(filter, text_of(snapshot.info->snapVolSpec.second))) return {};
    }
    return "the filter " + filter + " lies outside of both snapshots, so it lets nothing pass";
}

std::string missing_manager(const ChangeQuestion& question)
{
    if (question.route != Route::kZapi || question.has_manager) return {};
    return "no plug-in manager is loaded, so there is no second plug-in for the route zapi; load one with "
           "--manager, or take --route service";
}

std::string other_kind(const ChangeQuestion& question)
{
    for (const NamedSnapshot& snapshot : question.snapshots) {
        const sts_volume_spec_v11_t& volume = snapshot.info->snapVolSpec;
        if (volume.volumeType == STS_VOLUME_NDMP) continue;
        const std::string text = volume_text(volume);
        return snapshot.name + " is a snapshot of " + (text.empty() ? "no volume that is known" : text) +
               ", and the library lists changes of NDMP volumes only";
    }
    return {};
}

std::string other_volume(const ChangeQuestion& question)
{
    if (!question.wishes.volume) return {};
    const std::string wanted = place_of(*question.wishes.volume);
    const NamedSnapshot& diff = question.snapshots.back();
    const std::string own = place_of(diff.info->snapVolSpec);
    if (wanted == own) return {};
    return "--volume is " + wanted + ", while " + diff.name + " lies on " + own;
}

std::string cause_of(const ChangeQuestion& question)
{
    for (std::string (*const look)(const ChangeQuestion&) :
         {missing_manager, other_kind, two_volumes, other_volume}) {
        const std::string found = look(question);
        if (!found.empty()) return found;
    }
    return {};
}

} // namespace

std::vector<std::string> warnings_about(const ChangeQuestion& question)
{
    std::vector<std::string> warnings;
    const auto add = [&warnings](const std::string& warning) {
        if (!warning.empty()) warnings.push_back(warning);
    };
    const std::string& diff = question.snapshots.back().name;
    if (question.snapshots.size() > 1 && question.snapshots.front().name == diff) {
        add("BASE and DIFF are both " + diff + ", and nothing differs from itself");
    }
    add(two_volumes(question));
    const auto& mount = question.wishes.mount;
    if (mount && (mount->empty() || mount->front() != '/')) {
        add("the mount \"" + *mount + "\" is not an absolute path: the paths below it will not be, either");
    }
    for (const std::string& filter : question.filters) add(about_filter(filter, question));
    return warnings;
}

Problem with_cause(const Problem& problem, const ChangeQuestion& question)
{
    const int status = problem.status().value_or(STS_EOK);
    const std::string general = status_text(status).meaning;
    if (problem.meaning() != general) return problem;
    // The library takes these for whatever it finds wrong by itself.
    const bool is_librarys = status == STS_ESOAPERROR || status == STS_ENULLARG;
    std::string meaning = cause_of(question);
    if (meaning.empty()) {
        if (!is_librarys) return problem;
        meaning = "the library could not open the list; --log record shows how it came to that";
    } else if (!is_librarys) {
        meaning = general + "; the cause may be that " + meaning;
    }
    Problem told(problem.code(), problem.name(), problem.status(), meaning, problem.detail());
    if (!is_librarys) told.set_url(problem.url());
    return told;
}

} // namespace soapwrapper::probe
