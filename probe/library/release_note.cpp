#include "probe/library/release_note.h"

#include "probe/output/text.h"

#include <dlfcn.h>
#include <elf.h>
#include <link.h>
#include <nlohmann/json.hpp>
#include <openssl/crypto.h>

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

namespace soapwrapper::probe
{
namespace
{

constexpr std::string_view kOwner("FDO", 4); // with its NUL
constexpr std::uint32_t kPackageMetadata = 0xcafe1a7e;
constexpr std::size_t kNoteAlignment = 4;
constexpr std::size_t kLongNoteAlignment = 8;

std::optional<ReleaseNote> parse(std::string_view metadata)
{
    metadata = metadata.substr(0, metadata.find('\0'));
    const auto document = nlohmann::json::parse(metadata, nullptr, false);
    if (!document.is_object()) return std::nullopt;
    const auto text = [&](const char* key) {
        const auto found = document.find(key);
        return found != document.end() && found->is_string() ? clean_line(found->get<std::string>())
                                                             : std::string();
    };
    return ReleaseNote{text("name"), text("version"), text("gsoap"), text("openssl")};
}

// What is taken off the front of `rest`, padding included; a size that leads past its end takes all.
std::string_view take(std::string_view& rest, std::size_t size, std::size_t alignment)
{
    const std::string_view taken = rest.substr(0, size);
    const std::size_t padded = size + (alignment - size % alignment) % alignment;
    rest.remove_prefix(padded < rest.size() ? padded : rest.size());
    return taken;
}

// A segment that a header names is there only if it lies within one that was mapped.
bool is_mapped(const dl_phdr_info& image, const ElfW(Phdr) & segment)
{
    for (std::size_t i = 0; i < image.dlpi_phnum; ++i) {
        const ElfW(Phdr)& mapped = image.dlpi_phdr[i];
        if (mapped.p_type != PT_LOAD || (mapped.p_flags & PF_R) == 0) continue;
        if (segment.p_vaddr < mapped.p_vaddr) continue;
        const std::uint64_t offset = segment.p_vaddr - mapped.p_vaddr;
        if (offset <= mapped.p_filesz && segment.p_filesz <= mapped.p_filesz - offset) return true;
    }
    return false;
}

struct Search {
    ElfW(Addr) base;
    std::optional<ReleaseNote> found;
};

int look_at_image(dl_phdr_info* image, std::size_t /*size*/, void* context)
{
    Search& search = *static_cast<Search*>(context);
    if (image->dlpi_addr != search.base) return 0;
    for (std::size_t i = 0; i < image->dlpi_phnum && !search.found; ++i) {
        const ElfW(Phdr)& segment = image->dlpi_phdr[i];
        if (segment.p_type != PT_NOTE || !is_mapped(*image, segment)) continue;
        const auto* notes = reinterpret_cast<const char*>(image->dlpi_addr + segment.p_vaddr);
        search.found = find_release_note(notes, segment.p_filesz, segment.p_align);
    }
    return 1;
}

} // namespace

std::optional<ReleaseNote> find_release_note(const char* notes, std::size_t size, std::size_t alignment)
{
    if (alignment != kLongNoteAlignment) alignment = kNoteAlignment;
    std::string_view rest(notes, size);
    while (rest.size() >= sizeof(ElfW(Nhdr))) {
        ElfW(Nhdr) head = {};
        std::memcpy(&head, rest.data(), sizeof head);
        rest.remove_prefix(sizeof head);
        const std::string_view owner = take(rest, head.n_namesz, alignment);
        const std::string_view metadata = take(rest, head.n_descsz, alignment);
        if (owner == kOwner && head.n_type == kPackageMetadata) return parse(metadata);
    }
    return std::nullopt;
}

std::optional<ReleaseNote> release_note_of(void* handle)
{
    const link_map* map = nullptr;
    if (dlinfo(handle, RTLD_DI_LINKMAP, &map) != 0 || !map) return std::nullopt;
    Search search{map->l_addr, std::nullopt};
    dl_iterate_phdr(look_at_image, &search);
    return search.found;
}

std::string tls_library_of(void* handle)
{
    using Version = const char*(int);
    // Of the libraries that the image was bound to, not of this program's own.
    auto* const version = reinterpret_cast<Version*>(dlsym(handle, "OpenSSL_version"));
    return version ? clean_line(version(OPENSSL_FULL_VERSION_STRING)) : std::string();
}

} // namespace soapwrapper::probe
