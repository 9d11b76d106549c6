#include <new>

// The static SOAP runtime refers to std::nothrow by a direct address, which a shared library can only
// satisfy from within itself. The object carries no state, so a hidden twin serves.
namespace std
{
__attribute__((visibility("hidden"))) extern const nothrow_t kNothrow __asm__("_ZSt7nothrow");
const nothrow_t kNothrow{};
} // namespace std
