#include "probe_process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

extern char** environ;

namespace
{

// What a program writes to, and where it is read.
struct Channel {
    Channel() = default;
    ~Channel()
    {
        if (reader >= 0) close(reader);
        if (writer >= 0) close(writer);
    }
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;
    int keep_reader() { return std::exchange(reader, -1); }

    int reader = -1;
    int writer = -1;
};

void open_pipe(Channel& channel)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    channel.reader = ends[0];
    channel.writer = ends[1];
}

void open_terminal(Channel& channel)
{
    channel.reader = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    char name[128];
    if (channel.reader < 0 || grantpt(channel.reader) != 0 || unlockpt(channel.reader) != 0 ||
        ptsname_r(channel.reader, name, sizeof name) != 0) {
        throw std::runtime_error("no pseudo-terminal");
    }
    channel.writer = open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (channel.writer < 0) throw std::runtime_error("no pseudo-terminal");
}

std::vector<char*> pointers(std::vector<std::string>& texts)
{
    std::vector<char*> list;
    for (std::string& text : texts) list.push_back(text.data());
    list.push_back(nullptr);
    return list;
}

std::vector<std::string> make_environment(const std::map<std::string, std::string>& added)
{
    std::vector<std::string> variables;
    for (char** variable = environ; *variable; ++variable) {
        const std::string text = *variable;
        const std::string name = text.substr(0, text.find('='));
        if (name != "SOAPWRAPPER_CREDENTIAL" && added.count(name) == 0) variables.push_back(text);
    }
    for (const auto& [name, value] : added) variables.push_back(name + "=" + value);
    return variables;
}

void read_both(int out, int err, ProcessResult& result)
{
    pollfd watched[] = {{out, POLLIN, 0}, {err, POLLIN, 0}};
    std::string* texts[] = {&result.out, &result.err};
    for (int open = (out >= 0 ? 1 : 0) + 1; open > 0;) {
        if (poll(watched, 2, -1) < 0) continue;
        for (int i = 0; i < 2; ++i) {
            if (watched[i].fd < 0 || watched[i].revents == 0) continue;
            char bytes[4096];
            const ssize_t count = read(watched[i].fd, bytes, sizeof bytes);
            if (count > 0) {
                texts[i]->append(bytes, static_cast<std::size_t>(count));
            } else {
                watched[i].fd = -1;
                --open;
            }
        }
    }
}

} // namespace

Process::Process(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                 const std::map<std::string, std::string>& environment, const Streams& streams)
{
    std::vector<std::string> words = {program.string()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> variables = make_environment(environment);
    Channel out;
    Channel err;
    open_pipe(out);
    if (streams.out_is_closed) close(out.keep_reader());
    if (streams.terminal_for_err) {
        open_terminal(err);
    } else {
        open_pipe(err);
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    if (streams.out_file.empty()) {
        posix_spawn_file_actions_adddup2(&actions, out.writer, 1);
    } else {
        posix_spawn_file_actions_addopen(&actions, 1, streams.out_file.c_str(), O_WRONLY, 0);
    }
    posix_spawn_file_actions_adddup2(&actions, err.writer, 2);
    const int error = posix_spawn(&id_, program.c_str(), &actions, nullptr, pointers(words).data(),
                                  pointers(variables).data());
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) throw std::runtime_error("the process could not be started: " + program.string());
    out_ = out.keep_reader();
    err_ = err.keep_reader();
}

Process::~Process()
{
    if (id_ != 0) finish();
    if (out_ >= 0) close(out_);
    close(err_);
}

namespace
{

// Services are mostly plain ones here, so that the line would stand in nearly every test.
void take_out_login_warning(ProcessResult& result)
{
    const std::size_t begin = result.err.find("warning: the credential went over ");
    if (begin == std::string::npos) return;
    const std::size_t end = result.err.find('\n', begin);
    const std::size_t size = end == std::string::npos ? end : end + 1 - begin;
    result.login_warning = result.err.substr(begin, size);
    result.err.erase(begin, size);
}

} // namespace

void Process::wait_for_err(const std::string& text)
{
    char byte = 0;
    while (err_so_far_.find(text) == std::string::npos && read(err_, &byte, 1) == 1) err_so_far_ += byte;
}

ProcessResult Process::finish()
{
    ProcessResult result;
    result.err = std::move(err_so_far_);
    read_both(out_, err_, result);
    int status = 0;
    while (waitpid(id_, &status, 0) < 0) {
    }
    id_ = 0;
    result.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    take_out_login_warning(result);
    return result;
}

ProcessResult run_process(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                          const std::map<std::string, std::string>& environment, const std::string& out_file)
{
    Process::Streams streams;
    streams.out_file = out_file;
    return Process(program, arguments, environment, streams).finish();
}

TemporaryFolder::TemporaryFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "soapwrapper-probe-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
    path_ = std::filesystem::canonical(name);
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryFolder::write(const std::string& name, const std::string& content,
                                   std::filesystem::perms permissions) const
{
    const std::filesystem::path path = path_ / name;
    std::ofstream(path, std::ios::binary) << content;
    std::filesystem::permissions(path, permissions);
    return path.string();
}

std::string read_file(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}
