#include "probe/program/standard_streams.h"

#include "probe/output/output.h"
#include "probe/output/problem.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <iostream>

namespace soapwrapper::probe
{

void prepare_standard_descriptors()
{
    std::signal(SIGPIPE, SIG_IGN);
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        // Opened in turn, each gets the lowest number that is free. What is written there fails, as before.
        if (fcntl(descriptor, F_GETFD) < 0)
            open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

int fail_for_output(int error)
{
    if (error == EPIPE) return static_cast<int>(ExitCode::kClosedPipe);
    const Problem problem = output_problem(error);
    print_problem(problem, std::cerr);
    return static_cast<int>(problem.code());
}

} // namespace soapwrapper::probe
