#include "xmlhelper/node_list.h"

#include "xmlhelper/document.h"
#include "xmlhelper/transcoding.h"

#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

DOMNode* XMLNodeList::get_domNode(std::size_t index) const
{
    return index < nodes_.size() ? nodes_[index]->get_domNode() : nullptr;
}

XMLDocNode* XMLNodeList::get_item(std::size_t index) const
{
    return index < nodes_.size() ? new XMLDocNode(document_, nodes_[index]->get_domNode()) : nullptr;
}

void XMLNodeList::add_item(XMLDocNode* node)
{
    std::unique_ptr<XMLDocNode> owned(node);
    if (owned) nodes_.push_back(std::move(owned));
}

std::string XMLNodeList::findAttributeString(const std::string& name, const std::string& value,
                                             const std::string& wanted) const
{
    for (const auto& node : nodes_) {
        if (node->getAttributeString(name) == value) return node->getAttributeString(wanted);
    }
    return EmptyString;
}

void XMLNodeList::findAttributeString(const std::string& name, const std::string& value,
                                      const std::string& wanted, std::string& text) const
{
    text = findAttributeString(name, value, wanted);
}

XMLDocNode* XMLNamedNodeMap::getNamedItem(const std::string& name) const
{
    if (!map_) return nullptr;
    try {
        const XMLCh* converted = transcodeUtf8TagToXmlTag(name);
        DOMNode* node = converted ? map_->getNamedItem(converted) : nullptr;
        return node ? new XMLDocNode(document_, node) : nullptr;
    } catch (const std::domain_error& error) {
        if (document_) document_->set_errorText(std::string("Caught domain_error: ") + error.what());
        return nullptr;
    }
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
