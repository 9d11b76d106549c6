#include "tests/entries/catalogue_fixture.h"

using namespace catalogue;
using namespace kit;
using testing::ElementsAre;
using testing::ElementsAreArray;

namespace
{

sts_image_def_v10_t host_image()
{
    sts_image_def_v10_t def = {};
    def.version = -11;
    put(def.basename, "backup");
    put(def.date, "20240131");
    put(def.fulldate, "20240131T101500");
    put(def.policy, "daily");
    def.saveas = 1;
    def.flags = -2;
    put(def.format, "tar");
    def.isid.version = 3;
    put(def.isid.dpaid, "dpa");
    put(def.isid.dpaver, "9.1");
    put(def.isid.info, "mount=/a");
    return def;
}

// The same as a request says it.
std::string image_element(std::string_view name)
{
    return element(name, element("version", "-11") + element("basename", "backup") +
                             element("date", "20240131") + element("fulldate", "20240131T101500") +
                             element("policy", "daily") + element("saveas", "1") + element("flags", "-2") +
                             element("format", "tar") +
                             element("isid", element("version", "3") + element("dpaid", "dpa") +
                                                 element("dpaver", "9.1") + element("info", "bW91bnQ9L2E=")));
}

std::string information()
{
    return element("info",
                   element("version", "11") +
                       element("def", element("version", "10") + element("basename", "backup") +
                                          element("date", "20240131") + element("fulldate", "x") +
                                          element("policy", "daily") + element("saveas", "1") +
                                          element("flags", "2") + element("format", "tar")) +
                       element("server", "srv") + element("lsu", "lsu1") + element("size", "-3") +
                       element("blockSize", "4") +
                       element("exports", element("item", element("fstype", "5") + element("mount", "/m"))) +
                       element("status", "6"));
}

std::unique_ptr<sts_image_info_v10_t> expected_information()
{
    auto info = std::make_unique<sts_image_info_v10_t>();
    std::memset(info.get(), 0, sizeof *info);
    info->version = 11;
    put(info->def.basename, "backup");
    put(info->def.date, "20240131");
    put(info->def.policy, "daily");
    info->def.saveas = 1;
    info->def.flags = 2;
    put(info->server, "srv");
    put(info->lsu, "lsu1");
    info->size = -3;
    info->blockSize = 4;
    info->status = 6;
    return info;
}

class ImageCatalogue : public CatalogueTest
{
  protected:
    stsp_list_t* open_list()
    {
        script("openImageListResponse", token_element("imageListHandle", "I1"));
        stsp_list_t* list = nullptr;
        EXPECT_EQ(open_image_list()(&lsu, 0, &list), 0);
        session.clear();
        return list;
    }

    void close(stsp_list_t* list)
    {
        script("closeImageListResponse");
        EXPECT_EQ(close_image_list()(list), 0);
    }
};

} // namespace

TEST_F(ImageCatalogue, OpenListSendsTheTypeUnchangedAndMakesAHandle)
{
    script("openImageListResponse", token_element("imageListHandle", "I1"));
    stsp_list_t* list = nullptr;
    ASSERT_EQ(open_image_list()(&lsu, -7, &list), 0);
    EXPECT_EQ(service.request_body(0), element("openImageList", lsu_element() + element("type", "-7")));
    EXPECT_EQ(list->server, &server);
    EXPECT_STREQ(list->token, "I1");
    EXPECT_THAT(session.lines(), ElementsAreArray(good_log("stspi_open_image_list")));
    close(list);
}

TEST_F(ImageCatalogue, OpenListGivesOneStatusForAServerAndForAServiceHandleThatAreMissing)
{
    stsp_list_t* list = nullptr;
    EXPECT_EQ(open_image_list()(nullptr, 0, nullptr), STS_ENULLARG);
    server.service_handle = nullptr;
    EXPECT_EQ(open_image_list()(&lsu, 0, nullptr), STS_ENULLARG);
    EXPECT_EQ(open_image_list()(&lsu, 0, &list), STS_EBADARG);
    lsu.server = nullptr;
    EXPECT_EQ(open_image_list()(&lsu, 0, &list), STS_EBADARG);
    EXPECT_EQ(open_image_list()(nullptr, 0, &list), STS_EBADARG);
    EXPECT_EQ(list, nullptr);
    expect_silence();
}

