#include "probe/output/descriptor_stream.h"

#include "probe/output/progress_line.h"

#include <linux/limits.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <limits>
#include <optional>
#include <utility>

namespace soapwrapper::probe
{
namespace
{

// A pipe that has room takes as much as this without waiting.
std::size_t most_at_once(int descriptor)
{
    struct stat status = {};
    const bool is_file = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    return is_file ? std::numeric_limits<std::size_t>::max() : PIPE_BUF;
}

bool wait_for_ever(int descriptor)
{
    pollfd watched = {descriptor, POLLOUT, 0};
    return poll(&watched, 1, -1) >= 0 || errno == EINTR;
}

} // namespace

DescriptorBuffer::DescriptorBuffer(int descriptor, Wait wait, ProgressLine* line)
    : descriptor_(descriptor), wait_(wait ? std::move(wait) : wait_for_ever), line_(line),
      most_at_once_(most_at_once(descriptor))
{
    setp(bytes_.data(), bytes_.data() + bytes_.size());
}

DescriptorBuffer::int_type DescriptorBuffer::overflow(int_type character)
{
    if (!write_all()) return traits_type::eof();
    if (!traits_type::eq_int_type(character, traits_type::eof())) {
        *pptr() = traits_type::to_char_type(character);
        pbump(1);
    }
    return traits_type::not_eof(character);
}

int DescriptorBuffer::sync()
{
    return write_all() ? 0 : -1;
}

bool DescriptorBuffer::write_all()
{
    const char* next = pbase();
    while (error_ == 0 && next < pptr()) {
        if (!wait_(descriptor_)) {
            error_ = ETIMEDOUT;
        } else {
            const std::ptrdiff_t written = write_some(next, static_cast<std::size_t>(pptr() - next));
            if (written >= 0) {
                next += written;
            } else if (errno != EINTR && errno != EAGAIN) {
                error_ = errno;
            }
        }
    }
    setp(bytes_.data(), bytes_.data() + bytes_.size());
    return error_ == 0;
}

std::ptrdiff_t DescriptorBuffer::write_some(const char* bytes, std::size_t count)
{
    std::optional<ProgressLine::Room> room;
    if (line_) room.emplace(*line_);
    const ssize_t written = write(descriptor_, bytes, std::min(count, most_at_once_));
    if (written <= 0) return written;
    used_ = true;
    if (room) room->written(bytes, static_cast<std::size_t>(written));
    return written;
}

} // namespace soapwrapper::probe
