#include "tests/entries/catalogue_cases.h"

#include <ostream>

using namespace kit;

namespace catalogue
{
namespace
{

const Content kNothing;

// A reply of one element, without which it is of no use.
Content about(const std::string& record, const std::string& inside = "")
{
    return {element(record, inside), record};
}

template <class Condition>
std::vector<Case> cases_where(Condition holds)
{
    std::vector<Case> found;
    for (const Case& test : cases()) {
        if (holds(test)) found.push_back(test);
    }
    return found;
}

} // namespace

Records::Records()
{
    std::memset(&in, 0, sizeof in);
    std::memset(&out, kCanary, sizeof out);
    out.list = nullptr;
}

std::ostream& operator<<(std::ostream& out, const Case& test)
{
    return out << test.name;
}

std::string name_of(const testing::TestParamInfo<Case>& info)
{
    return info.param.name;
}

std::vector<Case> cases()
{
    const Content lsu_list = about("lsuListHandle", element("token", "L"));
    const Content image_list = about("imageListHandle", element("token", "L"));
    const Content snap_list = about("snapListHandle", element("token", "L"));
    const Kind open = Kind::kOpen;
    const Kind call = Kind::kCall;
    const Kind close = Kind::kClose;
    return {
        {"stspi_open_lsu_list_v10", "openLSUList", "openLSUListResponse", lsu_list, open,
         [](Records& r) { return open_lsu_list_v10()(r.server, nullptr, &r.out.list); }},
        {"stspi_open_lsu_list_v11", "openLSUList", "openLSUListResponse", lsu_list, open,
         [](Records& r) { return open_lsu_list_v11()(r.server, nullptr, &r.out.list); }},
        {"stspi_list_lsu",
         "listLSU",
         "listLSUResponse",
         {element("lsu", "l")},
         call,
         [](Records& r) { return list_lsu()(r.list, r.out.name); }},
        {"stspi_close_lsu_list", "closeLSUList", "closeLSUListResponse", kNothing, close,
         [](Records& r) { return close_lsu_list()(r.list); }},
        {"stspi_get_lsu_prop_byname_v10", "getLSUPropByName", "getLSUPropByNameResponse", about("info"), call,
         [](Records& r) { return get_lsu_prop_byname_v10()(r.lsu, &r.out.older_lsu); }},
        {"stspi_get_lsu_prop_byname_v11", "getLSUPropByName", "getLSUPropByNameResponse", about("info"), call,
         [](Records& r) { return get_lsu_prop_byname_v11()(r.lsu, &r.out.lsu); }},
        {"stspi_get_lsu_replication_prop", "getLSUReplicationProp", "getLSUReplicationPropResponse",
         about("props"), call,
         [](Records& r) { return get_lsu_replication_prop()(r.lsu, 0, nullptr, 0, nullptr); }},
        {"stspi_open_image_list", "openImageList", "openImageListResponse", image_list, open,
         [](Records& r) { return open_image_list()(r.lsu, 0, &r.out.list); }},
        {"stspi_list_image", "listImage", "listImageResponse", about("image"), call,
         [](Records& r) { return list_image()(r.list, &r.out.image); }},
        {"stspi_close_image_list", "closeImageList", "closeImageListResponse", kNothing, close,
         [](Records& r) { return close_image_list()(r.list); }},
        {"stspi_get_image_prop", "getImageProp", "getImagePropResponse", about("info"), call,
         [](Records& r) { return get_image_prop()(&r.image, &r.out.image_info); }},
        {"stspi_get_image_prop_byname", "getImagePropByName", "getImagePropByNameResponse", about("info"),
         call, [](Records& r) { return get_image_prop_byname()(r.lsu, &r.in.image, &r.out.image_info); }},
        {"stspi_delete_image", "deleteImage", "deleteImageResponse", kNothing, call,
         [](Records& r) { return delete_image()(r.lsu, &r.in.image, 1); }},
        {"stspi_open_snap_list",
         "openSnapList",
         "openSnapListResponse",
         snap_list,
         open,
         [](Records& r) { return open_snap_list()(r.lsu, &r.out.list); },
         {},
         "stspi_open_snap_list_by_volume"},
        {"stspi_open_snap_list_by_volume", "openSnapListByVolume", "openSnapListResponse", snap_list, open,
         [](Records& r) { return open_snap_list_by_volume()(r.server, &r.in.volume, &r.out.list); }},
        {"stspi_list_snap", "listSnap", "listSnapResponse", about("snapDef", element("snapName", "n")), call,
         [](Records& r) { return list_snap()(r.list, &r.out.snap); }},
        {"stspi_close_snap_list", "closeSnapList", "closeSnapListResponse", kNothing, close,
         [](Records& r) { return close_snap_list()(r.list); }},
        {"stspi_get_snap_prop_byname",
         "getSnapPropByName",
         "getSnapPropByNameResponse",
         about("snapInfo"),
         call,
         [](Records& r) { return get_snap_prop_byname()(r.lsu, &r.in.snap, &r.out.snap_info); },
         {record("stspi_get_snap_prop_byname LSU:lsu1 snapname:")}},
        {"stspi_delete_snap", "deleteSnap", "deleteSnapResponse", kNothing, call,
         [](Records& r) { return delete_snap()(r.lsu, &r.in.snap); }},
        {"stspi_validate_rollback", "validateRollback", "validateRollbackResponse", snap_list, open,
         [](Records& r) {
             return validate_rollback()(r.lsu, &r.in.snap, r.server, &r.in.volume, "", 0, &r.out.list);
         }},
        {"stspi_create_export", "createExport", "createExportResponse", about("exportedVolume"), call,
         [](Records& r) { return create_export()(r.lsu, "n", &r.in.host, &r.out.volume); }},
        {"stspi_add_export", "addExport", "addExportResponse", about("exportedVolume"), call,
         [](Records& r) { return add_export()(r.lsu, &r.in.volume, &r.in.host, &r.out.volume); }},
        {"stspi_delete_export", "deleteExport", "deleteExportResponse", kNothing, call,
         [](Records& r) { return delete_export()(r.lsu, &r.in.host, &r.in.volume); }},
        {"stspi_claim_volume", "claimVolume", "claimVolumeResponse", kNothing, call,
         [](Records& r) { return claim_volume()(r.server, &r.in.volume); }},
        {"stspi_iocontrol",
         "ioControl",
         "ioControlResponse",
         {element("len", "0")},
         call,
         [](Records& r) { return iocontrol()(r.server, 1, r.out.buffer, 2, 32); }},
    };
}

std::vector<Case> cases(Kind kind)
{
    return cases_where([kind](const Case& test) { return test.kind == kind; });
}

std::vector<Case> calls_with_record()
{
    return cases_where(
        [](const Case& test) { return test.kind == Kind::kCall && !test.content.record.empty(); });
}

std::vector<Case> calls_without_record()
{
    return cases_where(
        [](const Case& test) { return test.kind == Kind::kCall && test.content.record.empty(); });
}

} // namespace catalogue
