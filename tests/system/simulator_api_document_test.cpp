// The guide's requests by hand work as they stand there.
#include "tests/system/simulator_api.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <sstream>
#include <string>
#include <vector>

namespace simulator_api
{
namespace
{

constexpr char kWatching[] = "/api/changes";

// The lines that begin with "curl" in the section about the API.
std::vector<std::string> documented_requests()
{
    const std::string guide = read_file(SIMULATOR_DOCUMENT);
    const std::size_t begin = guide.find("\n## The API\n");
    std::istringstream section(guide.substr(begin, guide.find("\n## ", begin + 1) - begin));
    std::vector<std::string> requests;
    for (std::string line; std::getline(section, line);) {
        if (line.rfind("    curl ", 0) == 0) requests.push_back(line.substr(4));
    }
    return requests;
}

class SimulatorApiDocument : public testing::Test
{
  protected:
    // What runs a request, in the folder, against this simulator. It takes the shell's place.
    std::string command(std::string request) const
    {
        const std::string documented = "127.0.0.1:8085";
        const std::size_t at = request.find(documented);
        EXPECT_NE(at, std::string::npos) << request;
        if (at == std::string::npos) return "false";
        request.replace(at, documented.size(), "127.0.0.1:" + std::to_string(simulator_.http_port()));
        return "cd " + (folder_ / "").string() + " && exec curl --fail --silent --show-error" +
               request.substr(4);
    }

    // The built-in one, but for an operation that takes long enough to be cancelled.
    static std::string scenario()
    {
        json text = json::parse(run_process(SIMULATOR_PROGRAM, {"--print-scenario"}).out);
        text["operations"]["seconds"]["create"] = 86400;
        return text.dump();
    }

    TemporaryFolder folder_;
    const SimulatorProcess simulator_{{"--scenario", folder_.write("mine.json", scenario())}};
};

TEST_F(SimulatorApiDocument, EachRequestOfTheGuideSucceeds)
{
    const int port = simulator_.http_port();
    const std::string credential =
        element("cred", element("len", "9") + element("type", "1") + element("cert", "c2ltdWxhdG9y"));
    const std::string session = text_of(
        ask(port, "openServer",
            nil("sd") + element("server", "Network_NTAP:h") + credential + element("requiredInterface"))
            .body,
        "token");
    EXPECT_EQ(ask(port, "asyncCreateSnapByName",
                  server_handle(session) + element("sourceVolSpec", nfs("filer1", "/vol/home", "")) +
                      definition("targetSnapDef", "demo.1") + targets({}) + kSet)
                  .status,
              200);
    std::size_t run = 0;
    for (const std::string& request : documented_requests()) {
        if (request.find(kWatching) != std::string::npos) continue;
        const ProcessResult result = run_process("/bin/sh", {"-c", command(request)});
        EXPECT_EQ(result.exit_code, 0) << request << "\n" << result.err << result.out;
        ++run;
    }
    EXPECT_EQ(run, 19U);
}

TEST_F(SimulatorApiDocument, TheRequestThatWatchesIsToldSomething)
{
    const std::string pipe = folder_ / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string& request : documented_requests()) {
        if (request.find(kWatching) == std::string::npos) continue;
        Process watching("/bin/sh", {"-c", command(request) + " > pipe"}, {}, {});
        const int reading = open(pipe.c_str(), O_RDONLY | O_CLOEXEC);
        std::string told;
        char buffer[256];
        for (ssize_t count = 1; count > 0 && told.find("\n\n") == std::string::npos;) {
            count = read(reading, buffer, sizeof buffer);
            if (count > 0) told.append(buffer, static_cast<std::size_t>(count));
        }
        EXPECT_THAT(told, StartsWith("event: change\ndata: {\"instance\":\""));
        kill(watching.id(), SIGTERM);
        EXPECT_EQ(watching.finish().exit_code, -SIGTERM);
        close(reading);
        return;
    }
    ADD_FAILURE() << "the guide tells of none";
}

} // namespace
} // namespace simulator_api
