// Selection by XPath beside a bare walk of the tree that finds the same nodes. The time per node is to stay
// the same from a thousand nodes to a hundred thousand.
#include "xmlhelper/XMLHelper.h"

#include <benchmark/benchmark.h>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/XMLString.hpp>

#include <memory>
#include <string>

using namespace Oskelund::Tarnholme::VMware::XMLHelper;

namespace
{

// As many mappings as `count`, each with its three children.
std::unique_ptr<THXMLDocument> document_with(std::int64_t count)
{
    std::string text = "<maps>";
    for (std::int64_t i = 0; i < count; ++i) {
        const std::string number = std::to_string(i);
        text += "<path_map><prefix>/vol/</prefix><original_path>q" + number +
                "</original_path><target_path>t" + number + "</target_path></path_map>";
    }
    text += "</maps>";
    XMLDocumentStatus status = XML_DOC_OK;
    auto document = std::make_unique<THXMLDocument>(&status, false, VALIDATION_IGNORE_ERRORS, "");
    document->parse(text, "");
    return document;
}

void count_nodes(benchmark::State& state)
{
    state.counters["per_node"] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void select(benchmark::State& state, const char* xpath)
{
    const auto document = document_with(state.range(0));
    for (auto _ : state) {
        const std::unique_ptr<XMLNodeList> nodes(document->selectNodes(xpath));
        if (nodes->get_length() != static_cast<std::size_t>(state.range(0))) {
            return state.SkipWithError("the wrong number of nodes");
        }
    }
    count_nodes(state);
}

// In the document's order, without a wrapper for what is found.
void walk(benchmark::State& state, const XMLCh* name)
{
    const auto document = document_with(state.range(0));
    for (auto _ : state) {
        std::int64_t found = 0;
        const xercesc::DOMNode* node = document->get_document()->getDocumentElement();
        while (node) {
            if (xercesc::XMLString::equals(node->getNodeName(), name)) ++found;
            const xercesc::DOMNode* next = node->getFirstChild();
            for (; !next && node; node = node->getParentNode()) next = node->getNextSibling();
            node = next;
        }
        if (found != state.range(0)) return state.SkipWithError("the wrong number of nodes");
    }
    count_nodes(state);
}

void one_step(benchmark::State& state)
{
    select(state, "//path_map");
}
void one_step_floor(benchmark::State& state)
{
    walk(state, u"path_map");
}
void three_child_steps(benchmark::State& state)
{
    select(state, "maps/path_map/target_path");
}
void three_child_steps_floor(benchmark::State& state)
{
    walk(state, u"target_path");
}
void three_descendant_steps(benchmark::State& state)
{
    select(state, "//maps//path_map//target_path");
}
void three_descendant_steps_floor(benchmark::State& state)
{
    walk(state, u"target_path");
}

} // namespace

BENCHMARK(one_step)->Arg(1000)->Arg(10'000)->Arg(100'000);
BENCHMARK(one_step_floor)->Arg(1000)->Arg(10'000)->Arg(100'000);
BENCHMARK(three_child_steps)->Arg(1000)->Arg(10'000)->Arg(100'000);
BENCHMARK(three_child_steps_floor)->Arg(1000)->Arg(10'000)->Arg(100'000);
BENCHMARK(three_descendant_steps)->Arg(1000)->Arg(10'000)->Arg(100'000);
BENCHMARK(three_descendant_steps_floor)->Arg(1000)->Arg(10'000)->Arg(100'000);
