// Documents in each encoding, through memory and files.
#include "tests/xmlhelper/fixtures.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstring>

using namespace xmlhelper;

namespace
{

// "grüße, 世界 😀" and its neighbours, of one to four bytes each.
constexpr char kUtf8[] = "gr\xC3\xBC\xC3\x9F"
                         "e, \xE4\xB8\x96\xE7\x95\x8C \xF0\x9F\x98\x80";
constexpr wchar_t kWide[] = L"gr\u00fc\u00dfe, \u4e16\u754c \U0001F600";

std::u32string characters()
{
    std::u32string text;
    for (const wchar_t* letter = kWide; *letter; ++letter) text += static_cast<char32_t>(*letter);
    return text;
}

void append(std::string& bytes, std::uint32_t unit, int width, bool is_big_endian)
{
    for (int i = 0; i < width; ++i) {
        bytes += static_cast<char>(unit >> static_cast<unsigned>(8 * (is_big_endian ? width - 1 - i : i)));
    }
}

std::string in_utf16(const std::u32string& text, bool is_big_endian)
{
    std::string bytes;
    for (const char32_t letter : text) {
        if (letter < 0x10000U) {
            append(bytes, letter, 2, is_big_endian);
        } else {
            append(bytes, 0xD800U + ((letter - 0x10000U) >> 10U), 2, is_big_endian);
            append(bytes, 0xDC00U + (letter & 0x3FFU), 2, is_big_endian);
        }
    }
    return bytes;
}

std::string in_utf32(const std::u32string& text, bool is_big_endian)
{
    std::string bytes;
    for (const char32_t letter : text) append(bytes, letter, 4, is_big_endian);
    return bytes;
}

std::u32string ascii(const std::string& text)
{
    return {text.begin(), text.end()};
}

// A document that says it is in `name`, or says nothing.
std::u32string document_in(const std::string& name)
{
    const std::string declaration = name.empty() ? "" : "<?xml version=\"1.0\" encoding=\"" + name + "\"?>";
    return ascii(declaration + "<r>") + characters() + ascii("</r>");
}

struct File {
    const char* description;
    std::string bytes;
    THSupportedXmlEncoding encoding; // of the document that was loaded from it
};

std::vector<File> files()
{
    const std::string utf8 = std::string("<r>") + kUtf8 + "</r>";
    const std::string declared = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>" + utf8;
    const std::u32string utf16 = document_in("UTF-16");
    const std::u32string utf32 = document_in("UTF-32");
    return {
        {"UTF-8", declared, XML_ENCODING_UTF8},
        {"UTF-8 undeclared", utf8, XML_ENCODING_UTF8},
        {"UTF-8 with a mark", "\xEF\xBB\xBF" + declared, XML_ENCODING_UTF8},
        {"UTF-8 with a mark, undeclared", "\xEF\xBB\xBF" + utf8, XML_ENCODING_UTF8},
        {"UTF-16LE with a mark", "\xFF\xFE" + in_utf16(utf16, false), XML_ENCODING_UTF16},
        {"UTF-16BE with a mark", "\xFE\xFF" + in_utf16(utf16, true), XML_ENCODING_UTF16},
        {"UTF-16LE", in_utf16(utf16, false), XML_ENCODING_UTF16},
        {"UTF-16LE with a mark, undeclared", "\xFF\xFE" + in_utf16(document_in(""), false),
         XML_ENCODING_UTF8},
        {"UTF-16LE in lower case", "\xFF\xFE" + in_utf16(document_in("utf-16"), false), XML_ENCODING_UTF16},
        {"UTF-32LE with a mark", std::string("\xFF\xFE\0\0", 4) + in_utf32(utf32, false), XML_ENCODING_UTF32},
        {"UTF-32LE", in_utf32(utf32, false), XML_ENCODING_UTF32},
        {"Latin 1",
         "<?xml version='1.0' encoding='ISO-8859-1'?><r>gr\xFC\xDF"
         "e</r>",
         XML_ENCODING_UTF8},
    };
}

constexpr THSupportedXmlEncoding kWritten[] = {XML_ENCODING_UTF8, XML_ENCODING_UTF16, XML_ENCODING_UTF32};

OwnedDocument built_with_text(THSupportedXmlEncoding encoding)
{
    OwnedDocument document = built("r", encoding);
    const OwnedNode root = root_of(*document);
    EXPECT_EQ(root->setAttribute("a", kUtf8), XML_DOC_OK);
    const OwnedNode child(root->createAndAppendChild("\xC3\xA4", kUtf8));
    return document;
}

void expect_the_text(THXMLDocument& document)
{
    const OwnedNode root = root_of(document);
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->getAttributeString("a"), kUtf8);
    EXPECT_EQ(root->getChildNodeText("\xC3\xA4"), kUtf8);
}

} // namespace

