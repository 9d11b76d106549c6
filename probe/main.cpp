// soapwrapper-probe: plays the backup host from the command line.
#include "probe/output/problem.h"
#include "probe/program/program.h"

#include <cstdio>
#include <exception>

int main(int argc, char** argv)
{
    using namespace soapwrapper::probe;
    try {
        return run_command_line(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "failed: %s\n", error.what());
    } catch (...) {
        std::fputs("failed\n", stderr);
    }
    return static_cast<int>(ExitCode::kOperation);
}
