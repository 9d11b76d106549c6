// The probe as a process, and a folder of its own for each test.
#ifndef SOAPWRAPPER_TESTS_SYSTEM_PROBE_PROCESS_H
#define SOAPWRAPPER_TESTS_SYSTEM_PROBE_PROCESS_H

#include <sys/types.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

struct ProcessResult {
    int exit_code = -1; // negative: ended by a signal
    std::string out;
    std::string err;
    std::string login_warning; // the line about a login in the clear, which isn't in `err`
};

// A program that has been started.
class Process
{
  public:
    struct Streams {
        std::string out_file;          // empty: a pipe
        bool terminal_for_err = false; // a pseudo-terminal instead of a pipe
        bool out_is_closed = false;    // a pipe that nobody reads any more
    };

    // The environment is this one's without SOAPWRAPPER_CREDENTIAL, with the variables given.
    Process(const std::filesystem::path& program, const std::vector<std::string>& arguments,
            const std::map<std::string, std::string>& environment, const Streams& streams);

    // Waits for the end of a process that nobody has waited for.
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    pid_t id() const { return id_; }

    // Reads standard error until this was written there, or to its end.
    void wait_for_err(const std::string& text);

    // Reads what the program writes, up to its end.
    ProcessResult finish();

  private:
    std::string err_so_far_;
    pid_t id_ = 0;
    int out_ = -1;
    int err_ = -1;
};

// Runs a program to its end. The environment is this one's without SOAPWRAPPER_CREDENTIAL, with the variables
// given. `out_file`, if any, takes the standard output.
ProcessResult run_process(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                          const std::map<std::string, std::string>& environment = {},
                          const std::string& out_file = {});

// A folder that lasts as long as the object.
class TemporaryFolder
{
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

    // Writes a file that only its owner may read, or one with other permissions.
    std::string write(const std::string& name, const std::string& content,
                      std::filesystem::perms permissions = static_cast<std::filesystem::perms>(0600)) const;

  private:
    std::filesystem::path path_;
};

std::string read_file(const std::filesystem::path& path);

#endif
