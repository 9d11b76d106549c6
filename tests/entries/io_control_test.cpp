#include "tests/entries/catalogue_fixture.h"

using namespace catalogue;
using namespace kit;
using testing::ElementsAreArray;

namespace
{

constexpr std::size_t kRoom = 64;

class IoControl : public CatalogueTest
{
  protected:
    IoControl() { fill_with_canary(buffer); }

    void answer_with(const std::string& args, int len)
    {
        script("ioControlResponse", text_element("args", args) + element("len", std::to_string(len)));
    }

    // The status of a call for output with this `len`, and what it left in a buffer of canaries.
    std::string output(const std::string& args, int reply_len, int len)
    {
        fill_with_canary(buffer);
        answer_with(args, reply_len);
        EXPECT_EQ(iocontrol()(&server, 1, buffer, STS_IOCTL_OUTPUT, len), 0);
        return {buffer, sizeof buffer};
    }

    // `head` and the canaries behind it.
    static std::string expected(const std::string& head)
    {
        return head + std::string(kRoom - head.size(), kCanary);
    }

    std::string request(const std::string& args, const std::string& ioflag, const std::string& len) const
    {
        return element("ioControl", token_element("serverHandle", "S1") + element("command", "10104") +
                                        text_element("args", args) + element("ioflag", ioflag) +
                                        element("len", len));
    }

    char buffer[kRoom];
};

std::string with_nul(const std::string& text)
{
    return text + '\0';
}

} // namespace

TEST_F(IoControl, SendsTheBuffersTextAndTheLengthForInput)
{
    put(buffer, "snap<1>");
    answer_with("answer", 0);
    const std::string before(buffer, sizeof buffer);
    EXPECT_EQ(iocontrol()(&server, STS_GET_PATH_MAP, buffer, STS_IOCTL_INPUT, 4096), 0);
    EXPECT_EQ(service.request_body(0), request("snap&lt;1&gt;", "1", "4096"));
    EXPECT_EQ(std::string(buffer, sizeof buffer), before); // the buffer is for input only
    EXPECT_THAT(session.lines(), ElementsAreArray(good_log("stspi_iocontrol")));
}

TEST_F(IoControl, WithNeitherBitSendsNoTextAndNoLengthAndLeavesTheBuffer)
{
    answer_with("answer", 6);
    EXPECT_EQ(iocontrol()(&server, STS_GET_PATH_MAP, buffer, 0, 64), 0);
    EXPECT_EQ(service.request_body(0), request("", "0", "0"));
    EXPECT_EQ(std::string(buffer, sizeof buffer), expected(""));
}

TEST_F(IoControl, ForOutputAloneSendsNoText)
{
    put(buffer, "not to be sent");
    answer_with("", 0);
    EXPECT_EQ(iocontrol()(&server, STS_GET_PATH_MAP, buffer, STS_IOCTL_OUTPUT, 64), 0);
    EXPECT_EQ(service.request_body(0), request("", "2", "0"));
}

TEST_F(IoControl, ForBothSendsTheTextAndWritesTheAnswer)
{
    put(buffer, "snap1");
    answer_with("map", 0);
    EXPECT_EQ(iocontrol()(&server, STS_GET_PATH_MAP, buffer, STS_IOCTL_INPUT | STS_IOCTL_OUTPUT, 64), 0);
    EXPECT_EQ(service.request_body(0), request("snap1", "3", "64"));
    EXPECT_STREQ(buffer, "map");
}

TEST_F(IoControl, PassesOtherBitsAndNegativeNumbersOnUnread)
{
    put(buffer, "in");
    answer_with("", 0);
    EXPECT_EQ(iocontrol()(&server, -1, buffer, -3, -5), 0); // bit 0 is set, bit 1 isn't
    EXPECT_EQ(service.request_body(0),
              element("ioControl", token_element("serverHandle", "S1") + element("command", "-1") +
                                       element("args", "in") + element("ioflag", "-3") +
                                       element("len", "-5")));
    EXPECT_STREQ(buffer, "in");
}

