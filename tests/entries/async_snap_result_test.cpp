// What becomes of the six kinds of a result.
#include "tests/entries/async_wait_snap_fixture.h"

#include <climits>

using namespace kit;
using testing::ElementsAre;

namespace
{

class SnapResultTest : public AsyncWaitSnapTest
{
  protected:
    using AsyncWaitSnapTest::AsyncWaitSnapTest;

    int wait_for(const SnapResult& expected)
    {
        service_.script(result(expected));
        return wait(1);
    }

    // A difference as the service sends it, with so many rows that are numbered from 0.
    static std::string difference(std::int64_t announced, int sent)
    {
        std::string items;
        for (int i = 0; i < sent; ++i) items += diff_item("object-" + std::to_string(i), 100 + i, 200 + i);
        return element("getSnapDiff", number("numDiffs", announced) + element("diffObjectList", items));
    }
    static std::string diff_item(std::string_view name, int type, int state)
    {
        return element("item", element("objectName", name) + number("objectType", type) +
                                   number("objectState", state));
    }

    // The rows that a wait brought, as many as it says.
    std::vector<sts_snap_diff_t> rows()
    {
        const std::unique_ptr<sts_snap_diff_t[]> owner(record_.body.difference.diffs);
        return {owner.get(), owner.get() + count_};
    }

    void await_difference()
    {
        count_ = -1;
        record_.body.difference.numDiffs = &count_;
        record_.body.difference.diffs = nullptr;
    }

    // Whether the record's body is as it was from this offset on.
    bool body_is_untouched_from(std::size_t offset) const
    {
        const std::string bytes = bytes_of(record_).substr(24 + offset);
        return bytes == std::string(bytes.size(), 'x');
    }

