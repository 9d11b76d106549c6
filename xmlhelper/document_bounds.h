// What a document may ask for. Reading one that goes past any of these fails with XML_DOC_PARSE_FAILED,
// whatever the validation level. They hold for what the parser does by itself for a document, declarations
// and entities included, so that a thread with 192 KiB of free stack reads any document, and a short document
// takes neither much memory nor much time.
#ifndef SOAPWRAPPER_XMLHELPER_DOCUMENT_BOUNDS_H
#define SOAPWRAPPER_XMLHELPER_DOCUMENT_BOUNDS_H

#include <cstddef>
#include <cstdint>

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

// How deep elements and entities are nested. Reading takes the same stack at any depth; what grows is the
// time for each start tag, which has a bound of its own.
constexpr std::size_t kMaxDepth = 10'000;
// The same within an entity, the entity included: what it brings is copied, at 190 bytes of stack a level.
constexpr std::size_t kMaxEntityDepth = 800;
// Of what is written or copied into another document; this is no bound on reading. Writing takes 130 bytes of
// stack a level.
constexpr std::size_t kMaxWrittenDepth = 1'000;

// Attributes of an element, defaults included, and attributes declared for one.
constexpr std::size_t kMaxAttributes = 10'000;
// Values that an attribute's declaration lists.
constexpr std::size_t kMaxListedValues = 10'000;

// Names in the declaration of an element, and how deep its groups are nested, where each further name of a
// group is one level further down. Following them takes 180 bytes of stack a level. Mixed content takes none.
constexpr std::size_t kMaxModelNames = 800;
constexpr std::size_t kMaxModelDepth = 900;
constexpr std::size_t kMaxMixedNames = 2'000;

// References to general entities that are expanded: so many, and one more for each so many bytes of the
// document. Of entities of all kinds twice as many texts are read.
constexpr std::size_t kMinEntityExpansions = 50'000;
constexpr std::size_t kBytesPerEntityExpansion = 16;

// Memory in bytes: so much, and so much more for each byte of the document.
constexpr std::size_t kMinMemory = 64U * 1024U * 1024U;
constexpr std::size_t kMemoryPerByte = 80;

// Steps, of some nanoseconds each: so many, and so many more for each byte of the document. A start tag takes
// one for each element and entity around it, the square of its number of attributes, and one for every four
// names of elements that came up before. The declaration of an attribute takes two for each attribute that
// the element has by then, and the square of the number of values that it lists.
constexpr std::uint64_t kMinSteps = 200'000'000;
constexpr std::uint64_t kStepsPerByte = 250;

// Nothing else is bounded: neither the length of the document, of a declaration, of a name and of a text nor
// how many declarations there are.

} // namespace Oskelund::Tarnholme::VMware::XMLHelper

#endif
