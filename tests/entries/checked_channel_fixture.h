// What the tests of checked certificates have in common.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_CHECKED_CHANNEL_FIXTURE_H
#define SOAPWRAPPER_TESTS_ENTRIES_CHECKED_CHANNEL_FIXTURE_H

#include "tests/entries/channel_fixture.h"
#include "tests/kit/authority.h"
#include "tests/kit/certificate.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

// For the service's URL with its address.
inline kit::Leaf for_address()
{
    return kit::Leaf().address("127.0.0.1");
}

class CheckedChannel : public Channel
{
  protected:
    ~CheckedChannel() override
    {
        std::error_code ignored;
        std::filesystem::remove_all(ca_file(), ignored);
    }

    // Beside soapwrapper.conf.
    static std::filesystem::path ca_file()
    {
        return host().configuration_file().parent_path() / "authorities.pem";
    }
    static void write_ca_file(std::string_view text)
    {
        std::ofstream(ca_file(), std::ios::binary | std::ios::trunc) << text;
    }
    // With this in the file, the library reads it.
    static void trust(std::string_view text)
    {
        write_ca_file(text);
        configure("tls_ca_file = authorities.pem\n");
    }

    void show(const kit::Identity& identity)
    {
        service_.set_tls_context(kit::make_tls_server_context(identity));
    }

    std::string url_of(const std::string& name) const
    {
        return "https://" + name + ":" + std::to_string(service_.port());
    }

    int call(const std::string& name = "127.0.0.1")
    {
        service_.script({closed(), closed()}); // the second for what follows a failed resumption
        const int status = close(url_of(name), true);
        service_.forget_answers();
        return status;
    }

    void expect_accepted(const std::string& name = "127.0.0.1")
    {
        const std::size_t before = service_.requests().size();
        EXPECT_EQ(call(name), 0);
        EXPECT_EQ(service_.requests().size(), before + 1);
    }

    // The reason is how the TLS library's text ends.
    void expect_refused(const std::string& reason, const std::string& name = "127.0.0.1")
    {
        const std::size_t before = service_.requests().size();
        EXPECT_EQ(call(name), 2060017);
        EXPECT_EQ(service_.requests().size(), before);
        const std::vector<kit::LogLine> lines = session_.lines();
        ASSERT_EQ(lines.size(), 4U);
        EXPECT_EQ(lines[2], kit::return_code("stspi_close_server", 30));
        EXPECT_EQ(lines[3].level, 4);
        EXPECT_THAT(lines[3].text, testing::HasSubstr(reason + "\"\nDetail: SSL/TLS handshake failed\n"));
    }

    kit::Authority authority_;
};

#endif
