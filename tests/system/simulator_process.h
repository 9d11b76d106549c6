// The simulator as a process of its own, on ports that the system draws.
#ifndef SOAPWRAPPER_TESTS_SYSTEM_SIMULATOR_PROCESS_H
#define SOAPWRAPPER_TESTS_SYSTEM_SIMULATOR_PROCESS_H

#include <sys/types.h>

#include <cstdio>
#include <string>
#include <vector>

class SimulatorProcess
{
  public:
    using Arguments = std::vector<std::string>;

    // Starts it and waits until it says that it is ready. Throws, with what it said, if it ends before.
    explicit SimulatorProcess(const Arguments& more = {});
    // With exactly these arguments.
    struct Exactly {
        Arguments arguments;
    };
    explicit SimulatorProcess(const Exactly& exactly);
    // With standard error in that descriptor, and errors() empty.
    struct WithErrorsTo {
        int fd;
        Arguments more;
    };
    explicit SimulatorProcess(const WithErrorsTo& errors);
    // Expects it to end well.
    ~SimulatorProcess();
    SimulatorProcess(const SimulatorProcess&) = delete;
    SimulatorProcess& operator=(const SimulatorProcess&) = delete;

    // The lines ahead of "ready".
    const std::vector<std::string>& urls() const { return urls_; }
    int http_port() const { return http_port_; }
    int https_port() const { return https_port_; }

    void send_signal(int signal) const;
    // Waits for its end. Returns the exit code, or the signal that ended it as a negative number.
    int wait();
    int stop(int signal);
    // What it wrote to standard error; to be asked once it has ended.
    std::string errors() const;

  private:
    void start(const Arguments& arguments, int errors_fd = -1);

    pid_t pid_ = -1;
    int exit_code_ = 0;
    std::FILE* errors_ = nullptr;
    std::vector<std::string> urls_;
    int http_port_ = 0;
    int https_port_ = 0;
};

#endif
