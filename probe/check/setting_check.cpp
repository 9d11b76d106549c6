#include "probe/check/setting_check.h"

#include "probe/check/certificate.h"
#include "probe/check/check_report.h"
#include "probe/check/nearest_key.h"
#include "probe/check/service_url.h"
#include "probe/library/configuration_file.h"
#include "probe/output/url_login.h"

#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

constexpr int kDaysToRenew = 30;

// What the value does, and what to do where it isn't what it should be.
struct Verdict {
    Mark mark;
    std::string meaning;
    std::string advice;
};

using Judge = Verdict (*)(const SettingLine&);

struct Setting {
    const char* key;
    Judge judge;
};

Verdict judge_require_tls(const SettingLine& setting)
{
    const std::optional<bool> required = truth_of(setting.line.value);
    if (!required)
        return {Mark::kWrong, "it is neither yes nor no", "write yes, true or 1, or no, false or 0"};
    if (!*required) return {Mark::kOk, "plain connections are made where there is no TLS", {}};
    if (!setting.file.find("tls_ca_file")) {
        return {Mark::kWarning, "no plain connection is made, but no certificate is checked either",
                "name the certificates to trust with tls_ca_file"};
    }
    return {Mark::kOk, "no plain connection is made", {}};
}

Verdict judge_min_version(const SettingLine& setting)
{
    const std::string& value = setting.line.value;
    if (value != "1.2" && value != "1.3")
        return {Mark::kWrong, "it is not a version that is known", "write 1.2 or 1.3"};
    return {Mark::kOk, "nothing older than TLS " + value + " is spoken", {}};
}

std::string listed_dates(const Authorities& authorities)
{
    const CertificateText* first = &authorities.certificates.front();
    for (const CertificateText& certificate : authorities.certificates) {
        if (certificate.days_left < first->days_left) first = &certificate;
    }
    const std::size_t count = authorities.certificates.size();
    return std::to_string(count) + (count == 1 ? " certificate, " : " certificates, ") +
           (count == 1 ? "valid until " : "the first of them valid until ") + first->until;
}

// What is good about the file, and yet will not do.
std::optional<Verdict> weakness_of(const Authorities& authorities, const SettingLine& setting)
{
    for (const CertificateText& certificate : authorities.certificates) {
        if (certificate.expired || certificate.not_yet_valid) {
            return Verdict{Mark::kWarning,
                           certificate.subject + (certificate.expired
                                                      ? " has expired on " + certificate.until
                                                      : " is valid from " + certificate.from + " on only"),
                           "replace the certificate"};
        }
        if (certificate.days_left < kDaysToRenew) {
            return Verdict{Mark::kWarning, certificate.subject + " expires on " + certificate.until,
                           "replace the certificate in time"};
        }
    }
    const auto required = setting.file.setting("require_tls");
    if (required && truth_of(*required).value_or(true)) return std::nullopt;
    return Verdict{Mark::kWarning,
                   "certificates are checked, but a service without TLS is logged in to in the clear",
                   "add require_tls = yes"};
}

Verdict judge_ca_file(const SettingLine& setting)
{
    const std::string path = without_url_logins(setting.ca_file); // it may be anything
    const Authorities& authorities = setting.authorities;
    if (!authorities.fault.empty()) {
        return {
            Mark::kWrong, path + ": " + authorities.fault,
            setting.line.value_has_gaps
                ? "move it to a path without blanks: the library drops them"
                : "name a PEM file with the certificates of the authorities to trust; a relative path begins "
                  "in the configuration's folder"};
    }
    const std::string what = path + ": " + listed_dates(authorities);
    if (auto weakness = weakness_of(authorities, setting)) {
        return {weakness->mark, what + "; " + weakness->meaning, weakness->advice};
    }
    return {Mark::kOk, what + "; services' certificates are checked", {}};
}

