#include "service/discovery.h"
#include "tests/kit/log_recorder.h"

#include <gmock/gmock.h>

#include <cstring>
#include <initializer_list>
#include <memory>
#include <string>

using namespace soapwrapper;
using kit::RecordedSession;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

// The rows of a host's record, on the heap and not a byte longer, so that a walk beyond them shows.
class Rows
{
  public:
    Rows(std::initializer_list<std::string> texts)
    {
        std::size_t i = 0;
        for (const std::string& text : texts) std::strncpy(rows_[i++], text.c_str(), STS_INTERFACE_SIZE);
    }

    const InterfaceRow* get() const { return rows_.get(); }

  private:
    std::unique_ptr<InterfaceRow[]> rows_ = std::make_unique<InterfaceRow[]>(STS_INTERFACES);
};

// "type url" of what is chosen, "none" for a false result.
std::string chosen_from(const Rows& rows)
{
    interface_detail detail;
    if (!determine_endpoint(rows.get(), detail, nullptr)) return "none";
    return detail.type + " " + detail.url;
}

interface_detail some_detail()
{
    return {9, 8, 7, "old type", "old url"};
}

void expect_cleared(const interface_detail& detail)
{
    EXPECT_EQ(detail.major, 0);
    EXPECT_EQ(detail.minor, 0);
    EXPECT_EQ(detail.sdk, 0);
    EXPECT_EQ(detail.type, "");
    EXPECT_EQ(detail.url, "");
}

} // namespace

TEST(DetermineEndpoint, TakesTheHighestVersionUpTo11_1_2)
{
    EXPECT_EQ(chosen_from({"11;1;2;http;two", "11;1;3;http;three", "11;1;1;http;one"}), "http two");
    EXPECT_EQ(chosen_from({"11;1;1;http;one", "11;1;3;http;three", "11;1;2;http;two"}), "http two");
    EXPECT_EQ(chosen_from({"9;99;99;http;nine", "11;0;0;http;eleven", "10;1;0;http;ten"}), "http eleven");
}

TEST(DetermineEndpoint, FillsTheWholeDetail)
{
    interface_detail detail = some_detail();
    ASSERT_TRUE(determine_endpoint(Rows{"11;1;2;https;https://x:1/p"}.get(), detail, nullptr));
    EXPECT_EQ(detail.major, 11);
    EXPECT_EQ(detail.minor, 1);
    EXPECT_EQ(detail.sdk, 2);
    EXPECT_EQ(detail.type, "https");
    EXPECT_EQ(detail.url, "https://x:1/p");
}

TEST(DetermineEndpoint, PrefersHttpsAtEqualVersionsInEitherOrder)
{
    EXPECT_EQ(chosen_from({"11;1;2;http;a", "11;1;2;https;b"}), "https b");
    EXPECT_EQ(chosen_from({"11;1;2;https;b", "11;1;2;http;a"}), "https b");
}

TEST(DetermineEndpoint, PrefersAHigherVersionToHttps)
{
    EXPECT_EQ(chosen_from({"11;1;1;https;b", "11;1;2;http;a"}), "http a");
    EXPECT_EQ(chosen_from({"11;1;2;http;a", "11;1;1;https;b"}), "http a");
}

TEST(DetermineEndpoint, KeepsTheFirstOfEqualVersionAndType)
{
    EXPECT_EQ(chosen_from({"11;1;2;http;a", "11;1;2;http;b"}), "http a");
    EXPECT_EQ(chosen_from({"11;1;2;https;a", "11;1;2;https;b"}), "https a");
    EXPECT_EQ(chosen_from({"11;1;2;http;a", "11;1;2;https;b", "11;1;2;https;c"}), "https b");
}

