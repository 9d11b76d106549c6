// The image catalogue.
#ifndef SOAPWRAPPER_SIMULATOR_IMAGES_H
#define SOAPWRAPPER_SIMULATOR_IMAGES_H

#include "simulator/call.h"

namespace soapwrapper::simulator
{

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
