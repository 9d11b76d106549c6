#include "xml_node.h"

#include <algorithm>

namespace schema
{

namespace
{

// Known names stand inside, so that a reader that skips the tag alone would take them.
const char* const kUnknownSubtree =
    "<!-- not in the contract --><ns1:unheardOf lang=\"x\"><ns1:item>4</ns1:item><ns1:token>t</ns1:token>"
    "<deep xmlns=\"urn:other\"><ns1:flags>9</ns1:flags></deep></ns1:unheardOf>";

std::string second_occurrence(const Node& child, const Rendering& how)
{
    const std::string tag = how.prefix + child.name;
    std::string content;
    if (child.children.empty()) content = child.text == "true" ? "false" : "7";
    return "<" + tag + ">" + content + "</" + tag + ">";
}

} // namespace

std::string inner(const Node& node, const Rendering& how)
{
    if (node.children.empty()) return node.text;
    std::vector<Node> children = node.children;
    const bool is_list = children.front().name == "item";
    if (how.reversed && !is_list) std::reverse(children.begin(), children.end());

    std::string text;
    for (const Node& child : children) {
        if (how.with_unknown) text += kUnknownSubtree;
        text += rendered(child, how);
        if (how.each_twice && !is_list) text += second_occurrence(child, how);
    }
    if (how.with_unknown) text += kUnknownSubtree;
    if (how.each_twice) {
        for (const std::string& other : node.other_choices) {
            text += "<" + how.prefix + other + "></" + how.prefix + other + ">";
        }
    }
    return text;
}

std::string rendered(const Node& node, const Rendering& how)
{
    const std::string tag = how.prefix + node.name;
    return "<" + tag + ">" + inner(node, how) + "</" + tag + ">";
}

} // namespace schema
