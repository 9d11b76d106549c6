#include "probe/wire/secrets.h"

#include <string_view>

namespace soapwrapper::probe::wire
{
namespace
{

Secrets* g_secrets = nullptr;

} // namespace

Secrets::Secrets()
{
    g_secrets = this;
}

Secrets::~Secrets()
{
    g_secrets = nullptr;
}

void hide(std::string_view secret)
{
    if (g_secrets) g_secrets->blotter().hide(secret);
}

} // namespace soapwrapper::probe::wire
