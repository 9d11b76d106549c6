// Which services are spoken to where tls_ca_file names the authorities.
#include "tests/entries/checked_channel_fixture.h"
#include "tests/entries/name_hooks.h"

#include <functional>

using namespace kit;
using testing::IsEmpty;

namespace
{

class Certificates : public CheckedChannel
{
  protected:
    Certificates() { trust(authority_.certificate_pem()); }

    const hooks::LoopbackNames names_;
};

// A service that isn't the one of the URL, or can't show that it is.
struct Impostor {
    const char* what;
    const char* reason;
    std::function<TlsContext(const Authority&)> context;
    const char* name = "127.0.0.1"; // in the URL
};

void PrintTo(const Impostor& impostor, std::ostream* out)
{
    *out << impostor.what;
}

Impostor impostor(const char* what, const char* reason, std::function<Identity(const Authority&)> identity,
                  const char* name = "127.0.0.1")
{
    const auto context = [identity = std::move(identity)](const Authority& authority) {
        return make_tls_server_context(identity(authority));
    };
    return {what, reason, context, name};
}

Impostor of_a_leaf(const char* what, const char* reason, const Leaf& leaf, const char* name = "127.0.0.1")
{
    return impostor(
        what, reason, [leaf](const Authority& authority) { return authority.issue(leaf); }, name);
}

Leaf for_name(const char* name)
{
    return Leaf().dns_name(name);
}

Identity without_chain(Identity identity)
{
    identity.chain.clear();
    return identity;
}

TlsContext without_certificate(const Authority& /*authority*/)
{
    TlsContext context(SSL_CTX_new(TLS_server_method()));
    SSL_CTX_set_cipher_list(context.get(), "aNULL@SECLEVEL=0");
    SSL_CTX_set_dh_auto(context.get(), 1);
    return up_to_tls12(std::move(context));
}

constexpr char kNoIssuer[] = "unable to get local issuer certificate";
constexpr char kNoAuthority[] = "invalid CA certificate";
constexpr char kWrongName[] = "hostname mismatch";
constexpr char kWrongAddress[] = "IP address mismatch";

std::vector<Impostor> with_a_certificate()
{
    return {
        impostor("another authority", kNoIssuer,
                 [](const Authority&) { return Authority("another").issue(for_address()); }),
        impostor("another authority of the same name", kNoIssuer,
                 [](const Authority&) { return Authority().issue(for_address()); }),
        impostor("signed by itself", "self-signed certificate",
                 [](const Authority&) { return self_signed(for_address()); }),
        impostor("a chain that another authority has signed", kNoIssuer,
                 [](const Authority&) { return Authority("another").intermediate().issue(for_address()); }),
        impostor("a chain without its intermediate authority", kNoIssuer,
                 [](const Authority& authority) {
                     return without_chain(authority.intermediate().issue(for_address()));
                 }),
        impostor("signed by another service", kNoAuthority,
                 [](const Authority& authority) {
                     return signed_by(authority.issue(Leaf("another service")), for_address());
                 }),
        of_a_leaf("expired", "certificate has expired", for_address().expired()),
        of_a_leaf("not yet valid", "certificate is not yet valid", for_address().not_yet_valid()),
        of_a_leaf("for clients only", "certificate purpose", for_address().for_clients_only()),
        of_a_leaf("another address", kWrongAddress, Leaf().address("127.0.0.2")),
        of_a_leaf("an address of the other family", kWrongAddress, Leaf().address("::1")),
        of_a_leaf("a name, where the URL has an address", kWrongAddress, for_name("localhost")),
        of_a_leaf("the address as a name", kWrongAddress, for_name("127.0.0.1")),
        of_a_leaf("the address as common name", kWrongAddress, Leaf("127.0.0.1")),
        of_a_leaf("another name", kWrongName, for_name("b.example.com"), "a.example.com"),
        of_a_leaf("another common name", kWrongName, Leaf("b.example.com"), "a.example.com"),
        of_a_leaf("the common name beside another name", kWrongName,
                  Leaf("a.example.com").dns_name("b.example.com"), "a.example.com"),
        of_a_leaf("an address, where the URL has a name", kWrongName, for_address(), "a.example.com"),
        of_a_leaf("a longer name", kWrongName, for_name("x.a.example.com"), "a.example.com"),
        of_a_leaf("the domain of the name", kWrongName, for_name("example.com"), "a.example.com"),
        of_a_leaf("a wildcard that stands for two labels", kWrongName, for_name("*.example.com"),
                  "a.b.example.com"),
        of_a_leaf("a wildcard that stands for no label", kWrongName, for_name("*.example.com"),
                  "example.com"),
        of_a_leaf("a wildcard for a part of a label", kWrongName, for_name("fi*.example.com"),
                  "filer.example.com"),
        of_a_leaf("a wildcard that isn't the first label", kWrongName, for_name("a.*.example.com"),
                  "a.b.example.com"),
    };
}

class Impostors : public Certificates, public testing::WithParamInterface<Impostor>
{
};

} // namespace

TEST_F(Certificates, OfTheAuthorityAreAcceptedForTheAddressOfTheUrl)
{
    show(authority_.issue(for_address()));
    expect_accepted();
}

