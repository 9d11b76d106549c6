#include "xmlhelper/path_input_source.h"

#include "xmlhelper/transcoding.h"

#include <sys/stat.h>
#include <xercesc/util/BinFileInputStream.hpp>

#include <cstddef>
#include <memory>
#include <string>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

std::string native_path(const char* path, bool is_utf8)
{
    if (!is_utf8) return path;
    const std::unique_ptr<XMLCh[]> converted(transcodeUtf8ToXml(path));
    std::string native = transcodeXmlToUtf8(converted.get());
    return native == path ? native : std::string();
}

std::size_t file_size(const std::string& path)
{
    struct stat status {
    };
    if (stat(path.c_str(), &status) != 0 || status.st_size < 0) return 0;
    return static_cast<std::size_t>(status.st_size);
}

PathInputSource::PathInputSource(const std::string& path) : path_(path)
{
    // For messages, and for what the caller's schema location is relative to.
    const std::unique_ptr<XMLCh[]> system_id(transcodeUtf8ToXml(path.c_str()));
    setSystemId(system_id.get());
}

BinInputStream* PathInputSource::makeStream() const
{
    auto stream = std::make_unique<BinFileInputStream>(path_.c_str());
    return stream->getIsOpen() ? stream.release() : nullptr;
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
