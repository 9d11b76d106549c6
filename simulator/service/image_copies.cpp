#include "simulator/service/image_copies.h"

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/operation_settings.h"
#include "simulator/scenario/records.h"
#include "simulator/scenario/text.h"
#include "simulator/service/call.h"
#include "simulator/service/images.h"
#include "simulator/service/operation_starts.h"
#include "simulator/service/wire.h"
#include "simulator/storage/announcements.h"
#include "simulator/storage/holdings.h"
#include "simulator/storage/long_operations.h"
#include "simulator/storage/serial.h"
#include "simulator/storage/start_requests.h"
#include "simulator/storage/storage.h"
#include "simulator/storage/storage_server.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace soapwrapper::simulator
{
namespace
{

// A host's record has no room for more.
constexpr std::size_t kLongestText = 1023;

struct ImageCopy {
    LsuPosition source;
    Serial original = 0;
    std::string session; // that may use the copy
    LsuPosition target;
    Image copy;
};

// What the copy's definition leaves open is as with the original.
std::string text_of(const std::string* told, const std::string& original)
{
    return told && !told->empty() ? bounded(*told, kLongestText, "targetImage") : original;
}

Image copy_of(const Image& original, const ns1__ImageDefinition& definition)
{
    Image copy = original;
    copy.basename = text_of(definition.basename, original.basename);
    copy.date = text_of(definition.date, original.date);
    copy.fulldate = text_of(definition.fulldate, original.fulldate);
    copy.policy = text_of(definition.policy, original.policy);
    return copy;
}

void require_place_for(const Lsu& lsu, const Image& image)
{
    const auto is_like_it = [&](const auto& entry) {
        const Image& other = entry.second;
        return other.basename == image.basename && other.date == image.date &&
               other.fulldate == image.fulldate && other.policy == image.policy;
    };
    if (std::any_of(lsu.images.begin(), lsu.images.end(), is_like_it)) {
        throw Fault(kInUse, "the LSU has such an image already: \"" + printable(image.basename) + "\"");
    }
}

template <class Request>
ImageCopy copy_asked_by(Storage& storage, const Request& request)
{
    const Place source = storage.place(token_of(required(request.sourceLSU, "sourceLSU").serverHandle),
                                       request.sourceLSU->lsuName);
    const Place target = storage.place(token_of(required(request.targetLSU, "targetLSU").serverHandle),
                                       request.targetLSU->lsuName);
    const auto original = find_image(source.lsu, request.sourceImage, "sourceImage");
    ImageCopy copy;
    copy.source = {source.server_index, source.lsu_index};
    copy.original = original->first;
    copy.session = target.session;
    copy.target = {target.server_index, target.lsu_index};
    copy.copy = copy_of(original->second, required(request.targetImage, "targetImage"));
    require_place_for(target.lsu, copy.copy);
    return copy;
}

// Where nobody is left to use it, the copy isn't open.
std::string open_copy(Storage& storage, const ImageCopy& copy, Serial serial)
{
    try {
        storage.session(copy.session);
        return storage.images.open({copy.session, copy.target.server, {copy.target.lsu, serial}});
    } catch (const Fault&) {
        return {};
    }
}

OperationResult make_copy(Storage& storage, const ImageCopy& copy)
{
    const Lsu& source = lsu_at(storage, copy.source);
    const auto original = source.images.find(copy.original);
    if (original == source.images.end()) throw Fault(kUnknownImage, "the image is gone");
    const Lsu& target = lsu_at(storage, copy.target);
    require_place_for(target, copy.copy);
    OperationResult result;
    result.image = open_copy(storage, copy, add_image(storage, copy.target, copy.copy));
    announce_image_copied(storage.server(copy.target.server), target, copy.copy,
                          storage.server(copy.source.server), source, original->second);
    return result;
}

template <class Request>
LongOperation copy_operation_of(Call& call, const Request& request)
{
    const ImageCopy copy = copy_asked_by(*call.model().use(), request);
    LongOperation operation;
    operation.kind = OperationKind::kCopyImage;
    operation.server = copy.target.server;
    operation.bytes = copy.copy.size;
    operation.effect = [copy](Storage& storage) { return make_copy(storage, copy); };
    return operation;
}

// Takes back the handle that the wait gave.
void end_copy(Storage& storage, const LongOperation& operation, const std::string& image)
{
    if (operation.result.image.empty() || operation.result.image != image) {
        throw Fault(kBadHandle, "the image handle isn't the operation's");
    }
    storage.images.close(image);
}

} // namespace

void handle(Call& call, const _ns1__asyncCopyImage& request, _ns1__asyncCopyImageResponse& response)
{
    response.opid = start_operation(call, copy_operation_of(call, request));
}

void handle(Call& call, const _ns1__namedAsyncCopyImage& request, _ns1__namedAsyncCopyImageResponse&)
{
    start_operation(call, request.opname, copy_operation_of(call, request));
}

void handle(Call& call, const _ns1__asyncEndCopyImage& request, _ns1__asyncEndCopyImageResponse&)
{
    const Model::Use storage = call.model().use();
    const std::string& image = token_of(request.imageHandle, "imageHandle");
    end_copy(*storage, storage.operations().by_token(token_of(request.opid, "opid")), image);
}

void handle(Call& call, const _ns1__namedAsyncEndCopyImage& request, _ns1__namedAsyncEndCopyImageResponse&)
{
    const Model::Use storage = call.model().use();
    const std::string& image = token_of(request.imageHandle, "imageHandle");
    const std::size_t server = storage->images.at(image).server;
    end_copy(*storage, storage.operations().by_name(server, request.opname), image);
}

} // namespace soapwrapper::simulator
