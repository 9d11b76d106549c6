// Takes what is secret out of messages, ahead of anybody's look at them.
#ifndef SOAPWRAPPER_MESSAGES_BLOTTER_H
#define SOAPWRAPPER_MESSAGES_BLOTTER_H

#include "messages/known_secret.h"
#include "messages/token_names.h"

#include <list>
#include <string>
#include <string_view>

namespace soapwrapper::messages
{

// Any thread may call.
class Blotter
{
  public:
    // A credential of fewer than KnownSecret::kShortest bytes is blotted out only where it is expected.
    explicit Blotter(std::string_view credential) { hide(credential); }
    Blotter() = default;

    // One more to be blotted out, if it is long enough. Not while another thread calls.
    void hide(std::string_view secret) { secrets_.emplace_back(secret); }

    // Credentials, tokens, and the users and passwords among the texts of control commands. Of bytes that
    // aren't XML in UTF-8 or Latin-1, only how many they are. `is_cut`: the message went on.
    std::string message(std::string_view bytes, bool is_cut);
    // The credentials, and what is written like a token.
    std::string text(std::string_view bytes, bool is_cut = false);

  private:
    std::list<KnownSecret> secrets_;
    TokenNames tokens_;
};

} // namespace soapwrapper::messages

#endif
