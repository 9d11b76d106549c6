// Small XML texts: a tree that can be rendered in the ways in which a service may write the same content.
#ifndef SOAPWRAPPER_TESTS_SCHEMA_XML_NODE_H
#define SOAPWRAPPER_TESTS_SCHEMA_XML_NODE_H

#include "tests/kit/soap_text.h"

#include <string>
#include <vector>

namespace schema
{

using kit::element;
using kit::nil;

inline std::string zero(const std::string& name)
{
    return element(name, "0");
}
inline std::string empty(const std::string& name)
{
    return "<ns1:" + name + "/>";
}

struct Node {
    std::string name;
    std::string text; // of a leaf, as it stands in XML
    std::vector<Node> children;
    // Of a parent with a choice: the names of the choices that weren't made.
    std::vector<std::string> other_choices;
};

// How the children of each element are written.
struct Rendering {
    std::string prefix = "ns1:";
    bool reversed = false;     // last first; the items of a list keep their order
    bool with_unknown = false; // elements of no known name, each with a subtree, before and behind each child
    bool each_twice = false;   // a second, different occurrence behind each child, and each other choice
};

std::string rendered(const Node& node, const Rendering& how = {});

// The inside of an element: its children alone.
std::string inner(const Node& node, const Rendering& how = {});

} // namespace schema

#endif
