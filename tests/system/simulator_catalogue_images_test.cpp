#include "tests/system/simulator_catalogue.h"

namespace
{

using namespace simulator_catalogue;

const std::string kFirst = "home_1767571200_C1_F1";
const std::string kSecond = "home_1767657600_C1_F1";
const std::string kThird = "home_1767744000_C1_F1";

std::string definition(const std::string& basename, const std::string& date = "")
{
    return element("version", "10") + element("basename", basename) + element("date", date) +
           element("fulldate") + nil("policy") + element("saveas", "0") + element("flags", "0") +
           element("format") + nil("isid");
}

class SimulatorImages : public Client
{
  protected:
    std::string open_list(const std::string& name = "home", const std::string& type = "0") const
    {
        return open("openImageList", lsu(server_, name) + element("type", type));
    }
    HttpReply properties(const std::string& wanted) const
    {
        return ask("getImagePropByName", lsu(server_, "home") + element("image", wanted));
    }
    HttpReply remove(const std::string& wanted) const
    {
        return ask("deleteImage", lsu(server_, "home") + element("imd", wanted) + element("asyncFlag", "-1"));
    }
    std::string open_image(const std::string& wanted) const
    {
        return open("openImage", lsu(server_, "home") + element("image", wanted) + element("mode", "0"));
    }
    static std::string image_handle(const std::string& token)
    {
        return element("imageHandle", element("token", token));
    }

    const std::string server_ = open_server();
};

TEST_F(SimulatorImages, AListGivesTheImagesOldestFirstWhateverItsType)
{
    EXPECT_THAT(rest(kImages, open_list()), ElementsAre(kFirst, kSecond, kThird, kEnd));
    EXPECT_THAT(rest(kImages, open_list("home", "7")), ElementsAre(kFirst, kSecond, kThird, kEnd));
    EXPECT_THAT(rest(kImages, open_list("archive")), ElementsAre(kEnd));
    EXPECT_EQ(fault("openImageList", lsu(server_, "nope") + element("type", "0")), kUnknownLsu);
}

TEST_F(SimulatorImages, AListedImageIsToldByItsDefinition)
{
    const HttpReply reply = next(kImages, open_list());
    const std::string isid = element("version", "1") + element("dpaid", "simulator") +
                             element("dpaver", "1.0") + element("info", "dXNlX3phcGk9MA==");
    EXPECT_EQ(text_of(reply.body, "image"),
              element("version", "10") + element("basename", kFirst) + element("date", "01/05/2026") +
                  element("fulldate", "01/05/2026 00:00:00") + element("policy", "nightly-home") +
                  element("saveas", "1") + element("flags", "0") + element("format", "snap") +
                  element("isid", isid));
}

TEST_F(SimulatorImages, AListIsClosedOnce)
{
    expect_a_list_is_closed_once(kImages, open_list());
}

TEST_F(SimulatorImages, PropertiesByNameTellWhereTheImageIs)
{
    const HttpReply reply = properties(definition(kSecond));
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(text_of(reply.body, "server"), "Network_NTAP:filer");
    EXPECT_EQ(text_of(reply.body, "lsu"), "home");
    EXPECT_EQ(text_of(reply.body, "size"), "10737418240");
    EXPECT_EQ(text_of(reply.body, "blockSize"), "4096");
    EXPECT_EQ(text_of(reply.body, "exports"),
              element("item", element("fstype", "1") + element("mount", "/vol/home")));
    EXPECT_EQ(text_of(properties(definition(kThird)).body, "status"), "1");
}

TEST_F(SimulatorImages, AnImageIsMeantOnlyIfAllThatIsToldOfItIsRight)
{
    EXPECT_EQ(properties(definition(kSecond, "01/06/2026")).status, 200);
    EXPECT_EQ(fault_code(properties(definition(kSecond, "01/05/2026"))), kUnknownImage);
    EXPECT_EQ(fault_code(properties(definition("nope"))), kUnknownImage);
    EXPECT_EQ(fault_code(properties(nil("basename"))), kMissingElement);
    EXPECT_EQ(fault("getImagePropByName", lsu(server_, "home") + nil("image")), kMissingElement);
}

TEST_F(SimulatorImages, ADeletedImageIsGoneFromTheListThatIsOpenAndFreesItsRoom)
{
    const std::string list = open_list();
    EXPECT_EQ(text_of(next(kImages, list).body, "basename"), kFirst);
    EXPECT_EQ(remove(definition(kSecond)).status, 200);
    EXPECT_THAT(rest(kImages, list), ElementsAre(kThird, kEnd));
    EXPECT_EQ(fault_code(remove(definition(kSecond))), kUnknownImage);
    EXPECT_EQ(fault_code(properties(definition(kSecond))), kUnknownImage);
    const std::string info = ask("getLSUPropByName", lsu(server_, "home")).body;
    EXPECT_EQ(text_of(info, "images"), "2");
    EXPECT_EQ(text_of(info, "used"), std::to_string(418759311360 - 10737418240));
}

TEST_F(SimulatorImages, AnOpenImageTellsItsPropertiesAndIsNotDeleted)
{
    const std::string opened = open_image(definition(kFirst));
    EXPECT_EQ(text_of(ask("getImageProp", image_handle(opened)).body, "info"),
              text_of(properties(definition(kFirst)).body, "info"));
    EXPECT_EQ(fault_code(remove(definition(kFirst))), kInUse);
    const std::string end = image_handle(opened) + element("flag", "0") + element("reserved", "0");
    EXPECT_EQ(ask("closeImage", end).status, 200);
    EXPECT_EQ(fault("closeImage", end), kBadHandle);
    EXPECT_EQ(fault("getImageProp", image_handle(opened)), kBadHandle);
    EXPECT_EQ(remove(definition(kFirst)).status, 200);
}

TEST_F(SimulatorImages, AnOpenImageEndsWithItsSession)
{
    const std::string opened = open_image(definition(kFirst));
    EXPECT_EQ(ask("closeServer", server_handle(server_)).status, 200);
    EXPECT_EQ(fault("getImageProp", image_handle(opened)), kBadHandle);
}

} // namespace