TEST(EncodingOfAFile, IsReadFromItsMarkAndItsDeclaration)
{
    const Folder folder;
    for (const File& file : files()) {
        const std::string path = folder.write("document.xml", file.bytes);
        XMLDocumentStatus status = XML_DOC_APPEND_FAILED;
        THXMLDocument document(path.c_str(), &status, VALIDATION_IGNORE_ERRORS, "", false);
        EXPECT_EQ(status, XML_DOC_OK) << file.description << ": " << document.get_errorText();
        const OwnedNode root = root_of(document);
        ASSERT_NE(root, nullptr) << file.description;
        const std::string expected = file.description == std::string("Latin 1") ? "gr\xC3\xBC\xC3\x9F"
                                                                                  "e"
                                                                                : kUtf8;
        EXPECT_EQ(root->get_text(), expected) << file.description;
        EXPECT_EQ(document.get_encoding(), file.encoding) << file.description;
    }
}

TEST(EncodingOfBytes, IsReadFromTheDeclarationUnlessItIsForced)
{
    const OwnedDocument document = empty_document();
    for (const File& file : files()) {
        EXPECT_EQ(document->parse(file.bytes, ""), XML_DOC_OK)
            << file.description << ": " << document->get_errorText();
    }
}

TEST(EncodingOfBytes, IsForcedAgainstTheDeclaration)
{
    const OwnedDocument document = empty_document();
    const auto text_as = [&](const std::string& bytes, THSupportedXmlEncoding encoding) {
        EXPECT_EQ(document->parse(bytes.data(), bytes.size(), "buffer", encoding), XML_DOC_OK)
            << document->get_errorText();
        const OwnedNode root = root_of(*document);
        return root ? root->get_text() : "no root";
    };
    const std::string misdeclared =
        std::string("<?xml version='1.0' encoding='ISO-8859-1'?><r>") + kUtf8 + "</r>";
    EXPECT_NE(text_as(misdeclared, XML_ENCODING_DECLARED), kUtf8);
    EXPECT_EQ(text_as(misdeclared, XML_ENCODING_UTF8), kUtf8);
    EXPECT_EQ(text_as("\xEF\xBB\xBF" + misdeclared, XML_ENCODING_UTF8), kUtf8);
    for (const char* declared : {"", "UTF-8", "UTF-16", "UTF-32"}) {
        EXPECT_EQ(text_as(in_utf16(document_in(declared), false), XML_ENCODING_UTF16), kUtf8);
        EXPECT_EQ(text_as("\xFF\xFE" + in_utf16(document_in(declared), false), XML_ENCODING_UTF16), kUtf8);
        EXPECT_EQ(text_as(in_utf32(document_in(declared), false), XML_ENCODING_UTF32), kUtf8);
        EXPECT_EQ(text_as(std::string("\xFF\xFE\0\0", 4) + in_utf32(document_in(declared), false),
                          XML_ENCODING_UTF32),
                  kUtf8);
    }
    const std::string utf8 = "<r/>";
    EXPECT_EQ(document->parse(utf8.data(), utf8.size(), "", XML_ENCODING_UTF16), XML_DOC_PARSE_FAILED);
    EXPECT_EQ(document->parse(utf8.data(), utf8.size(), "", XML_ENCODING_UTF32), XML_DOC_PARSE_FAILED);
}

TEST(EncodingOfWideText, Has4BytesACharacter)
{
    const OwnedDocument document = empty_document();
    const std::wstring text = std::wstring(L"<r>") + kWide + L"</r>";
    EXPECT_EQ(document->parse(text, "buffer"), XML_DOC_OK);
    EXPECT_EQ(root_of(*document)->get_text(), kUtf8);
    EXPECT_EQ(document->parse(text.data(), text.size(), "buffer", XML_ENCODING_UTF32), XML_DOC_OK);
    EXPECT_EQ(root_of(*document)->get_text(), kUtf8);
}

