// Lines on a terminal that are written over again and again.
#ifndef SOAPWRAPPER_PROBE_WATCH_SCREEN_H
#define SOAPWRAPPER_PROBE_WATCH_SCREEN_H

#include "probe/output/descriptor_stream.h"

#include <unistd.h>

#include <cstddef>
#include <string>
#include <vector>

namespace soapwrapper::probe
{

// The lines stay where they are when all is over, with the cursor below them: nothing has to be put right
// then, however the program ends.
class Screen
{
  public:
    // `wait`: until the terminal takes something, which it doesn't while its user has stopped it; behind a
    // wait in vain nothing is shown any more.
    explicit Screen(int descriptor = STDOUT_FILENO, DescriptorBuffer::Wait wait = {});

    // False: it is no terminal, or one that can't move its cursor.
    bool usable() const { return usable_; }

    // Puts `lines`, which must be clean, in the place of those that stood there. Those that are too long are
    // cut; if there are too many, the last line tells how many more there are. The terminal may be of another
    // size each time.
    void show(const std::vector<std::string>& lines);

  private:
    const int descriptor_;
    const bool usable_;
    DescriptorStream stream_;
    std::vector<std::size_t> shown_; // the columns of each line
};

} // namespace soapwrapper::probe

#endif
