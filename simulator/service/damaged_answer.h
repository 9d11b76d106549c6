#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_DAMAGED_ANSWER_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_DAMAGED_ANSWER_H

#include "simulator/front/http.h"
#include "simulator/service/trouble.h"

namespace soapwrapper::simulator
{

// What the client gets instead of the answer, which a trouble that leaves the operation out doesn't look at.
// Neither a fault nor a delay does anything to it.
Answer damaged(Answer answer, const Trouble& trouble);

// The HTTP status that the client sees of it; 0: none.
int visible_status(const Answer& answer);

} // namespace soapwrapper::simulator

#endif
