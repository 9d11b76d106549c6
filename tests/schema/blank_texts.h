// The text between the tags of a freshly made object, per type and per request.
#ifndef SCHEMA_TEST_BLANK_TEXTS_H
#define SCHEMA_TEST_BLANK_TEXTS_H

#include <map>
#include <string>

namespace schema_test
{

const std::map<std::string, std::string>& blank_types();
const std::map<std::string, std::string>& blank_requests();

} // namespace schema_test

#endif
