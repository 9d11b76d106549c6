// Ways through a tree that don't depend on the stack, however deep the tree is.
#ifndef SOAPWRAPPER_XMLHELPER_TREE_WALK_H
#define SOAPWRAPPER_XMLHELPER_TREE_WALK_H

#include <xercesc/dom/DOMNode.hpp>

#include <cstddef>
#include <unordered_map>
#include <vector>

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

// Are there more than `levels` levels below the node?
bool is_deeper_than(const xercesc::DOMNode* node, std::size_t levels);

// The descendants of several nodes, each of them once, in the order of the nodes and then of the document.
class DescendantWalk
{
  public:
    // What elements_below is going to be called with.
    explicit DescendantWalk(const std::vector<xercesc::DOMNode*>& tops);

    // Calls `visit` with each element below `top` that no earlier call has come by.
    template <class Visit>
    void elements_below(xercesc::DOMNode* top, Visit visit)
    {
        if (!enter(top)) return;
        for (xercesc::DOMNode* node = first_below(top); node; node = next(node, top)) {
            if (node->getNodeType() == xercesc::DOMNode::ELEMENT_NODE) visit(node);
        }
    }

  private:
    bool enter(const xercesc::DOMNode* node);
    xercesc::DOMNode* next(xercesc::DOMNode* node, const xercesc::DOMNode* top);
    static xercesc::DOMNode* first_below(const xercesc::DOMNode* node);

    // Each top, and whether what is below it has been seen. A walk that comes by a top covers it as well.
    std::unordered_map<const xercesc::DOMNode*, bool> tops_;
    // A document keeps each name once. Empty: too many of them to tell tops by.
    std::vector<const XMLCh*> names_of_tops_;
};

} // namespace Oskelund::Tarnholme::VMware::XMLHelper

#endif
