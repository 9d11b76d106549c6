#include "probe/output/server_report.h"

#include "plugin/host/host_records.h"
#include "probe/output/offered_interface.h"
#include "probe/output/output.h"
#include "probe/output/text.h"
#include "probe/output/url_login.h"

#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

using nlohmann::ordered_json;

constexpr int kBitsPerWord = 32;

// Of a row that a service offers, in which a URL may stand wherever it likes.
std::string shown(const std::string& offered)
{
    return clean_line(without_url_logins(offered));
}

std::vector<int> capabilities(const sts_server_info_v8_t& info)
{
    std::vector<int> numbers;
    for (int i = 0; i < STS_CAPABILITY_WORDS * kBitsPerWord; ++i) {
        if ((info.cap[i / kBitsPerWord] >> (i % kBitsPerWord)) & 1U) numbers.push_back(i);
    }
    return numbers;
}

// The record has no count: zeros at the end are taken as room that was not used.
std::vector<int> credential_types(const sts_server_info_v8_t& info)
{
    std::vector<int> types(std::begin(info.cred), std::end(info.cred));
    while (!types.empty() && types.back() == 0) types.pop_back();
    return types;
}

std::vector<std::string> server_types(const sts_server_info_v8_t& info)
{
    std::vector<std::string> types;
    for (const auto& field : info.sth) {
        if (field[0] != '\0') types.push_back(clean_field(field));
    }
    return types;
}

std::string listed(const std::vector<std::string>& items)
{
    std::string text;
    for (const std::string& item : items) {
        if (!text.empty()) text += ", ";
        text += item;
    }
    return text;
}

std::string listed(const std::vector<int>& numbers)
{
    std::vector<std::string> items;
    items.reserve(numbers.size());
    for (const int number : numbers) items.push_back(std::to_string(number));
    return listed(items);
}

void fill(ordered_json& document, const std::string& name, const sts_server_info_v8_t& info,
          const std::vector<OfferedInterface>& offers, bool choice_is_known)
{
    document["name"] = clean_line(name);
    document["server"] = clean_field(info.server);
    document["types"] = server_types(info);
    document["flags"] = info.flags;
    document["max_connections"] = info.maxconnect;
    document["connections"] = info.nconnect;
    document["capabilities"] = capabilities(info);
    document["credential_types"] = credential_types(info);
    document["ndmp_host"] = clean_field(info.ndmpHost);
    document["interfaces"] = ordered_json::array();
    for (const OfferedInterface& offered : offers) {
        ordered_json entry;
        entry["row"] = shown(offered.row);
        entry["well_formed"] = offered.well_formed();
        if (offered.well_formed()) {
            entry["version"] = offered.version();
            entry["type"] = shown(offered.type());
            entry["url"] = shown(offered.url());
        }
        if (choice_is_known) entry["chosen"] = offered.chosen;
        document["interfaces"].push_back(std::move(entry));
    }
}

Table properties(const std::string& name, const sts_server_info_v8_t& info, Format format)
{
    Table table({});
    const auto add = [&](const char* label, const char* key, std::string value) {
        table.add({format == Format::kSeparated ? key : label, std::move(value)});
    };
    add("Name", "name", clean_line(name));
    add("Server", "server", clean_field(info.server));
    add("Types", "types", listed(server_types(info)));
    add("Flags", "flags", std::to_string(info.flags));
    add("Most connections", "max_connections", std::to_string(info.maxconnect));
    add("Connections", "connections", std::to_string(info.nconnect));
    add("Capabilities", "capabilities", listed(capabilities(info)));
    add("Credential types", "credential_types", listed(credential_types(info)));
    add("NDMP host", "ndmp_host", clean_field(info.ndmpHost));
    return table;
}

Table interface_table(const std::vector<OfferedInterface>& offers, bool choice_is_known, Format format)
{
    // Without headings a row has to say what it is.
    const bool bare = format == Format::kSeparated;
    std::vector<std::string> headings = {"VERSION", "TYPE", "URL"};
    if (choice_is_known) headings.insert(headings.begin(), "CHOSEN");
    Table table(headings);
    for (const OfferedInterface& offered : offers) {
        std::vector<std::string> cells;
        if (bare) cells.emplace_back("interface");
        if (bare || choice_is_known) cells.emplace_back(offered.chosen ? "*" : "");
        if (offered.well_formed()) {
            cells.push_back(offered.version());
            cells.push_back(shown(offered.type()));
            cells.push_back(shown(offered.url()));
        } else {
            cells.insert(cells.end(), {"malformed", "", shown(offered.row)});
        }
        table.add(std::move(cells));
    }
    return table;
}

} // namespace

void report_server(Output& output, const std::string& name, const sts_server_info_v8_t& info,
                   const std::string& selection)
{
    const bool choice_is_known = !selection.empty();
    const std::vector<OfferedInterface> offers = offered_interfaces(info, selection);
    if (output.format() == Format::kJson) {
        fill(output.document(), name, info, offers, choice_is_known);
        return;
    }
    output.print(properties(name, info, output.format()));
    output.title(offers.empty() ? "No interfaces offered" : "Interfaces");
    if (!offers.empty()) output.print(interface_table(offers, choice_is_known, output.format()));
}

} // namespace soapwrapper::probe
