// Conversions between UTF-8 and the parser's texts beside the bare transcoder with buffers of its own.
#include "xmlhelper/XMLHelper.h"

#include <benchmark/benchmark.h>
#include <xercesc/util/TransService.hpp>

#include <memory>
#include <string>
#include <vector>

using namespace Oskelund::Tarnholme::VMware::XMLHelper;

namespace
{

constexpr std::size_t kLongText = 60'000;
constexpr std::size_t kBytesPerCharacter = 6;

const std::string& tag()
{
    static const std::string name = "target_path";
    return name;
}

const std::string& long_text()
{
    static const std::string text(kLongText, 'x');
    return text;
}

void bare_decoding(benchmark::State& state, const std::string& text)
{
    xercesc::XMLTranscoder& transcoder = *getUtf8Transcoder();
    std::vector<XMLCh> result(text.size() + 1);
    std::vector<unsigned char> widths(text.size());
    for (auto _ : state) {
        XMLSize_t eaten = 0;
        benchmark::DoNotOptimize(transcoder.transcodeFrom(reinterpret_cast<const XMLByte*>(text.data()),
                                                          text.size(), result.data(), text.size(), eaten,
                                                          widths.data()));
    }
}

void cached_tag(benchmark::State& state)
{
    for (auto _ : state) benchmark::DoNotOptimize(transcodeUtf8TagToXmlTag(tag()));
}
void cached_tag_floor(benchmark::State& state)
{
    bare_decoding(state, tag());
}

void long_text_to_xml(benchmark::State& state)
{
    for (auto _ : state) {
        const std::unique_ptr<XMLCh[]> converted(transcodeUtf8ToXml(long_text().c_str()));
        benchmark::DoNotOptimize(converted.get());
    }
}
void long_text_to_xml_floor(benchmark::State& state)
{
    bare_decoding(state, long_text());
}

void long_text_to_utf8(benchmark::State& state)
{
    const std::vector<XMLCh> text = [] {
        std::vector<XMLCh> units(kLongText, u'x');
        units.push_back(0);
        return units;
    }();
    for (auto _ : state) benchmark::DoNotOptimize(transcodeXmlToUtf8(text.data()));
}
void long_text_to_utf8_floor(benchmark::State& state)
{
    const std::vector<XMLCh> text(kLongText, u'x');
    std::vector<XMLByte> result(kBytesPerCharacter * kLongText);
    xercesc::XMLTranscoder& transcoder = *getUtf8Transcoder();
    for (auto _ : state) {
        XMLSize_t eaten = 0;
        benchmark::DoNotOptimize(transcoder.transcodeTo(text.data(), text.size(), result.data(),
                                                        result.size(), eaten,
                                                        xercesc::XMLTranscoder::UnRep_RepChar));
    }
}

} // namespace

BENCHMARK(cached_tag);
BENCHMARK(cached_tag_floor);
BENCHMARK(long_text_to_xml);
BENCHMARK(long_text_to_xml_floor);
BENCHMARK(long_text_to_utf8);
BENCHMARK(long_text_to_utf8_floor);
