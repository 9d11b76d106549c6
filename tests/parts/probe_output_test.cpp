// What the probe makes of values for people and for scripts.
#include "plugin/host/status.h"
#include "probe/lists/list_reader.h"
#include "probe/output/output.h"
#include "probe/output/progress_line.h"
#include "probe/output/readable.h"
#include "probe/output/records.h"
#include "probe/output/status_text.h"
#include "probe/output/url_login.h"
#include "probe/output/width.h"

#include <gmock/gmock.h>

#include <sstream>

using namespace soapwrapper::probe;

namespace
{

using nlohmann::json;

constexpr char kJapan[] = "\xE6\x97\xA5\xE6\x9C\xAC"; // two characters, four columns
constexpr char kAccented[] = "e\xCC\x81";             // a letter and the accent above it
constexpr char kDisk[] = "\xF0\x9F\x92\xBE";          // an emoji

TEST(DisplayWidth, IsThatOfATerminal)
{
    EXPECT_EQ(display_width(""), 0U);
    EXPECT_EQ(display_width("plain"), 5U);
    EXPECT_EQ(display_width("Gr\xC3\xBC\xC3\x9F"), 4U);
    EXPECT_EQ(display_width(kJapan), 4U);
    EXPECT_EQ(display_width(kAccented), 1U);
    EXPECT_EQ(display_width(kDisk), 2U);
    EXPECT_EQ(display_width("\xEF\xBF\xBD"), 1U) << "what stands for bytes that aren't UTF-8";
    EXPECT_EQ(display_width("\xEF\xBC\xA1"), 2U) << "a full-width letter";
    EXPECT_EQ(display_width("\xC2\xA0"), 1U);
}

TEST(CutToWidth, KeepsWholeCharactersWithTheirMarks)
{
    EXPECT_EQ(cut_to_width("abc", 2), "ab");
    EXPECT_EQ(cut_to_width("abc", 0), "");
    EXPECT_EQ(cut_to_width("abc", 9), "abc");
    EXPECT_EQ(cut_to_width(std::string("a") + kJapan, 4), "a\xE6\x97\xA5");
    EXPECT_EQ(cut_to_width(std::string(kAccented) + "x", 1), kAccented);
    EXPECT_EQ(cut_to_width(kDisk, 1), "");
}

TEST(Padding, GoesByColumnsAndCutsNothing)
{
    EXPECT_EQ(pad_behind(kJapan, 6), std::string(kJapan) + "  ");
    EXPECT_EQ(pad_ahead(kAccented, 3), std::string("  ") + kAccented);
    EXPECT_EQ(pad_behind("long", 2), "long");
    EXPECT_EQ(pad_ahead("long", 2), "long");
}

std::string printed(const Table& table)
{
    std::ostringstream stream;
    Output(stream, Format::kAligned, "").print(table);
    return stream.str();
}

TEST(Table, KeepsItsColumnsBehindWideCharacters)
{
    Table table({"NAME", "OWNER"});
    table.add({kJapan, "a"});
    table.add({kAccented, "b"});
    EXPECT_EQ(printed(table), std::string("NAME  OWNER\n") + kJapan + "  a\n" + kAccented + "     b\n");
}

TEST(Table, AlignsNumbersByTheirLastDigitWithTheirHeadings)
{
    Table table({"NAME", "FLAGS", "N"});
    table.align_right(1);
    table.align_right(2);
    table.add({"a", "-2", "1000"});
    table.add({"b", "", "7"});
    EXPECT_EQ(printed(table), "NAME  FLAGS     N\na        -2  1000\nb         -     7\n");
}

TEST(Sizes, AreReadableForPeopleAndExactForAllOthers)
{
    std::ostringstream stream;
    EXPECT_EQ(Output(stream, Format::kAligned, "").size(1536), "1.5 KiB");
    EXPECT_EQ(Output(stream, Format::kAligned, "").size(-1), "-1") << "no size";
    EXPECT_EQ(Output(stream, Format::kAligned, "", true).size(1536), "1536");
    EXPECT_EQ(Output(stream, Format::kSeparated, ",").size(1536), "1536");
    EXPECT_EQ(Output(stream, Format::kAligned, "").size_in_words(1536), "1.5 KiB");
    EXPECT_EQ(Output(stream, Format::kAligned, "", true).size_in_words(1536), "1536 bytes");
    EXPECT_EQ(Output(stream, Format::kSeparated, ",").size_in_words(1536), "1536 bytes");
}

TEST(UtcTime, IsATimeOfTheCalendarOrTheNumber)
{
    EXPECT_EQ(utc_time(1768176000), "2026-01-12T00:00:00Z");
    EXPECT_EQ(utc_time(0), "1970-01-01T00:00:00Z");
    EXPECT_EQ(utc_time(-9223372036854775807 - 1), "-9223372036854775808");
    EXPECT_EQ(utc_time(9223372036854775807), "9223372036854775807");
}

std::string shown(const Properties& properties, Format format)
{
    std::ostringstream stream;
    Output output(stream, format, "=");
    properties.show(output);
    output.finish();
    return stream.str();
}

TEST(Properties, TellANameBesideItsNumber)
{
    Properties properties;
    properties.add_size("Size", "size", 2048);
    properties.add_named("Status", "status", STS_EBUSY, status_name(STS_EBUSY));
    properties.add_named("Other", "other", 77, status_name(77));
    EXPECT_EQ(shown(properties, Format::kAligned),
              "Size    2.0 KiB\nStatus  2060005 (STS_EBUSY)\nOther   77\n");
    EXPECT_EQ(shown(properties, Format::kSeparated), "size=2048\nstatus=2060005\nother=77\n");
    EXPECT_EQ(json::parse(shown(properties, Format::kJson)), json({{"schema", 1},
                                                                   {"size", 2048},
                                                                   {"status", 2060005},
                                                                   {"status_name", "STS_EBUSY"},
                                                                   {"other", 77}}));
}

TEST(EntryList, HasSizesForPeopleAndNumbersForScripts)
{
    EntryList list("things", {{"NAME", "name"}, {"SIZE", "size", Look::kSize}});
    list.add({"a", 2048});
    list.add({"b", nullptr});
    std::ostringstream text;
    Output aligned(text, Format::kAligned, "");
    list.show(aligned, Extent::kComplete);
    EXPECT_EQ(text.str(), "NAME     SIZE\na     2.0 KiB\nb           -\n");
    std::ostringstream stream;
    Output output(stream, Format::kJson, "");
    list.show(output, Extent::kLimited);
    EXPECT_EQ(output.document().at("things").at(0).at("size"), 2048);
    EXPECT_EQ(output.document().at("limited"), true);
}

TEST(EndByCount, IsAFailureUnlessTheUserHasSetALimit)
{
    ListOptions options;
    EXPECT_FALSE(end_by_count(options, 999999));
    ASSERT_TRUE(end_by_count(options, 1000000));
    EXPECT_EQ(end_by_count(options, 1000000)->extent, Extent::kIncomplete);
    ASSERT_TRUE(end_by_count(options, 1000000)->problem);
    EXPECT_EQ(end_by_count(options, 1000000)->problem->name(), "endless list");
    options.limit = 2000000;
    EXPECT_FALSE(end_by_count(options, 1999999));
    ASSERT_TRUE(end_by_count(options, 2000000));
    EXPECT_EQ(end_by_count(options, 2000000)->extent, Extent::kLimited);
    EXPECT_FALSE(end_by_count(options, 2000000)->problem);
}

TEST(Documents, BeginWithTheVersionOfTheirForm)
{
    std::ostringstream stream;
    Output output(stream, Format::kJson, "");
    output.document()["name"] = "a";
    output.finish();
    EXPECT_EQ(stream.str(), "{\n  \"schema\": 1,\n  \"name\": \"a\"\n}\n");
    std::ostringstream empty;
    Output(empty, Format::kJson, "").finish();
    EXPECT_EQ(empty.str(), "{\n  \"schema\": 1\n}\n");
}

TEST(UrlLogins, AreNotShownInAUrl)
{
    EXPECT_EQ(shown_url("https://u:p/w@d@filer:8086/x"), "https://(login)@filer:8086/x");
    EXPECT_EQ(shown_url("HTTP://u@a"), "HTTP://(login)@a");
    // What stands ahead of other slashes may be a part of a password.
    for (const char* text :
         {"admin:secret//more@filer1", "ftp://secret@filer1", "https:secret//@filer1", "secret@filer1"}) {
        EXPECT_EQ(shown_url(text), "(login)@filer1") << text;
    }
    for (const char* same : {"", "http://", "https://filer:8086/x", "filer//x"})
        EXPECT_EQ(shown_url(same), same);
}

TEST(UrlLogins, AreNotShownInAText)
{
    EXPECT_EQ(without_url_logins(""), "");
    EXPECT_EQ(without_url_logins("soap_endpoint = https://u:p/w@d@filer:8086/x"),
              "soap_endpoint = https://(login)@filer:8086/x");
    EXPECT_EQ(without_url_logins("http://u@a, \"http://b\" and <http://:@c>"),
              "http://(login)@a, \"http://b\" and <http://(login)@c>");
    EXPECT_EQ(without_url_logins("http://u:a\"b'c<d>e@f\thttps://g\r\nhttps://h:<@i"),
              "http://(login)@f\thttps://g\r\nhttps://(login)@i");
    for (const char* same : {"http://filer:8085 is a@b", "user@host", "://", "a://\nu@h"}) {
        EXPECT_EQ(without_url_logins(same), same);
    }
}

} // namespace
