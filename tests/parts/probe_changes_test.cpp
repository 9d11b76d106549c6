#include "probe/lists/change_route.h"
#include "probe/output/problem.h"

#include <gmock/gmock.h>

#include <cstring>
#include <memory>

namespace
{

using namespace soapwrapper::probe;
using testing::HasSubstr;

sts_volume_spec_v11_t volume(int type, const char* first, const char* second)
{
    sts_volume_spec_v11_t made = {};
    std::strcpy(made.first, first);
    std::strcpy(made.second, second);
    made.volumeType = type;
    return made;
}

const sts_volume_spec_v11_t kNdmp = volume(STS_VOLUME_NDMP, "filer", "/vol/v/.snapshot/b");
const sts_volume_spec_v11_t kNfs = volume(STS_VOLUME_NFS, "filer", "/vol/v");

ChangeRoute planned(const RouteWishes& wishes)
{
    const auto diff = std::make_unique<sts_snap_info_v11_t>();
    diff->snapVolSpec = kNdmp;
    return plan_route(wishes, *diff);
}

TEST(RouteTaken, WithAMountTheVolumeDecidesAndWithoutOneTheText)
{
    EXPECT_EQ(route_taken("mount=a|b,use_zapi=0", kNdmp), Route::kZapi);
    EXPECT_EQ(route_taken("use_zapi=1,mount=a", kNfs), Route::kService);
    EXPECT_EQ(route_taken("use_zapi=1", kNfs), Route::kZapi);
    EXPECT_EQ(route_taken("use_zapi=0", kNdmp), Route::kService);
    EXPECT_EQ(route_taken("use_zapi=2", kNdmp), Route::kService);
    EXPECT_EQ(route_taken("x,use_zapi=1x", kNdmp), Route::kZapi);
    EXPECT_EQ(route_taken("use_zapi=0,use_zapi=1", kNdmp), Route::kService) << "the first one counts";
    EXPECT_EQ(route_taken("", kNdmp), Route::kService);
}

TEST(PlanRoute, WithoutWishesItIsTheServiceWithTheVolumeOfTheSnapshot)
{
    const ChangeRoute plan = planned({});
    EXPECT_EQ(plan.route, Route::kService);
    EXPECT_EQ(plan.isid, "use_zapi=0");
    EXPECT_EQ(plan.volume.volumeType, STS_VOLUME_NDMP);
    EXPECT_STREQ(plan.volume.second, "/vol/v/.snapshot/b");
}

TEST(PlanRoute, AMountOnTheWayToTheServiceNeedsAnotherVolume)
{
    RouteWishes wishes;
    wishes.mount = "/mnt/v";
    const ChangeRoute plan = planned(wishes);
    EXPECT_EQ(plan.route, Route::kService);
    EXPECT_EQ(plan.isid, "mount=/mnt/v|filer:/vol/v/.snapshot/b,use_zapi=0");
    EXPECT_EQ(plan.volume.volumeType, STS_VOLUME_NFS);
    EXPECT_STREQ(plan.volume.first, "filer");
    EXPECT_STREQ(plan.volume.second, "/vol/v");
}

TEST(PlanRoute, ToTheSecondPlugInTheVolumeStaysAsItIs)
{
    RouteWishes wishes;
    wishes.route = Route::kZapi;
    EXPECT_EQ(planned(wishes).isid, "use_zapi=1");
    wishes.mount = "/mnt/v";
    EXPECT_EQ(planned(wishes).route, Route::kZapi);
    EXPECT_EQ(planned(wishes).volume.volumeType, STS_VOLUME_NDMP);
}

TEST(PlanRoute, ATextOfTheUsersIsTakenAsItIs)
{
    RouteWishes wishes;
    wishes.isid = "mount=/mnt|x";
    EXPECT_EQ(planned(wishes).route, Route::kZapi) << "the volume of the snapshot makes it so";
    wishes.route = Route::kService;
    EXPECT_EQ(planned(wishes).volume.volumeType, STS_VOLUME_NFS);
    EXPECT_EQ(planned(wishes).isid, "mount=/mnt|x");
    wishes.isid = "";
    EXPECT_EQ(planned(wishes).isid, "");
}

TEST(PlanRoute, WishesThatCannotBeMetTogetherAreRefused)
{
    const auto refusal = [](const RouteWishes& wishes) {
        try {
            planned(wishes);
        } catch (const Problem& problem) {
            EXPECT_EQ(problem.code(), ExitCode::kUsage);
            return problem.meaning();
        }
        return std::string("accepted");
    };
    RouteWishes wishes;
    wishes.mount = "/mnt";
    wishes.volume = kNdmp;
    wishes.route = Route::kService;
    EXPECT_THAT(refusal(wishes), HasSubstr("takes the other route, zapi"));
    wishes.volume = kNfs;
    EXPECT_EQ(refusal(wishes), "accepted");
    wishes.route = Route::kZapi;
    EXPECT_THAT(refusal(wishes), HasSubstr("takes the other route, service"));
    wishes = {};
    wishes.isid = "use_zapi=0";
    wishes.route = Route::kZapi;
    EXPECT_THAT(refusal(wishes), HasSubstr("takes the other route, service"));
    for (const char* mount : {"a,b", "a|b"}) {
        wishes = {};
        wishes.mount = mount;
        EXPECT_THAT(refusal(wishes), HasSubstr("holds a comma or a bar"));
    }
    wishes.mount = std::string(4096, 'm');
    EXPECT_THAT(refusal(wishes), HasSubstr("fit into the host's record"));
}

} // namespace
