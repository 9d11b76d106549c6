#include "tests/system/simulator_operations.h"

namespace
{

using namespace simulator_operations;

std::string image(const std::string& role, const std::string& name, const std::string& date = "")
{
    return element(role, number("version", 10) + element("basename", name) +
                             (date.empty() ? nil("date") : element("date", date)) + nil("fulldate") +
                             nil("policy") + number("saveas", 0) + number("flags", 0) + nil("format") +
                             nil("isid"));
}

class SimulatorImageCopies : public OperationsClient
{
  protected:
    static std::string place(const std::string& role, const std::string& token, const std::string& of)
    {
        return element(role, server_handle(token) + element("lsuName", of));
    }
    std::string copy(const std::string& name = "weekly-copy") const
    {
        return place("targetLSU", far_, "vault") + image("targetImage", name) +
               place("sourceLSU", near_, "home") + image("sourceImage", "weekly");
    }
    static std::string with_set(const std::string& content)
    {
        return content + element("imageset") + number("eventflag", 0);
    }
    std::vector<std::string> images() const
    {
        std::vector<std::string> names =
            rest(kImages, open("openImageList", lsu(far_, "vault") + number("type", 0)));
        names.pop_back();
        return names;
    }
};

TEST_F(SimulatorImageCopies, ACopyAppearsAtItsEndAndIsOpenUntilItIsEnded)
{
    const std::string id = start("asyncCopyImage", with_set(copy()));
    EXPECT_EQ(text_of(ask("asyncWait", by_id(id)).body, "result"),
              nil("image") + number("bytesTransferred", 100) + number("error", kBusy) +
                  number("delayInSeconds", 7));
    EXPECT_EQ(fault("getImagePropByName", lsu(far_, "vault") + image("image", "weekly-copy")), kUnknownImage);
    const std::string result = text_of(ask("asyncWait", by_id(id)).body, "result");
    const std::string handle = text_of(result, "token");
    EXPECT_EQ(text_of(result, "bytesTransferred"), "300");
    const std::string opened = element("imageHandle", element("token", handle));
    const std::string info = ask("getImageProp", opened).body;
    EXPECT_EQ(text_of(info, "basename"), "weekly-copy");
    EXPECT_EQ(text_of(info, "date"), "1") << "what the definition leaves open is as with the original";
    EXPECT_EQ(text_of(info, "size"), "300");
    EXPECT_EQ(text_of(info, "server"), "Far:else");

    const std::string ending = opened + element("opid", element("token", id));
    EXPECT_EQ(ask("asyncEndCopyImage", ending).body, element("asyncEndCopyImageResponse"));
    EXPECT_EQ(fault("asyncEndCopyImage", ending), kBadHandle);
    EXPECT_EQ(fault("getImageProp", opened), kBadHandle);
    EXPECT_THAT(images(), ElementsAre("weekly-copy"));
}

TEST_F(SimulatorImageCopies, ANamedCopyIsItsTargetsServers)
{
    const std::string request = copy() + opname("mine") + element("imageset") + number("eventflag", 0);
    EXPECT_EQ(ask("namedAsyncCopyImage", request).status, 200);
    const std::string far_name = server_handle(far_) + opname("mine");
    EXPECT_EQ(fault("namedAsyncStatus", by_name("mine")), kUnknownOperation);
    EXPECT_EQ(fault("namedAsyncStatus", far_name), kBusy);
    const std::string handle = text_of(ask("namedAsyncWait", far_name).body, "image");
    const std::string opened = element("imageHandle", handle);
    EXPECT_EQ(fault("namedAsyncEndCopyImage", opened + opname("other")), kUnknownOperation);
    EXPECT_EQ(ask("namedAsyncEndCopyImage", opened + opname("mine")).status, 200);
}

TEST_F(SimulatorImageCopies, ACopyThatCannotBeIsRefusedOrFails)
{
    const std::string first = start("asyncCopyImage", with_set(copy()));
    const std::string second = start("asyncCopyImage", with_set(copy()));
    EXPECT_EQ(error_of(ask("asyncWait", by_id(second))), kBusy);
    EXPECT_EQ(error_of(ask("asyncWait", by_id(first))), 0);
    EXPECT_EQ(error_of(ask("asyncWait", by_id(second))), kInUse);
    EXPECT_EQ(fault("asyncCopyImage", with_set(copy())), kInUse);

    const std::string third = start("asyncCopyImage", with_set(copy("other")));
    ask("deleteImage", lsu(near_, "home") + image("imd", "weekly") + number("asyncFlag", 0));
    EXPECT_EQ(error_of(ask("asyncWait", by_id(third))), kBusy);
    EXPECT_EQ(error_of(ask("asyncWait", by_id(third))), kUnknownImage);
    EXPECT_EQ(fault("asyncCopyImage", with_set(copy("other"))), kUnknownImage);
    EXPECT_THAT(images(), ElementsAre("weekly-copy"));
}

TEST_F(SimulatorImageCopies, ACopyWhoseSessionIsClosedIsMadeWithoutBeingOpen)
{
    const std::string id = start("asyncCopyImage", with_set(copy()));
    ask("closeServer", server_handle(far_));
    ask("asyncWait", by_id(id));
    const std::string result = text_of(ask("asyncWait", by_id(id)).body, "result");
    EXPECT_THAT(result, StartsWith(nil("image") + number("bytesTransferred", 300) + number("error", 0)));
}

} // namespace
