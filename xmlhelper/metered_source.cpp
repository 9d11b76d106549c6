#include "xmlhelper/metered_source.h"

#include "xmlhelper/parse_memory.h"

#include <xercesc/util/BinInputStream.hpp>

#include <memory>
#include <utility>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{
namespace
{

class MeteredStream : public BinInputStream
{
  public:
    MeteredStream(std::unique_ptr<BinInputStream> stream, const ParseBudget& budget)
        : stream_(std::move(stream)), budget_(budget)
    {
    }

    XMLFilePos curPos() const override { return stream_->curPos(); }
    const XMLCh* getContentType() const override { return stream_->getContentType(); }
    const XMLCh* getEncoding() const override { return stream_->getEncoding(); }

    XMLSize_t readBytes(XMLByte* destination, XMLSize_t size) override
    {
        budget_.check();
        return stream_->readBytes(destination, size);
    }

  private:
    std::unique_ptr<BinInputStream> stream_;
    const ParseBudget& budget_;
};

} // namespace

MeteredSource::MeteredSource(const InputSource& source, const ParseBudget& budget)
    : source_(source), budget_(budget)
{
    setSystemId(source.getSystemId());
    setEncoding(source.getEncoding());
}

BinInputStream* MeteredSource::makeStream() const
{
    std::unique_ptr<BinInputStream> stream(source_.makeStream());
    return stream ? new MeteredStream(std::move(stream), budget_) : nullptr;
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
