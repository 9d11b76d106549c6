// A host that starts another program while a call is under way hands none of the library's descriptors to it.
#include "tests/entries/server_fixture.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <thread>

using namespace kit;

namespace
{

// The process's open descriptors.
std::vector<int> descriptors()
{
    std::vector<int> found;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        found.push_back(std::stoi(entry.path().filename()));
    }
    return found;
}

bool is_connected_to(int descriptor, int port)
{
    sockaddr_in peer = {};
    socklen_t size = sizeof peer;
    return getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &size) == 0 &&
           peer.sin_family == AF_INET && ntohs(peer.sin_port) == port;
}

bool is_closed_on_exec(int descriptor)
{
    return (fcntl(descriptor, F_GETFD) & FD_CLOEXEC) != 0;
}

class CloseOnExec : public ServerTest
{
  protected:
    void expect_of_the_socket(bool tls)
    {
        const ServerHandle server = make_server(session_, tls ? service_.tls_url() : service_.url(), tls);
        service_.script({Answer::Manner::kHold, closed().bytes});
        std::thread caller([&] {
            const auto info = std::make_unique<sts_server_info_v8_t>();
            get_server_prop()(server.get(), info.get());
        });
        service_.wait_for_requests(1);
        int sockets = 0;
        for (const int descriptor : descriptors()) {
            if (!is_connected_to(descriptor, service_.port())) continue;
            ++sockets;
            EXPECT_TRUE(is_closed_on_exec(descriptor));
        }
        EXPECT_EQ(sockets, 1);
        service_.release();
        caller.join();
    }

    // Whether somebody has the file open to read it; then whether it is closed on exec.
    static bool find_reader(const std::filesystem::path& file, bool& closed_on_exec)
    {
        for (const int descriptor : descriptors()) {
            std::error_code gone;
            const auto target =
                std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor), gone);
            const int flags = fcntl(descriptor, F_GETFL);
            if (gone || target != file || flags < 0 || (flags & O_ACCMODE) != O_RDONLY) continue;
            closed_on_exec = is_closed_on_exec(descriptor);
            return true;
        }
        return false;
    }
};

} // namespace

TEST_F(CloseOnExec, IsSetForThePlainConnectionOfACall)
{
    expect_of_the_socket(false);
}

TEST_F(CloseOnExec, IsSetForTheTlsConnectionOfACall)
{
    expect_of_the_socket(true);
}

TEST_F(CloseOnExec, IsSetForTheConfigurationFile)
{
    // The file as a pipe: its reader stays in it for as long as this test writes to it.
    const std::filesystem::path file = std::filesystem::weakly_canonical(host().configuration_file());
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    std::thread caller([&] {
        stsp_server_t* server = nullptr;
        open("Network_X:", &server);
    });
    const int writer = ::open(file.c_str(), O_WRONLY | O_CLOEXEC);
    ASSERT_GE(writer, 0);
    bool closed_on_exec = false;
    while (!find_reader(file, closed_on_exec)) std::this_thread::yield();
    EXPECT_TRUE(closed_on_exec);
    close(writer);
    caller.join();
}
