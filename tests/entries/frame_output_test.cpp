// A library in somebody else's process has no business on its standard streams.
#include "tests/entries/server_fixture.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iterator>

using namespace kit;

namespace
{

// Standard output and standard error as one file, while the object lives.
class CapturedStreams
{
  public:
    explicit CapturedStreams(const std::filesystem::path& file) : file_(file)
    {
        std::fflush(nullptr);
        const int target = open(file.c_str(), O_CREAT | O_WRONLY | O_APPEND | O_CLOEXEC, 0600);
        for (int stream : {STDOUT_FILENO, STDERR_FILENO}) {
            kept_.push_back(dup(stream));
            dup2(target, stream);
        }
        close(target);
    }
    ~CapturedStreams() { restore(); }
    CapturedStreams(const CapturedStreams&) = delete;
    CapturedStreams& operator=(const CapturedStreams&) = delete;

    std::string text()
    {
        restore();
        std::ifstream in(file_);
        return {std::istreambuf_iterator<char>(in), {}};
    }

  private:
    void restore()
    {
        if (kept_.empty()) return;
        std::fflush(nullptr);
        dup2(kept_[0], STDOUT_FILENO);
        dup2(kept_[1], STDERR_FILENO);
        for (const int stream : kept_) close(stream);
        kept_.clear();
    }

    std::filesystem::path file_;
    std::vector<int> kept_;
};

class StandardStreams : public ServerTest
{
  protected:
    void open_and_close(const std::vector<Answer>& answers)
    {
        service_.script(answers);
        stsp_server_t* server = nullptr;
        if (open("Network_X:host", &server) == 0 && server) close_server()(server);
    }

    TemporaryFolder folder_;
};

} // namespace

TEST_F(StandardStreams, TakeWhatIsWrittenToThemInThisTest)
{
    CapturedStreams streams(folder_.path() / "captured");
    std::printf("to the one, ");
    std::fflush(stdout);
    std::fprintf(stderr, "to the other");
    EXPECT_EQ(streams.text(), "to the one, to the other");
}

TEST_F(StandardStreams, AreLeftAloneByCallsThatSucceedAndFail)
{
    CapturedStreams streams(folder_.path() / "captured");
    host().write_configuration("host=" + service_.url() + "\n");
    open_and_close({opened(), closed()});
    open_and_close({fault_answer(fault(5))});
    open_and_close({fault_answer(fault_with_detail("<x/>", "SOAP-ENV:Server"))});
    open_and_close({answer("this is no XML")});
    open_and_close({{Answer::Manner::kReply, "this is no HTTP"}});
    open_and_close({{Answer::Manner::kCloseAtOnce, ""}});
    host().write_configuration("host=" + service_.tls_url() + "\n");
    auto info = std::make_unique<sts_server_info_v8_t>();
    service_.script({Answer::Manner::kRefuseHandshake, ""});
    get_server_prop_byname()(session_.get(), "Network_X:host", info.get());
    service_.script(discovered({"x", "12;0;0;http;u"}));
    get_server_prop_byname()(session_.get(), "Network_X:host", info.get());
    EXPECT_EQ(streams.text(), "");
    EXPECT_GT(session_.lines().size(), 40U) << "the calls were made";
}
