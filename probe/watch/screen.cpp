#include "probe/watch/screen.h"

#include "probe/output/descriptor_stream.h"
#include "probe/output/width.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

constexpr char kToLineEnd[] = "\x1b[K";
constexpr char kToScreenEnd[] = "\x1b[J";

struct Size {
    std::size_t columns = 80;
    std::size_t rows = 24;
};

Size size_of(int descriptor)
{
    winsize size = {};
    Size known;
    if (ioctl(descriptor, TIOCGWINSZ, &size) != 0) return known;
    if (size.ws_col > 1) known.columns = size.ws_col;
    if (size.ws_row > 1) known.rows = size.ws_row;
    return known;
}

bool can_move_cursor(int descriptor)
{
    const char* const kind = std::getenv("TERM");
    return isatty(descriptor) == 1 && kind && *kind != '\0' && std::string_view(kind) != "dumb";
}

} // namespace

Screen::Screen(int descriptor, DescriptorBuffer::Wait wait)
    : descriptor_(descriptor), usable_(can_move_cursor(descriptor)), stream_(descriptor, std::move(wait))
{
}

void Screen::show(const std::vector<std::string>& lines)
{
    const Size size = size_of(descriptor_);
    // A terminal that has become narrower has broken what stood there.
    std::size_t above = 0;
    for (const std::size_t columns : shown_)
        above += columns == 0 ? 1 : (columns + size.columns - 1) / size.columns;
    std::string text = "\r";
    if (above > 0) text += "\x1b[" + std::to_string(above) + "A";

    shown_.clear();
    const std::size_t most = size.rows - 1; // the cursor stands below them
    const bool too_many = lines.size() > most;
    for (std::size_t i = 0; i < (too_many ? most : lines.size()); ++i) {
        const bool tells_rest = too_many && i + 1 == most;
        const std::string whole =
            tells_rest ? "and " + std::to_string(lines.size() - i) + " lines more" : lines[i];
        // A character in the last column makes some terminals begin a new line.
        const std::string line = cut_to_width(whole, size.columns - 1);
        text += line + kToLineEnd + "\r\n";
        shown_.push_back(display_width(line));
    }
    stream_ << text << kToScreenEnd << std::flush; // a terminal that takes no more must not end the job
}

} // namespace soapwrapper::probe
