// The library in a process that loads and unloads it, as a host with plug-ins does.
#include "xmlhelper/transcoding_hooks.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

namespace
{

struct Unload {
    void operator()(void* library) const { dlclose(library); }
};

class Library
{
  public:
    Library() : handle_(dlopen(SOAPWRAPPER_LIBRARY, RTLD_NOW | RTLD_LOCAL))
    {
        if (!handle_) throw std::runtime_error(dlerror());
    }

    template <class Function>
    Function* find(const char* name) const
    {
        return reinterpret_cast<Function*>(dlsym(handle_.get(), name));
    }

    // The length of what the library makes of the text.
    std::size_t converted_length(const std::string& text) const
    {
        auto* convert = find<decltype(utf8TranscodeForTest)>("utf8TranscodeForTest");
        auto* release = find<decltype(releaseXmlChForTest)>("releaseXmlChForTest");
        if (!convert || !release) throw std::runtime_error("the hooks are not exported");
        std::size_t length = 0;
        release(convert(text.c_str(), nullptr, &length));
        return length;
    }

  private:
    std::unique_ptr<void, Unload> handle_;
};

bool is_loaded()
{
    return static_cast<bool>(
        std::unique_ptr<void, Unload>(dlopen(SOAPWRAPPER_LIBRARY, RTLD_NOW | RTLD_NOLOAD)));
}

} // namespace

TEST(LoadedLibrary, ConvertsThroughItsHooks)
{
    const Library library;
    EXPECT_EQ(library.converted_length("a\xE2\x82\xAC"), 2U);
    EXPECT_EQ(library.converted_length(std::string(65536, 'x')), 65536U);
}

TEST(LoadedLibrary, ThrowsThroughItsHooks)
{
    const Library library;
    EXPECT_THROW(library.converted_length(std::string(65537, 'x')), std::domain_error);
}

TEST(LoadedLibrary, ComesAndGoesAHundredTimes)
{
    for (int i = 0; i < 100; ++i) {
        {
            const Library library;
            ASSERT_EQ(library.converted_length("text"), 4U);
            ASSERT_TRUE(is_loaded());
        }
        ASSERT_FALSE(is_loaded());
    }
}

TEST(LoadedLibrary, IsUnloadedByAnotherThreadThanLoadedIt)
{
    for (int i = 0; i < 10; ++i) {
        auto library = std::make_unique<Library>();
        std::thread user([&] { EXPECT_EQ(library->converted_length("text"), 4U); });
        user.join();
        std::thread closer([&] { library.reset(); });
        closer.join();
        ASSERT_FALSE(is_loaded());
    }
}

TEST(LoadedLibrary, LeavesNoMemoryBehind)
{
    const auto come_and_go = [] {
        const Library library;
        EXPECT_EQ(library.converted_length("text"), 4U);
    };
    // The dynamic loader's own tables settle first, and never wholly.
    constexpr std::size_t kLoads = 200;
    constexpr std::size_t kLoadersOwn = 64;
    for (std::size_t i = 0; i < kLoads; ++i) come_and_go();
    const std::size_t before = mallinfo2().uordblks;
    for (std::size_t i = 0; i < kLoads; ++i) come_and_go();
    EXPECT_LT(mallinfo2().uordblks, before + kLoads * kLoadersOwn);
}

TEST(LoadedLibrary, LeavesTheHostsXmlPlatformAlone)
{
    xercesc::XMLPlatformUtils::Initialize();
    {
        xercesc::DOMImplementation* implementation =
            xercesc::DOMImplementationRegistry::getDOMImplementation(u"XML 1.0");
        xercesc::DOMDocument* document = implementation->createDocument(nullptr, u"host", nullptr);
        for (int i = 0; i < 5; ++i) {
            const Library library;
            EXPECT_EQ(library.converted_length("text"), 4U);
        }
        EXPECT_EQ(std::u16string(document->getDocumentElement()->getNodeName()), u"host");
        document->getDocumentElement()->appendChild(document->createElement(u"child"));
        document->release();
    }
    xercesc::XMLPlatformUtils::Terminate();
}
