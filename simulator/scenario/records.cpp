#include "simulator/scenario/records.h"

namespace soapwrapper::simulator
{

bool means(const Volume& asked, const Volume& held)
{
    return asked.kind == held.kind && asked.texts[0] == held.texts[0] && asked.texts[1] == held.texts[1] &&
           (asked.texts[2].empty() || asked.texts[2] == held.texts[2]);
}

} // namespace soapwrapper::simulator
