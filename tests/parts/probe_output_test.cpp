// What the probe makes of values for people and for scripts.
#include "probe/lists/list_reader.h"
#include "probe/output/output.h"
#include "probe/output/records.h"

#include <gmock/gmock.h>

#include <sstream>

using namespace soapwrapper::probe;

namespace
{

TEST(EndByCount, IsAFailureUnlessTheUserHasSetALimit)
{
    ListOptions options;
    EXPECT_FALSE(end_by_count(options, 999999));
    ASSERT_TRUE(end_by_count(options, 1000000));
    EXPECT_EQ(end_by_count(options, 1000000)->extent, Extent::kIncomplete);
    ASSERT_TRUE(end_by_count(options, 1000000)->problem);
    EXPECT_EQ(end_by_count(options, 1000000)->problem->name(), "endless list");
    options.limit = 2000000;
    EXPECT_FALSE(end_by_count(options, 1999999));
    ASSERT_TRUE(end_by_count(options, 2000000));
    EXPECT_EQ(end_by_count(options, 2000000)->extent, Extent::kLimited);
    EXPECT_FALSE(end_by_count(options, 2000000)->problem);
}

TEST(Documents, BeginWithTheVersionOfTheirForm)
{
    std::ostringstream stream;
    Output output(stream, Format::kJson, "");
    output.document()["name"] = "a";
    output.finish();
    EXPECT_EQ(stream.str(), "{\n  \"schema\": 1,\n  \"name\": \"a\"\n}\n");
    std::ostringstream empty;
    Output(empty, Format::kJson, "").finish();
    EXPECT_EQ(empty.str(), "{\n  \"schema\": 1\n}\n");
}

} // namespace
