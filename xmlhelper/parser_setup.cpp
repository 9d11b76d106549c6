#include "xmlhelper/parser_setup.h"

#include "xmlhelper/transcoding.h"
#include "xmlhelper/xml_status.h"

#include <xercesc/util/XMLUni.hpp>

#include <memory>
#include <string>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

void ValidatingHandler::error(const SAXParseException& exception)
{
    if (level_ > VALIDATION_IGNORE_ERRORS) fatalError(exception);
}

void ValidatingHandler::warning(const SAXParseException& exception)
{
    if (level_ > VALIDATION_FATAL_ERRORS) fatalError(exception);
}

void configureParser(XercesDOMParser& parser, ValidatingHandler& handler, const std::string& schema_location)
{
    parser.setValidationScheme(XercesDOMParser::Val_Auto);
    if (handler.level() != VALIDATION_NO_SCHEMA) {
        parser.setDoNamespaces(true);
        parser.setDoSchema(true);
        parser.setValidationSchemaFullChecking(true);
        parser.setValidationConstraintFatal(true);
    }
    parser.useScanner(XMLUni::fgIGXMLScanner);
    parser.setErrorHandler(&handler);
    if (!schema_location.empty()) {
        const std::unique_ptr<XMLCh[]> location(transcodeUtf8ToXml(schema_location.c_str()));
        parser.setExternalNoNamespaceSchemaLocation(location.get());
    }
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