Verdict judge_timeout(const SettingLine& setting)
{
    const int limit = limit_of(setting.line.value);
    if (limit > 0) return {Mark::kOk, "the limit is " + std::to_string(limit) + " seconds", {}};
    if (number_of(setting.line.value) == 0 && !setting.line.value.empty())
        return {Mark::kOk, "there is no limit", {}};
    return {Mark::kWarning, "it is not a number of seconds from 1 to 2147483: there is no limit",
            "write a whole number of seconds"};
}

Verdict judge_encoding(const SettingLine& setting)
{
    if (same_key(setting.line.value, "UTF-8")) return {Mark::kOk, "texts are exchanged as UTF-8", {}};
    if (same_key(setting.line.value, "Latin-1")) return {Mark::kOk, "texts are exchanged as Latin-1", {}};
    return {Mark::kWarning, "the encoding is not known: texts are exchanged as Latin-1",
            "write UTF-8 or Latin-1"};
}

// Of a number that is read for each difference: what isn't one, or isn't the one that is written.
std::optional<Verdict> fault_of_number(const SettingLine& setting, int otherwise)
{
    const std::string& value = setting.line.value;
    const std::optional<int> number = number_of(value);
    if (!number) {
        return Verdict{Mark::kWarning,
                       "it is not a number of seconds: " + std::to_string(otherwise) + " holds",
                       "write a whole number of seconds"};
    }
    if (std::strtol(value.c_str(), nullptr, 0) != *number) {
        return Verdict{Mark::kWarning, "it is too large: " + std::to_string(*number) + " is taken",
                       "write a smaller number of seconds"};
    }
    return std::nullopt;
}

Verdict judge_interval(const SettingLine& setting)
{
    constexpr int kDefault = 30;
    if (auto fault = fault_of_number(setting, kDefault)) return *fault;
    const int seconds = *number_of(setting.line.value);
    if (seconds < 0) {
        return {Mark::kWarning, "it is below 0: " + std::to_string(kDefault) + " holds", "write 1 or more"};
    }
    if (seconds == 0) {
        return {Mark::kWarning, "a filer that stays busy is asked without a pause and without an end",
                "write 1 or more"};
    }
    return {Mark::kOk,
            "each pause at a busy filer is " + std::to_string(seconds) + " seconds longer than the last",
            {}};
}

Verdict judge_longest_wait(const SettingLine& setting)
{
    constexpr int kDefault = 120;
    if (auto fault = fault_of_number(setting, kDefault)) return *fault;
    const int seconds = *number_of(setting.line.value);
    if (seconds < 0) {
        return {Mark::kWarning, "no difference is started at a filer: its list is opened at once",
                "write 0 or more"};
    }
    if (seconds == 0) return {Mark::kOk, "a busy filer is asked once", {}};
    return {Mark::kOk, "the longest pause at a busy filer is " + std::to_string(seconds) + " seconds", {}};
}

constexpr Setting kSettings[] = {
    {"tls_ca_file", judge_ca_file},
    {"tls_min_version", judge_min_version},
    {"require_tls", judge_require_tls},
    {"connect_timeout", judge_timeout},
    {"reply_timeout", judge_timeout},
    {"text_encoding", judge_encoding},
    {"start_snapdiff_retry_interval", judge_interval},
    {"start_snapdiff_max_wait", judge_longest_wait},
};

bool is_quoted(const std::string& value)
{
    return !value.empty() && (value.front() == '"' || value.front() == '\'');
}

// What is to be done about a value that isn't good, where the way in which it is written tells.
std::string advice_on(const std::string& value, std::string otherwise)
{
    if (is_quoted(value)) return "write it without quotes: they are part of the value";
    if (value.find('#') != std::string::npos) {
        return "a comment needs a line of its own: behind a value it is part of it";
    }
    return otherwise;
}

// Somebody may have written down there what is nobody's business.
bool is_secret(const std::string& key)
{
    const std::string word = plain_letters(key);
    for (const char* sign : {"pass", "secret", "cred", "token"}) {
        if (word.find(sign) != std::string::npos) return true;
    }
    return false;
}

std::string shown(const ConfigurationLine& line)
{
    if (line.key_is_url()) return shown_key(line);
    return line.key + " = " + (is_secret(line.key) ? "(hidden)" : shown_url(line.value));
}

