#include "probe/output/offered_interface.h"

#include "plugin/host/host_records.h"
#include "probe/output/url_login.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

std::vector<std::string> split(std::string_view row)
{
    std::vector<std::string> values;
    for (;;) {
        const std::size_t end = row.find(';');
        values.emplace_back(row.substr(0, end));
        if (end == std::string_view::npos) return values;
        row.remove_prefix(end + 1);
    }
}

// The line that the library logs when it has chosen this one, as it is kept. The line is made anew and
// compared as a whole rather than taken apart: what a service puts into a row can't mislead it.
std::string selection_of(const OfferedInterface& offered)
{
    return without_url_logins("Interface selected: major " + std::to_string(offered.number(0)) + " minor " +
                              std::to_string(offered.number(1)) + " sdk " +
                              std::to_string(offered.number(2)) + " type " + offered.type() + " url " +
                              offered.url());
}

} // namespace

int OfferedInterface::number(std::size_t value) const
{
    return static_cast<int>(std::strtol(values[value].c_str(), nullptr, 10));
}

std::string OfferedInterface::version() const
{
    return std::to_string(number(0)) + '.' + std::to_string(number(1)) + '.' + std::to_string(number(2));
}

std::vector<OfferedInterface> offered_interfaces(const sts_server_info_v8_t& info,
                                                 const std::string& selection)
{
    std::vector<OfferedInterface> offers;
    bool found = false;
    for (const auto& field : info.requiredInterface) {
        if (field[0] == '\0') break;
        OfferedInterface offered;
        offered.row = std::string_view(field, std::size(field));
        offered.row.resize(std::min(offered.row.find('\0'), offered.row.size()));
        offered.values = split(offered.row);
        if (!found && offered.well_formed()) found = offered.chosen = selection_of(offered) == selection;
        offers.push_back(std::move(offered));
    }
    return offers;
}

} // namespace soapwrapper::probe
