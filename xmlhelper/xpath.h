// Selection by a small subset of XPath: element names joined by child and descendant steps.
#ifndef SOAPWRAPPER_XMLHELPER_XPATH_H
#define SOAPWRAPPER_XMLHELPER_XPATH_H

#include "xmlhelper/node.h"
#include "xmlhelper/node_list.h"

#include <xercesc/dom/DOMNode.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

// How a step relates to the nodes ahead of it. Selection knows child and descendant.
enum THXPathContext : std::uint32_t {
    XPATH_NO_CONTEXT = 0,
    XPATH_SELF = 1,
    XPATH_CHILD = 2,
    XPATH_DESCENDANT = 3,
    XPATH_PARENT = 4,
    XPATH_ROOT = 5,
    XPATH_ANY_ROOT = 6
};

// One step of an expression.
class THXPathNode
{
  public:
    THXPathNode() = default;
    // The step's text with its leading slashes.
    THXPathNode(const std::string& step, bool is_first);
    THXPathNode(const THXPathNode&) = default;
    THXPathNode& operator=(const THXPathNode&) = default;
    virtual ~THXPathNode() = default;

    THXPathContext get_context() const { return context_; }
    const std::string& get_name() const { return name_; }
    // What stands behind the name, as it was written. It plays no part in selection.
    const std::string& get_predicate() const { return predicate_; }
    const std::string& get_errorText() const { return error_text_; }

    // The name as the parser has it; null, with an error text, if it can't be converted.
    const XMLCh* getNameXml() const;

  private:
    THXPathContext context_ = XPATH_NO_CONTEXT;
    std::string name_;
    std::string predicate_;
    mutable std::string error_text_;
    mutable const XMLCh* name_xml_ = nullptr; // the tag cache's
};

// The steps of an expression, in their order; at least one.
class THXPathExpression
{
  public:
    explicit THXPathExpression(const std::string& expression);

    const std::vector<THXPathNode>& get_steps() const { return steps_; }

  private:
    std::vector<THXPathNode> steps_;
};

// What `expression` selects below the node, the caller's to delete: empty without a match, null without a
// node. Throws std::domain_error for a step of a context that isn't supported.
XMLNodeList* selectNodesDom(THXMLDocument* document, xercesc::DOMNode* node, const char* expression,
                            bool is_document);

// What the steps from `index` on select below the nodes of the list, each node once. The list is taken over;
// without a step left it comes back. Throws like selectNodesDom, and then the list is gone.
XMLNodeList* selectNodesRecurse(THXMLDocument* document, XMLNodeList* list,
                                const std::vector<THXPathNode>& steps, std::size_t index);

} // namespace Oskelund::Tarnholme::VMware::XMLHelper

#endif
