#ifndef SOAPWRAPPER_PROBE_OUTPUT_DESCRIPTOR_H
#define SOAPWRAPPER_PROBE_OUTPUT_DESCRIPTOR_H

#include <unistd.h>

namespace soapwrapper::probe
{

// A file descriptor that is closed with its owner; below 0: there is none.
class Descriptor
{
  public:
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    ~Descriptor()
    {
        if (descriptor_ >= 0) close(descriptor_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return descriptor_; }

  private:
    const int descriptor_;
};

} // namespace soapwrapper::probe

#endif
