// For programs that unload libraries. AddressSanitizer keeps a list of the thread-local storage of libraries,
// and its search for leaks reads through it what is no longer there.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options();

const char* __asan_default_options()
{
    return "intercept_tls_get_addr=0";
}
