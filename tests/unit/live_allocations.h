// What a thread has taken from operator new and not yet given back, so that a test sees on the spot whether a
// clean-up gives back all that was made.
#ifndef SOAPWRAPPER_TESTS_UNIT_LIVE_ALLOCATIONS_H
#define SOAPWRAPPER_TESTS_UNIT_LIVE_ALLOCATIONS_H

long live_allocations();

#endif
