#include "changelist/path_map.h"

#include "changelist/session_registry.h"
#include "plugin/base/session_log.h"
#include "plugin/host/host_records.h"
#include "xmlhelper/XMLHelper.h"

#include <cstring>
#include <memory>
#include <string>
#include <vector>

using namespace Oskelund::Tarnholme::VMware::XMLHelper;

namespace soapwrapper
{
namespace
{

// The last of several children of a name counts.
snapdiff_repl_pattern read_pattern(const XMLNodeList& children)
{
    snapdiff_repl_pattern pattern;
    for (std::size_t i = 0; i < children.get_length(); ++i) {
        const std::unique_ptr<XMLDocNode> child(children.get_item(i));
        const std::string& name = child->get_nodeName();
        if (name == "prefix") pattern.prefix = child->get_text();
        if (name == "original_path") pattern.original_path = child->get_text();
        if (name == "target_path") pattern.target_path = child->get_text();
    }
    return pattern;
}

} // namespace

int parse_pattern_xml(const char* xml, std::vector<snapdiff_repl_pattern>& patterns,
                      std::vector<std::string>& paths, bool& more, const sts_session_def_v7_t* session)
{
    if (!xml) xml = "";
    XMLDocumentStatus status = XML_DOC_OK;
    THXMLDocument document(&status, false, VALIDATION_IGNORE_ERRORS, "");
    if (status != XML_DOC_OK) return PATH_MAP_NO_DOCUMENT;
    if (document.parse(xml, std::strlen(xml), "", XML_ENCODING_DECLARED) != XML_DOC_OK) {
        return PATH_MAP_NOT_PARSED;
    }
    more = false;
    log_message(session, STS_LOG_RECORD, "parse_pattern_xml: xml is ", xml, " more is ", 0);

    const std::unique_ptr<XMLNodeList> nodes(document.selectNodes("//path_map"));
    if (!nodes) {
        log_message(session, STS_LOG_RECORD, "select nodes failed");
        return PATH_MAP_NOT_SELECTED;
    }
    if (nodes->get_length() == 0) {
        // Spelt so on purpose: logs are searched for it.
        log_message(session, STS_LOG_RECORD, "No mapping for snapvault receieved");
        return PATH_MAP_OK;
    }
    log_message(session, STS_LOG_RECORD, "parse_pattern_xml: nodes are ", nodes->get_length());

    for (std::size_t i = 0; i < nodes->get_length(); ++i) {
        const std::unique_ptr<XMLDocNode> node(nodes->get_item(i));
        const std::unique_ptr<XMLNodeList> children(node->get_childNodes());
        if (!children) return PATH_MAP_WITHOUT_CHILDREN;
        const snapdiff_repl_pattern pattern = read_pattern(*children);
        if (pattern.target_path.empty()) {
            // A path that doesn't move needs no replacement, but it still bounds the listing.
            paths.push_back(pattern.prefix + pattern.original_path);
        } else {
            paths.push_back(pattern.prefix + pattern.target_path);
            patterns.push_back(pattern);
        }
    }
    return PATH_MAP_OK;
}

} // namespace soapwrapper
