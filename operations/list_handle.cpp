#include "operations/list_handle.h"

#include "operations/handle_text.h"
#include "plugin/host/handles.h"

#include <cstdlib>
#include <string>

namespace soapwrapper
{

stsp_list_t* make_list(stsp_server_t* server, const std::string& token)
{
    auto* list = new stsp_list_t();
    list->server = server;
    list->token = allocate_text(token);
    return list;
}

void destroy_list(stsp_list_t* list)
{
    std::free(list->token);
    delete list;
}

} // namespace soapwrapper
