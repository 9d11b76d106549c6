#include "xmlhelper/tree_walk.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{
namespace
{

constexpr std::size_t kFewNames = 4;

// The node or the first of its next siblings that may hold elements.
DOMNode* first_branch(DOMNode* node)
{
    while (node && node->getNodeType() != DOMNode::ELEMENT_NODE &&
           node->getNodeType() != DOMNode::ENTITY_REFERENCE_NODE) {
        node = node->getNextSibling();
    }
    return node;
}

} // namespace

bool is_deeper_than(const DOMNode* node, std::size_t levels)
{
    std::size_t depth = 0;
    for (const DOMNode* current = node;;) {
        if (const DOMNode* child = current->getFirstChild()) {
            if (++depth > levels) return true;
            current = child;
            continue;
        }
        while (current != node && !current->getNextSibling()) {
            current = current->getParentNode();
            --depth;
        }
        if (current == node) return false;
        current = current->getNextSibling();
    }
}

DescendantWalk::DescendantWalk(const std::vector<DOMNode*>& tops)
{
    tops_.reserve(tops.size());
    bool are_few = true;
    for (const DOMNode* top : tops) {
        tops_.emplace(top, false);
        const XMLCh* name = top->getNodeName();
        if (!are_few ||
            std::find(names_of_tops_.begin(), names_of_tops_.end(), name) != names_of_tops_.end()) {
            continue;
        }
        names_of_tops_.push_back(name);
        are_few = names_of_tops_.size() <= kFewNames;
    }
    if (!are_few) names_of_tops_.clear();
}

// False if what is below the node has been seen.
bool DescendantWalk::enter(const DOMNode* node)
{
    if (!names_of_tops_.empty() && std::find(names_of_tops_.begin(), names_of_tops_.end(),
                                             node->getNodeName()) == names_of_tops_.end()) {
        return true;
    }
    const auto top = tops_.find(node);
    return top == tops_.end() || !std::exchange(top->second, true);
}

DOMNode* DescendantWalk::first_below(const DOMNode* node)
{
    return first_branch(node->getFirstChild());
}

DOMNode* DescendantWalk::next(DOMNode* node, const DOMNode* top)
{
    if (enter(node)) {
        if (DOMNode* child = first_below(node)) return child;
    }
    for (const DOMNode* current = node; current != top; current = current->getParentNode()) {
        if (DOMNode* sibling = first_branch(current->getNextSibling())) return sibling;
    }
    return nullptr;
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
