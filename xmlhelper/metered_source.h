// An input source that isn't read any further once a bound is passed.
#ifndef SOAPWRAPPER_XMLHELPER_METERED_SOURCE_H
#define SOAPWRAPPER_XMLHELPER_METERED_SOURCE_H

#include "xmlhelper/parse_memory.h"

#include <xercesc/sax/InputSource.hpp>

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

class MeteredSource : public xercesc::InputSource
{
  public:
    // Both are borrowed.
    MeteredSource(const xercesc::InputSource& source, const ParseBudget& budget);
    xercesc::BinInputStream* makeStream() const override;

  private:
    const xercesc::InputSource& source_;
    const ParseBudget& budget_;
};

} // namespace Oskelund::Tarnholme::VMware::XMLHelper

#endif
