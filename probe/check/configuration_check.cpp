#include "probe/check/configuration_check.h"

#include "probe/check/certificate.h"
#include "probe/check/check_report.h"
#include "probe/check/regular_file.h"
#include "probe/check/setting_check.h"
#include "probe/library/configuration_file.h"
#include "probe/library/plugin_library.h"

#include <sys/types.h>

#include <array>
#include <cstdio>
#include <optional>
#include <string>

namespace soapwrapper::probe
{
namespace
{

constexpr off_t kLargestFile = 1 << 20;

const char* advice_on(RegularFile::Kind kind)
{
    switch (kind) {
    case RegularFile::Kind::kIrregular:
        return "put a regular file there, or nothing";
    case RegularFile::Kind::kTooLarge:
        return "shorten it: the check reads no more than 1 MiB";
    default:
        return "let the backup product's user read it: one that cannot be read counts as none";
    }
}

// The bytes of the file; none are what the library has, too, where it can't read it.
std::string read_configuration(const ReplacedConfiguration& place, CheckReport& report)
{
    const std::string& path = place.name;
    const RegularFile file = open_regular(place.bytes, kLargestFile);
    if (file.kind == RegularFile::Kind::kMissing) {
        report.add(Mark::kInfo, "file", path + ": there is none, and none is needed");
        return {};
    }
    if (!file.stream) {
        report.add(Mark::kWrong, "file", path + ": " + file.fault, advice_on(file.kind));
        return {};
    }
    report.add(Mark::kOk, "file", path);
    if (file.writable_by_all) {
        report.add(Mark::kWarning, "file", "everybody on this machine may change it, and so where logins go",
                   "chmod o-w it");
    }
    std::string bytes;
    std::array<char, BUFSIZ> block{};
    for (std::size_t count = 1; count > 0 && bytes.size() <= static_cast<std::size_t>(kLargestFile);) {
        count = std::fread(block.data(), 1, block.size(), file.stream.get());
        bytes.append(block.data(), count);
    }
    return bytes;
}

void check_shape(const ConfigurationLine& line, CheckReport& report)
{
    const std::string subject = subject_of(line);
    if (line.goes_on) {
        report.add(Mark::kWarning, subject,
                   "it is longer than " + std::to_string(kLongestLine) +
                       " characters: the library takes the rest for a line of its own",
                   "shorten it");
    }
    if (line.has_nul) {
        report.add(Mark::kWarning, subject, "it holds a NUL, behind which the library does not read",
                   "write the line again");
    }
    if (line.kind == ConfigurationLine::Kind::kNoEquals) {
        report.add(Mark::kWarning, subject, "without a \"=\" it means nothing: the library skips it",
                   "write KEY = VALUE, or a # ahead of a comment");
    }
}

void check_line(const ConfigurationLine& line, const ConfigurationLook& look, const std::string& ca_file,
                CheckReport& report)
{
    check_shape(line, report);
    if (line.kind != ConfigurationLine::Kind::kSetting) return;
    const ConfigurationLine* const first = look.file.find(line.key);
    if (first != &line) {
        report.add(Mark::kWarning, subject_of(line),
                   shown_key(line) + " comes again: " + subject_of(*first) +
                       " counts, and this one means nothing",
                   "take one of them out");
    } else if (const char* const key = setting_named(line.key)) {
        check_setting({key, line, look.file, ca_file, look.authorities}, report);
    } else {
        check_server(line, look.rules, report);
    }
}

} // namespace

ConfigurationLook check_configuration(const std::string& told_path,
                                      const std::optional<ReplacedConfiguration>& replaced,
                                      CheckReport& report)
{
    ConfigurationLook look;
    const std::string own = configuration_path(told_path);
    look.file =
        ConfigurationFile(read_configuration(replaced.value_or(ReplacedConfiguration{own, own}), report));
    std::string ca_file;
    if (const auto value = look.file.setting("tls_ca_file")) {
        ca_file = ca_path(*value, told_path);
        look.authorities = read_authorities_file(ca_file);
    }
    look.rules = channel_rules(look.file, look.authorities.fault.empty());
    for (const ConfigurationLine& line : look.file.lines()) check_line(line, look, ca_file, report);
    if (look.rules.unusable) {
        report.add(Mark::kWrong, "channel",
                   std::string(look.rules.unusable) +
                       " cannot be followed: the library sends nothing to any service",
                   "correct the line, and restart the backup product's processes");
    }
    return look;
}

} // namespace soapwrapper::probe
