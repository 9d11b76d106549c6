// What a host may have in the place of its standard descriptors, and what a call must leave as it was.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_STANDARD_DESCRIPTORS_H
#define SOAPWRAPPER_TESTS_ENTRIES_STANDARD_DESCRIPTORS_H

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <stdexcept>
#include <string_view>

// While it lives, descriptor 0 is a pipe with a text in it and a writer that stays, 1 a pipe with the reader
// gone, 2 a pipe with a reader: reading 0 to its end would never end, and writing to 1 raises SIGPIPE.
class StandardDescriptors
{
  public:
    explicit StandardDescriptors(std::string_view input)
    {
        std::fflush(nullptr);
        make_pipe(input_);
        make_pipe(output_);
        make_pipe(errors_);
        if (write(input_[1], input.data(), input.size()) < 0) throw std::runtime_error("no pipe");
        replace(0, input_[0]);
        replace(1, output_[1]);
        replace(2, errors_[1]);
        close(output_[0]);
        seen() = 0;
        struct sigaction count = {};
        count.sa_handler = [](int) { seen() = 1; };
        sigaction(SIGPIPE, &count, &old_action_);
    }

    ~StandardDescriptors()
    {
        sigaction(SIGPIPE, &old_action_, nullptr);
        for (int i = 0; i < 3; ++i) {
            dup2(kept_[static_cast<std::size_t>(i)], i);
            close(kept_[static_cast<std::size_t>(i)]);
        }
        for (const int end : {input_[0], input_[1], output_[1], errors_[0], errors_[1]}) close(end);
    }
    StandardDescriptors(const StandardDescriptors&) = delete;
    StandardDescriptors& operator=(const StandardDescriptors&) = delete;

    // Bytes that are there to be read.
    int left_in_input() const { return readable(input_[0]); }
    int written_to_errors() const { return readable(errors_[0]); }
    static bool raised_sigpipe() { return seen() != 0; }

  private:
    using Pipe = std::array<int, 2>;

    static volatile std::sig_atomic_t& seen()
    {
        static volatile std::sig_atomic_t flag = 0;
        return flag;
    }
    static void make_pipe(Pipe& ends)
    {
        if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    }
    static int readable(int descriptor)
    {
        int count = -1;
        ioctl(descriptor, FIONREAD, &count);
        return count;
    }
    void replace(int standard, int with)
    {
        kept_[static_cast<std::size_t>(standard)] = fcntl(standard, F_DUPFD_CLOEXEC, 3);
        dup2(with, standard);
    }

    Pipe input_{};
    Pipe output_{};
    Pipe errors_{};
    std::array<int, 3> kept_{};
    struct sigaction old_action_ = {};
};

#endif
