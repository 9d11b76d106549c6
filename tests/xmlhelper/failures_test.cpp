// What can't be made to fail from outside: these stand-ins come before the lock and the XML platform.
#include "tests/xmlhelper/fixtures.h"

#include "xmlhelper/platform.h"

#include "changelist/path_map.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/RuntimeException.hpp>
#include <xercesc/util/XMLUniDefs.hpp>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <stdexcept>

using namespace xmlhelper;
using testing::HasSubstr;

namespace
{

bool g_locking_fails = false;
bool g_platform_fails = false;

struct Failing {
    explicit Failing(bool& failure) : failure_(failure) { failure_ = true; }
    ~Failing() { failure_ = false; }
    Failing(const Failing&) = delete;
    Failing& operator=(const Failing&) = delete;
    bool& failure_;
};

} // namespace

int real_lock(pthread_mutex_t* mutex) __asm__("__real__ZN6ACE_OS10mutex_lockEP15pthread_mutex_t");
int wrapped_lock(pthread_mutex_t* mutex) __asm__("__wrap__ZN6ACE_OS10mutex_lockEP15pthread_mutex_t");

int wrapped_lock(pthread_mutex_t* mutex)
{
    return g_locking_fails ? -1 : real_lock(mutex);
}

void real_initialize(
    const char* locale, const char* nls_home, xercesc::PanicHandler* panic_handler,
    xercesc::MemoryManager*
        memory_manager) __asm__("__real__ZN11xercesc_3_216XMLPlatformUtils10InitializeEPKcS2_PNS_"
                                "12PanicHandlerEPNS_13MemoryManagerE");
void wrapped_initialize(
    const char* locale, const char* nls_home, xercesc::PanicHandler* panic_handler,
    xercesc::MemoryManager*
        memory_manager) __asm__("__wrap__ZN11xercesc_3_216XMLPlatformUtils10InitializeEPKcS2_PNS_"
                                "12PanicHandlerEPNS_13MemoryManagerE");

void wrapped_initialize(const char* locale, const char* nls_home, xercesc::PanicHandler* panic_handler,
                        xercesc::MemoryManager* memory_manager)
{
    if (!g_platform_fails) return real_initialize(locale, nls_home, panic_handler, memory_manager);
    // An exception of the parser's needs a platform for its message.
    static const bool is_started = [&] {
        real_initialize(locale, nls_home, panic_handler, memory_manager);
        return true;
    }();
    if (is_started) {
        throw xercesc::RuntimeException("start.cpp", 1, xercesc::XMLExcepts::Gen_CouldNotOpenDTD,
                                        u"the place");
    }
}

TEST(LockThatFails, LeavesTextsEmptyAndTagsNull)
{
    const OwnedDocument document = parsed("<r a='v'>t</r>");
    ASSERT_NE(transcodeUtf8TagToXmlTag("known"), nullptr);
    const Failing failing(g_locking_fails);
    EXPECT_EQ(transcodeXmlToUtf8(u"text"), "");
    const std::unique_ptr<XMLCh[]> text(transcodeUtf8ToXml("text"));
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(std::vector<XMLCh>(text.get(), text.get() + 5), std::vector<XMLCh>(5, 0));
    EXPECT_EQ(transcodeUtf8TagToXmlTag("known"), nullptr);
    EXPECT_EQ(transcodeUtf8TagToXmlTag("unknown"), nullptr);
}

TEST(LockThatFails, FailsWhatNeedsAName)
{
    const OwnedDocument document = parsed("<r a='v'>t</r>");
    const OwnedNode root = root_of(*document);
    const std::unique_ptr<XMLNamedNodeMap> attributes(root->get_attributes());
    const Failing failing(g_locking_fails);
    EXPECT_EQ(document->createElement("e"), nullptr);
    EXPECT_EQ(root->addAttribute("b", "w"), XML_DOC_SET_ATTRIBUTE_FAILED);
    EXPECT_EQ(root->getAttributeString("a"), "");
    EXPECT_EQ(root->get_text(), "");
    EXPECT_EQ(root->get_nodeName(), "");
    EXPECT_EQ(attributes->getNamedItem("a"), nullptr);
    EXPECT_TRUE(numbers(document->selectNodes("//r")).empty());
}

