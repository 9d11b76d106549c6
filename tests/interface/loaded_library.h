// A library that is loaded for a while and then given back, for tests of loading itself.
#ifndef SOAPWRAPPER_TESTS_INTERFACE_LOADED_LIBRARY_H
#define SOAPWRAPPER_TESTS_INTERFACE_LOADED_LIBRARY_H

#include <dlfcn.h>

#include <cstdlib>
#include <iostream>

class LoadedLibrary
{
  public:
    LoadedLibrary(const char* path, int mode) : handle_(dlopen(path, RTLD_NOW | mode))
    {
        if (!handle_) {
            std::cerr << dlerror() << '\n';
            std::abort();
        }
    }
    ~LoadedLibrary() { dlclose(handle_); }
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;

    template <class Type>
    Type* symbol(const char* name) const
    {
        void* found = dlsym(handle_, name);
        if (!found) {
            std::cerr << "no symbol " << name << '\n';
            std::abort();
        }
        return reinterpret_cast<Type*>(found);
    }

    static bool is_loaded(const char* path)
    {
        void* handle = dlopen(path, RTLD_NOW | RTLD_NOLOAD);
        if (handle) dlclose(handle);
        return handle != nullptr;
    }

  private:
    void* handle_;
};

#endif
