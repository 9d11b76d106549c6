#include "probe/library/credential.h"

#include "messages/base64.h"
#include "plugin/host/host_records.h"
#include "probe/output/problem.h"
#include "probe/output/text.h"
#include "probe/wire/secrets.h"

#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <ostream>
#include <string>
#include <string_view>

namespace soapwrapper::probe
{
namespace
{

constexpr std::size_t kRecordSize = sizeof(sts_cred_t) + Credential::kLongest + 1;
constexpr std::size_t kShortestHidden = 4;
constexpr char kHidden[] = "(credential)";

class File
{
  public:
    explicit File(const std::string& path) : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}
    ~File()
    {
        if (descriptor_ >= 0) close(descriptor_);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    bool is_open() const { return descriptor_ >= 0; }

    bool everybody_may_read() const
    {
        struct stat status = {};
        return fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode) && (status.st_mode & S_IROTH) != 0;
    }

    // Reads up to `room` bytes, fewer only at the end of the file. Negative: failed, and errno says why.
    ssize_t read_into(unsigned char* bytes, std::size_t room) const
    {
        std::size_t have = 0;
        while (have < room) {
            const ssize_t count = read(descriptor_, bytes + have, room - have);
            if (count < 0 && errno == EINTR) continue;
            if (count < 0) return count;
            if (count == 0) break;
            have += static_cast<std::size_t>(count);
        }
        return static_cast<ssize_t>(have);
    }

  private:
    int descriptor_;
};

Problem unreadable(const std::string& path)
{
    return usage_problem("the credential file cannot be read", path + ": " + std::strerror(errno));
}

void wipe_text(std::string& text)
{
    explicit_bzero(text.data(), text.size());
}

void replace_all(std::string& text, std::string_view what)
{
    for (std::size_t at = text.find(what); at != std::string::npos;
         at = text.find(what, at + std::strlen(kHidden))) {
        text.replace(at, what.size(), kHidden);
    }
}

} // namespace

Credential::Credential(int type)
    : record_(static_cast<sts_cred_t*>(::operator new (kRecordSize, std::align_val_t{alignof(sts_cred_t)})))
{
    record_->len = 0;
    record_->type = type;
}

Credential Credential::from_file(const std::string& path, int type, std::ostream& warnings)
{
    Credential credential(type);
    const File file(path);
    if (!file.is_open()) throw unreadable(path);
    ssize_t size = file.read_into(credential.bytes(), kLongest + 1);
    if (size < 0) throw unreadable(path);
    if (size > 0 && credential.bytes()[size - 1] == '\n') --size;
    if (static_cast<std::size_t>(size) > kLongest) {
        throw usage_problem("the credential file is longer than " + std::to_string(kLongest) + " bytes",
                            path);
    }
    credential.record_->len = static_cast<std::int32_t>(size);
    wire::hide(credential.text());
    if (file.everybody_may_read()) {
        warnings << "warning: everybody on this machine may read the credential file " << clean_line(path)
                 << "; chmod 600 it\n";
    }
    return credential;
}

Credential Credential::from_environment(int type, const char* variable)
{
    const char* value = std::getenv(variable);
    if (!value) {
        throw usage_problem(std::string("no credential: name a file with --credential-file or set ") +
                            variable);
    }
    Credential credential(type);
    const std::size_t size = std::strlen(value);
    if (size > kLongest) {
        throw usage_problem(std::string(variable) + " is longer than " + std::to_string(kLongest) + " bytes");
    }
    std::memcpy(credential.bytes(), value, size);
    credential.record_->len = static_cast<std::int32_t>(size);
    wire::hide(credential.text());
    forget_environment(variable);
    return credential;
}

void Credential::forget_environment(const char* variable)
{
    char* value = std::getenv(variable);
    if (!value) return;
    explicit_bzero(value, std::strlen(value));
    unsetenv(variable);
}

void Credential::wipe()
{
    if (!record_) return;
    explicit_bzero(record_, kRecordSize);
    ::operator delete (record_, std::align_val_t{alignof(sts_cred_t)});
    record_ = nullptr;
}

std::string_view Credential::text() const
{
    return {reinterpret_cast<const char*>(bytes()), static_cast<std::size_t>(record_->len)};
}

std::string Credential::hide_in(std::string_view text) const
{
    std::string hidden(text);
    if (!record_) return hidden;
    const auto size = static_cast<std::size_t>(record_->len);
    if (size < kShortestHidden) return hidden;
    std::string encoded =
        messages::base64_of({reinterpret_cast<const char*>(bytes()), size}); // no copy of it is left behind
    replace_all(hidden, encoded);
    wipe_text(encoded);
    std::string plain(reinterpret_cast<const char*>(bytes()), size);
    replace_all(hidden, plain);
    wipe_text(plain);
    return hidden;
}

} // namespace soapwrapper::probe
