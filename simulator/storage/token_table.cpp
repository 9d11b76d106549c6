#include "simulator/storage/token_table.h"

#include <openssl/rand.h>

#include <stdexcept>
#include <string>

namespace soapwrapper::simulator
{

std::string new_token()
{
    unsigned char bytes[16];
    if (RAND_bytes(bytes, sizeof bytes) != 1) throw std::runtime_error("no random numbers for a token");
    constexpr char kDigits[] = "0123456789abcdef";
    std::string token;
    for (const unsigned char byte : bytes) {
        token += kDigits[byte >> 4];
        token += kDigits[byte & 15];
    }
    return token;
}

} // namespace soapwrapper::simulator
