// soapwrapper.conf, beside the library: optional, and read afresh at each question.
#ifndef SOAPWRAPPER_SERVICE_CONFIGURATION_H
#define SOAPWRAPPER_SERVICE_CONFIGURATION_H

#include "plugin/host/host_records.h"

#include <cstddef>
#include <cstdio>

namespace soapwrapper
{

constexpr std::size_t kSettingSize = 1024; // a line of the file, and a setting's value
constexpr std::size_t kUrlSize = 512;

// The next line of at most size - 1 characters, all white space removed; null at the end of the file.
// `destination` holds `size` bytes.
char* readline(char* destination, int size, std::FILE* file);

// Every function below logs through `session`, which may be null.

// True if the key stands in the file; then its value, in kSettingSize bytes, is in `value`.
bool get_conf_setting(const sts_session_def_v7_t* session, const char* key, char* value);

// True if the value is one of TRUE, 1, YES, FALSE, 0, NO in any case. `flag` is false unless it's one of
// the first three.
bool get_conf_setting_as_bool(const sts_session_def_v7_t* session, const char* key, bool& flag);

// True if the whole value was a number, decimal, octal or hexadecimal. `number` is what could be read.
bool get_conf_setting_as_int(const sts_session_def_v7_t* session, const char* key, int& number);

// True if the file names a URL for this server (a name without its prefix); then `url`, in kUrlSize bytes,
// holds it.
bool find_ss_name_in_conf(const sts_session_def_v7_t* session, const char* server_name, char* url);

} // namespace soapwrapper

#endif
