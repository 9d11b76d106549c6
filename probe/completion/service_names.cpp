#include "probe/completion/service_names.h"

#include "probe/completion/command_tree.h"
#include "probe/library/credential.h"
#include "probe/output/descriptor.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// More than anybody looks through at a prompt.
constexpr char kMostEntries[] = "1000";
constexpr std::size_t kLongestAnswer = std::size_t{4} << 20U;

std::string seconds_text(milliseconds time)
{
    return std::to_string(std::chrono::duration<double>(time).count());
}

// Starts the program in a session of its own, so that no Ctrl-C at the prompt is meant for it, and with
// nothing but its standard output. False: it couldn't be started.
bool start(std::vector<std::string> words, int out)
{
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, out, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    pid_t id = 0;
    const int error = posix_spawn(&id, pointers.front(), &actions, &attributes, pointers.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return error == 0;
}

// Empty, if it didn't come to its end in time. The program isn't ended then: it may still have to log out.
std::string read_to_end(int descriptor, milliseconds time)
{
    const Clock::time_point end = Clock::now() + time;
    std::string text;
    for (;;) {
        const auto left = std::chrono::ceil<milliseconds>(end - Clock::now());
        pollfd watched = {descriptor, POLLIN, 0};
        if (left.count() <= 0 || poll(&watched, 1, static_cast<int>(left.count())) <= 0) return {};
        char bytes[4096];
        const ssize_t count = read(descriptor, bytes, sizeof bytes);
        if (count == 0) return text;
        if (count < 0 || text.size() > kLongestAnswer) return {};
        text.append(bytes, static_cast<std::size_t>(count));
    }
}

std::vector<std::vector<std::string>> entries_of(const nlohmann::json& list,
                                                 const std::vector<std::string>& keys)
{
    std::vector<std::vector<std::string>> entries;
    for (const nlohmann::json& each : list) {
        std::vector<std::string> texts;
        for (const std::string& key : keys) {
            if (each.is_object() && each.contains(key) && each.at(key).is_string())
                texts.push_back(each.at(key));
        }
        if (texts.size() == keys.size()) entries.push_back(std::move(texts));
    }
    return entries;
}

} // namespace

std::vector<std::string> lookup_options(const std::vector<Choice>& given)
{
    const std::string followed[] = {"--library",         "--plugin-path",     "--manager",   "--config",
                                    "--credential-file", "--credential-type", "--interface", "--no-discover"};
    std::vector<std::string> words;
    for (const Choice& option : given) {
        if (std::find(std::begin(followed), std::end(followed), option.text) == std::end(followed)) continue;
        words.push_back(option.text);
        if (option.text != "--no-discover") words.back() += "=" + option.description;
    }
    return words;
}

bool can_log_in(const std::vector<Choice>& given)
{
    const auto file = std::find_if(given.rbegin(), given.rend(),
                                   [](const Choice& option) { return option.text == "--credential-file"; });
    struct stat status = {};
    if (file != given.rend()) return stat(file->description.c_str(), &status) == 0 && S_ISREG(status.st_mode);
    const char* const variable = std::getenv(kCredentialVariable);
    return variable && *variable != '\0';
}

std::vector<std::vector<std::string>>
list_of_service(const std::string& program, const std::vector<std::string>& options,
                const std::vector<std::string>& command, const std::string& list,
                const std::vector<std::string>& keys, const LookupLimits& limits)
{
    std::vector<std::string> words = {program, "--json", "--deadline=" + seconds_text(limits.asking),
                                      command.front()};
    words.insert(words.end(), options.begin(), options.end());
    words.insert(words.end(), {"--limit", kMostEntries, "--"});
    words.insert(words.end(), command.begin() + 1, command.end());
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return {};
    const Descriptor reader(ends[0]);
    {
        const Descriptor writer(ends[1]);
        if (!start(std::move(words), writer.get())) return {};
    }
    const auto document = nlohmann::json::parse(read_to_end(reader.get(), limits.waiting), nullptr, false);
    return document.is_object() && document.contains(list) ? entries_of(document.at(list), keys)
                                                           : std::vector<std::vector<std::string>>();
}

} // namespace soapwrapper::probe
