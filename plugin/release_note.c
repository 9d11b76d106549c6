/* What the library was built from: package metadata in the form that tools read from a file or from an image,
 * without a call. Data alone. */
#include <elf.h>
#include <openssl/opensslv.h>

#define OWNER "FDO"
#define PACKAGE_METADATA 0xcafe1a7eU

#define METADATA                                                                                             \
    "{\"type\":\"generic\",\"name\":\"soapwrapper\",\"version\":\"" SOAPWRAPPER_VERSION                      \
    "\",\"gsoap\":\"" SOAPWRAPPER_GSOAP_VERSION "\",\"openssl\":\"" OPENSSL_VERSION_STR "\"}"

struct release_note {
    Elf64_Nhdr head;
    char owner[sizeof OWNER];
    char metadata[sizeof METADATA]; /* padded with the record, whose alignment is a note's */
};

__attribute__((used, section(".note.package"), aligned(4))) static const struct release_note kReleaseNote = {
    {sizeof OWNER, sizeof METADATA, PACKAGE_METADATA}, OWNER, METADATA};
