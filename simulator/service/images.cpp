#include "simulator/service/images.h"

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/records.h"
#include "simulator/scenario/text.h"
#include "simulator/service/call.h"
#include "simulator/service/wire.h"
#include "simulator/storage/holdings.h"
#include "simulator/storage/model.h"
#include "simulator/storage/serial.h"
#include "simulator/storage/storage.h"
#include "simulator/storage/storage_server.h"

#include <map>
#include <string>
#include <utility>

namespace soapwrapper::simulator
{
namespace
{

constexpr int kRecordVersion = 10;

bool asks_for(const std::string* asked, const std::string& value)
{
    return !asked || asked->empty() || *asked == value;
}

} // namespace

std::map<Serial, Image>::iterator find_image(Lsu& lsu, const ns1__ImageDefinition* wire, const char* element)
{
    const ns1__ImageDefinition& wanted = required(wire, element);
    const std::string& name = required(wanted.basename, "basename");
    auto found = lsu.images.end();
    for (auto entry = lsu.images.begin(); entry != lsu.images.end(); ++entry) {
        const Image& image = entry->second;
        if (image.basename != name || !asks_for(wanted.date, image.date) ||
            !asks_for(wanted.fulldate, image.fulldate) || !asks_for(wanted.policy, image.policy)) {
            continue;
        }
        if (found != lsu.images.end()) {
            throw Fault(kBadValue, "more than one image is meant by \"" + printable(name) + "\"");
        }
        found = entry;
    }
    if (found == lsu.images.end()) {
        throw Fault(kUnknownImage, "the LSU has no such image: \"" + printable(name) + "\"");
    }
    return found;
}

ns1__ImageDefinition* wire_image_definition(const Call& call, const Image& image)
{
    ns1__ImageDefinition* definition = call.make(soap_new_ns1__ImageDefinition);
    definition->version = image.version;
    definition->basename = call.text(image.basename);
    definition->date = call.text(image.date);
    definition->fulldate = call.text(image.fulldate);
    definition->policy = call.text(image.policy);
    definition->saveas = image.saveas;
    definition->flags = image.flags;
    definition->format = call.text(image.format);
    definition->isid = wire_supplier_id(call, image.isid);
    return definition;
}

ns1__ImageInformation* wire_image(const Call& call, const Image& image, const std::string& server_name,
                                  const std::string& lsu_name)
{
    ns1__ImageInformation* info = call.make(soap_new_ns1__ImageInformation);
    info->version = kRecordVersion;
    info->def = wire_image_definition(call, image);
    info->server = call.text(server_name);
    info->lsu = call.text(lsu_name);
    info->size = image.size;
    info->blockSize = image.block_size;
    info->exports = call.make(soap_new_ns1__ArrayOfExport);
    for (const ImageExport& exported : image.exports) {
        ns1__Export* item = call.make(soap_new_ns1__Export);
        item->fstype = exported.fstype;
        item->mount = call.text(exported.mount);
        info->exports->item.push_back(item);
    }
    info->status = image.status;
    return info;
}

void handle(Call& call, const _ns1__openImageList& request, _ns1__openImageListResponse& response)
{
    const Model::Use storage = call.model().use();
    const Place place = place_of(*storage, request.lsu);
    Cursor cursor{place.session, place.server_index, {}, 0};
    for (const auto& entry : place.lsu.images) cursor.entries.push_back({place.lsu_index, entry.first});
    response.imageListHandle =
        wire_handle(call, soap_new_ns1__ImageListHandle, storage->image_lists.open(std::move(cursor)));
}

void handle(Call& call, const _ns1__listImage& request, _ns1__listImageResponse& response)
{
    const Model::Use storage = call.model().use();
    response.image = wire_image_definition(
        call, storage->next_image(token_of(request.imageListHandle, "imageListHandle")));
}

void handle(Call& call, const _ns1__closeImageList& request, _ns1__closeImageListResponse&)
{
    const Model::Use storage = call.model().use();
    storage->image_lists.close(token_of(request.imageListHandle, "imageListHandle"));
}

void handle(Call& call, const _ns1__getImageProp& request, _ns1__getImagePropResponse& response)
{
    const Model::Use storage = call.model().use();
    const OpenImage& opened = storage->images.at(token_of(request.imageHandle, "imageHandle"));
    const Lsu& lsu = storage->server(opened.server).lsus[opened.image.lsu];
    // An open image isn't deleted: it is there.
    response.info = wire_image(call, lsu.images.at(opened.image.serial),
                               storage->session(opened.session).name, lsu.properties.name);
}

void handle(Call& call, const _ns1__getImagePropByName& request, _ns1__getImagePropByNameResponse& response)
{
    const Model::Use storage = call.model().use();
    const Place place = place_of(*storage, request.lsu);
    const Image& image = find_image(place.lsu, request.image, "image")->second;
    response.info = wire_image(call, image, place.server_name, place.lsu.properties.name);
}

void handle(Call& call, const _ns1__deleteImage& request, _ns1__deleteImageResponse&)
{
    const Model::Use storage = call.model().use();
    const Place place = place_of(*storage, request.lsu);
    const auto image = find_image(place.lsu, request.imd, "imd");
    if (storage->images.any([&](const OpenImage& opened) { return opened.image.serial == image->first; })) {
        throw Fault(kInUse, "the image is open");
    }
    delete_image(*storage, {place.server_index, place.lsu_index}, image->first);
}

void handle(Call& call, const _ns1__openImage& request, _ns1__openImageResponse& response)
{
    const Model::Use storage = call.model().use();
    const Place place = place_of(*storage, request.lsu);
    const auto image = find_image(place.lsu, request.image, "image");
    response.imageHandle = wire_handle(
        call, soap_new_ns1__ImageHandle,
        storage->images.open({place.session, place.server_index, {place.lsu_index, image->first}}));
}

void handle(Call& call, const _ns1__closeImage& request, _ns1__closeImageResponse&)
{
    const Model::Use storage = call.model().use();
    storage->images.close(token_of(request.imageHandle, "imageHandle"));
}

} // namespace soapwrapper::simulator
