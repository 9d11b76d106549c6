#ifndef SOAPWRAPPER_MESSAGES_SECRET_FIELDS_H
#define SOAPWRAPPER_MESSAGES_SECRET_FIELDS_H

#include <string_view>

namespace soapwrapper::messages
{

// Of the fields of an HTTP head, those by whose names something secret is to be expected; the referrer holds
// a query.
bool is_secret_field(std::string_view name);

} // namespace soapwrapper::messages

#endif
