#include "probe/check/service_check.h"

#include "probe/check/certificate.h"
#include "probe/check/check_report.h"
#include "probe/check/configuration_check.h"
#include "probe/check/connection.h"
#include "probe/check/service_url.h"
#include "probe/check/setting_check.h"
#include "probe/check/tls_look.h"
#include "probe/library/configuration_file.h"
#include "probe/output/url_login.h"
#include "probe/wire/tap.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

constexpr long kDaysToRenew = 30;

struct Attempt {
    std::string url;
    std::string failure; // why the library won't get through; empty: it will
    std::string connection;
    std::optional<TlsLook> tls;
    bool forbidden = false;
};

std::vector<std::string> urls_of(const std::string& host, const ConfigurationFile& file)
{
    if (const auto url = file.url(host)) return {*url};
    return {"https://" + host + ":8086", "http://" + host + ":8085"};
}

std::string joined(const std::vector<std::string>& texts)
{
    std::string joined;
    for (const std::string& text : texts) joined += (joined.empty() ? "" : "; ") + text;
    return joined;
}

std::string in_milliseconds(std::chrono::microseconds time)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.1f ms", static_cast<double>(time.count()) / 1000);
    return text;
}

Attempt make_attempt(const std::string& text, const ConfigurationLook& configuration,
                     std::chrono::milliseconds time)
{
    const wire::Untapped untapped; // what is traced and recorded is the library's
    Attempt attempt;
    attempt.url = shown_url(text);
    const ServiceUrl url = parse_url(text);
    const bool encrypted = text.rfind("https:", 0) == 0; // as discovery looks at it
    attempt.forbidden = !encrypted && configuration.rules.require_tls;
    attempt.failure = attempt.forbidden ? "require_tls forbids a plain connection" : url.fault;
    if (!attempt.failure.empty()) return attempt;

    const TimeLimit limit = std::chrono::steady_clock::now() + time;
    const Connecting connecting = connect_to(url.host, url.port, limit);
    if (!connecting.socket) {
        attempt.failure = joined(connecting.failures);
        return attempt;
    }
    attempt.connection = "connected to " + connecting.address + " in " + in_milliseconds(connecting.took);
    if (!connecting.failures.empty()) attempt.connection += ", after " + joined(connecting.failures);
    if (!encrypted) return attempt;
    X509_STORE* const authorities = configuration.authorities.store.get();
    attempt.tls =
        look_at_tls(connecting.socket, url.host, {configuration.rules.oldest_tls, authorities}, limit);
    if (!attempt.tls->failure.empty()) {
        attempt.failure = "TLS fails: " + attempt.tls->failure;
    } else if (authorities && !attempt.tls->untrusted.empty()) {
        attempt.failure = "the library refuses the certificate: " + attempt.tls->untrusted;
    }
    return attempt;
}

std::string described(const CertificateText& certificate)
{
    std::string text = certificate.subject;
    if (!certificate.alternatives.empty()) text += ", for " + certificate.alternatives;
    text += certificate.signed_by_itself ? ", signed by itself" : ", signed by " + certificate.issuer;
    return text + ", valid from " + certificate.from + " to " + certificate.until;
}

void report_certificate(const char* subject, const CertificateText& certificate, CheckReport& report)
{
    const std::string text = described(certificate);
    if (certificate.expired) {
        report.add(Mark::kWarning, subject, text + ": it has expired", "give the service a new certificate");
    } else if (certificate.not_yet_valid) {
        report.add(Mark::kWarning, subject, text + ": it is not valid yet",
                   "correct the clock, of this machine or of the one that made it");
    } else if (certificate.days_left < kDaysToRenew) {
        report.add(Mark::kWarning, subject,
                   text + ": " + std::to_string(certificate.days_left) + " days are left",
                   "give the service a new certificate in time");
    } else {
        report.add(Mark::kOk, subject,
                   text + ": " + std::to_string(certificate.days_left) + " days are left");
    }
}

void report_trust(const TlsLook& tls, bool checked, CheckReport& report)
{
    if (checked) {
        if (tls.untrusted.empty()) report.add(Mark::kOk, "trust", "tls_ca_file vouches for the certificate");
        return; // else the attempt has failed
    }
    const std::string judgement = tls.untrusted.empty() ? "would pass" : "would fail: " + tls.untrusted;
    report.add(Mark::kInfo, "trust",
               "the library does not check the certificate: tls_ca_file is not set; a check by this system's "
               "authorities " +
                   judgement);
}

void report_tls(const TlsLook& tls, bool checked, CheckReport& report)
{
    if (!tls.failure.empty()) return;
    const std::string text = tls.version + ", " + tls.cipher;
    const bool old = tls.version != "TLSv1.2" && tls.version != "TLSv1.3";
    report.add(old ? Mark::kWarning : Mark::kOk, "TLS", text,
               old ? "have the service speak TLS 1.2 or 1.3" : "");
    for (std::size_t i = 0; i < tls.chain.size(); ++i) {
        report_certificate(i == 0 ? "certificate" : "sent along", tls.chain[i], report);
    }
    report_trust(tls, checked, report);
}

std::string advice_on(const Attempt& attempt)
{
    if (!attempt.tls)
        return "look whether the name is right, the service runs, and a firewall lets this machine through";
    if (!attempt.tls->failure.empty()) return "look whether the service speaks TLS there, and which versions";
    return "look whether it is the service; if so, correct tls_ca_file or the certificate";
}

// One attempt that gets through is enough; that others don't is worse if it costs the encryption.
Mark mark_of_failure(const Attempt& attempt, const std::vector<Attempt>& attempts)
{
    const auto gets_through = [](const Attempt& other) { return other.failure.empty(); };
    if (std::none_of(attempts.begin(), attempts.end(), gets_through)) {
        return attempt.forbidden && attempts.size() > 1 ? Mark::kInfo : Mark::kWrong;
    }
    return attempt.url.rfind("https:", 0) == 0 ? Mark::kWarning : Mark::kInfo;
}

void report_attempt(const Attempt& attempt, const std::vector<Attempt>& attempts, bool checked,
                    CheckReport& report)
{
    if (!attempt.connection.empty())
        report.add(Mark::kOk, "connection", attempt.url + ": " + attempt.connection);
    if (attempt.tls) report_tls(*attempt.tls, checked, report);
    if (attempt.failure.empty()) return;
    const Mark mark = mark_of_failure(attempt, attempts);
    std::string advice;
    if (mark == Mark::kWrong)
        advice = attempt.forbidden ? "write https:// into soapwrapper.conf" : advice_on(attempt);
    if (mark == Mark::kWarning)
        advice = "without TLS the login goes in the clear: mend it, or set require_tls = yes";
    report.add(mark, attempt.tls ? "TLS" : "connection", attempt.url + ": " + attempt.failure, advice);
}

} // namespace

void check_attempts(const std::string& host, const ConfigurationLook& configuration, CheckReport& report,
                    std::chrono::milliseconds limit)
{
    if (const char* const setting = setting_named(host)) {
        report.add(Mark::kWrong, "name",
                   std::string("the server has the name of the setting ") + setting +
                       ", and its line would be both",
                   "give the server another name");
    }
    std::vector<Attempt> attempts;
    for (const std::string& url : urls_of(host, configuration.file)) {
        attempts.push_back(make_attempt(url, configuration, limit));
    }
    const bool checked = configuration.authorities.store != nullptr;
    for (const Attempt& attempt : attempts) report_attempt(attempt, attempts, checked, report);
}

} // namespace soapwrapper::probe
