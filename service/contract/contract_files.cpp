#include "service/contract/contract_files.h"

#include "service/contract/service_guide.h"
#include "service/contract/xml_tags.h"

#include <algorithm>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper
{
namespace
{

constexpr char kFault[] = "STSException";

std::string without_prefix(const std::string& name)
{
    return name.substr(name.find(':') + 1);
}

// What the WSDL says of its operations.
struct Operations {
    std::vector<std::string> names;
    std::map<std::string, std::vector<std::string>> replies; // of which operations a message is the reply
    std::string fault_message;                               // with its prefix

    bool has(const std::string& name) const
    {
        return std::find(names.begin(), names.end(), name) != names.end();
    }
    bool is_message(const std::string& name) const { return has(name) || replies.count(name) != 0; }
};

Operations operations_of(const std::vector<XmlTag>& tags)
{
    Operations operations;
    bool in_port_type = false;
    std::string message;
    std::string fault_message;
    for (const XmlTag& tag : tags) {
        if (tag.opens("message")) message = tag.attribute("name");
        if (tag.name == "part" && without_prefix(tag.attribute("element")) == kFault) fault_message = message;
        if (tag.name == "portType") in_port_type = tag.kind == XmlTag::Kind::kOpen;
        if (!in_port_type) continue;
        if (tag.opens("operation")) operations.names.push_back(tag.attribute("name"));
        if (tag.name != "output") continue;
        const std::string reply = tag.attribute("message");
        operations.replies[without_prefix(reply)].push_back(operations.names.back());
        operations.fault_message = reply.substr(0, reply.find(':') + 1) + fault_message;
    }
    if (fault_message.empty()) throw std::runtime_error(std::string("no message is of ") + kFault);
    return operations;
}

// Texts of the guide, and complaints about those that it lacks.
class Lookup
{
  public:
    Lookup(const Operations& operations, ServiceGuide guide)
        : operations_(operations), guide_(std::move(guide))
    {
    }

    std::string service() const { return guide_.service; }

    std::string operation(const std::string& name)
    {
        return found(guide_.operations.find(name), "operation " + name);
    }

    // Of a complex type, or of the global element that is one of it.
    std::string type(const std::string& name)
    {
        if (operations_.has(name)) return "Request of " + name + ". " + operation(name);
        if (!operations_.is_message(name)) return found(guide_.types.find(name), "type " + name);
        std::string text = "Reply to";
        for (const std::string& answered : operations_.replies.at(name)) {
            text += (text.back() == 'o' ? " " : " and ") + answered;
        }
        return text + ".";
    }

    std::string element(const std::string& type, const std::string& name)
    {
        const std::string full_name = type + "." + name;
        if (!operations_.is_message(type)) return found(guide_.types.find(full_name), "element " + full_name);
        if (const std::string* own = guide_.message_elements.find(full_name)) return *own;
        return found(guide_.message_elements.find(name), "element " + full_name);
    }

    std::set<std::string> complaints() const
    {
        std::set<std::string> all = missing_;
        for (const GuideTexts* texts : {&guide_.operations, &guide_.types, &guide_.message_elements}) {
            for (const std::string& name : texts->never_asked_for()) {
                all.insert("there is a line for " + name + ", and no such thing");
            }
        }
        return all;
    }

  private:
    std::string found(const std::string* text, const std::string& what)
    {
        if (text) return *text;
        missing_.insert("there is no line for the " + what);
        return {};
    }

    const Operations& operations_;
    ServiceGuide guide_;
    std::set<std::string> missing_;
};

// Writes a document anew, tag by tag.
class Writer
{
  public:
    Writer(const Operations& operations, Lookup& lookup, std::string_view address)
        : operations_(operations), lookup_(lookup), address_(address)
    {
    }

    std::string write(const std::vector<XmlTag>& tags)
    {
        for (const XmlTag& tag : tags) {
            if (tag.name == "documentation") {
                is_left_out_ = tag.kind == XmlTag::Kind::kOpen;
            } else if (!is_left_out_) {
                write(tag);
            }
        }
        return std::move(out_);
    }

  private:
    void write(const XmlTag& tag)
    {
        if (tag.closes("operation")) declare_fault(tag);
        out_ += tag.before;
        if (tag.kind == XmlTag::Kind::kClose) parents_.pop_back();
        if (tag.name == "element") {
            write_element(tag);
        } else if (tag.name == "address") {
            write_address(tag);
        } else {
            out_ += tag.text;
        }
        if (tag.kind == XmlTag::Kind::kEmpty && tag.name == "operation") soap_prefix_ = tag.prefix;
        if (tag.kind != XmlTag::Kind::kOpen) return;
        const std::string name = tag.attribute("name");
        if (tag.name == "complexType") {
            type_ = name;
            annotate(tag, lookup_.type(name));
        }
        if (tag.name == "service") document(tag, lookup_.service());
        if (tag.name == "operation" && parents_.back() == "portType") document(tag, lookup_.operation(name));
        parents_.push_back(tag.name);
    }

    void write_element(const XmlTag& tag)
    {
        if (tag.kind != XmlTag::Kind::kEmpty) throw std::runtime_error("an element is more than one tag");
        const std::string name = tag.attribute("name");
        out_ += tag.text.substr(0, tag.text.size() - 2);
        out_ += '>';
        annotate(tag, parents_.back() == "schema" ? lookup_.type(name) : lookup_.element(type_, name));
        out_ += line_of(tag);
        out_ += "</" + std::string(tag.prefix) + "element>";
    }

    void write_address(const XmlTag& tag)
    {
        const std::string location = "\"" + tag.attribute("location") + "\"";
        std::string text(tag.text);
        out_ += text.replace(text.find(location), location.size(), "\"" + std::string(address_) + "\"");
    }

    // The beginning of a line that is indented like the tag's.
    static std::string line_of(const XmlTag& tag)
    {
        return std::string(tag.before.substr(std::min(tag.before.rfind('\n'), tag.before.size())));
    }

    void document(const XmlTag& tag, const std::string& text)
    {
        const std::string name = std::string(tag.prefix) + "documentation>";
        out_ += line_of(tag) + "  <" + name + xml_escaped(text) + "</" + name;
    }

    void annotate(const XmlTag& tag, const std::string& text)
    {
        const std::string prefix(tag.prefix);
        out_ += line_of(tag) + "  <" + prefix + "annotation><" + prefix + "documentation>" +
                xml_escaped(text) + "</" + prefix + "documentation></" + prefix + "annotation>";
    }

    // Ahead of the end of an operation, which stands in the port's type and in the binding.
    void declare_fault(const XmlTag& end)
    {
        const std::string line = line_of(end);
        const std::string start = "<" + std::string(end.prefix) + "fault name=\"" + kFault + "\"";
        if (parents_[parents_.size() - 2] == "portType") {
            out_ += line + "  " + start + " message=\"" + operations_.fault_message + "\"/>";
            return;
        }
        out_ += line + "  " + start + ">" + line + "        <" + soap_prefix_ + "fault name=\"" + kFault +
                "\" use=\"literal\"/>" + line + "  </" + std::string(end.prefix) + "fault>";
    }

    const Operations& operations_;
    Lookup& lookup_;
    std::string_view address_;
    std::string out_;
    bool is_left_out_ = false;              // what soapcpp2 says of itself
    std::vector<std::string_view> parents_; // the elements that are open
    std::string type_;                      // the last one that was opened
    std::string soap_prefix_;
};

std::string lines_of(const Operations& operations, Lookup& lookup)
{
    std::string lines;
    for (const std::string& name : operations.names) lines += name + '\t' + lookup.operation(name) + '\n';
    return lines;
}

} // namespace

ContractFiles document_contract(std::string_view wsdl, std::string_view schema, ServiceGuide guide,
                                std::string_view address)
{
    const std::string bare_wsdl = without_comments(wsdl);
    const std::string bare_schema = without_comments(schema);
    const std::vector<XmlTag> wsdl_tags = tags_of(bare_wsdl);
    const Operations operations = operations_of(wsdl_tags);
    Lookup lookup(operations, std::move(guide));
    ContractFiles files;
    files.wsdl = Writer(operations, lookup, address).write(wsdl_tags);
    files.schema = Writer(operations, lookup, address).write(tags_of(bare_schema));
    files.operations = lines_of(operations, lookup);
    std::string complaints;
    for (const std::string& complaint : lookup.complaints()) complaints += "\n  " + complaint;
    if (!complaints.empty()) throw std::runtime_error("the guide and the contract differ:" + complaints);
    return files;
}

} // namespace soapwrapper
