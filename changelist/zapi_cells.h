#ifndef SOAPWRAPPER_CHANGELIST_ZAPI_CELLS_H
#define SOAPWRAPPER_CHANGELIST_ZAPI_CELLS_H

#include "changelist/zapi_api.h"
#include "plugin/base/handle_records.h"
#include "plugin/host/handles.h"

#include <cstdlib>

namespace soapwrapper
{

// The cells that the second plug-in's handles come back in, if memory was found for them. Freed with the
// object unless a change list takes them over; the handles in them are the second plug-in's.
class ZapiCells
{
  public:
    ZapiCells() : session_(allocate()), server_(allocate()), list_(allocate()) {}
    ~ZapiCells()
    {
        std::free(session_);
        std::free(server_);
        std::free(list_);
    }
    ZapiCells(const ZapiCells&) = delete;
    ZapiCells& operator=(const ZapiCells&) = delete;

    bool complete() const { return session_ && server_ && list_; }

    sts_handle_s** session() const { return session_; }
    sts_handle_s** server() const { return server_; }
    sts_handle_s** list() const { return list_; }

    void hand_over(stsp_change_list_t& record)
    {
        record.zapi_session_cell = session_;
        record.zapi_server_cell = server_;
        record.zapi_list_cell = list_;
        session_ = server_ = list_ = nullptr;
    }

  private:
    static sts_handle_s** allocate()
    {
        return static_cast<sts_handle_s**>(std::calloc(1, sizeof(sts_handle_s*)));
    }

    sts_handle_s** session_;
    sts_handle_s** server_;
    sts_handle_s** list_;
};

} // namespace soapwrapper

#endif
