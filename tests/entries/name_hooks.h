// Stands between the library and the resolution of names: this program's own getaddrinfo comes before the
// system's, as any host's would.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_NAME_HOOKS_H
#define SOAPWRAPPER_TESTS_ENTRIES_NAME_HOOKS_H

namespace hooks
{

// While one lives, every name of the domain example.com is the loopback address, and so is ::1 in all
// spellings, whether or not the machine has that.
class LoopbackNames
{
  public:
    LoopbackNames();
    ~LoopbackNames();
    LoopbackNames(const LoopbackNames&) = delete;
    LoopbackNames& operator=(const LoopbackNames&) = delete;
};

} // namespace hooks

#endif