Verdict judge_url(const ServiceUrl& url, const ConfigurationLine& line, const ChannelRules& rules)
{
    if (!url.is_callable()) {
        return {Mark::kWrong, "the service's URL cannot be called: " + url.fault,
                advice_on(line.value, "write http:// or https://, the host, a colon and the port")};
    }
    if (line.value.size() > kLongestUrl) {
        return {Mark::kWrong, "the URL is cut after " + std::to_string(kLongestUrl) + " characters",
                "shorten it"};
    }
    const bool in_small_letters = line.value.rfind("https:", 0) == 0;
    if (!url.https || !in_small_letters) {
        if (rules.require_tls) {
            return {Mark::kWrong, "require_tls forbids a plain connection", "write https://"};
        }
        return {Mark::kWarning,
                url.https ? "the library calls it without TLS" : "the login goes in the clear",
                url.https ? "write https in small letters" : "write https:// if the service speaks TLS"};
    }
    return {Mark::kOk, "the service of " + line.key, {}};
}

} // namespace

const char* setting_named(std::string_view key)
{
    for (const Setting& setting : kSettings) {
        if (same_key(setting.key, key)) return setting.key;
    }
    return nullptr;
}

std::string subject_of(const ConfigurationLine& line)
{
    return "line " + std::to_string(line.number);
}

std::string shown_key(const ConfigurationLine& line)
{
    return line.key_is_url() ? "(a URL without a server's name ahead of it)" : line.key;
}

void check_setting(const SettingLine& setting, CheckReport& report)
{
    for (const Setting& known : kSettings) {
        if (!same_key(known.key, setting.key)) continue;
        Verdict verdict = known.judge(setting);
        if (verdict.mark != Mark::kOk) verdict.advice = advice_on(setting.line.value, verdict.advice);
        if (verdict.mark == Mark::kOk && setting.line.value_has_gaps) {
            verdict.mark = Mark::kWarning;
            verdict.meaning += "; white space within the value was dropped";
            verdict.advice = "write it without";
        }
        report.add(verdict.mark, subject_of(setting.line), shown(setting.line) + ": " + verdict.meaning,
                   verdict.advice);
    }
    if (parse_url(setting.line.value).is_callable()) {
        report.add(Mark::kWrong, subject_of(setting.line),
                   "it looks like the URL of a server, but " + std::string(setting.key) + " is a setting",
                   "give the server another name");
    }
}

void check_server(const ConfigurationLine& line, const ChannelRules& rules, CheckReport& report)
{
    if (line.key_is_url()) {
        report.add(Mark::kWrong, subject_of(line), shown(line) + ": no server is called there",
                   "write the server's name and a \"=\" ahead of it");
        return;
    }
    const ServiceUrl url = parse_url(line.value);
    std::vector<std::string> keys;
    for (const Setting& setting : kSettings) keys.emplace_back(setting.key);
    const std::string nearest = url.is_callable() ? std::string() : nearest_key(line.key, keys);
    if (line.key.empty()) {
        report.add(Mark::kWarning, subject_of(line), "nothing stands ahead of the \"=\"",
                   "write KEY = VALUE");
    } else if (!nearest.empty()) {
        report.add(Mark::kWrong, subject_of(line),
                   shown(line) + ": the library has no such setting, and takes it for the URL of a server",
                   "did you mean " + nearest + "?");
    } else {
        const Verdict verdict = judge_url(url, line, rules);
        report.add(verdict.mark, subject_of(line), shown(line) + ": " + verdict.meaning, verdict.advice);
    }
    if (line.key.find(':') != std::string::npos) {
        report.add(Mark::kWarning, subject_of(line),
                   "a server stands here under its name without the prefix and the colon",
                   "write " + line.key.substr(line.key.find(':') + 1));
    }
    if (url.is_callable() && line.value_has_gaps) {
        report.add(Mark::kWarning, subject_of(line), "white space within the URL was dropped",
                   "write it without");
    }
}

} // namespace soapwrapper::probe
