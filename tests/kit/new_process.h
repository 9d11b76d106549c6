// A test's body in a process of its own, for what a process can go through only once.
#ifndef SOAPWRAPPER_TESTS_KIT_NEW_PROCESS_H
#define SOAPWRAPPER_TESTS_KIT_NEW_PROCESS_H

#include <gtest/gtest.h>

#include <cstdlib>

// Where leaks are looked for, they are looked for here too.
extern "C" int __lsan_do_recoverable_leak_check() __attribute__((weak));

namespace kit
{

// Ends the process at once: threads of the test's objects may still run.
[[noreturn]] inline void end_process(bool failed)
{
    if (__lsan_do_recoverable_leak_check && __lsan_do_recoverable_leak_check() != 0) failed = true;
    std::_Exit(failed ? 1 : 0);
}

} // namespace kit

#define IN_A_NEW_PROCESS(body)                                                                               \
    do {                                                                                                     \
        testing::FLAGS_gtest_death_test_style = "threadsafe"; /* the program starts anew */                  \
        EXPECT_EXIT(                                                                                         \
            {                                                                                                \
                body;                                                                                        \
                kit::end_process(HasFailure());                                                              \
            },                                                                                               \
            testing::ExitedWithCode(0), "");                                                                 \
    } while (false)

#endif
