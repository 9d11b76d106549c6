#include "tests/xmlhelper/fixtures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace xmlhelper;
using testing::HasSubstr;
using testing::StartsWith;

namespace
{

constexpr char kDeclaration[] = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\" ?>";

std::string written(THXMLDocument& document, bool is_pretty, bool keeps_declaration)
{
    std::string text;
    EXPECT_EQ(document.serialize(text, is_pretty, keeps_declaration), XML_DOC_OK) << document.get_errorText();
    return text;
}

bool can_write_to_full_device()
{
    return std::filesystem::exists("/dev/full");
}

} // namespace

TEST(Serializing, WritesTheDeclarationIfItIsToBeKept)
{
    const OwnedDocument document = parsed("<r><a>t</a></r>");
    EXPECT_EQ(written(*document, false, false), "<r><a>t</a></r>");
    EXPECT_EQ(written(*document, false, true), std::string(kDeclaration) + "<r><a>t</a></r>");
}

TEST(Serializing, IndentsIfItIsToBePretty)
{
    const OwnedDocument document = parsed("<r><a>t</a><b/></r>");
    const std::string text = written(*document, true, false);
    EXPECT_THAT(text, HasSubstr("<r>\n"));
    EXPECT_THAT(text, HasSubstr("\n  <a>t</a>\n"));
    EXPECT_THAT(text, HasSubstr("\n  <b/>\n"));
    EXPECT_THAT(text, testing::Not(HasSubstr("\n\n")));
}

TEST(Serializing, EscapesWhatMustBeEscaped)
{
    const OwnedDocument document = built("r");
    const OwnedNode root = root_of(*document);
    EXPECT_EQ(root->setAttribute("a", "<&\"'\n"), XML_DOC_OK);
    const OwnedNode child(root->createAndAppendChild("t", "<&>\"'"));
    const std::string text = written(*document, false, false);
    const OwnedDocument read = parsed(text);
    EXPECT_EQ(root_of(*read)->getAttributeString("a"), "<&\"'\n");
    EXPECT_EQ(root_of(*read)->getChildNodeText("t"), "<&>\"'");
}

TEST(Serializing, WritesTheEncodingAndAMarkInUtf16)
{
    const std::string utf16 = written(*built("r", XML_ENCODING_UTF16), false, false);
    EXPECT_EQ(utf16, std::string("\xFF\xFE<\0r\0/\0>\0", 10));
    const std::string utf32 = written(*built("r", XML_ENCODING_UTF32), false, false);
    EXPECT_EQ(utf32, std::string("<\0\0\0r\0\0\0/\0\0\0>\0\0\0", 16));
    EXPECT_EQ(written(*built("r", XML_ENCODING_DECLARED), false, false), "<r/>");
}

TEST(Serializing, WidensEachCharacter)
{
    std::wstring wide;
    EXPECT_EQ(built("r", XML_ENCODING_UTF8)->serialize(wide, false, false), XML_DOC_OK);
    EXPECT_EQ(wide, L"<r/>");
    EXPECT_EQ(built("r", XML_ENCODING_UTF16)->serialize(wide, false, false), XML_DOC_OK);
    EXPECT_EQ(wide, L"\uFEFF<r/>");
    EXPECT_EQ(built("r", XML_ENCODING_UTF32)->serialize(wide, false, false), XML_DOC_OK);
    EXPECT_EQ(wide, L"<r/>");
}

TEST(Serializing, WritesAnEmptyDocument)
{
    const OwnedDocument document = empty_document();
    EXPECT_EQ(written(*document, false, true), kDeclaration);
    EXPECT_EQ(written(*document, false, false), "");
}

TEST(Serializing, NeedsADocument)
{
    const OwnedDocument document = empty_document();
    EXPECT_EQ(document->parse("<", ""), XML_DOC_PARSE_FAILED);
    std::string text = "before";
    std::wstring wide = L"before";
    EXPECT_EQ(document->serialize(text, false, true), XML_DOC_SERIALIZE_FAILED);
    EXPECT_EQ(document->serialize(wide, false, true), XML_DOC_SERIALIZE_FAILED);
    EXPECT_EQ(text, "before");
    EXPECT_EQ(wide, L"before");
}

TEST(Saving, WritesWhatSerializingGives)
{
    const Folder folder;
    for (const auto encoding : {XML_ENCODING_UTF8, XML_ENCODING_UTF16, XML_ENCODING_UTF32}) {
        const OwnedDocument document = built("r", encoding);
        for (const bool is_pretty : {false, true}) {
            EXPECT_EQ(document->save(folder.path("saved.xml").c_str(), is_pretty, true), XML_DOC_OK);
            EXPECT_EQ(folder.read("saved.xml"), written(*document, is_pretty, true)) << encoding;
        }
    }
}

