// What is taken out of messages ahead of anybody's look at them.
#include "messages/blotter.h"
#include "messages/indented.h"
#include "messages/token_names.h"
#include "simulator/traffic/recorder.h"

#include <gmock/gmock.h>

#include <string>

namespace
{

using namespace soapwrapper::messages;
using namespace soapwrapper::simulator;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

// With a credential that stands in no test's text.
std::string blotted(const std::string& xml, bool is_cut = false)
{
    return Blotter("the-credential").message(xml, is_cut);
}

TEST(SimulatorBlotting, CredentialsAndTokensLoseTheirContent)
{
    EXPECT_EQ(blotted("<a><n:len>3</n:len><n:cert>QUJD</n:cert></a>"),
              "<a><n:len>3</n:len><n:cert>***</n:cert></a>");
    EXPECT_EQ(blotted("<n:h><n:token>abc</n:token></n:h>"), "<n:h><n:token>[token 1]</n:token></n:h>");
    EXPECT_EQ(blotted("<cert>QUJD</cert><x:cert>QUJD</x:cert>"), "<cert>***</cert><x:cert>***</x:cert>");
}

TEST(SimulatorBlotting, WhatIsNotSecretStaysAsItIs)
{
    for (const std::string plain :
         {"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a b=\"c\">&amp;<!-- d --><![CDATA[e]]></a>", "",
          " \n ", "<certificate>A</certificate><tokens>B</tokens><cert/><n:cert></n:cert>",
          "<n:token xsi:nil=\"true\"/>", "<n:token xsi:nil='1'></n:token>", "<a", "<", "<a b='"}) {
        EXPECT_EQ(blotted(plain), plain);
    }
}

TEST(SimulatorBlotting, ASecretIsBlottedOutHoweverItsElementIsWritten)
{
    for (const std::string hostile : {
             "<n:cert >SECRET</n:cert >",
             "<n:cert\n>SECRET</n:cert\t>",
             "< n:cert>SECRET</ n:cert>",
             "<\x01\x1fn:cert\r>SECRET< / n:cert>",
             "<N:CERT>SECRET</N:CERT>",
             "<a:b:cert>SECRET</a:b:cert>",
             "<cert a=\"1\" b='2'>SECRET</cert>",
             "<cert a=\">\">SECRET</cert>",
             "<cert a='/>SECRET</cert>'>SECRET</cert>",
             "<cert a=/>SECRET</cert>",
             "<cert a=\"SECRET\">A</cert>",
             "<cert a=\"SECRET\"/>",
             "<cert a=\">SECRET</cert><b c=\"d\">SECRET</b>",
             "<cert/x>SECRET</cert>",
             "<cert><![CDATA[SECRET]]></cert>",
             "<cert><![CDATA[</cert>]]>SECRET</cert>",
             "<cert><!-- </cert> -->SECRET</cert>",
             "<cert>< !-- > </cert> -->SECRET</cert>",
             "<cert><? </cert> ?>SECRET</cert>",
             "<cert><!DOCTYPE </cert>SECRET</cert>",
             "<cert><x a='</cert>'/>SECRET</cert>",
             "<cert><x>SECRET</x>SECRET</cert>",
             "<cert><cert>A</cert>SECRET</cert>",
             "<cert><m:cert>A</m:cert>SECRET</cert>",
             "<cert><x></cert>SECRET</x></cert>",
             "<cert></x></cert>SECRET</cert>",
             "<cert><cert a=/></cert>SECRET</cert>",
             "<cert>&#x53;ECRET SECRET&lt;</cert>",
             "<cert>SECRET",
             "<cert>SECRET</cer",
             "<cert>SECRET</cert",
             "<cert>SECRET<",
             "<cert SECRET",
             "<cert a='SECRET>",
             "<!-- <cert> --> <cert>SECRET</cert>",
             "<![CDATA[<cert>SECRET</cert>]]>",
             "<a b='<cert>SECRET</cert>'/>",
             "<a b='<cert c='>SECRET</cert>",
             "<cert href='#1'/><x id='1'>SECRET</x>",
             "<cert enc:ref = '1'/><x enc:id='1'>SECRET</x>",
             "<o:Password Type='text'>SECRET</o:Password>",
             "<token>&#83;ECRET SECRET</token>",
             "<token><![CDATA[SECRET]]></token>",
             "<token>SECRET",
         }) {
        EXPECT_THAT(blotted(hostile), Not(HasSubstr("SECRET"))) << hostile;
        EXPECT_THAT(blotted("<e>" + hostile), Not(HasSubstr("SECRET"))) << hostile;
        EXPECT_THAT(blotted("\xEF\xBB\xBF \n" + hostile, true), Not(HasSubstr("SECRET"))) << hostile;
    }
}

TEST(SimulatorBlotting, WhatComesBehindASecretIsKept)
{
    EXPECT_EQ(blotted("<cert><x><y/></x></cert><b>c</b>"), "<cert>***</cert><b>c</b>");
    EXPECT_EQ(blotted("<cert a='1' /><b>c</b>"), "<cert/><b>c</b>");
    EXPECT_EQ(blotted("<token xsi:nil='true'></token><b>c</b>"), "<token xsi:nil='true'></token><b>c</b>");
}

TEST(SimulatorBlotting, ATokenHasTheSameNameWhereverItStands)
{
    Blotter blotter("");
    EXPECT_EQ(blotter.message("<token>a</token><token> b </token><token>a</token>", false),
              "<token>[token 1]</token><token>[token 2]</token><token>[token 1]</token>");
    const std::string issued = "0123456789abcdef0123456789abcdef";
    EXPECT_EQ(blotter.message("<token>" + issued + "</token>", false), "<token>[token 3]</token>");
    EXPECT_EQ(blotter.message("<name>" + issued + "</name>", false), "<name>[token 3]</name>");
    EXPECT_EQ(blotter.text("no " + issued + ", no " + issued + "0"), "no [token 3], no " + issued + "0");
    EXPECT_EQ(blotter.message("<token>" + std::string(65, 'x') + "</token>", false),
              "<token>[token]</token>");
}

TEST(SimulatorBlotting, ATokenThatWasForgottenGetsAnotherName)
{
    TokenNames names;
    EXPECT_EQ(names.name_of("first"), "[token 1]");
    for (std::size_t i = 1; i < TokenNames::kMostTokens; ++i) names.name_of(std::to_string(i));
    EXPECT_EQ(names.name_of("first"), "[token 1]");
    names.name_of("one more");
    EXPECT_EQ(names.name_of("first"), "[token " + std::to_string(TokenNames::kMostTokens + 2) + "]");
}

std::string blotted_arguments(const std::string& content)
{
    const std::string xml = blotted("<n:args>" + content + "</n:args>");
    return xml.substr(8, xml.size() - 17);
}

TEST(SimulatorBlotting, OfAControlCommandTheUserAndThePasswordAreLeftOut)
{
    EXPECT_EQ(blotted_arguments("filer;/vol/home"), "filer;/vol/home");
    EXPECT_EQ(blotted_arguments("filer user password;/vol/home"), "filer ***;/vol/home");
    EXPECT_EQ(blotted_arguments("filer user pass;word;/vol/home"), "filer ***;/vol/home");
    EXPECT_EQ(blotted_arguments("filer user pass;word"), "filer ***");
    EXPECT_EQ(blotted_arguments("filer&#32;user&#x20;password;/vol"), "filer ***;/vol");
    EXPECT_EQ(blotted_arguments("filer&#9;user password&#59;&#47;vol"), "filer ***&#59;&#47;vol");
    EXPECT_EQ(blotted_arguments(" filer user password"), " ***");
    EXPECT_EQ(blotted_arguments("<![CDATA[filer user password;/vol]]>"), "***");
    EXPECT_EQ(blotted_arguments("filer<!-- --> user;/vol"), "***");
    EXPECT_EQ(blotted("<args>filer user password"), "<args>***");
}

TEST(SimulatorBlotting, AControlCommandsDocumentIsKept)
{
    const std::string document = "&lt;?xml version=&quot;1.0&quot;?&gt;&lt;path_maps/&gt;";
    EXPECT_EQ(blotted_arguments(document), document);
}

TEST(SimulatorBlotting, WhatIsNoXmlOfAReadableEncodingIsNotKept)
{
    EXPECT_EQ(blotted("garbage"), "(not XML, 7 bytes)");
    EXPECT_EQ(blotted(std::string("\xFF\xFE<\0c\0", 6)), "(not XML, 6 bytes)");
    EXPECT_EQ(blotted(std::string("<\0c\0", 4)), "(not XML, 4 bytes)");
    EXPECT_EQ(blotted("<a>" + std::string(1, '\0') + "</a>"), "(not XML, 8 bytes)");
    EXPECT_EQ(blotted("--x\r\n\r\n<a/>"), "(not XML, 11 bytes)");
    EXPECT_EQ(blotted("<?xml version='1.0' encoding='UTF-7'?><a/>"), "(not XML, 42 bytes)");
    EXPECT_THAT(blotted("<?xml version='1.0' encoding='ISO-8859-1'?><a/>"), HasSubstr("<a/>"));
    EXPECT_THAT(blotted("<?xml version='1.0' ENCODING = \"utf-8\"?><a/>"), HasSubstr("<a/>"));
}

TEST(SimulatorBlotting, TheCredentialsTextIsBlottedOutWhereverItStands)
{
    const std::string text = "pa&ss<word";
    Blotter blotter(text);
    for (const std::string hidden :
         {"<a>pa&amp;ss&lt;word</a>", "<a>p&#97;&#x26;ss&#60;word</a>", "<a>pa&#00000000038;ss&lt;word</a>",
          "<a><![CDATA[pa&ss<word]]></a>", "<a>pa<![CDATA[&]]>ss&lt;wo<!-- x -->rd</a>",
          "<a>pa&amp;amp;ss&amp;lt;word</a>", "<!-- pa&ss<word --><a/>", "<a b='pa&amp;ss&lt;word'/>",
          "<pa&ss<word/>", "<a>pa&amp;ss<?x y?>&lt;word</a>"}) {
        const std::string shown = blotter.message(hidden, false);
        EXPECT_THAT(shown, HasSubstr("***")) << hidden;
        EXPECT_THAT(shown, AllOf(Not(HasSubstr("word")), Not(HasSubstr("wo<")))) << hidden;
    }
}

std::string base64(const std::string& bytes)
{
    constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string digits;
    unsigned bits = 0;
    int count = 0;
    for (const char c : bytes) {
        bits = bits << 8 | static_cast<unsigned char>(c);
        for (count += 8; count >= 6; count -= 6) digits += kDigits[bits >> (count - 6) & 63U];
    }
    if (count > 0) digits += kDigits[bits << (6 - count) & 63U];
    while (digits.size() % 4 != 0) digits += '=';
    return digits;
}

TEST(SimulatorBlotting, TheCredentialsBase64IsBlottedOutAtEachAlignment)
{
    Blotter blotter("simulator");
    for (const std::string ahead : {"", "x", "xy", "xyz"}) {
        for (const std::string behind : {"", "x", "xy"}) {
            const std::string digits = base64(ahead + "simulator" + behind);
            const std::string shown = blotter.message("<a>" + digits + "</a>", false);
            EXPECT_LE(shown.size(), std::string("<a>xxxx***xxxx</a>").size()) << digits;
            EXPECT_THAT(shown, HasSubstr("***")) << digits;
            std::string spread;
            for (const char c : digits) spread += std::string(1, c) + "\r\n ";
            EXPECT_THAT(blotter.message("<a>" + spread + "</a>", false), HasSubstr("***")) << spread;
        }
    }
    EXPECT_EQ(blotter.message("<a>c2ltdWxhdG9y</a>", false), "<a>***</a>");
    EXPECT_EQ(blotter.message("<a>c2lt<!-- -->dWx&#104;dG9y</a>", false), "<a>***</a>");
}

TEST(SimulatorBlotting, ACredentialOfLatin1CharactersIsFoundInUtf8)
{
    Blotter blotter("gr\xFC\xDF"
                    "e");
    EXPECT_EQ(blotter.message("<a>gr\xC3\xBC\xC3\x9F"
                              "e</a>",
                              false),
              "<a>***</a>");
    EXPECT_EQ(blotter.message("<a>gr&#252;&#xDF;e</a>", false), "<a>***</a>");
    EXPECT_EQ(blotter.message("<a>gr\xFC\xDF"
                              "e</a>",
                              false),
              "<a>***</a>");
}

TEST(SimulatorBlotting, AVeryShortCredentialIsBlottedOutInItsElementAlone)
{
    EXPECT_EQ(Blotter("a").message("<a><cert>YQ==</cert></a>", false), "<a><cert>***</cert></a>");
    EXPECT_EQ(Blotter("").message("<a><cert>YQ==</cert></a>", false), "<a><cert>***</cert></a>");
}

TEST(SimulatorBlotting, WhereATextIsCutNoPartOfASecretIsLeft)
{
    Blotter blotter("simulator");
    const std::string token = "0123456789abcdef0123456789abcdef";
    for (const std::string whole : {"<a>simulator", "<a>c2ltdWxhdG9y", "<a>si&#109;ul<!-- abc -->ator"}) {
        for (std::size_t size = 4; size < whole.size(); ++size) {
            const std::string shown = blotter.message(whole.substr(0, size), true);
            EXPECT_THAT(shown, Not(HasSubstr("<a>s"))) << shown;
            EXPECT_THAT(shown, Not(HasSubstr("<a>c"))) << shown;
        }
    }
    EXPECT_EQ(blotter.message("<a>" + token.substr(0, 20), true), "<a>***");
    EXPECT_EQ(blotter.message("<a>" + token.substr(0, 20), false), "<a>" + token.substr(0, 20));
}

TEST(SimulatorBlotting, TakesNoLongerThanItsTextIsLong)
{
    Blotter blotter("simulator");
    for (const std::string part :
         {"<", "<a '", "<cert>", "</cert>", "<token/>", "&", "&#", "<!--", "<![CDATA[", "<?", "s", "<a>",
          "<cert a='", "< ", "simulator", "<args>a b</args>", "<cert></cert><x \""}) {
        std::string text = "<e>";
        while (text.size() < Recorder::kLongestText) text += part;
        EXPECT_LT(blotter.message(text, true).size(), 3 * text.size()) << part;
        EXPECT_LT(indented(text).size(), 20 * text.size()) << part;
    }
}

} // namespace