TEST_F(ImageCatalogue, ListWritesFiveFieldsOfTheNextImage)
{
    stsp_list_t* list = open_list();
    script("listImageResponse", image_element("image"));
    auto image = canary_record<sts_image_def_v10_t>();
    ASSERT_EQ(list_image()(list, image.get()), 0);
    auto expected = canary_record<sts_image_def_v10_t>();
    put(expected->basename, "backup");
    put(expected->date, "20240131");
    put(expected->policy, "daily");
    expected->saveas = 1;
    expected->flags = -2;
    EXPECT_TRUE(same_bytes(*image, *expected));
    EXPECT_EQ(service.request_body(1), element("listImage", token_element("imageListHandle", "I1")));
    EXPECT_THAT(session.lines(), ElementsAreArray(good_log("stspi_list_image")));
    close(list);
}

TEST_F(ImageCatalogue, ListSurvivesAMissingRecordAndSaysSo)
{
    stsp_list_t* list = open_list();
    script("listImageResponse", image_element("image"));
    EXPECT_EQ(list_image()(list, nullptr), 0);
    EXPECT_THAT(session.lines(), ElementsAreArray(log_without_place("stspi_list_image", "image")));
    script("listImageResponse");
    EXPECT_EQ(list_image()(list, nullptr), STS_EPLUGIN);
    close(list);
}

TEST_F(ImageCatalogue, ListAfterTheEndGivesTheServicesCode)
{
    stsp_list_t* list = open_list();
    service.script(fault_answer(fault(2060013)));
    auto image = canary_record<sts_image_def_v10_t>();
    EXPECT_EQ(list_image()(list, image.get()), 2060013);
    EXPECT_TRUE(same_bytes(*image, *canary_record<sts_image_def_v10_t>()));
    close(list);
}

TEST_F(ImageCatalogue, ListAndCloseCheckTheHandleAndThenItsToken)
{
    auto image = canary_record<sts_image_def_v10_t>();
    EXPECT_EQ(list_image()(nullptr, image.get()), STS_ENULLARG);
    EXPECT_EQ(close_image_list()(nullptr), STS_ENULLARG);
    expect_silence();
    stsp_list_t list = {&server, nullptr};
    EXPECT_EQ(list_image()(&list, image.get()), STS_EBADARG);
    EXPECT_EQ(close_image_list()(&list), STS_EBADARG);
    EXPECT_THAT(session.lines(),
                ElementsAre(record("stspi_list_image: enter"), record("stspi_close_image_list: enter")));
    EXPECT_EQ(service.connections(), 0u);
}

TEST_F(ImageCatalogue, CloseSendsTheTokenAndKeepsTheHandleIfItFails)
{
    stsp_list_t* list = open_list();
    service.script(fault_answer(fault(2060012)));
    EXPECT_EQ(close_image_list()(list), 2060012);
    session.clear();
    close(list);
    EXPECT_EQ(service.request_body(1), element("closeImageList", token_element("imageListHandle", "I1")));
    EXPECT_EQ(service.request_body(2), service.request_body(1));
    EXPECT_THAT(session.lines(), ElementsAreArray(good_log("stspi_close_image_list")));
}

TEST_F(ImageCatalogue, PropertiesThroughAHandleRewriteTheWholeRecord)
{
    script("getImagePropResponse", information());
    const stsp_image_t image = {&server, "T1"};
    auto info = canary_record<sts_image_info_v10_t>();
    ASSERT_EQ(get_image_prop()(&image, info.get()), 0);
    EXPECT_TRUE(same_bytes(*info, *expected_information()));
    EXPECT_EQ(service.request_body(0), element("getImageProp", token_element("imageHandle", "T1")));
    EXPECT_THAT(session.lines(), ElementsAreArray(good_log("stspi_get_image_prop")));
}

TEST_F(ImageCatalogue, PropertiesThroughAHandleWithoutATokenSendAnEmptyOne)
{
    script("getImagePropResponse", information());
    const stsp_image_t image = {&server, nullptr};
    auto info = canary_record<sts_image_info_v10_t>();
    EXPECT_EQ(get_image_prop()(&image, info.get()), 0);
    EXPECT_EQ(service.request_body(0), element("getImageProp", token_element("imageHandle", "")));
}

TEST_F(ImageCatalogue, PropertiesThroughAHandleCheckTheRecordTheServerAndTheServiceHandle)
{
    auto info = canary_record<sts_image_info_v10_t>();
    stsp_image_t image = {nullptr, "T1"};
    EXPECT_EQ(get_image_prop()(&image, nullptr), STS_ENULLARG);
    EXPECT_EQ(get_image_prop()(nullptr, nullptr), STS_ENULLARG);
    EXPECT_EQ(get_image_prop()(&image, info.get()), STS_EBADARG);
    EXPECT_EQ(get_image_prop()(nullptr, info.get()), STS_EBADARG);
    server.service_handle = nullptr;
    image.server = &server;
    EXPECT_EQ(get_image_prop()(&image, info.get()), STS_ENOSERVICEHANDLE);
    EXPECT_TRUE(same_bytes(*info, *canary_record<sts_image_info_v10_t>()));
    expect_silence();
}