TEST(LockThatFails, DoesNotKeepADocumentFromBeingMadeAndRead)
{
    const Failing failing(g_locking_fails);
    const OwnedDocument document = empty_document();
    EXPECT_EQ(document->parse("<r/>", ""), XML_DOC_OK);
}

TEST(PlatformThatFails, IsTheStatusOfAllConstructors)
{
    const Failing failing(g_platform_fails);
    constexpr char kMessage[] = "Error during Xerces-c Initialization.  Exception message: ";
    XMLDocumentStatus status = XML_DOC_OK;
    THXMLDocument empty(&status, false, VALIDATION_IGNORE_ERRORS, "");
    EXPECT_EQ(status, XML_DOC_PLATFORM_FAILED);
    EXPECT_THAT(empty.get_errorText(), testing::StartsWith(kMessage));
    EXPECT_THAT(empty.get_errorText(), HasSubstr("the place"));
    status = XML_DOC_OK;
    THXMLDocument loaded("/dev/null", &status, VALIDATION_IGNORE_ERRORS, "", true);
    EXPECT_EQ(status, XML_DOC_PLATFORM_FAILED);
    EXPECT_THAT(loaded.get_errorText(), testing::StartsWith(kMessage));
}

TEST(PlatformThatFails, LeavesADocumentThatCanDoNothing)
{
    const Failing failing(g_platform_fails);
    THXMLDocument document(nullptr, false, VALIDATION_IGNORE_ERRORS, "");
    EXPECT_EQ(document.parse("<r/>", ""), XML_DOC_PARSE_FAILED);
    std::string text;
    EXPECT_EQ(document.serialize(text, false, false), XML_DOC_SERIALIZE_FAILED);
    EXPECT_EQ(document.save("/dev/null", false, false), XML_DOC_SAVE_FAILED);
    EXPECT_EQ(document.createElement("r"), nullptr);
    EXPECT_EQ(document.selectNodes("r"), nullptr);
    EXPECT_EQ(document.get_root(), nullptr);
}

TEST(PlatformThatFails, KeepsPathMapsFromBeingRead)
{
    const Failing failing(g_platform_fails);
    std::vector<snapdiff_repl_pattern> patterns;
    std::vector<std::string> paths;
    bool more = true;
    EXPECT_EQ(soapwrapper::parse_pattern_xml("<r/>", patterns, paths, more, nullptr), 1);
    EXPECT_TRUE(more);
}

// The transcoder is made once a process, so its making fails in processes of their own.
class FirstUse : public testing::Test
{
  protected:
    FirstUse() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }

    // Ends the process after it has printed what each use of the transcoder throws.
    [[noreturn]] static void print_what_is_thrown()
    {
        const auto print = [](const std::function<void()>& use) {
            try {
                use();
                std::fputs("nothing; ", stderr);
            } catch (const std::domain_error& error) {
                std::fprintf(stderr, "%s; ", error.what());
            }
        };
        print([] { getUtf8Transcoder(); });
        print([] { transcodeXmlToUtf8(u"text"); });
        print([] { const std::unique_ptr<XMLCh[]> text(transcodeUtf8ToXml("text")); });
        print([] { transcodeUtf8TagToXmlTag("text"); });
        std::fputs("end", stderr);
        std::exit(0);
    }
};

TEST_F(FirstUse, ThrowsTheStatusOfATranscoderThatCannotBeHad)
{
    EXPECT_EXIT(
        {
            g_platform_fails = true;
            print_what_is_thrown();
        },
        testing::ExitedWithCode(0), "^(failed to obtain XMLTranscoder, status: [0-9]+; ){4}end");
}

TEST_F(FirstUse, ThrowsWhereThereIsNoTranscoderAtAll)
{
    EXPECT_EXIT(
        {
            g_locking_fails = true;
            print_what_is_thrown();
        },
        testing::ExitedWithCode(0), "^m_pXmlTranscoder is NULL!; nothing; nothing; nothing; end");
}
