// The page on which people see what the simulator holds and is asked.
#ifndef SOAPWRAPPER_SIMULATOR_PAGE_PAGE_H
#define SOAPWRAPPER_SIMULATOR_PAGE_PAGE_H

#include "simulator/front/http.h"

#include <vector>

namespace soapwrapper::simulator
{

// GET / and GET /page/NAME for each file that it needs.
std::vector<Route> page_routes();

} // namespace soapwrapper::simulator

#endif
