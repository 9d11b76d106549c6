#include "xmlhelper/transcoding.h"

#include "xmlhelper/platform.h"

#include <ace/Guard_T.h>
#include <ace/Recursive_Thread_Mutex.h>
#include <ace/Singleton.h>
#include <string.h>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <numeric>
#include <stdexcept>
#include <string>
#include <utility>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

const std::string EmptyString;

namespace
{

constexpr std::size_t kMaxBytesPerCharacter = 6;
constexpr std::size_t kDecodingStep = 1024;

class Utf8Transcoder
{
  public:
    Utf8Transcoder()
    {
        if (!start_platform(nullptr)) return;
        transcoder_.reset(XMLPlatformUtils::fgTransService->makeNewTranscoderFor(
            XMLUni::fgUTF8EncodingString, status_, kMaxTranscodedLength));
        platform_started_ = true;
    }
    ~Utf8Transcoder()
    {
        transcoder_.reset();
        if (platform_started_) end_platform();
    }
    Utf8Transcoder(const Utf8Transcoder&) = delete;
    Utf8Transcoder& operator=(const Utf8Transcoder&) = delete;

    XMLTransService::Codes status() const { return status_; }
    XMLTranscoder* transcoder() const { return transcoder_.get(); }
    auto& tag_cache() { return tag_cache_; }

  private:
    XMLTransService::Codes status_ = XMLTransService::InternalFailure;
    std::unique_ptr<XMLTranscoder> transcoder_;
    std::map<std::string, std::unique_ptr<XMLCh[]>> tag_cache_;
    bool platform_started_ = false;
};

using SharedTranscoder = ACE_Singleton<Utf8Transcoder, ACE_Recursive_Thread_Mutex>;
using TranscodeLock = ACE_Guard<ACE_Recursive_Thread_Mutex>;

ACE_Recursive_Thread_Mutex g_xmlTranscodeMutex;

// Stands behind the mutex, so that it goes ahead of it: nothing of this library may be left with the
// singletons of the process once it is unloaded.
class Utf8TranscoderSingletonDestroyer
{
  public:
    Utf8TranscoderSingletonDestroyer() = default;
    ~Utf8TranscoderSingletonDestroyer() { SharedTranscoder::close(); }
    Utf8TranscoderSingletonDestroyer(const Utf8TranscoderSingletonDestroyer&) = delete;
    Utf8TranscoderSingletonDestroyer& operator=(const Utf8TranscoderSingletonDestroyer&) = delete;
};
Utf8TranscoderSingletonDestroyer g_destroyer;

std::size_t checked_length(const char* function, const char* text)
{
    const std::size_t length = strnlen(text, kMaxTranscodedLength + 1);
    if (length > kMaxTranscodedLength) {
        throw std::domain_error(std::string(function) + ": text exceeded transcoder buffer size");
    }
    return length;
}

// In steps, so that the transcoder's note of each character's width stays small. The result is all zeros
// beforehand: of a text that isn't UTF-8 it keeps what stands ahead of the first bad byte.
void decode(XMLTranscoder& transcoder, const char* text, std::size_t length, XMLCh* result)
{
    unsigned char widths[kDecodingStep];
    const auto* bytes = reinterpret_cast<const XMLByte*>(text);
    std::size_t read = 0;
    std::size_t written = 0;
    try {
        while (read < length) {
            XMLSize_t eaten = 0;
            const XMLSize_t count =
                transcoder.transcodeFrom(bytes + read, length - read, result + written,
                                         std::min(kDecodingStep, length - written), eaten, widths);
            // Nothing is eaten of half a character at the end, and more than was written of a character
            // beyond Unicode.
            if (eaten == 0 || std::accumulate(widths, widths + count, std::size_t{0}) != eaten) return;
            read += eaten;
            written += count;
        }
    } catch (const XMLException&) {
        return;
    }
}

} // namespace

XMLTranscoder* getUtf8Transcoder()
{
    const TranscodeLock lock(g_xmlTranscodeMutex);
    const Utf8Transcoder* shared = SharedTranscoder::instance();
    if (shared && shared->status() != XMLTransService::Ok) {
        throw std::domain_error("failed to obtain XMLTranscoder, status: " +
                                std::to_string(shared->status()));
    }
    if (!shared || !shared->transcoder()) throw std::domain_error("m_pXmlTranscoder is NULL!");
    return shared->transcoder();
}

std::string transcodeXmlToUtf8(const XMLCh* text)
{
    if (!text || !*text) return EmptyString;
    const std::size_t length = XMLString::stringLen(text);
    if (length > kMaxTranscodedLength) {
        throw std::domain_error("transcodeXmlToUtf8: text exceeded transcoder buffer size");
    }
    const TranscodeLock lock(g_xmlTranscodeMutex);
    if (!lock.locked()) return EmptyString;

    XMLTranscoder* transcoder = getUtf8Transcoder();
    const std::size_t size = kMaxBytesPerCharacter * length;
    const std::unique_ptr<XMLByte[]> bytes(new XMLByte[size + 1]);
    std::size_t written = 0;
    try {
        XMLSize_t eaten = 0;
        written =
            transcoder->transcodeTo(text, length, bytes.get(), size - 1, eaten, XMLTranscoder::UnRep_RepChar);
    } catch (const XMLException&) {
        return EmptyString;
    }
    bytes[written] = 0;
    return reinterpret_cast<const char*>(bytes.get());
}

XMLCh* transcodeUtf8ToXml(const char* text)
{
    if (!text) return nullptr;
    const std::size_t length = checked_length("transcodeUtf8ToXml", text);
    auto result = std::make_unique<XMLCh[]>(length + 1);
    if (length == 0) return result.release();
    const TranscodeLock lock(g_xmlTranscodeMutex);
    if (lock.locked()) decode(*getUtf8Transcoder(), text, length, result.get());
    return result.release();
}

const XMLCh* transcodeUtf8TagToXmlTag(const std::string& tag)
{
    checked_length("transcodeUtf8ToXml", tag.c_str());
    const TranscodeLock lock(g_xmlTranscodeMutex);
    if (!lock.locked()) return nullptr;
    getUtf8Transcoder();
    auto& cache = SharedTranscoder::instance()->tag_cache();
    const auto found = cache.find(tag);
    if (found != cache.end()) return found->second.get();
    std::unique_ptr<XMLCh[]> converted(transcodeUtf8ToXml(tag.c_str()));
    return cache.emplace(tag, std::move(converted)).first->second.get();
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
