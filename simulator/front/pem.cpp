#include "simulator/front/pem.h"

#include "simulator/front/secret_text.h"

#include <openssl/bio.h>
#include <openssl/pem.h>

#include <cstddef>
#include <new>
#include <string>
#include <string_view>

namespace soapwrapper::simulator
{
namespace
{

// The library wipes what its memory held.
template <class Write>
Bio written(const Write& write)
{
    Bio memory(BIO_new(BIO_s_mem()), BIO_free_all);
    if (!memory || write(memory.get()) != 1) throw std::bad_alloc();
    return memory;
}

std::string_view text_in(const Bio& memory)
{
    char* text = nullptr;
    const long size = BIO_get_mem_data(memory.get(), &text);
    return {text, static_cast<std::size_t>(size)};
}

} // namespace

std::string pem_of(const Certificate& certificate)
{
    const Bio memory = written([&](BIO* bio) { return PEM_write_bio_X509(bio, certificate.get()); });
    return std::string(text_in(memory));
}

SecretText pem_of(const Key& key)
{
    const Bio memory = written([&](BIO* bio) {
        return PEM_write_bio_PrivateKey(bio, key.get(), nullptr, nullptr, 0, nullptr, nullptr);
    });
    return SecretText(text_in(memory));
}

} // namespace soapwrapper::simulator
