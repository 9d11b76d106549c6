#include "simulator/scenario/scenario_file.h"

#include "simulator/scenario/scenario_error.h"

#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

// In memory a document takes up to fifty times its length. Devices have no end at all.
constexpr std::size_t kLongest = std::size_t{16} << 20;

[[noreturn]] void refuse(const std::string& why)
{
    throw ScenarioError("can't be read: " + why);
}

class OpenFile
{
  public:
    explicit OpenFile(const std::string& path)
        : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY))
    {
    }
    ~OpenFile()
    {
        if (descriptor_ >= 0) close(descriptor_);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    int descriptor() const { return descriptor_; }

  private:
    int descriptor_;
};

} // namespace

std::string read_scenario_file(const std::string& path)
{
    const OpenFile file(path);
    if (file.descriptor() < 0) refuse(std::strerror(errno));
    return read_scenario_from(file.descriptor());
}

std::string read_scenario_from(int descriptor)
{
    std::string text;
    std::vector<char> piece(std::size_t{1} << 16);
    while (true) {
        const ssize_t length = read(descriptor, piece.data(), piece.size());
        if (length < 0 && errno == EINTR) continue;
        if (length < 0) refuse(std::strerror(errno));
        if (length == 0) break;
        text.append(piece.data(), static_cast<std::size_t>(length));
        if (text.size() > kLongest) refuse("it is longer than 16 MiB");
    }
    if (text.empty()) refuse("it is empty");
    return text;
}

} // namespace soapwrapper::simulator