TEST(DetermineEndpoint, TellsNothingApartButHttpAndHttpsToTheLetter)
{
    EXPECT_EQ(chosen_from({"11;1;2;other;a", "11;1;2;https;b"}), "other a");
    EXPECT_EQ(chosen_from({"11;1;2;;a", "11;1;2;https;b"}), " a");
    EXPECT_EQ(chosen_from({"11;1;2;HTTP;a", "11;1;2;https;b"}), "HTTP a");
    EXPECT_EQ(chosen_from({"11;1;2;http;a", "11;1;2;HTTPS;b"}), "http a");
    EXPECT_EQ(chosen_from({"11;1;2; http;a", "11;1;2;https;b"}), " http a");
}

TEST(DetermineEndpoint, RefusesWhereEveryRowIsAbove11_1_2)
{
    interface_detail detail = some_detail();
    EXPECT_FALSE(determine_endpoint(Rows{"11;2;0;http;a", "12;0;0;https;b"}.get(), detail, nullptr));
    EXPECT_EQ(detail.url, "old url");
    EXPECT_EQ(detail.major, 9);
}

TEST(DetermineEndpoint, RefusesVersion0Alone)
{
    EXPECT_EQ(chosen_from({"0;0;0;https;a"}), "none");
    EXPECT_EQ(chosen_from({"0;0;0;http;a", "0;0;0;https;b"}), "none");
    EXPECT_EQ(chosen_from({"x;y;z;https;a"}), "none");
    EXPECT_EQ(chosen_from({";;;;"}), "none");
}

TEST(DetermineEndpoint, NeverTakesANegativeVersion)
{
    EXPECT_EQ(chosen_from({"-11;1;2;https;a"}), "none");
    EXPECT_EQ(chosen_from({"-11;1;2;https;a", "0;0;1;http;b"}), "http b");
    EXPECT_EQ(chosen_from({"1;-100;0;https;a"}), "none"); // the sum is 0
}

TEST(DetermineEndpoint, ComparesBySumsThatRunIntoTheNextDigitsPlace)
{
    EXPECT_EQ(chosen_from({"10;110;102;http;sum 111102"}), "none");
    EXPECT_EQ(chosen_from({"10;101;2;http;sum 110102", "11;1;1;http;sum 110101"}), "http sum 110102");
    EXPECT_EQ(chosen_from({"11;0;102;http;sum 110102", "11;1;1;http;sum 110101"}), "http sum 110102");
    EXPECT_EQ(chosen_from({"0;0;110102;http;all in one"}), "http all in one");
    EXPECT_EQ(chosen_from({"0;0;110103;http;one too many"}), "none");
}

TEST(DetermineEndpoint, ComparesIn32BitsThatWrap)
{
    EXPECT_EQ(chosen_from({"429496;0;0;http;wraps to -7296"}), "none");
    EXPECT_EQ(chosen_from({"429497;0;0;http;wraps to 2704", "0;27;3;http;2703"}), "http wraps to 2704");
    EXPECT_EQ(chosen_from({"429497;0;0;http;wraps to 2704", "0;27;5;http;2705"}), "http 2705");
}

TEST(DetermineEndpoint, ReadsNumbersAsFarAsTheyGo)
{
    EXPECT_EQ(chosen_from({"11rc;1-beta;2nd;http;a", "11;1;1;http;b"}), "http a");
    EXPECT_EQ(chosen_from({" 11; +1;\t2;http;a", "11;1;1;http;b"}), "http a");
    EXPECT_EQ(chosen_from({"0xb;1;2;http;version 102", "0;1;3;http;version 103"}), "http version 103");
    EXPECT_EQ(chosen_from({"011;1;2;http;decimal", "9;1;3;http;nine"}), "http decimal");
}

TEST(DetermineEndpoint, SkipsARowWithoutExactlyFiveValues)
{
    EXPECT_EQ(chosen_from({"11;1;2;http", "11;1;1;http;a"}), "http a");
    EXPECT_EQ(chosen_from({"11;1;2;http;b;", "11;1;1;http;a"}), "http a");
    EXPECT_EQ(chosen_from({"11;1;2;http;b;c", "11;1;1;http;a"}), "http a");
    EXPECT_EQ(chosen_from({"nonsense", "11;1;1;http;a"}), "http a");
}

