// Lists of wrappers, and the attributes of an element.
#ifndef SOAPWRAPPER_XMLHELPER_NODE_LIST_H
#define SOAPWRAPPER_XMLHELPER_NODE_LIST_H

#include "xmlhelper/node.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

class XMLNodeList
{
  public:
    explicit XMLNodeList(THXMLDocument* document) : document_(document) {}
    XMLNodeList(const XMLNodeList&) = delete;
    XMLNodeList& operator=(const XMLNodeList&) = delete;
    ~XMLNodeList() = default;

    std::size_t get_length() const { return nodes_.size(); }
    // A new wrapper of the same node, the caller's to delete; null beyond the end.
    XMLDocNode* get_item(std::size_t index) const;
    // The node is the list's from now on. Null is passed over.
    void add_item(XMLDocNode* node);

    // Of the first node whose attribute `name` is `value`: its attribute `wanted`. Empty without such a node.
    std::string findAttributeString(const std::string& name, const std::string& value,
                                    const std::string& wanted) const;
    void findAttributeString(const std::string& name, const std::string& value, const std::string& wanted,
                             std::string& text) const;

    // Null beyond the end.
    xercesc::DOMNode* get_domNode(std::size_t index) const;

  private:
    std::vector<std::unique_ptr<XMLDocNode>> nodes_;
    THXMLDocument* document_;
};

class XMLNamedNodeMap
{
  public:
    XMLNamedNodeMap(THXMLDocument* document, xercesc::DOMNamedNodeMap* map) : document_(document), map_(map)
    {
    }

    // A new wrapper, the caller's to delete; null if there is none of the name. Of a name that can't be
    // converted the document's error text tells.
    XMLDocNode* getNamedItem(const std::string& name) const;

  private:
    THXMLDocument* document_;
    xercesc::DOMNamedNodeMap* map_;
};

} // namespace Oskelund::Tarnholme::VMware::XMLHelper

#endif
