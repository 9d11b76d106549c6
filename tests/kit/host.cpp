#include "tests/kit/host.h"

#include <dlfcn.h>

#include <cstdlib>
#include <fstream>
#include <iostream>

namespace kit
{

TemporaryFolder::TemporaryFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "soapwrapper-test-XXXXXX").string();
    if (!mkdtemp(name.data())) std::abort();
    path_ = name;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

Host& Host::instance()
{
    static Host host;
    return host;
}

Host::Host() : library_(dlopen(SOAPWRAPPER_LIBRARY, RTLD_NOW | RTLD_LOCAL))
{
    if (!library_) {
        std::cerr << "can't load " << SOAPWRAPPER_LIBRARY << ": " << dlerror() << '\n';
        std::abort();
    }
    initialise();
    if (symbol<decltype(stspi_init3)>("stspi_init3")(11, &definition3_) != STS_EOK) {
        std::cerr << "the library refuses the second handshake\n";
        std::abort();
    }
}

void Host::initialise()
{
    const std::string path = (folder_.path() / "libsoapwrapper.so").string();
    if (symbol<decltype(stspi_init)>("stspi_init")(11, path.c_str(), &definition_) != STS_EOK) {
        std::cerr << "the library refuses the handshake\n";
        std::abort();
    }
}

void* Host::find(const char* name)
{
    void* found = dlsym(library_, name);
    if (!found) {
        std::cerr << "no symbol " << name << '\n';
        std::abort();
    }
    return found;
}

void Host::write_configuration(std::string_view text)
{
    std::ofstream(configuration_file(), std::ios::binary | std::ios::trunc) << text;
}

void Host::remove_configuration()
{
    std::error_code ignored;
    std::filesystem::remove_all(configuration_file(), ignored);
}

} // namespace kit
