#ifndef SOAPWRAPPER_SIMULATOR_FRONT_DESCRIPTOR_H
#define SOAPWRAPPER_SIMULATOR_FRONT_DESCRIPTOR_H

#include <unistd.h>

#include <utility>

namespace soapwrapper::simulator
{

// Owns a file descriptor.
class Descriptor
{
  public:
    Descriptor() = default;
    explicit Descriptor(int fd) : fd_(fd) {}
    Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(fd_, other.fd_);
        return *this;
    }
    ~Descriptor()
    {
        if (fd_ >= 0) close(fd_);
    }

    int get() const { return fd_; }
    bool valid() const { return fd_ >= 0; }
    // From here on somebody else closes it.
    int release() { return std::exchange(fd_, -1); }

  private:
    int fd_ = -1;
};

} // namespace soapwrapper::simulator

#endif