TEST_F(Certificates, OfTheAuthorityAreAcceptedForTheNameOfTheUrl)
{
    show(authority_.issue(Leaf().dns_name("localhost")));
    expect_accepted("localhost");
}

TEST_F(Certificates, OfTheAuthorityAreAcceptedForAnAddressInBrackets)
{
    show(authority_.issue(Leaf().address("::1")));
    expect_accepted("[::1]");
    expect_accepted("[0:0::0001]");
    show(authority_.issue(for_address()));
    expect_refused(kWrongAddress, "[::1]");
}

TEST_F(Certificates, MayBeForSeveralNamesAndAddresses)
{
    show(authority_.issue(Leaf().dns_name("a.example.com").dns_name("b.example.com").address("127.0.0.1")));
    for (const char* name : {"a.example.com", "b.example.com", "B.Example.com", "127.0.0.1"}) {
        SCOPED_TRACE(name);
        expect_accepted(name);
    }
}

TEST_F(Certificates, MayHaveACommonNameAlone)
{
    show(authority_.issue(Leaf("a.example.com")));
    expect_accepted("a.example.com");
}

TEST_F(Certificates, MayHaveAWildcardForOneLabel)
{
    show(authority_.issue(Leaf().dns_name("*.example.com")));
    expect_accepted("a.example.com");
    expect_accepted("filer.example.com");
}

TEST_F(Certificates, OfIntermediateAuthoritiesAreAcceptedWithTheirChain)
{
    show(authority_.intermediate("upper").intermediate("lower").issue(for_address()));
    expect_accepted();
}

TEST_F(Certificates, OfAnIntermediateAuthorityAreAcceptedWhereTheFileHoldsItAlone)
{
    const Authority intermediate = authority_.intermediate();
    trust(intermediate.certificate_pem());
    show(intermediate.issue(for_address()));
    expect_accepted();
    show(without_chain(intermediate.issue(for_address())));
    expect_accepted();
    show(authority_.issue(for_address()));
    expect_refused(kNoIssuer);
}

TEST_F(Certificates, OfAServiceAreAcceptedWhereTheyStandInTheFileThemselves)
{
    const Identity own = self_signed(for_address());
    const Identity issued = Authority("another").issue(for_address());
    trust(own.certificate_pem() + issued.certificate_pem());
    show(own);
    expect_accepted();
    show(issued);
    expect_accepted();
}

// To name a service's certificate is to trust that service, and no other.
TEST_F(Certificates, OfAServiceThatStandInTheFileVouchForNoOther)
{
    const Identity service = self_signed(Leaf("a service"));
    trust(service.certificate_pem());
    show(signed_by(service, for_address()));
    expect_refused(kNoAuthority);
}

TEST_F(Certificates, ThatStandInTheFileAreStillCheckedForTheirHostAndTime)
{
    const Identity of_other_host = self_signed(Leaf().address("127.0.0.2"));
    const Identity expired = self_signed(for_address().expired());
    trust(of_other_host.certificate_pem() + expired.certificate_pem());
    show(of_other_host);
    expect_refused(kWrongAddress);
    show(expired);
    expect_refused("certificate has expired");
}

TEST_P(Impostors, AreRefusedBeforeARequestIsSent)
{
    service_.set_tls_context(GetParam().context(authority_));
    expect_refused(GetParam().reason, GetParam().name);
    EXPECT_EQ(service_.connections(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Certificate, Impostors, testing::ValuesIn(with_a_certificate()));
INSTANTIATE_TEST_SUITE_P(NoCertificate, Impostors,
                         testing::Values(Impostor{"no certificate", "handshake failure\n",
                                                  without_certificate}));

// Whoever has a certificate at all is spoken to where nobody is named who would vouch for it.
TEST_F(Certificates, AreNotCheckedWithoutTheKey)
{
    configure("require_tls = yes\n");
    for (const Impostor& impostor : with_a_certificate()) {
        SCOPED_TRACE(impostor.what);
        service_.set_tls_context(impostor.context(authority_));
        expect_accepted(impostor.name);
    }
}

TEST_F(Certificates, ThatAreRefusedFailThePropertiesAsAServiceThatCantBeReached)
{
    const ServerHandle server = make_server(session_, service_.tls_url(), true);
    const auto info = std::make_unique<sts_server_info_v8_t>();
    service_.script(closed());
    EXPECT_EQ(get_server_prop()(server.get(), info.get()), 2060026);
    EXPECT_THAT(service_.requests(), IsEmpty());
}

// Neither the login at whoever has answered nor one in the clear.
TEST_F(Certificates, ThatAreRefusedEndDiscoveryWhereTlsIsRequired)
{
    configure("tls_ca_file = authorities.pem\nrequire_tls = yes\n");
    const std::string host_part = "127.0.0.1:" + std::to_string(service_.port()) + "/x";
    service_.script({closed(), closed(), closed(), closed()});
    const auto info = std::make_unique<sts_server_info_v8_t>();
    EXPECT_EQ(get_server_prop_byname()(session_.get(), own_name(host_part).c_str(), info.get()), 2060017);
    EXPECT_EQ(service_.connections(), 2U) << "one for each pass over https";
    EXPECT_THAT(service_.requests(), IsEmpty());
}
