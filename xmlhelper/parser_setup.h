// How a parser is set up for a validation level.
#ifndef SOAPWRAPPER_XMLHELPER_PARSER_SETUP_H
#define SOAPWRAPPER_XMLHELPER_PARSER_SETUP_H

#include "xmlhelper/xml_status.h"

#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/HandlerBase.hpp>

#include <string>

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

// Makes the parser's complaints fatal, as far as the validation level asks for it. A fatal error throws.
class ValidatingHandler : public xercesc::HandlerBase
{
  public:
    explicit ValidatingHandler(THValidationLevel level) : level_(level) {}

    THValidationLevel level() const { return level_; }
    void error(const xercesc::SAXParseException& exception) override;
    void warning(const xercesc::SAXParseException& exception) override;

  private:
    const THValidationLevel level_;
};

// The handler is borrowed for as long as the parser is used.
void configureParser(xercesc::XercesDOMParser& parser, ValidatingHandler& handler,
                     const std::string& schema_location);

} // namespace Oskelund::Tarnholme::VMware::XMLHelper

#endif
