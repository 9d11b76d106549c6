// The secret that a login needs. It comes from a file or from the environment, never from the command line,
// where every user of the machine could read it.
#ifndef SOAPWRAPPER_PROBE_LIBRARY_CREDENTIAL_H
#define SOAPWRAPPER_PROBE_LIBRARY_CREDENTIAL_H

#include "plugin/host/host_records.h"

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>

namespace soapwrapper::probe
{

inline constexpr char kCredentialVariable[] = "SOAPWRAPPER_CREDENTIAL";

class Credential
{
  public:
    static constexpr std::size_t kLongest = 65536; // bytes

    // The bytes of the file, without the line feed at its end. Says so on `warnings` if everybody may read
    // it. A file that can't be read, or is too long, is a Problem.
    static Credential from_file(const std::string& path, int type, std::ostream& warnings);

    // The value of the variable, which is wiped and taken out of the environment. A variable that
    // isn't set is a Problem.
    static Credential from_environment(int type, const char* variable = kCredentialVariable);

    // Wipes the variable, should it be set.
    static void forget_environment(const char* variable = kCredentialVariable);

    Credential(Credential&& other) noexcept : record_(other.record_) { other.record_ = nullptr; }
    Credential& operator=(Credential&&) = delete;
    ~Credential() { wipe(); }

    const sts_cred_t* record() const { return record_; }

    // Overwrites the bytes and gives them back; from then on there is nothing to send or to hide.
    void wipe();

    // `text` with the credential hidden, as it is and as it travels: a service may well quote what it
    // refuses. Credentials of less than four bytes aren't looked for, they are found in any text.
    std::string hide_in(std::string_view text) const;

  private:
    explicit Credential(int type);
    unsigned char* bytes() const { return record_->cert; }
    std::string_view text() const;

    sts_cred_t* record_; // kLongest bytes of room and one more
};

} // namespace soapwrapper::probe

#endif
