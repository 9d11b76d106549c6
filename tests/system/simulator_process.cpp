#include "tests/system/simulator_process.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <memory>
#include <stdexcept>

namespace
{

int port_of(const std::string& url)
{
    return std::stoi(url.substr(url.rfind(':') + 1));
}

bool begins_with(const std::string& text, const std::string& head)
{
    return text.rfind(head, 0) == 0;
}

SimulatorProcess::Arguments on_drawn_ports(const SimulatorProcess::Arguments& more)
{
    SimulatorProcess::Arguments arguments = {"--http", "127.0.0.1:0", "--https", "127.0.0.1:0"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
}

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// False at the end of the file.
bool read_line(std::FILE* file, std::string& line)
{
    line.clear();
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) {
        if (c == '\n') return true;
        line += static_cast<char>(c);
    }
    return false;
}

} // namespace

SimulatorProcess::SimulatorProcess(const Arguments& more)
{
    start(on_drawn_ports(more));
}

SimulatorProcess::SimulatorProcess(const WithErrorsTo& errors)
{
    start(on_drawn_ports(errors.more), errors.fd);
}

SimulatorProcess::SimulatorProcess(const Exactly& exactly)
{
    start(exactly.arguments);
}

SimulatorProcess::~SimulatorProcess()
{
    if (pid_ > 0) {
        EXPECT_EQ(stop(SIGTERM), 0) << errors();
    }
    if (errors_) std::fclose(errors_);
}

void SimulatorProcess::start(const Arguments& arguments, int errors_fd)
{
    std::vector<char*> argv;
    std::string program = SIMULATOR_PROGRAM;
    argv.push_back(program.data());
    Arguments copy = arguments;
    for (std::string& each : copy) argv.push_back(each.data());
    argv.push_back(nullptr);

    errors_ = std::tmpfile();
    int out[2];
    if (!errors_ || pipe(out) != 0) throw std::runtime_error("no pipe");
    pid_ = fork();
    if (pid_ == 0) {
        dup2(out[1], STDOUT_FILENO);
        dup2(errors_fd >= 0 ? errors_fd : fileno(errors_), STDERR_FILENO);
        close(out[0]);
        close(out[1]);
        execv(program.c_str(), argv.data());
        _exit(127);
    }
    close(out[1]);
    const std::unique_ptr<std::FILE, CloseFile> lines(fdopen(out[0], "r"));
    std::string line;
    while (read_line(lines.get(), line)) {
        if (line == "ready") return;
        urls_.push_back(line);
        if (begins_with(line, "http://")) http_port_ = port_of(line);
        if (begins_with(line, "https://")) https_port_ = port_of(line);
    }
    const int exit_code = wait();
    const std::string said = errors();
    std::fclose(errors_);
    throw std::runtime_error("exit " + std::to_string(exit_code) + ": " + said);
}

void SimulatorProcess::send_signal(int signal) const
{
    if (pid_ > 0) kill(pid_, signal);
}

int SimulatorProcess::wait()
{
    if (pid_ > 0) {
        int status = 0;
        waitpid(pid_, &status, 0);
        pid_ = -1;
        exit_code_ = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }
    return exit_code_;
}

int SimulatorProcess::stop(int signal)
{
    send_signal(signal);
    return wait();
}

std::string SimulatorProcess::errors() const
{
    std::rewind(errors_);
    std::string text;
    char buffer[4096];
    while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, errors_))
        text.append(buffer, count);
    return text;
}
