// The host's side: loads the built library by its path and reaches the entries through the table slots.
#ifndef SOAPWRAPPER_TESTS_KIT_HOST_H
#define SOAPWRAPPER_TESTS_KIT_HOST_H

#include "plugin/host/entry_points.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kit
{

// A folder of its own, gone with the object.
class TemporaryFolder
{
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

// The library, loaded once for the whole test program, and both of its handshakes.
class Host
{
  public:
    static Host& instance();

    // An exported symbol; the test program ends if there is none.
    template <class Type>
    Type* symbol(const char* name)
    {
        return reinterpret_cast<Type*>(find(name));
    }

    // The entry in a slot of the table that stspi_init or stspi_init3 handed out.
    template <class Entry>
    Entry* main_slot(std::size_t number)
    {
        return reinterpret_cast<Entry*>(definition_.entry_points[number]);
    }
    template <class Entry>
    Entry* snapshot_slot(std::size_t number)
    {
        return reinterpret_cast<Entry*>(definition3_.entry_points[number]);
    }

    const stspi_plugin_def_t& definition() const { return definition_; }

    // The configuration file that the library reads; absent until written.
    std::filesystem::path configuration_file() const { return folder_.path() / "soapwrapper.conf"; }
    void write_configuration(std::string_view text);
    void remove_configuration();
    // The first handshake once more, with which the library reads the file's settings of the channel.
    void initialise();

  private:
    Host();
    void* find(const char* name);

    void* library_;
    TemporaryFolder folder_;
    stspi_plugin_def_t definition_{};
    stspi_plugin_def3_t definition3_{};
};

// A credential record with its bytes behind it.
class Credential
{
  public:
    explicit Credential(std::string_view bytes, std::int32_t type = 1)
        : storage_(sizeof(sts_cred_t) / sizeof(std::int32_t) + bytes.size() / sizeof(std::int32_t) + 1)
    {
        storage_[0] = static_cast<std::int32_t>(bytes.size());
        storage_[1] = type;
        std::memcpy(storage_.data() + 2, bytes.data(), bytes.size());
    }

    const sts_cred_t* get() const { return reinterpret_cast<const sts_cred_t*>(storage_.data()); }

  private:
    std::vector<std::int32_t> storage_;
};

// The entries of the server sessions, by their slots.
inline auto get_server_prop_byname()
{
    return Host::instance().main_slot<decltype(stspi_get_server_prop_byname)>(22);
}
inline auto open_server()
{
    return Host::instance().main_slot<decltype(stspi_open_server)>(29);
}
inline auto open_target_server()
{
    return Host::instance().main_slot<decltype(stspi_open_target_server)>(30);
}
inline auto close_server()
{
    return Host::instance().main_slot<decltype(stspi_close_server)>(9);
}
inline auto get_server_prop()
{
    return Host::instance().main_slot<decltype(stspi_get_server_prop)>(21);
}

} // namespace kit

#endif
