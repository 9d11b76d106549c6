#include "xmlhelper/metered_source.h"

#include <xercesc/util/BinInputStream.hpp>

#include <algorithm>
#include <memory>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{
namespace
{

constexpr XMLSize_t kFirstPiece = 2048; // holds the XML declaration in any encoding
constexpr XMLSize_t kPiece = 1024;

class MeteredStream : public BinInputStream
{
  public:
    MeteredStream(std::unique_ptr<BinInputStream> stream, const ParseBudget& budget, const bool& in_prolog)
        : stream_(std::move(stream)), budget_(budget), in_prolog_(in_prolog)
    {
    }

    XMLFilePos curPos() const override { return stream_->curPos(); }
    const XMLCh* getContentType() const override { return stream_->getContentType(); }
    const XMLCh* getEncoding() const override { return stream_->getEncoding(); }

    XMLSize_t readBytes(XMLByte* destination, XMLSize_t size) override
    {
        budget_.check();
        if (in_prolog_) size = std::min(size, stream_->curPos() == 0 ? kFirstPiece : kPiece);
        return stream_->readBytes(destination, size);
    }

  private:
    std::unique_ptr<BinInputStream> stream_;
    const ParseBudget& budget_;
    const bool& in_prolog_;
};

} // namespace

MeteredSource::MeteredSource(const InputSource& source, const ParseBudget& budget, const bool& in_prolog)
    : source_(source), budget_(budget), in_prolog_(in_prolog)
{
    setSystemId(source.getSystemId());
    setEncoding(source.getEncoding());
}

BinInputStream* MeteredSource::makeStream() const
{
    std::unique_ptr<BinInputStream> stream(source_.makeStream());
    return stream ? new MeteredStream(std::move(stream), budget_, in_prolog_) : nullptr;
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