    std::int32_t count_ = -1;
};

class SnapResults : public SnapResultTest, public testing::WithParamInterface<Family>
{
  protected:
    SnapResults() : SnapResultTest(GetParam()) {}
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Families, SnapResults, testing::Values(Family::kById, Family::kByName), family_of);

TEST_P(SnapResults, HoldTheTopologyOfAValidationOrAProvision)
{
    const std::string topology = element("targetTopology", "the topology");
    EXPECT_EQ(wait_for({1, 0, 0, 0, element("validateSnap", topology)}), 0);
    EXPECT_EQ(record_.result_kind, 1);
    EXPECT_STREQ(record_.body.targetTopology, "the topology");
    EXPECT_TRUE(body_is_untouched_from(sizeof "the topology"));
    EXPECT_EQ(wait_for({1, 0, 0, 0, element("provisionTopology", topology)}), 0);
    EXPECT_EQ(record_.result_kind, 7);
    EXPECT_STREQ(record_.body.targetTopology, "the topology");
}

TEST_P(SnapResults, HoldTheSnapshotOfACreationAnImportOrACopy)
{
    for (const auto& [arm, kind] : {std::pair("createSnap", 2), {"importSnap", 8}, {"copySnap", 3}}) {
        SCOPED_TRACE(arm);
        fill(record_);
        EXPECT_EQ(wait_for({1, 0, 0, 0, snapshot_arm(arm)}), 0);
        EXPECT_EQ(record_.result_kind, kind);
        EXPECT_STREQ(record_.body.snapshot.targetSnapName, "the copy");
        EXPECT_STREQ(record_.body.snapshot.targetSnapLsu.server, "the server");
        EXPECT_STREQ(record_.body.snapshot.targetSnapLsu.lsu, "the LSU");
        EXPECT_TRUE(body_is_untouched_from(2048 + 512 + sizeof "the LSU"));
    }
}

TEST_P(SnapResults, GoByTheArmAndNotByTheTypeNumber)
{
    for (const int type : {-1, 0, 1, 4, 7, 99}) {
        EXPECT_EQ(wait_for({1, 0, 0, type, snapshot_arm("createSnap")}), 0);
        EXPECT_EQ(record_.result_kind, 2);
    }
}

TEST_P(SnapResults, AreCutToTheirFields)
{
    for (const std::size_t length : {4095U, 4096U, 5000U}) {
        const std::string topology(length, 't');
        EXPECT_EQ(wait_for({1, 0, 0, 0, element("validateSnap", element("targetTopology", topology))}), 0);
        EXPECT_EQ(record_.body.targetTopology, topology.substr(0, 4095));
    }
    for (const std::size_t length : {511U, 512U, 1023U, 1024U, 2047U, 2048U, 3000U}) {
        const std::string text(length, 's');
        const std::string arm =
            element("createSnap",
                    element("targetSnapName", text) + element("targetSnapLsu", lsu_spec_content(text, text)));
        EXPECT_EQ(wait_for({1, 0, 0, 0, arm}), 0);
        EXPECT_EQ(record_.body.snapshot.targetSnapName, text.substr(0, 2047));
        EXPECT_EQ(record_.body.snapshot.targetSnapLsu.server, text.substr(0, 511));
        EXPECT_EQ(record_.body.snapshot.targetSnapLsu.lsu, text.substr(0, 1023));
    }
}

TEST_P(SnapResults, OfThreeKindsHaveNoBody)
{
    for (const int type : {0, 4, 5}) {
        fill(record_);
        EXPECT_EQ(wait_for({9, 0, 0, type, ""}), 0);
        EXPECT_EQ(record_.result_kind, type);
        EXPECT_EQ(record_.aio_total_bytes_transferred, 9);
        EXPECT_TRUE(body_is_untouched_from(0));
    }
}

TEST_P(SnapResults, OfAnUnknownKindAreAFailureWithTheErrorAndTheIntervalInTheRecord)
{
    for (const int type : {-1, 1, 2, 3, 6, 7, 8, 9, INT_MAX}) {
        SCOPED_TRACE(type);
        fill(record_);
        log().clear();
        EXPECT_EQ(wait_for({9, 2060013, 17, type, ""}), 2060046);
        EXPECT_EQ(record_.aio_error, 2060013U);
        EXPECT_EQ(record_.retryInterval, 17);
        sts_async_snap_result_t expected;
        fill(expected);
        expected.aio_error = 2060013;
        expected.retryInterval = 17;
        EXPECT_EQ(bytes_of(record_), bytes_of(expected));
        EXPECT_THAT(log().lines(), ElementsAre(record(line("enter")), record(return_code(0)),
                                               failure(line("invalid resultSnapType response received"))));
    }
}

TEST_P(SnapResults, WithAnArmThatIsNilHaveAKindAndNoBody)
{
    for (const auto& [arm, kind] : {std::pair("validateSnap", 1),
                                    {"provisionTopology", 7},
                                    {"createSnap", 2},
                                    {"importSnap", 8},
                                    {"copySnap", 3},
                                    {"getSnapDiff", 6}}) {
        SCOPED_TRACE(arm);
        fill(record_);
        EXPECT_EQ(wait_for({9, 0, 0, 0, nil(arm)}), 0);
        EXPECT_EQ(record_.result_kind, kind);
        EXPECT_TRUE(body_is_untouched_from(0));
    }
}

TEST_P(SnapResults, LeaveTheLsuAloneIfItIsNil)
{
    EXPECT_EQ(
        wait_for({9, 0, 0, 0, element("copySnap", element("targetSnapName", "n") + nil("targetSnapLsu"))}),
        0);
    EXPECT_STREQ(record_.body.snapshot.targetSnapName, "n");
    EXPECT_TRUE(body_is_untouched_from(2048));
}

TEST_P(SnapResults, KeepTheFirstOfTwoArms)
{
    EXPECT_EQ(wait_for({9, 0, 0, 0, snapshot_arm("createSnap") + difference(1, 1)}), 0);
    EXPECT_EQ(record_.result_kind, 2);
    EXPECT_STREQ(record_.body.snapshot.targetSnapName, "the copy");
}

TEST_P(SnapResults, HoldTheRowsOfADifference)
{
    await_difference();
    EXPECT_EQ(wait_for({9, 0, 0, 0, difference(3, 3)}), 0);
    EXPECT_EQ(record_.result_kind, 6);
    EXPECT_EQ(record_.body.difference.numDiffs, &count_);
    EXPECT_EQ(count_, 3);
    EXPECT_EQ(record_.aio_total_bytes_transferred, 9);
    const std::vector<sts_snap_diff_t> diffs = rows();
    for (int i = 0; i < 3; ++i) {
        const sts_snap_diff_t& row = diffs[static_cast<std::size_t>(i)];
        EXPECT_EQ(row.objectName, "object-" + std::to_string(i));
        EXPECT_EQ(row.objectType, 100 + i);
        EXPECT_EQ(row.objectState, 200 + i);
    }
    EXPECT_TRUE(body_is_untouched_from(16));
}

TEST_P(SnapResults, CutTheNamesOfADifference)
{
    for (const std::size_t length : {4095U, 4096U, 9000U}) {
        await_difference();
        const std::string name(length, 'n');
        EXPECT_EQ(wait_for({9, 0, 0, 0,
                            element("getSnapDiff", number("numDiffs", 1) +
                                                       element("diffObjectList", diff_item(name, -1, -2)))}),
                  0);
        const std::vector<sts_snap_diff_t> diffs = rows();
        EXPECT_EQ(diffs.at(0).objectName, name.substr(0, 4095));
        EXPECT_EQ(diffs.at(0).objectType, -1);
        EXPECT_EQ(diffs.at(0).objectState, -2);
    }
}

TEST_P(SnapResults, HoldAnArrayOfNoRowsForADifferenceOfNothing)
{
    const std::string no_list = element("getSnapDiff", number("numDiffs", 0) + nil("diffObjectList"));
    for (const std::string& arm : {difference(0, 0), difference(0, 2), no_list}) {
        await_difference();
        EXPECT_EQ(wait_for({9, 0, 0, 0, arm}), 0);
        EXPECT_EQ(count_, 0);
        EXPECT_NE(record_.body.difference.diffs, nullptr);
        rows();
    }
}

TEST_P(SnapResults, HoldAsManyRowsOfADifferenceAsAreAnnounced)
{
    const std::string two_and_nil =
        element("getSnapDiff",
                number("numDiffs", 2) + element("diffObjectList", diff_item("object-0", 100, 200) +
                                                                      diff_item("object-1", 101, 201) +
                                                                      nil("item") + diff_item("x", 0, 0)));
    for (const std::string& arm : {difference(2, 5), difference(2, 2), two_and_nil}) {
        await_difference();
        EXPECT_EQ(wait_for({9, 0, 0, 0, arm}), 0);
        EXPECT_EQ(count_, 2);
        EXPECT_STREQ(rows().at(1).objectName, "object-1");
    }
}

TEST_P(SnapResults, OfADifferenceThatIsntWholeAreAFailureAndNothingIsDelivered)
{
    const std::string list = "diffObjectList";
    const std::string one = diff_item("object-0", 100, 200);
    const std::pair<std::string, const char*> broken[] = {
        {difference(-1, 2), "the reply has numDiffs = -1 and 2 in its diffObjectList"},
        {difference(INT_MIN, 0), "the reply has numDiffs = -2147483648 and 0 in its diffObjectList"},
        {difference(3, 2), "the reply has numDiffs = 3 and 2 in its diffObjectList"},
        {difference(INT_MAX, 2), "the reply has numDiffs = 2147483647 and 2 in its diffObjectList"},
        {element("getSnapDiff", number("numDiffs", 1) + nil(list)),
         "the reply has numDiffs = 1 and 0 in its diffObjectList"},
        {element("getSnapDiff", number("numDiffs", 1)),
         "the reply has numDiffs = 1 and 0 in its diffObjectList"},
        {element("getSnapDiff", number("numDiffs", 2) + element(list, nil("item") + one)),
         "item 0 of the reply's diffObjectList is nil"},
        {element("getSnapDiff", number("numDiffs", 2) + element(list, one + nil("item"))),
         "item 1 of the reply's diffObjectList is nil"},
    };
    for (const auto& [arm, told] : broken) {
        SCOPED_TRACE(told);
        await_difference();
        const std::string before = bytes_of(record_);
        log().clear();
        EXPECT_EQ(wait_for({9, 2060013, 17, 0, arm}), 2060046);
        EXPECT_EQ(bytes_of(record_), before);
        EXPECT_EQ(count_, -1);
        EXPECT_THAT(log().lines(),
                    ElementsAre(record(line("enter")), record(return_code(0)), failure(line(told))));
    }
}

TEST_P(SnapResults, SurviveADifferenceWithoutAPlaceForItsCountAndSaySo)
{
    await_difference();
    record_.body.difference.numDiffs = nullptr;
    EXPECT_EQ(wait_for({9, 0, 0, 0, difference(1, 1)}), 0);
    count_ = 1;
    EXPECT_STREQ(rows().at(0).objectName, "object-0");
    EXPECT_THAT(log().lines(), ElementsAre(record(line("enter")), record(return_code(0)),
                                           anomaly(line("no place for the number of differences")),
                                           record(line("aio_total_bytes_transferred = 9 aio_error = 0")),
                                           record(line("STS_EOK"))));
}

namespace
{

class LargeSnapResult : public SnapResultTest
{
  protected:
    LargeSnapResult() : SnapResultTest(Family::kById) {}
};

} // namespace

TEST_F(LargeSnapResult, HoldsTheRowsOfADifferenceHoweverManyThereAre)
{
    constexpr int kRows = 120'000;
    await_difference();
    EXPECT_EQ(wait_for({9, 0, 0, 0, difference(kRows, kRows)}), 0);
    const std::unique_ptr<sts_snap_diff_t[]> owner(record_.body.difference.diffs); // half a gigabyte
    ASSERT_EQ(count_, kRows);
    for (const int i : {0, 100'000, kRows - 1}) {
        EXPECT_EQ(owner[static_cast<std::size_t>(i)].objectName, "object-" + std::to_string(i));
        EXPECT_EQ(owner[static_cast<std::size_t>(i)].objectState, 200 + i);
    }
}
