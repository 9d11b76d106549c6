// The files of the page, as they are built in.
#ifndef SOAPWRAPPER_SIMULATOR_PAGE_ASSETS_H
#define SOAPWRAPPER_SIMULATOR_PAGE_ASSETS_H

#include <string_view>
#include <vector>

namespace soapwrapper::simulator
{

struct Asset {
    std::string_view name;
    std::string_view bytes;
};

std::vector<Asset> page_assets();

} // namespace soapwrapper::simulator

#endif