// Two bytes a character, whatever the characters of the type take.
TEST(EncodingOfWideText, Has2BytesACharacterInAnyOther)
{
    const OwnedDocument document = empty_document();
    const std::string bytes = in_utf16(document_in(""), false);
    std::wstring packed(bytes.size() / sizeof(wchar_t) + 1, L'\0');
    std::memcpy(packed.data(), bytes.data(), bytes.size());
    EXPECT_EQ(document->parse(packed.data(), bytes.size() / 2, "", XML_ENCODING_UTF16), XML_DOC_OK);
    EXPECT_EQ(root_of(*document)->get_text(), kUtf8);
    std::wstring narrow(4, L'\0');
    std::memcpy(narrow.data(), "<r></r>  ", 8);
    EXPECT_EQ(document->parse(narrow.data(), 4, "", XML_ENCODING_UTF8), XML_DOC_OK);
    EXPECT_EQ(document->parse(narrow.data(), 4, "", XML_ENCODING_DECLARED), XML_DOC_OK);
}

TEST(RoundTrip, RestoresABuiltDocumentFromItsText)
{
    for (const auto encoding : kWritten) {
        const OwnedDocument document = built_with_text(encoding);
        for (const bool is_pretty : {false, true}) {
            for (const bool keeps_declaration : {false, true}) {
                std::string bytes;
                ASSERT_EQ(document->serialize(bytes, is_pretty, keeps_declaration), XML_DOC_OK);
                const OwnedDocument read = empty_document();
                EXPECT_EQ(read->parse(bytes.data(), bytes.size(), "", encoding), XML_DOC_OK) << encoding;
                expect_the_text(*read);
                std::string again;
                if (is_pretty || encoding != XML_ENCODING_UTF8) continue;
                EXPECT_EQ(read->serialize(again, is_pretty, keeps_declaration), XML_DOC_OK);
                EXPECT_EQ(again, bytes);
            }
        }
    }
}

TEST(RoundTrip, RestoresABuiltDocumentFromItsWideText)
{
    for (const auto encoding : kWritten) {
        const OwnedDocument document = built_with_text(encoding);
        std::wstring wide;
        ASSERT_EQ(document->serialize(wide, false, true), XML_DOC_OK);
        EXPECT_NE(wide.find(kWide), std::wstring::npos) << encoding;
        const OwnedDocument read = empty_document();
        EXPECT_EQ(read->parse(wide, ""), XML_DOC_OK) << encoding << read->get_errorText();
        expect_the_text(*read);
    }
}

TEST(RoundTrip, RestoresABuiltDocumentFromItsFile)
{
    const Folder folder;
    for (const auto encoding : kWritten) {
        const std::string path = folder.path("saved.xml");
        ASSERT_EQ(built_with_text(encoding)->save(path.c_str(), false, false), XML_DOC_OK);
        XMLDocumentStatus status = XML_DOC_APPEND_FAILED;
        THXMLDocument read(path.c_str(), &status, VALIDATION_IGNORE_ERRORS, "", false);
        EXPECT_EQ(status, XML_DOC_OK);
        EXPECT_EQ(read.get_encoding(), encoding);
        expect_the_text(read);
    }
}

TEST(PathOfAFile, IsUtf8WhateverTheLocale)
{
    const Folder folder;
    const std::string path = folder.path(std::string("gr\xC3\xBC\xC3\x9F") + "e-\xF0\x9F\x98\x80.xml");
    for (const char* locale : {"C", "C.UTF-8"}) {
        if (!std::setlocale(LC_ALL, locale)) continue;
        for (const bool is_utf8 : {true, false}) {
            std::filesystem::remove(path);
            EXPECT_EQ(built_with_text(XML_ENCODING_UTF8)->save(path.c_str(), false, is_utf8), XML_DOC_OK);
            EXPECT_TRUE(std::filesystem::exists(path)) << locale;
            XMLDocumentStatus status = XML_DOC_APPEND_FAILED;
            THXMLDocument read(path.c_str(), &status, VALIDATION_IGNORE_ERRORS, "", is_utf8);
            EXPECT_EQ(status, XML_DOC_OK) << locale << read.get_errorText();
            expect_the_text(read);
        }
    }
}

TEST(PathOfAFile, MayBeOfBytesThatAreNotUtf8UnlessItIsSaidToBe)
{
    const Folder folder;
    const std::string path = folder.path("latin-\xFC.xml");
    EXPECT_EQ(built_with_text(XML_ENCODING_UTF8)->save(path.c_str(), false, false), XML_DOC_OK);
    const OwnedDocument document = empty_document();
    EXPECT_EQ(document->load(path.c_str(), false), XML_DOC_OK);
    EXPECT_EQ(document->load(path.c_str(), true), XML_DOC_PARSE_FAILED);
    EXPECT_EQ(built_with_text(XML_ENCODING_UTF8)->save(path.c_str(), false, true), XML_DOC_SAVE_FAILED);
}
