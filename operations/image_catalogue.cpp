// What images an LSU holds, what the service says of one, and deleting one.
#include "conversion/image_definition.h"
#include "conversion/wire_objects.h"
#include "operations/list_handle.h"
#include "operations/reference_checks.h"
#include "plugin/base/session_log.h"
#include "plugin/host/entry_points.h"
#include "service/service_call.h"
#include "service/wire_session.h"

#include <cstdint>
#include <cstring>

using namespace soapwrapper;

extern "C" int stspi_open_image_list(const stsp_lsu_v7_t* lsu, int32_t type, stsp_list_t** list)
{
    if (!list) return STS_ENULLARG;
    // One status for all three, unlike the other opens.
    if (!lsu || !lsu->server || !lsu->server->service_handle) return STS_EBADARG;
    const EntryLog log(lsu->server->session, "stspi_open_image_list");
    log.enter();
    ServiceCall call(*lsu->server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireLsu wire_lsu(*lsu);
    _ns1__openImageList request;
    request.lsu = wire_lsu.get();
    request.type = type;
    _ns1__openImageListResponse response;
    if (const Failure failure = call.send(&Service::openImageList, request, response)) return *failure;
    return hand_out_list(response.imageListHandle, "imageListHandle", lsu->server, list, log);
}

extern "C" int stspi_list_image(stsp_list_t* list, sts_image_def_v10_t* image)
{
    const EntryLog log(session_of(list), "stspi_list_image");
    log.enter();
    if (!list) return STS_ENULLARG;
    ServiceCall call(*list->server, log);
    if (const Failure failure = call.secure()) return *failure;
    if (!list->token) return STS_EBADARG;

    WireToken<ns1__ImageListHandle> list_handle(list->token);
    _ns1__listImage request;
    request.imageListHandle = list_handle.get();
    _ns1__listImageResponse response;
    if (const Failure failure = call.send(&Service::listImage, request, response)) return *failure;
    if (!response.image) return log.reply_lacks("image");
    if (image) {
        set_image_def_from_soap(*image, response.image);
    } else {
        log.anomaly("no place for the image");
    }
    return log.ok();
}

extern "C" int stspi_close_image_list(stsp_list_t* list)
{
    const EntryLog log(session_of(list), "stspi_close_image_list");
    log.enter();
    if (!list) return STS_ENULLARG;
    ServiceCall call(*list->server, log);
    if (const Failure failure = call.secure()) return *failure;
    if (!list->token) return STS_EBADARG;

    WireToken<ns1__ImageListHandle> list_handle(list->token);
    _ns1__closeImageList request;
    request.imageListHandle = list_handle.get();
    _ns1__closeImageListResponse response;
    if (const Failure failure = call.send(&Service::closeImageList, request, response)) return *failure;
    destroy_list(list);
    return log.ok();
}

extern "C" int stspi_get_image_prop(const stsp_image_t* image, sts_image_info_v10_t* info)
{
    if (!info) return STS_ENULLARG;
    if (!image) return STS_EBADARG;
    if (const int status = check_server(image->server)) return status;
    const EntryLog log(image->server->session, "stspi_get_image_prop");
    log.enter();
    ServiceCall call(*image->server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireToken<ns1__ImageHandle> image_handle(image->token);
    _ns1__getImageProp request;
    request.imageHandle = image_handle.get();
    _ns1__getImagePropResponse response;
    if (const Failure failure = call.send(&Service::getImageProp, request, response)) return *failure;
    if (!response.info) return log.reply_lacks("info");
    std::memset(info, 0, sizeof *info);
    set_image_info_from_soap(*info, response.info);
    return log.ok();
}

extern "C" int stspi_get_image_prop_byname(const stsp_lsu_v7_t* lsu, const sts_image_def_v10_t* image,
                                           sts_image_info_v10_t* info)
{
    if (!lsu || !image || !info) return STS_ENULLARG;
    if (const int status = check_server(lsu->server)) return status;
    const EntryLog log(lsu->server->session, "stspi_get_image_prop_byname");
    log.enter();
    ServiceCall call(*lsu->server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireLsu wire_lsu(*lsu);
    WireImageDef wire_image(*image);
    _ns1__getImagePropByName request;
    request.lsu = wire_lsu.get();
    request.image = wire_image.get();
    _ns1__getImagePropByNameResponse response;
    if (const Failure failure = call.send(&Service::getImagePropByName, request, response)) return *failure;
    if (!response.info) return log.reply_lacks("info");
    std::memset(info, 0, sizeof *info);
    set_image_info_from_soap(*info, response.info);
    return log.ok();
}

extern "C" int stspi_delete_image(const stsp_lsu_v7_t* lsu, const sts_image_def_v10_t* image,
                                  int32_t async_flag)
{
    if (!lsu || !image) return STS_ENULLARG;
    if (const int status = check_server(lsu->server)) return status;
    const EntryLog log(lsu->server->session, "stspi_delete_image");
    log.enter();
    ServiceCall call(*lsu->server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireLsu wire_lsu(*lsu);
    WireImageDef wire_image(*image);
    _ns1__deleteImage request;
    request.lsu = wire_lsu.get();
    request.imd = wire_image.get();
    request.asyncFlag = async_flag;
    _ns1__deleteImageResponse response;
    if (const Failure failure = call.send(&Service::deleteImage, request, response)) return *failure;
    return log.ok();
}