TEST_F(IoControl, WritesATextThatFitsWithItsTerminator)
{
    EXPECT_EQ(output("answer", 0, 64), expected(with_nul("answer")));
    EXPECT_EQ(output("", 0, 64), expected(with_nul("")));
    EXPECT_EQ(output("answer", 0, 8), expected(with_nul("answer")));
}

TEST_F(IoControl, CutsATextOneShorterThanABoundedCopyWouldAndEndsItTwice)
{
    // "answer" of 6 in a bound of 7 - 1: five characters, the copy's terminator, and the text's own place.
    EXPECT_EQ(output("answer", 0, 7), expected(with_nul("answe") + '\0'));
}

TEST_F(IoControl, EndsATextBehindItsWholeLengthEvenIfItWasCut)
{
    std::string head = with_nul("abc") + std::string(6, kCanary) + '\0';
    EXPECT_EQ(output("abcdefghij", 0, 5), expected(head));
}

TEST_F(IoControl, WithABufferOfOneByteWritesATextsTerminatorsPlaceOnly)
{
    EXPECT_EQ(output("abc", 0, 1), expected(std::string(3, kCanary) + '\0'));
}

TEST_F(IoControl, WritesCountedBytesThatFitWithATerminator)
{
    EXPECT_EQ(output("answer", 3, 64), expected(with_nul("ans")));
    EXPECT_EQ(output("answer", 6, 64), expected(with_nul("answer")));
    EXPECT_EQ(output("answer", 6, 7), expected(with_nul("answer")));
}

TEST_F(IoControl, CutsCountedBytesThatAreAsManyAsTheBufferOrMore)
{
    EXPECT_EQ(output("answer", 6, 6), expected(with_nul("answe")));
    EXPECT_EQ(output("answer", 6, 3), expected(with_nul("an")));
    EXPECT_EQ(output("answer", 6, 1), expected(with_nul("")));
}

TEST_F(IoControl, TakesACountThatIncludesTheTerminator)
{
    EXPECT_EQ(output("answer", 7, 64), expected(with_nul("answer") + '\0'));
}

TEST_F(IoControl, BoundsACountBeyondWhatCameOrBelowNothing)
{
    EXPECT_EQ(output("answer", 1000, 64), expected(with_nul("answer") + '\0'));
    EXPECT_EQ(output("answer", 2147483647, 64), expected(with_nul("answer") + '\0'));
    EXPECT_EQ(output("answer", -1, 64), expected(with_nul("answer")));
    EXPECT_EQ(output("answer", std::numeric_limits<std::int32_t>::min(), 4), expected(with_nul("ans")));
}

TEST_F(IoControl, WritesNothingToABufferOfNoSize)
{
    for (const int len : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
        EXPECT_EQ(output("answer", 0, len), expected("")) << len;
        EXPECT_EQ(output("answer", 6, len), expected("")) << len;
    }
}

TEST_F(IoControl, WithoutAnAnswerInTheReplyWritesAnEmptyText)
{
    script("ioControlResponse");
    EXPECT_EQ(iocontrol()(&server, 1, buffer, STS_IOCTL_OUTPUT, 64), 0);
    EXPECT_EQ(std::string(buffer, sizeof buffer), expected(with_nul("")));
}

TEST_F(IoControl, ChecksTheBufferThenTheServerThenTheServiceHandle)
{
    EXPECT_EQ(iocontrol()(nullptr, 1, nullptr, 0, 0), STS_ENULLARG);
    EXPECT_EQ(iocontrol()(nullptr, 1, buffer, 0, 0), STS_EBADARG);
    server.service_handle = nullptr;
    EXPECT_EQ(iocontrol()(&server, 1, buffer, 0, 0), STS_ENOSERVICEHANDLE);
    expect_silence();
}

TEST_F(IoControl, LeavesTheBufferWhenTheServiceIsBusy)
{
    service.script(fault_answer(fault(2060005)));
    EXPECT_EQ(iocontrol()(&server, STS_START_SNAPDIFF, buffer, 2, 64), STS_EBUSY);
    EXPECT_EQ(std::string(buffer, sizeof buffer), expected(""));
}
