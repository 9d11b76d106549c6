// Texts of any script: what `text_encoding = UTF-8` makes of them between the host's records and the wire.
#include "tests/entries/catalogue_fixture.h"
#include "tests/entries/channel_fixture.h"

using namespace kit;

namespace
{

// Characters of one, two, three and four bytes.
constexpr char kScripts[] = "A\xC3\xBC\xE6\xA9\x8B\xF0\x9F\x98\x80";

class TextEncoding : public Channel
{
  protected:
    // What a service's reply about a server comes to in the host's record.
    std::string server_in_reply(const std::string& wire)
    {
        service_.script(answer(
            reply("getServerPropResponse",
                  element("info", element("server", wire) + element("sth") + element("flags", "1") +
                                      element("maxconnect", "2") + element("nconnect", "3") + element("cap") +
                                      interfaces({}) + element("cred") + nil("ndmpHost")))));
        const ServerHandle server = make_server(session_, service_.url());
        const auto info = std::make_unique<sts_server_info_v8_t>();
        EXPECT_EQ(get_server_prop()(server.get(), info.get()), 0);
        return info->server;
    }

    // What a request says of a handle's token, which goes out as the host's text.
    std::string token_in_request(const std::string& text)
    {
        service_.script(answer(reply("getServerPropResponse", information(interfaces({})))));
        const ServerHandle server = make_server(session_, service_.url(), false, text.c_str());
        const auto info = std::make_unique<sts_server_info_v8_t>();
        EXPECT_EQ(get_server_prop()(server.get(), info.get()), 0);
        const std::string body = service_.request_body(service_.requests().size() - 1);
        const std::size_t begin = body.find("<ns1:token>") + 11;
        return body.substr(begin, body.find("</ns1:token>") - begin);
    }
};

class Utf8 : public TextEncoding
{
  protected:
    Utf8() { configure("text_encoding = utf-8\n"); }
};

} // namespace

TEST_F(TextEncoding, IsLatin1UnlessTheFileSaysOtherwise)
{
    for (const char* value :
         {"", "text_encoding = Latin-1\n", "text_encoding =\n", "text_encoding = UTF8\n"}) {
        SCOPED_TRACE(value);
        configure(value);
        EXPECT_EQ(token_in_request("\xFC"), "\xC3\xBC");
        EXPECT_EQ(token_in_request("\xC3\xBC"), "\xC3\x83\xC2\xBC");
        EXPECT_EQ(server_in_reply("\xC3\xBC"), "\xFC");
        EXPECT_EQ(server_in_reply("\xE6\xA9\x8B"), "\x4B") << "the lower bits of U+6A4B";
    }
}

TEST_F(Utf8, SendsCharactersOfAnyScriptAsTheyAre)
{
    EXPECT_EQ(token_in_request(kScripts), kScripts);
}

TEST_F(Utf8, ReadsCharactersOfAnyScriptAsTheyAre)
{
    EXPECT_EQ(server_in_reply(kScripts), kScripts);
}

TEST_F(Utf8, ReadsCharactersThatAreReferredToByNumber)
{
    EXPECT_EQ(server_in_reply("A&#xFC;&#27211;&#x1F600;"), kScripts);
    EXPECT_EQ(server_in_reply("&#X0000041;&#00000252;&#x06A4b;&#128512;"), kScripts);
    EXPECT_EQ(server_in_reply("&#xC3;&#xBC;"), "\xC3\x83\xC2\xBC") << "two characters, not the bytes of one";
}

TEST_F(Utf8, EscapesMarkupInARequestAndReadsItInAReply)
{
    EXPECT_EQ(token_in_request("<\xC3\xBC&>"), "&lt;\xC3\xBC&amp;&gt;");
    EXPECT_EQ(server_in_reply("&lt;\xC3\xBC&amp;&gt;&quot;&apos;\"'/"), "<\xC3\xBC&>\"'\"'/");
    EXPECT_EQ(server_in_reply("<![CDATA[<\xC3\xBC&>]]>"), "<\xC3\xBC&>");
    EXPECT_EQ(server_in_reply("a<!-- \xC3\xBC -->b"), "ab");
}

TEST_F(Utf8, KeepsTheTagsWithinATextAsTheyStand)
{
    const std::string text = "a<b>c</b><d/>e";
    EXPECT_EQ(server_in_reply(text), text);
}

TEST_F(Utf8, SendsAByteThatIsNoPartOfACharacterAsItsLatin1Character)
{
    EXPECT_EQ(token_in_request("a\xFCz"), "a\xC3\xBCz");
    EXPECT_EQ(token_in_request("\xE6\xA9"), "\xC3\xA6\xC2\xA9") << "cut at its end";
    EXPECT_EQ(token_in_request("\xC0\xAF"), "\xC3\x80\xC2\xAF") << "longer than it need be";
    EXPECT_EQ(token_in_request("\xFF\xFE"), "\xC3\xBF\xC3\xBE");
}

