#include "xmlhelper/content_model.h"

#include "xmlhelper/document_bounds.h"

#include <cstddef>
#include <xercesc/validators/common/ContentSpecNode.hpp>

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

using namespace xercesc;

namespace Oskelund::Tarnholme::VMware::XMLHelper
{
namespace
{

bool is_larger_than(const ContentSpecNode* model, std::size_t max_names, std::size_t max_depth)
{
    std::vector<std::pair<const ContentSpecNode*, std::size_t>> pending{{model, 1}};
    std::size_t names = 0;
    while (!pending.empty()) {
        const auto [node, depth] = pending.back();
        pending.pop_back();
        if (!node) continue;
        if (depth > max_depth) return true;
        if (node->getType() == ContentSpecNode::Leaf && ++names > max_names) return true;
        pending.emplace_back(node->getSecond(), depth + 1);
        pending.emplace_back(node->getFirst(), depth + 1);
    }
    return false;
}

} // namespace

bool is_model_too_large(const DTDElementDecl& declaration)
{
    if (declaration.getModelType() ==
        DTDElementDecl::Mixed_Simple) { // a chain, with the text ahead of the names
        return is_larger_than(declaration.getContentSpec(), kMaxMixedNames + 1, kMaxMixedNames + 3);
    }
    return is_larger_than(declaration.getContentSpec(), kMaxModelNames, kMaxModelDepth);
}

std::size_t listed_values(const XMLCh* list)
{
    if (!list) return 0;
    const std::u16string_view values(list);
    return static_cast<std::size_t>(std::count(values.begin(), values.end(), u' ')) + 1;
}

} // namespace Oskelund::Tarnholme::VMware::XMLHelper
