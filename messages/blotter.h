// Takes what is secret out of messages, ahead of anybody's look at them.
#ifndef SOAPWRAPPER_MESSAGES_BLOTTER_H
#define SOAPWRAPPER_MESSAGES_BLOTTER_H

#include "messages/known_secret.h"
#include "messages/token_names.h"

#include <string>
#include <string_view>

namespace soapwrapper::messages
{

// Any thread may call.
class Blotter
{
  public:
    // A credential of fewer than KnownSecret::kShortest bytes is blotted out only where it is expected.
    explicit Blotter(const std::string& credential) : credential_(credential) {}

    // Credentials, tokens, and the users and passwords among the texts of control commands. Of bytes that
    // aren't XML in UTF-8 or Latin-1, only how many they are. `is_cut`: the message went on.
    std::string message(std::string_view bytes, bool is_cut);
    // The credential, and what is written like a token.
    std::string text(std::string_view bytes, bool is_cut = false);

  private:
    const KnownSecret credential_;
    TokenNames tokens_;
};

} // namespace soapwrapper::messages

#endif
