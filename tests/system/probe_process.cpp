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

extern char** environ;

namespace
{

struct Pipe {
    Pipe()
    {
        if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    }
    ~Pipe()
    {
        close(ends[0]);
        close_writer();
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    void close_writer()
    {
        if (ends[1] >= 0) close(ends[1]);
        ends[1] = -1;
    }
    int ends[2];
};

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

void read_both(const Pipe& out, const Pipe& err, ProcessResult& result)
{
    pollfd watched[] = {{out.ends[0], POLLIN, 0}, {err.ends[0], POLLIN, 0}};
    std::string* texts[] = {&result.out, &result.err};
    for (int open = 2; open > 0;) {
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

ProcessResult run_process(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                          const std::map<std::string, std::string>& environment, const std::string& out_file)
{
    std::vector<std::string> words = {program.string()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> variables = make_environment(environment);
    Pipe out;
    Pipe err;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    if (out_file.empty()) {
        posix_spawn_file_actions_adddup2(&actions, out.ends[1], 1);
    } else {
        posix_spawn_file_actions_addopen(&actions, 1, out_file.c_str(), O_WRONLY, 0);
    }
    posix_spawn_file_actions_adddup2(&actions, err.ends[1], 2);
    pid_t process = 0;
    const int error = posix_spawn(&process, program.c_str(), &actions, nullptr, pointers(words).data(),
                                  pointers(variables).data());
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) throw std::runtime_error("the process could not be started: " + program.string());
    out.close_writer();
    err.close_writer();

    ProcessResult result;
    read_both(out, err, result);
    int status = 0;
    while (waitpid(process, &status, 0) < 0) {
    }
    result.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    return result;
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
