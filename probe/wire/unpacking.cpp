#include "probe/wire/unpacking.h"

#include "messages/wiping.h"

#include <zconf.h>
#include <zlib.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace soapwrapper::probe::wire
{
namespace
{

constexpr int kGzipOrZlib = MAX_WBITS + 32; // told apart by what the bytes begin with
constexpr int kBareDeflate = -MAX_WBITS;

class Inflater
{
  public:
    explicit Inflater(int format) : is_ready_(inflateInit2(&stream_, format) == Z_OK) {}
    ~Inflater()
    {
        if (is_ready_) inflateEnd(&stream_);
    }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;

    Unpacked unpack(std::string_view packed, std::size_t most)
    {
        Unpacked result;
        // zlib doesn't write there.
        stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
        stream_.avail_in = static_cast<uInt>(packed.size());
        char room[16384];
        int status = is_ready_ ? Z_OK : Z_STREAM_END;
        while (status == Z_OK && result.bytes.size() < most) {
            stream_.next_out = reinterpret_cast<Bytef*>(room);
            stream_.avail_out = static_cast<uInt>(std::min(sizeof room, most - result.bytes.size()));
            const std::size_t asked = stream_.avail_out;
            status = inflate(&stream_, Z_NO_FLUSH);
            messages::append_wiping(result.bytes, {room, asked - stream_.avail_out});
        }
        result.is_whole = is_ready_ && status == Z_STREAM_END;
        return result;
    }

  private:
    z_stream stream_ = {};
    const bool is_ready_;
};

} // namespace

Unpacked unpack(std::string_view packed, std::size_t most)
{
    Unpacked result = Inflater(kGzipOrZlib).unpack(packed, most);
    return result.bytes.empty() ? Inflater(kBareDeflate).unpack(packed, most) : result;
}

} // namespace soapwrapper::probe::wire
