#include "schema_document.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/ErrorHandler.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>

#include <stdexcept>
#include <string_view>

namespace schema
{

namespace
{

using namespace xercesc;

const std::string kSchemaNamespace = "http://www.w3.org/2001/XMLSchema";
const std::string kWsdlNamespace = "http://schemas.xmlsoap.org/wsdl/";
const std::string kWsdlSoapNamespace = "http://schemas.xmlsoap.org/wsdl/soap/";

struct XercesRuntime {
    XercesRuntime() { XMLPlatformUtils::Initialize(); }
    ~XercesRuntime() { XMLPlatformUtils::Terminate(); }
    XercesRuntime(const XercesRuntime&) = delete;
    XercesRuntime& operator=(const XercesRuntime&) = delete;
};

std::string plain(const XMLCh* text)
{
    if (!text) return {};
    char* copy = XMLString::transcode(text);
    std::string result = copy;
    XMLString::release(&copy);
    return result;
}

class Wide
{
  public:
    explicit Wide(const std::string& text) : text_(XMLString::transcode(text.c_str())) {}
    ~Wide() { XMLString::release(&text_); }
    Wide(const Wide&) = delete;
    Wide& operator=(const Wide&) = delete;
    const XMLCh* text() const { return text_; }

  private:
    XMLCh* text_;
};

class ComplaintCollector : public ErrorHandler
{
  public:
    std::vector<std::string> complaints;
    void warning(const SAXParseException& problem) override { note(problem); }
    void error(const SAXParseException& problem) override { note(problem); }
    void fatalError(const SAXParseException& problem) override { note(problem); }
    void resetErrors() override {}

