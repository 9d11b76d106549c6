// What a call of the simulator's functions ends with.
#ifndef SOAPWRAPPER_TESTS_PARTS_FAULT_OF_H
#define SOAPWRAPPER_TESTS_PARTS_FAULT_OF_H

#include "simulator/scenario/fault.h"

// The code of the fault that a call ends with; 0 if it ends without one.
template <class Function>
int fault_of(const Function& function)
{
    try {
        function();
        return 0;
    } catch (const soapwrapper::simulator::Fault& fault) {
        return fault.code();
    }
}

#endif