TEST(DetermineEndpoint, CountsAnEmptyUrlAsAValue)
{
    EXPECT_EQ(chosen_from({"11;1;2;https;", "11;1;1;http;a"}), "https ");
}

TEST(DetermineEndpoint, EndsAtTheFirstEmptyRow)
{
    EXPECT_EQ(chosen_from({"11;1;0;http;a", "", "11;1;2;http;behind the end"}), "http a");
}

TEST(DetermineEndpoint, AcceptsAServerThatNamesNoInterface)
{
    RecordedSession session;
    interface_detail detail = some_detail();
    EXPECT_TRUE(determine_endpoint(Rows{}.get(), detail, session.get()));
    expect_cleared(detail);
    EXPECT_THAT(session.lines(), ElementsAre(kit::record("No interface received from storage server")));
}

TEST(DetermineEndpoint, AcceptsMalformedRowsAloneAsNone)
{
    RecordedSession session;
    interface_detail detail = some_detail();
    EXPECT_TRUE(determine_endpoint(Rows{"11;1;2;http", ";"}.get(), detail, session.get()));
    expect_cleared(detail);
    EXPECT_THAT(session.lines(), ElementsAre(kit::record("Interface received: 11;1;2;http"),
                                             kit::record("Incorrect number of values specified: 11;1;2;http"),
                                             kit::record("Interface received: ;"),
                                             kit::record("Incorrect number of values specified: ;"),
                                             kit::record("No interface received from storage server")));
}

TEST(DetermineEndpoint, LogsEachRowAsItStands)
{
    RecordedSession session;
    interface_detail detail;
    EXPECT_TRUE(
        determine_endpoint(Rows{"11;1;2;http;a b", "x", "12;0;0;https;c"}.get(), detail, session.get()));
    EXPECT_THAT(session.lines(), ElementsAre(kit::record("Interface received: 11;1;2;http;a b"),
                                             kit::record("Interface received: x"),
                                             kit::record("Incorrect number of values specified: x"),
                                             kit::record("Interface received: 12;0;0;https;c")));
}

TEST(DetermineEndpoint, LogsNothingMoreWhenItRefuses)
{
    RecordedSession session;
    interface_detail detail;
    EXPECT_FALSE(determine_endpoint(Rows{"11;2;0;http;a"}.get(), detail, session.get()));
    EXPECT_THAT(session.lines(), ElementsAre(kit::record("Interface received: 11;2;0;http;a")));
}

TEST(DetermineEndpoint, EndsWithTheRecordWhereNoRowIsEmpty)
{
    const auto rows = std::make_unique<InterfaceRow[]>(STS_INTERFACES);
    for (int i = 0; i < STS_INTERFACES; ++i) {
        const std::string text = "11;0;" + std::to_string(i) + ";http;row " + std::to_string(i);
        std::strncpy(rows[static_cast<std::size_t>(i)], text.c_str(), STS_INTERFACE_SIZE);
    }
    RecordedSession session;
    interface_detail detail;
    EXPECT_TRUE(determine_endpoint(rows.get(), detail, session.get()));
    EXPECT_EQ(detail.url, "row 31");
    EXPECT_EQ(session.lines().size(), 32U);
}

TEST(DetermineEndpoint, ReadsARowWithoutTerminatorToItsEnd)
{
    const auto rows = std::make_unique<InterfaceRow[]>(STS_INTERFACES);
    std::memset(rows[0], 'u', STS_INTERFACE_SIZE);
    std::memcpy(rows[0], "11;1;2;http;", 12);
    interface_detail detail;
    EXPECT_TRUE(determine_endpoint(rows.get(), detail, nullptr));
    EXPECT_EQ(detail.url, std::string(500, 'u'));
}
