// An input source that is read in small pieces as long as declarations may come, and never past a bound.
#ifndef SOAPWRAPPER_XMLHELPER_METERED_SOURCE_H
#define SOAPWRAPPER_XMLHELPER_METERED_SOURCE_H

#include "xmlhelper/parse_memory.h"

#include <xercesc/sax/InputSource.hpp>

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

class MeteredSource : public xercesc::InputSource
{
  public:
    // All of it is borrowed; `in_prolog` becomes false at the first element.
    MeteredSource(const xercesc::InputSource& source, const ParseBudget& budget, const bool& in_prolog);
    xercesc::BinInputStream* makeStream() const override;

  private:
    const xercesc::InputSource& source_;
    const ParseBudget& budget_;
    const bool& in_prolog_;
};

} // namespace Oskelund::Tarnholme::VMware::XMLHelper

#endif
