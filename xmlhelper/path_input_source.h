// A file as the parser's input. The parser's own goes through the character set of the locale, in which a
// path may have no name.
#ifndef SOAPWRAPPER_XMLHELPER_PATH_INPUT_SOURCE_H
#define SOAPWRAPPER_XMLHELPER_PATH_INPUT_SOURCE_H

#include <xercesc/sax/InputSource.hpp>

#include <cstddef>
#include <string>

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

// The path as the system takes it: its bytes. One that is said to be UTF-8 and isn't becomes empty: its
// beginning may be the path of another file.
// Throws std::domain_error if that is too long.
std::string native_path(const char* path, bool is_utf8);

// In bytes; 0 if it isn't known.
std::size_t file_size(const std::string& path);

class PathInputSource : public xercesc::InputSource
{
  public:
    explicit PathInputSource(const std::string& path);
    xercesc::BinInputStream* makeStream() const override;

  private:
    const std::string path_;
};

} // namespace Oskelund::Tarnholme::VMware::XMLHelper

#endif