  private:
    void note(const SAXParseException& problem) { complaints.push_back(plain(problem.getMessage())); }
};

std::string name_of(const DOMElement& node)
{
    return plain(node.getLocalName());
}
bool is_in(const DOMElement& node, const std::string& uri)
{
    return plain(node.getNamespaceURI()) == uri;
}
std::string attribute(const DOMElement& node, const std::string& name, const std::string& otherwise = "")
{
    const Wide wide(name);
    return node.hasAttribute(wide.text()) ? plain(node.getAttribute(wide.text())) : otherwise;
}

std::vector<const DOMElement*> children(const DOMElement& node)
{
    std::vector<const DOMElement*> all;
    for (const DOMElement* e = node.getFirstElementChild(); e; e = e->getNextElementSibling())
        all.push_back(e);
    return all;
}

std::vector<const DOMElement*> children(const DOMElement& node, const std::string& uri,
                                        const std::string& name)
{
    std::vector<const DOMElement*> some;
    for (const DOMElement* child : children(node)) {
        if (is_in(*child, uri) && name_of(*child) == name) some.push_back(child);
    }
    return some;
}

// The one child of that name. A document that lacks it is of no use to any test.
const DOMElement& child(const DOMElement& node, std::string_view uri, std::string_view name)
{
    const auto found = children(node, std::string(uri), std::string(name));
    if (found.size() != 1) {
        throw std::runtime_error(std::to_string(found.size()) + " elements " + std::string(name) + " in " +
                                 name_of(node));
    }
    return *found.front();
}

// A qualified name in an attribute, its prefix replaced by the one that this file uses for the namespace.
std::string resolved(const DOMElement& node, const std::string& qname, const std::string& target_namespace)
{
    const size_t colon = qname.find(':');
    const std::string prefix = colon == std::string::npos ? "" : qname.substr(0, colon);
    const std::string local = colon == std::string::npos ? qname : qname.substr(colon + 1);
    const Wide wide_prefix(prefix);
    const XMLCh* lookup = prefix.empty() ? nullptr : wide_prefix.text();
    const std::string uri = plain(node.lookupNamespaceURI(lookup));
    if (uri == kSchemaNamespace) return "xsd:" + local;
    if (uri == target_namespace) return "ns1:" + local;
    return "{" + uri + "}" + local;
}

std::string bounds(const DOMElement& node)
{
    return attribute(node, "minOccurs", "1") + ".." + attribute(node, "maxOccurs", "1");
}

std::string typed_name(const DOMElement& node, const std::string& target_namespace)
{
    return attribute(node, "name") + " " + resolved(node, attribute(node, "type"), target_namespace);
}

// What the element's only documentation holds; empty if there isn't one.
std::string documentation(const DOMElement& node, const std::string& uri)
{
    const auto found = children(node, uri, "documentation");
    return found.size() == 1 ? plain(found.front()->getTextContent()) : std::string();
}

std::string annotation(const DOMElement& node)
{
    const auto found = children(node, kSchemaNamespace, "annotation");
    return found.size() == 1 ? documentation(*found.front(), kSchemaNamespace) : std::string();
}

// The elements below a complex type, at whatever depth.
void note_annotations(const DOMElement& group, const std::string& type,
                      std::map<std::string, std::string>& documentation)
{
    for (const DOMElement* node : children(group)) {
        if (name_of(*node) == "element") {
            documentation[type + "." + attribute(*node, "name")] = annotation(*node);
        } else {
            note_annotations(*node, type, documentation);
        }
    }
}

void describe_choice(const DOMElement& choice, const std::string& target_namespace,
                     std::vector<std::string>& lines)
{
    lines.push_back("choice " + bounds(choice));
    int number = 0;
    for (const DOMElement* node : children(choice)) {
        ++number;
        const bool plain_element = name_of(*node) == "element" && attribute(*node, "maxOccurs", "1") == "1" &&
                                   attribute(*node, "nillable", "false") == "false";
        lines.push_back((plain_element ? "choice " : "unexpected in choice ") + std::to_string(number) +
                        ": " + typed_name(*node, target_namespace));
    }
}

void describe(const DOMElement& group, const std::string& target_namespace, std::vector<std::string>& lines)
{
    for (const DOMElement* node : children(group)) {
        const std::string kind = name_of(*node);
        if (kind == "sequence" && bounds(*node) == "1..1") {
            describe(*node, target_namespace, lines);
        } else if (kind == "choice") {
            describe_choice(*node, target_namespace, lines);
        } else if (kind == "element") {
            const bool nillable = attribute(*node, "nillable", "false") == "true";
            lines.push_back(typed_name(*node, target_namespace) + " " + bounds(*node) +
                            (nillable ? " nillable" : ""));
        } else if (kind != "annotation") {
            lines.push_back("unexpected " + kind);
        }
    }
}

SchemaDocument described(const DOMElement& schema)
{
    SchemaDocument document;
    document.target_namespace = attribute(schema, "targetNamespace");
    document.element_form_default = attribute(schema, "elementFormDefault");
    for (const DOMElement* node : children(schema)) {
        const std::string kind = name_of(*node);
        if (kind == "complexType") {
            std::vector<std::string> lines;
            describe(*node, document.target_namespace, lines);
            const std::string type = attribute(*node, "name");
            document.complex_types.emplace_back(type, lines);
            document.documentation[type] = annotation(*node);
            note_annotations(*node, type, document.documentation);
        } else if (kind == "element") {
            const std::string name = attribute(*node, "name");
            const std::string type = resolved(*node, attribute(*node, "type"), document.target_namespace);
            document.documentation["element " + name] = annotation(*node);
            if (!document.elements.emplace(name, type).second) document.oddities.push_back("twice " + name);
        } else if (kind != "import") {
            document.oddities.push_back(kind);
        }
    }
    return document;
}

const DOMElement& parsed(XercesDOMParser& parser, const std::string& path)
{
    ComplaintCollector collector;
    parser.setErrorHandler(&collector);
    parser.setDoNamespaces(true);
    parser.setLoadExternalDTD(false);
    parser.parse(path.c_str());
    parser.setErrorHandler(nullptr);
    if (!collector.complaints.empty()) throw std::runtime_error(path + ": " + collector.complaints.front());
    return *parser.getDocument()->getDocumentElement();
}

// The element of a message's only part, by the message's name.
std::map<std::string, std::string> message_elements(const DOMElement& definitions,
                                                    const std::string& target_namespace)
{
    std::map<std::string, std::string> elements;
    for (const DOMElement* message : children(definitions, kWsdlNamespace, "message")) {
        const DOMElement& part = child(*message, kWsdlNamespace, "part");
        elements["ns1:" + attribute(*message, "name")] =
            resolved(part, attribute(part, "element"), target_namespace);
    }
    return elements;
}

std::string use_of_body(const DOMElement& operation, const std::string& direction)
{
    const DOMElement& message = child(operation, kWsdlNamespace, direction);
    return attribute(child(message, kWsdlSoapNamespace, "body"), "use");
}

} // namespace

SchemaDocument read_schema(const std::string& path)
{
    const XercesRuntime runtime;
    XercesDOMParser parser;
    const DOMElement& root = parsed(parser, path);
    if (is_in(root, kSchemaNamespace)) return described(root);
    return described(child(child(root, kWsdlNamespace, "types"), kSchemaNamespace, "schema"));
}

WsdlDocument read_wsdl(const std::string& path)
{
    const XercesRuntime runtime;
    XercesDOMParser parser;
    const DOMElement& root = parsed(parser, path);

    WsdlDocument document;
    document.target_namespace = attribute(root, "targetNamespace");
    auto elements = message_elements(root, document.target_namespace);
    std::map<std::string, WsdlOperation> told_by_port_type;
    for (const DOMElement* node :
         children(child(root, kWsdlNamespace, "portType"), kWsdlNamespace, "operation")) {
        const auto element_of = [&](const std::string& direction) {
            const DOMElement& message = child(*node, kWsdlNamespace, direction);
            return elements[resolved(message, attribute(message, "message"), document.target_namespace)];
        };
        document.port_type_operations.push_back(attribute(*node, "name"));
        WsdlOperation& operation = told_by_port_type[attribute(*node, "name")];
        operation.input = element_of("input");
        operation.output = element_of("output");
        operation.fault = element_of("fault");
        operation.documentation = documentation(*node, kWsdlNamespace);
    }

    const DOMElement& binding = child(root, kWsdlNamespace, "binding");
    const DOMElement& soap_binding = child(binding, kWsdlSoapNamespace, "binding");
    document.transport = attribute(soap_binding, "transport");
    for (const DOMElement* node : children(binding, kWsdlNamespace, "operation")) {
        const DOMElement& soap_operation = child(*node, kWsdlSoapNamespace, "operation");
        WsdlOperation operation = told_by_port_type[attribute(*node, "name")];
        operation.name = attribute(*node, "name");
        operation.style = attribute(soap_operation, "style", attribute(soap_binding, "style", "document"));
        operation.action = attribute(soap_operation, "soapAction", "none");
        operation.input_use = use_of_body(*node, "input");
        operation.output_use = use_of_body(*node, "output");
        const DOMElement& fault = child(*node, kWsdlNamespace, "fault");
        operation.fault_use = attribute(child(fault, kWsdlSoapNamespace, "fault"), "use");
        document.operations.push_back(operation);
    }
    const DOMElement& service = child(root, kWsdlNamespace, "service");
    document.documentation = documentation(service, kWsdlNamespace);
    for (const DOMElement* port : children(service, kWsdlNamespace, "port")) {
        document.addresses.push_back(attribute(child(*port, kWsdlSoapNamespace, "address"), "location"));
    }
    return document;
}

std::vector<std::string>
SchemaValidator::complaints(const std::map<std::string, std::string>& documents) const
{
    const XercesRuntime runtime;
    std::vector<std::string> all;
    ComplaintCollector collector;
    XercesDOMParser parser;
    parser.setErrorHandler(&collector);
    parser.setDoNamespaces(true);
    parser.setDoSchema(true);
    parser.setValidationSchemaFullChecking(true);
    parser.setValidationScheme(XercesDOMParser::Val_Always);
    parser.setLoadExternalDTD(false);
    if (!parser.loadGrammar(schema_path_.c_str(), Grammar::SchemaGrammarType, true)) {
        all.push_back("no grammar in " + schema_path_);
    }
    parser.useCachedGrammarInParse(true);
    for (const std::string& complaint : collector.complaints) all.push_back("schema: " + complaint);
    for (const auto& [name, text] : documents) {
        collector.complaints.clear();
        const MemBufInputSource source(reinterpret_cast<const XMLByte*>(text.data()), text.size(),
                                       name.c_str());
        parser.parse(source);
        for (const std::string& complaint : collector.complaints) all.push_back(name + ": " + complaint);
    }
    return all;
}

} // namespace schema
