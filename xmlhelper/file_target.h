// Where a document is saved to. The parser's own target keeps a failure of its last write to itself.
#ifndef SOAPWRAPPER_XMLHELPER_FILE_TARGET_H
#define SOAPWRAPPER_XMLHELPER_FILE_TARGET_H

#include <xercesc/framework/XMLFormatter.hpp>

#include <cstdio>
#include <memory>
#include <string>

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

class FileTarget : public xercesc::XMLFormatTarget
{
  public:
    // Empties the file. This and the others throw xercesc::IOException.
    explicit FileTarget(const std::string& path);

    void writeChars(const XMLByte* bytes, XMLSize_t count, xercesc::XMLFormatter* formatter) override;
    void flush() override;

  private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Close> file_;
};

} // namespace Oskelund::Tarnholme::VMware::XMLHelper

#endif
