#include "xmlhelper/file_target.h"

#include <xercesc/util/IOException.hpp>

#include <cstdio>
#include <string>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{
namespace
{

[[noreturn]] void fail(unsigned int line, XMLExcepts::Codes code)
{
    throw IOException("file_target.cpp", line, code, XMLPlatformUtils::fgMemoryManager);
}

} // namespace

FileTarget::FileTarget(const std::string& path) : file_(std::fopen(path.c_str(), "wbe"))
{
    if (!file_) fail(__LINE__, XMLExcepts::File_CouldNotOpenFile);
}

void FileTarget::writeChars(const XMLByte* bytes, XMLSize_t count, XMLFormatter* /*formatter*/)
{
    if (std::fwrite(bytes, 1, count, file_.get()) != count) {
        fail(__LINE__, XMLExcepts::File_CouldNotWriteToFile);
    }
}

void FileTarget::flush()
{
    if (std::fflush(file_.get()) != 0) fail(__LINE__, XMLExcepts::File_CouldNotWriteToFile);
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
