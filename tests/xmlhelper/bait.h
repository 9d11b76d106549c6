// Things that a document may name and nobody may touch: a port on which something listens, and a named pipe.
#ifndef SOAPWRAPPER_TESTS_XMLHELPER_BAIT_H
#define SOAPWRAPPER_TESTS_XMLHELPER_BAIT_H

#include "tests/xmlhelper/fixtures.h"

#include <string>

namespace xmlhelper
{

class ListeningPort
{
  public:
    ListeningPort();
    ~ListeningPort();
    ListeningPort(const ListeningPort&) = delete;
    ListeningPort& operator=(const ListeningPort&) = delete;

    std::string url(const std::string& name) const;
    // Has anybody connected?
    bool was_touched() const;

  private:
    int socket_;
    int port_ = 0;
};

class NamedPipe
{
  public:
    explicit NamedPipe(const Folder& folder);
    ~NamedPipe();
    NamedPipe(const NamedPipe&) = delete;
    NamedPipe& operator=(const NamedPipe&) = delete;

    const std::string& path() const { return path_; }
    // Has anybody opened it since this was asked last?
    bool was_touched() const;

  private:
    std::string path_;
    int watch_;
    int pipe_ = -1; // keeps a reader from waiting for a writer
};

} // namespace xmlhelper

#endif