TEST_F(Utf8, ReadsAByteThatIsNoPartOfACharacterAsItsLatin1Character)
{
    EXPECT_EQ(server_in_reply("a\xFCz"), "a\xC3\xBCz");
    EXPECT_EQ(server_in_reply("x\xE6\xA9"), "x\xC3\xA6\xC2\xA9") << "the tag behind it isn't swallowed";
    EXPECT_EQ(server_in_reply("\xF0\x9F\x98"), "\xC3\xB0\xC2\x9F\xC2\x98");
    EXPECT_EQ(server_in_reply("\xE0\x80\xAF"), "\xC3\xA0\xC2\x80\xC2\xAF");
}

TEST_F(Utf8, JoinsSurrogatesInBothDirections)
{
    constexpr char kPair[] = "\xED\xA0\xBD\xED\xB8\x80";
    EXPECT_EQ(token_in_request(kPair), "\xF0\x9F\x98\x80");
    EXPECT_EQ(server_in_reply(kPair), "\xF0\x9F\x98\x80");
    EXPECT_EQ(server_in_reply("&#xD83D;&#xDE00;"), "\xF0\x9F\x98\x80");
    EXPECT_EQ(server_in_reply("\xED\xB8\x80"), "\xC3\xAD\xC2\xB8\xC2\x80") << "one alone";
}

TEST_F(Utf8, ReplacesANulAndNumbersBeyondAllCharacters)
{
    constexpr char kReplacement[] = "\xEF\xBF\xBD";
    EXPECT_EQ(server_in_reply("a&#0;b"), "a" + std::string(kReplacement) + "b");
    EXPECT_EQ(server_in_reply(std::string("a\0b", 3)), "a" + std::string(kReplacement) + "b");
    for (const char* reference : {"&#x110000;", "&#1114112;", "&#xFFFFFFFFFFFFFFFFFF;",
                                  "&#99999999999999999999;", "&#x80000041;", "&#;", "&#x;"}) {
        EXPECT_EQ(server_in_reply(reference), kReplacement) << reference;
    }
}

TEST_F(Utf8, CutsALongTextOfAReplyAheadOfTheCharacterThatDoesntFit)
{
    const std::string fits(STS_SERVER_NAME_SIZE - 4, 'x');
    EXPECT_EQ(server_in_reply(fits + "\xE6\xA9\x8B"), fits + "\xE6\xA9\x8B");
    EXPECT_EQ(server_in_reply(fits + "x\xE6\xA9\x8B"), fits + "x");
    EXPECT_EQ(server_in_reply(fits + "xx\xE6\xA9\x8B"), fits + "xx");
    EXPECT_EQ(server_in_reply(fits + "\xF0\x9F\x98\x80"), fits);
}

TEST_F(TextEncoding, OfLatin1CutsALongTextBetweenAnyBytes)
{
    const std::string fits(STS_SERVER_NAME_SIZE - 2, 'x');
    EXPECT_EQ(server_in_reply(fits + "\xC3\x83\xC2\xBC"), fits + "\xC3");
}

TEST_F(Utf8, CutsTheCountedAnswerOfACommandAheadOfTheCharacterThatDoesntFit)
{
    service_.script(
        answer(reply("ioControlResponse", element("args", "ab\xE6\xA9\x8B") + element("len", "5"))));
    const ServerHandle server = make_server(session_, service_.url());
    char buffer[5] = "####";
    EXPECT_EQ(catalogue::iocontrol()(server.get(), 1, buffer, 2, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "ab");
}

TEST_F(Utf8, LogsAFaultsTextInUtf8)
{
    service_.script(fault_answer(fault(2060005, "SOAP-ENV:Client", "\xE6\xA9\x8B &#xD800;")));
    EXPECT_EQ(close_plainly(), 2060005);
    EXPECT_EQ(session_.lines().back(),
              failure(rendered_fault(2060005, "SOAP-ENV:Client", "\xE6\xA9\x8B \xC3\xAD\xC2\xA0\xC2\x80")));
}

TEST_F(Utf8, TakesAReplyInLatin1AsWhatItSays)
{
    const std::string soap = reply("getServerPropResponse", information(interfaces({})));
    std::string changed = soap;
    changed.replace(changed.find("the server"), 10, "the s\xFCrver");
    std::string message = http_message(changed);
    message.replace(message.find("utf-8"), 5, "iso-8859-1");
    service_.script({Answer::Manner::kReply, message});
    const ServerHandle server = make_server(session_, service_.url());
    const auto info = std::make_unique<sts_server_info_v8_t>();
    EXPECT_EQ(get_server_prop()(server.get(), info.get()), 0);
    EXPECT_STREQ(info->server, "the s\xC3\xBCrver");
}

// Requests differ in their bytes above 127 and in nothing else.
TEST_F(Utf8, SendsTheSameHeadAsWithout)
{
    token_in_request("plain");
    const std::string with = service_.requests().back().head;
    host().remove_configuration();
    host().initialise();
    token_in_request("plain");
    EXPECT_EQ(service_.requests().back().head, with);
}
