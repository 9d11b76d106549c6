#include "simulator/service/trouble.h"

#include <optional>
#include <string_view>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

struct KindName {
    TroubleKind kind;
    std::string_view name;
};

constexpr KindName kKinds[] = {{TroubleKind::kFault, "fault"},
                               {TroubleKind::kDelay, "delay"},
                               {TroubleKind::kDribble, "dribble"},
                               {TroubleKind::kCut, "cut"},
                               {TroubleKind::kEmpty, "empty"},
                               {TroubleKind::kGarbage, "garbage"},
                               {TroubleKind::kMalformedChunk, "malformed-chunk"},
                               {TroubleKind::kHttpError, "http-error"},
                               {TroubleKind::kReset, "reset"}};

} // namespace

std::string_view name_of(TroubleKind kind)
{
    for (const KindName& each : kKinds) {
        if (each.kind == kind) return each.name;
    }
    return {};
}

std::optional<TroubleKind> trouble_kind_of(std::string_view name)
{
    for (const KindName& each : kKinds) {
        if (each.name == name) return each.kind;
    }
    return std::nullopt;
}

std::vector<std::string_view> trouble_kind_names()
{
    std::vector<std::string_view> names;
    for (const KindName& each : kKinds) names.push_back(each.name);
    return names;
}

bool is_performed(TroubleKind kind)
{
    return kind == TroubleKind::kDelay || kind == TroubleKind::kDribble || kind == TroubleKind::kCut;
}

} // namespace soapwrapper::simulator
