#include "xmlhelper/dom_text.h"
#include "xmlhelper/node.h"
#include "xmlhelper/node_list.h"
#include "xmlhelper/tree_walk.h"
#include "xmlhelper/xpath.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/XMLString.hpp>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{
namespace
{

using OwnedList = std::unique_ptr<XMLNodeList>;

[[noreturn]] void throw_unsupported()
{
    throw std::domain_error("XPath context not supported.");
}

void add(XMLNodeList& list, THXMLDocument* document, DOMNode* node)
{
    list.add_item(new XMLDocNode(document, node));
}

void add_children(XMLNodeList& list, THXMLDocument* document, const DOMNode* parent, const std::string& name)
{
    for (DOMNode* child = parent->getFirstChild(); child; child = child->getNextSibling()) {
        if (has_name(child, name)) add(list, document, child);
    }
}

// The first step, from a document: its element stands for its children.
void add_root(XMLNodeList& list, THXMLDocument* document, DOMNode* node, const std::string& name)
{
    DOMElement* root = static_cast<DOMDocument*>(node)->getDocumentElement();
    if (root && has_name(root, name)) add(list, document, root);
}

void add_by_tag(XMLNodeList& list, THXMLDocument* document, DOMNode* node, const XMLCh* name)
{
    if (!name) return;
    const DOMNodeList* found = nullptr;
    if (node->getNodeType() == DOMNode::DOCUMENT_NODE) {
        found = static_cast<DOMDocument*>(node)->getElementsByTagName(name);
    } else if (node->getNodeType() == DOMNode::ELEMENT_NODE) {
        found = static_cast<DOMElement*>(node)->getElementsByTagName(name);
    }
    if (!found) return;
    for (XMLSize_t i = 0; DOMNode* match = found->item(i); ++i) add(list, document, match);
}

std::vector<DOMNode*> dom_nodes(const XMLNodeList& list)
{
    std::vector<DOMNode*> nodes;
    nodes.reserve(list.get_length());
    for (std::size_t i = 0; i < list.get_length(); ++i) {
        if (DOMNode* node = list.get_domNode(i)) nodes.push_back(node);
    }
    return nodes;
}

// A node has one parent: among the children of distinct nodes each comes up once.
OwnedList children_of(THXMLDocument* document, const std::vector<DOMNode*>& parents, const std::string& name)
{
    auto result = std::make_unique<XMLNodeList>(document);
    for (const DOMNode* parent : parents) add_children(*result, document, parent, name);
    return result;
}

OwnedList descendants_of(THXMLDocument* document, const std::vector<DOMNode*>& tops, const XMLCh* name)
{
    auto result = std::make_unique<XMLNodeList>(document);
    DescendantWalk walk(tops);
    for (DOMNode* top : tops) {
        walk.elements_below(top, [&](DOMNode* node) {
            if (XMLString::equals(node->getNodeName(), name)) add(*result, document, node);
        });
    }
    return result;
}

// What a step selects below distinct nodes.
OwnedList apply_step(THXMLDocument* document, const std::vector<DOMNode*>& nodes, const THXPathNode& step)
{
    switch (step.get_context()) {
    case XPATH_CHILD:
        return children_of(document, nodes, step.get_name());
    case XPATH_DESCENDANT:
        return descendants_of(document, nodes, step.getNameXml());
    default:
        throw_unsupported();
    }
}

void remove_repeats(std::vector<DOMNode*>& nodes)
{
    std::unordered_set<const DOMNode*> seen;
    const auto is_repeat = [&](const DOMNode* node) { return !seen.insert(node).second; };
    nodes.erase(std::remove_if(nodes.begin(), nodes.end(), is_repeat), nodes.end());
}

// In a loop: how many steps there are is the caller's business, how much stack is not. Each list goes as soon
// as the next one stands.
OwnedList apply_steps(THXMLDocument* document, OwnedList selected, const std::vector<THXPathNode>& steps,
                      std::size_t index)
{
    for (; index < steps.size(); ++index) {
        selected = apply_step(document, dom_nodes(*selected), steps[index]);
    }
    return selected;
}

} // namespace

XMLNodeList* selectNodesRecurse(THXMLDocument* document, XMLNodeList* list,
                                const std::vector<THXPathNode>& steps, std::size_t index)
{
    OwnedList selected(list);
    if (!selected || index >= steps.size()) return selected.release();
    std::vector<DOMNode*> nodes = dom_nodes(*selected);
    remove_repeats(nodes); // a list of the caller's may hold a node twice
    selected = apply_step(document, nodes, steps[index]);
    return apply_steps(document, std::move(selected), steps, index + 1).release();
}

XMLNodeList* selectNodesDom(THXMLDocument* document, DOMNode* node, const char* expression, bool is_document)
{
    if (!node) return nullptr;
    const THXPathExpression parsed(expression ? expression : "");
    const THXPathNode& first = parsed.get_steps().front();
    auto selected = std::make_unique<XMLNodeList>(document);
    switch (first.get_context()) {
    case XPATH_CHILD:
        if (is_document) {
            add_root(*selected, document, node, first.get_name());
        } else {
            add_children(*selected, document, node, first.get_name());
        }
        break;
    case XPATH_DESCENDANT:
        add_by_tag(*selected, document, node, first.getNameXml());
        break;
    default:
        throw_unsupported();
    }
    return apply_steps(document, std::move(selected), parsed.get_steps(), 1).release();
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