TEST_F(ImageCatalogue, PropertiesByNameSendTheWholeDefinition)
{
    script("getImagePropByNameResponse", information());
    const sts_image_def_v10_t image = host_image();
    auto info = canary_record<sts_image_info_v10_t>();
    ASSERT_EQ(get_image_prop_byname()(&lsu, &image, info.get()), 0);
    EXPECT_TRUE(same_bytes(*info, *expected_information()));
    EXPECT_EQ(service.request_body(0), element("getImagePropByName", lsu_element() + image_element("image")));
    EXPECT_THAT(session.lines(), ElementsAreArray(good_log("stspi_get_image_prop_byname")));
}

TEST_F(ImageCatalogue, PropertiesByNameSendAnEmptySupplierTextAsAnEmptyElement)
{
    script("getImagePropByNameResponse", information());
    const sts_image_def_v10_t image = {};
    auto info = canary_record<sts_image_info_v10_t>();
    ASSERT_EQ(get_image_prop_byname()(&lsu, &image, info.get()), 0);
    EXPECT_EQ(service.request_body(0),
              element("getImagePropByName",
                      lsu_element() +
                          element("image", element("version", "0") +
                                               "<ns1:basename/><ns1:date/><ns1:fulldate/><ns1:policy/>" +
                                               element("saveas", "0") + element("flags", "0") +
                                               "<ns1:format/>" + empty_isid())));
}

TEST_F(ImageCatalogue, PropertiesWithMoreExportsThanTheRecordHoldsBringNone)
{
    std::string exports;
    for (int i = 0; i < 50; ++i) exports += element("item", element("fstype", "1") + element("mount", "/m"));
    script("getImagePropResponse", element("info", element("exports", exports)));
    const stsp_image_t image = {&server, "T1"};
    auto info = canary_record<sts_image_info_v10_t>();
    ASSERT_EQ(get_image_prop()(&image, info.get()), 0);
    sts_image_info_v10_t cleared;
    std::memset(&cleared, 0, sizeof cleared);
    EXPECT_TRUE(same_bytes(*info, cleared));
}

TEST_F(ImageCatalogue, PropertiesByNameThatFailLeaveTheRecordAndLeakNothing)
{
    service.script(fault_answer(fault(2060013)));
    const sts_image_def_v10_t image = host_image();
    auto info = canary_record<sts_image_info_v10_t>();
    EXPECT_EQ(get_image_prop_byname()(&lsu, &image, info.get()), 2060013);
    EXPECT_TRUE(same_bytes(*info, *canary_record<sts_image_info_v10_t>()));
}

TEST_F(ImageCatalogue, PropertiesByNameAndDeleteCheckArgumentsServerAndServiceHandle)
{
    const sts_image_def_v10_t image = host_image();
    auto info = canary_record<sts_image_info_v10_t>();
    lsu.server = nullptr;
    EXPECT_EQ(get_image_prop_byname()(nullptr, &image, info.get()), STS_ENULLARG);
    EXPECT_EQ(get_image_prop_byname()(&lsu, nullptr, info.get()), STS_ENULLARG);
    EXPECT_EQ(get_image_prop_byname()(&lsu, &image, nullptr), STS_ENULLARG);
    EXPECT_EQ(get_image_prop_byname()(&lsu, &image, info.get()), STS_EBADARG);
    EXPECT_EQ(delete_image()(nullptr, &image, 0), STS_ENULLARG);
    EXPECT_EQ(delete_image()(&lsu, nullptr, 0), STS_ENULLARG);
    EXPECT_EQ(delete_image()(&lsu, &image, 0), STS_EBADARG);
    lsu.server = &server;
    server.service_handle = nullptr;
    EXPECT_EQ(get_image_prop_byname()(&lsu, &image, info.get()), STS_ENOSERVICEHANDLE);
    EXPECT_EQ(delete_image()(&lsu, &image, 0), STS_ENOSERVICEHANDLE);
    expect_silence();
}

TEST_F(ImageCatalogue, DeleteSendsTheDefinitionAndTheFlagWithItsSign)
{
    script("deleteImageResponse");
    const sts_image_def_v10_t image = host_image();
    ASSERT_EQ(delete_image()(&lsu, &image, std::numeric_limits<std::int32_t>::min()), 0);
    EXPECT_EQ(service.request_body(0), element("deleteImage", lsu_element() + image_element("imd") +
                                                                  element("asyncFlag", "-2147483648")));
    EXPECT_THAT(session.lines(), ElementsAreArray(good_log("stspi_delete_image")));
}