TEST(Saving, ReplacesALongerFile)
{
    const Folder folder;
    const std::string path = folder.write("saved.xml", text_of_length(5000));
    EXPECT_EQ(built("r")->save(path.c_str(), false, false), XML_DOC_OK);
    EXPECT_EQ(folder.read("saved.xml"), std::string(kDeclaration) + "<r/>");
}

TEST(Saving, FailsWithoutADocumentOrAPlaceToWriteTo)
{
    const Folder folder;
    const OwnedDocument document = built("r");
    EXPECT_EQ(document->save(nullptr, false, false), XML_DOC_SAVE_FAILED);
    EXPECT_EQ(document->save("", false, false), XML_DOC_SAVE_FAILED);
    EXPECT_EQ(document->save(folder.path("no/such/folder.xml").c_str(), false, true), XML_DOC_SAVE_FAILED);
    EXPECT_THAT(document->get_errorText(), StartsWith("Caught XMLException at line: "));
    EXPECT_EQ(document->save(folder.path("").c_str(), false, false), XML_DOC_SAVE_FAILED);
    EXPECT_EQ(document->save(text_of_length(65537).c_str(), false, true), XML_DOC_SAVE_FAILED);
    EXPECT_EQ(document->parse("<", ""), XML_DOC_PARSE_FAILED);
    EXPECT_EQ(document->save(folder.path("saved.xml").c_str(), false, false), XML_DOC_SAVE_FAILED);
    EXPECT_FALSE(std::filesystem::exists(folder.path("saved.xml")));
}

TEST(Saving, FailsOnADeviceThatIsFull)
{
    if (!can_write_to_full_device()) GTEST_SKIP() << "no full device on this system";
    const OwnedDocument document = built("r");
    EXPECT_EQ(document->save("/dev/full", false, false), XML_DOC_SAVE_FAILED);
    EXPECT_THAT(document->get_errorText(), StartsWith("Caught XMLException at line: "));
}

TEST(Loading, FailsWithoutAPath)
{
    const OwnedDocument document = parsed("<r/>");
    EXPECT_EQ(document->load(nullptr, true), XML_DOC_PARSE_FAILED);
    EXPECT_EQ(document->get_errorText(), "path is null or empty");
    EXPECT_EQ(document->get_root(), nullptr);
    document->set_errorText("");
    EXPECT_EQ(document->load("", false), XML_DOC_PARSE_FAILED);
    EXPECT_EQ(document->get_errorText(), "path is null or empty");
    XMLDocumentStatus status = XML_DOC_OK;
    const THXMLDocument unloaded(nullptr, &status, VALIDATION_IGNORE_ERRORS, "", true);
    EXPECT_EQ(status, XML_DOC_PARSE_FAILED);
    EXPECT_EQ(unloaded.get_encoding(), XML_ENCODING_UTF8);
}

TEST(Loading, FailsWithoutAFileThatHoldsADocument)
{
    const Folder folder;
    const OwnedDocument document = empty_document();
    EXPECT_EQ(document->load(folder.path("none.xml").c_str(), true), XML_DOC_PARSE_FAILED);
    EXPECT_NE(document->get_errorText(), "");
    EXPECT_EQ(document->load(folder.path("").c_str(), true), XML_DOC_PARSE_FAILED);
    EXPECT_EQ(document->load(folder.write("empty.xml", "").c_str(), true), XML_DOC_PARSE_FAILED);
    EXPECT_EQ(document->load(folder.write("bad.xml", "<r>").c_str(), true), XML_DOC_PARSE_FAILED);
    EXPECT_EQ(document->load(text_of_length(65537).c_str(), true), XML_DOC_PARSE_FAILED);
    EXPECT_THAT(document->get_errorText(), HasSubstr("text exceeded transcoder buffer size"));
}

TEST(Loading, ReplacesWhatTheDocumentHeld)
{
    const Folder folder;
    const OwnedDocument document = parsed("<first/>");
    EXPECT_EQ(document->load(folder.write("second.xml", "<second/>").c_str(), true), XML_DOC_OK);
    EXPECT_EQ(root_of(*document)->get_nodeName(), "second");
    EXPECT_EQ(document->load(folder.path("none.xml").c_str(), true), XML_DOC_PARSE_FAILED);
    EXPECT_EQ(document->get_root(), nullptr);
}
