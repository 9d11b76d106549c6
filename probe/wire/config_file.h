#ifndef SOAPWRAPPER_PROBE_WIRE_CONFIG_FILE_H
#define SOAPWRAPPER_PROBE_WIRE_CONFIG_FILE_H

#include <cstddef>
#include <string>

namespace soapwrapper::probe::wire
{

// A configuration for the library in a file of any name. It is read once, here; whenever the library opens
// the soapwrapper.conf that it looks for, it gets these bytes. Nothing is written anywhere. One at a time,
// and not while another thread calls the library.
class ConfigFile
{
  public:
    static constexpr std::size_t kLongest = std::size_t{1} << 20U; // bytes

    // A file that can't be read, or is too long, is a Problem.
    explicit ConfigFile(const std::string& path);
    ~ConfigFile();
    ConfigFile(const ConfigFile&) = delete;
    ConfigFile& operator=(const ConfigFile&) = delete;

    // What to tell the library about its own place: the file's folder, where relative paths begin in it.
    const std::string& plugin_path() const { return plugin_path_; }
    // Where the bytes are.
    const std::string& bytes_path() const { return bytes_path_; }

  private:
    int bytes_;
    std::string plugin_path_;
    std::string served_path_;
    std::string bytes_path_;
};

} // namespace soapwrapper::probe::wire

#endif
