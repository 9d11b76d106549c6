// Counts what a thread takes from the heap through operator new, for tests of what must not allocate.
#ifndef SOAPWRAPPER_TESTS_UNIT_ALLOCATION_COUNTER_H
#define SOAPWRAPPER_TESTS_UNIT_ALLOCATION_COUNTER_H

#include <cstddef>

// The allocations of the calling thread so far.
std::size_t allocations();

#endif
