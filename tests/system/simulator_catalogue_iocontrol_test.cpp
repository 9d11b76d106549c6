#include "tests/system/simulator_catalogue.h"

namespace
{

using namespace simulator_catalogue;

std::string command(const std::string& token, int number, const std::string& args, int ioflag, int len)
{
    return server_handle(token) + element("command", std::to_string(number)) + element("args", args) +
           element("ioflag", std::to_string(ioflag)) + element("len", std::to_string(len));
}

std::string answer(const std::string& args, const std::string& len)
{
    const std::string text = args.empty() ? "<ns1:args/>" : element("args", args);
    return element("ioControlResponse", text + element("len", len));
}

class SimulatorCommands : public Client
{
  protected:
    HttpReply control(int number, const std::string& args, int ioflag = 3, int len = 4096) const
    {
        return ask("ioControl", command(server_, number, args, ioflag, len));
    }

    const std::string server_ = open_server("Network_VAULT:filer");
};

TEST_F(SimulatorCommands, TheEchoesAnswerAsPlainTextAndAsCountedBytes)
{
    EXPECT_EQ(control(1, "a &lt; b").body, answer("a &lt; b", "0"));
    EXPECT_EQ(control(2, "a &lt; b").body, answer("a &lt; b", "5"));
    EXPECT_EQ(control(1, "", 2, 0).body, answer("", "0"));
}

TEST_F(SimulatorCommands, WithoutTheOutputBitNothingIsAnswered)
{
    EXPECT_EQ(control(1, "text", 1).body, answer("", "0"));
    EXPECT_EQ(control(2, "text", 0).body, answer("", "0"));
}

TEST_F(SimulatorCommands, AnAnswerThatTheBufferCannotHoldIsRefused)
{
    EXPECT_EQ(control(1, "text", 3, 5).status, 200);
    EXPECT_EQ(fault_code(control(1, "text", 3, 4)), kBadValue);
    EXPECT_EQ(fault_code(control(2, "text", 3, -1)), kBadValue);
    EXPECT_EQ(fault_code(control(10104, "vault.0105", 3, 20)), kBadValue);
}

TEST_F(SimulatorCommands, TheStartAndTheStopOfAListingAreAcceptedWithAVolume)
{
    for (const int number : {10102, 10103}) {
        EXPECT_EQ(control(number, "vault1;/vol/vault_home", 1, 2049).body, answer("", "0"));
        EXPECT_EQ(fault_code(control(number, "", 1, 2049)), kBadValue);
    }
}

TEST_F(SimulatorCommands, ThePathMapIsTheSnapshotsAsACountedDocument)
{
    const HttpReply reply = control(10104, "vault.0105");
    const std::string escaped = text_of(reply.body, "args");
    EXPECT_THAT(escaped, HasSubstr("&lt;path_map&gt;&lt;prefix&gt;/vol/vault_home&lt;/prefix&gt;"
                                   "&lt;original_path&gt;/vol/home/qtree1&lt;/original_path&gt;"
                                   "&lt;target_path&gt;/qtree1_copy&lt;/target_path&gt;&lt;/path_map&gt;"));
    EXPECT_GT(std::stoi(text_of(reply.body, "len")), 200);
    EXPECT_EQ(fault_code(control(10104, "nope")), kUnknownSnapshot);
}

TEST_F(SimulatorCommands, AnUnknownCommandAndAClosedServerAreRefused)
{
    for (const int number : {0, 3, -1, 10101, 10105}) {
        EXPECT_EQ(fault_code(control(number, "text")), kUnknownCommand) << number;
    }
    EXPECT_EQ(fault("ioControl", command("nope", 1, "text", 3, 10)), kBadHandle);
}

class SimulatorThatIsBusy : public Client
{
  protected:
    SimulatorThatIsBusy() : Client({"--fault", "ioControl=2060005,2"}) {}
};

TEST_F(SimulatorThatIsBusy, ACommandIsServedAfterTheFaultsThatWereAskedFor)
{
    const std::string request = command(open_server(), 1, "text", 3, 10);
    EXPECT_EQ(fault("ioControl", request), 2060005);
    EXPECT_EQ(fault("ioControl", request), 2060005);
    EXPECT_EQ(ask("ioControl", request).status, 200);
}

} // namespace
