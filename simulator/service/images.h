// The image catalogue.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_IMAGES_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_IMAGES_H

#include "simulator/scenario/records.h"
#include "simulator/service/call.h"
#include "simulator/storage/serial.h"
#include "simulator/storage/storage_server.h"

#include <map>
#include <string>

namespace soapwrapper::simulator
{

// The one image that a definition means: by its base name, and by what else the definition tells.
std::map<Serial, Image>::iterator find_image(Lsu& lsu, const ns1__ImageDefinition* wire, const char* element);

ns1__ImageDefinition* wire_image_definition(const Call& call, const Image& image);
ns1__ImageInformation* wire_image(const Call& call, const Image& image, const std::string& server_name,
                                  const std::string& lsu_name);

void handle(Call& call, const _ns1__openImageList& request, _ns1__openImageListResponse& response);
void handle(Call& call, const _ns1__listImage& request, _ns1__listImageResponse& response);
void handle(Call& call, const _ns1__closeImageList& request, _ns1__closeImageListResponse& response);
void handle(Call& call, const _ns1__getImageProp& request, _ns1__getImagePropResponse& response);
void handle(Call& call, const _ns1__getImagePropByName& request, _ns1__getImagePropByNameResponse& response);
void handle(Call& call, const _ns1__deleteImage& request, _ns1__deleteImageResponse& response);
void handle(Call& call, const _ns1__openImage& request, _ns1__openImageResponse& response);
void handle(Call& call, const _ns1__closeImage& request, _ns1__closeImageResponse& response);

} // namespace soapwrapper::simulator

#endif
