// Certificates made on the spot: authorities, and what they certify.
#ifndef SOAPWRAPPER_TESTS_KIT_AUTHORITY_H
#define SOAPWRAPPER_TESTS_KIT_AUTHORITY_H

#include <openssl/ssl.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kit
{

// What a service's certificate says. Without names and addresses it has its common name alone.
class Leaf
{
  public:
    explicit Leaf(std::string common_name = "scripted") : common_name_(std::move(common_name)) {}

    // A name may be a wildcard, as "*.example.com".
    Leaf& dns_name(const std::string& name) { return alternative("DNS:" + name); }
    Leaf& address(const std::string& address) { return alternative("IP:" + address); }
    // In seconds from now.
    Leaf& valid(long from, long until);
    Leaf& expired() { return valid(-7200, -3600); }
    Leaf& not_yet_valid() { return valid(3600, 7200); }
    Leaf& for_clients_only();

    const std::string& common_name() const { return common_name_; }
    long from() const { return from_; }
    long until() const { return until_; }
    // Its extensions, by their numbers, as OpenSSL's configuration writes them.
    std::vector<std::pair<int, std::string>> extensions() const;

  private:
    Leaf& alternative(const std::string& text);

    std::string common_name_;
    std::string alternatives_;
    std::string purpose_ = "serverAuth";
    long from_ = -3600;
    long until_ = 3600;
};

// A certificate and its key.
struct Identity {
    std::shared_ptr<X509> certificate;
    std::shared_ptr<EVP_PKEY> key;
    // The certificates of the authorities between this one and the root, from below.
    std::vector<std::shared_ptr<X509>> chain;

    std::string certificate_pem() const;
    // The certificate and its chain, as a service's file holds them.
    std::string chain_pem() const;
    std::string key_pem() const;
};

class Authority
{
  public:
    // Signed by itself.
    explicit Authority(const std::string& name = "authority");

    Authority intermediate(const std::string& name = "intermediate authority") const;
    Identity issue(const Leaf& leaf) const;

    X509* certificate() const { return identity_.certificate.get(); }
    std::string certificate_pem() const { return identity_.certificate_pem(); }

  private:
    Authority(const std::string& name, const Authority& issuer);
    // What is sent along with a certificate of this authority.
    std::vector<std::shared_ptr<X509>> chain_below() const;

    bool root_;
    Identity identity_;
};

// A service's certificate without an authority.
Identity self_signed(const Leaf& leaf);
// One that the key of a certificate has signed which may sign none; that one is sent along.
Identity signed_by(const Identity& service, const Leaf& leaf);

} // namespace kit

#endif
