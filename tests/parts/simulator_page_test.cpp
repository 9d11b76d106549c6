// The page as it is served. What people see of it is tested in a browser.
#include "simulator/front/http.h"
#include "simulator/page/page.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace
{

using namespace soapwrapper::simulator;
using testing::Contains;
using testing::Each;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;
using testing::StartsWith;

Answer asked(const std::string& path)
{
    for (const Route& route : page_routes()) {
        if (route.path == path) return route.handler({});
    }
    return refusal(404);
}

std::vector<std::string> all_matches(const std::string& text, const std::string& pattern)
{
    const std::regex expression(pattern);
    std::vector<std::string> found;
    for (std::sregex_iterator match(text.begin(), text.end(), expression); match != std::sregex_iterator();
         ++match) {
        found.push_back((*match)[1]);
    }
    return found;
}

TEST(SimulatorPage, IsForPeopleAlone)
{
    EXPECT_THAT(page_routes(), Each(Field(&Route::audience, Audience::kPeople)));
    EXPECT_THAT(page_routes(), Each(Field(&Route::method, "GET")));
}

TEST(SimulatorPage, ServesEachFileThatItsDocumentAndItsModulesName)
{
    std::set<std::string> paths;
    for (const Route& route : page_routes()) paths.insert(route.path);
    for (const std::string& path : all_matches(asked("/").body, "(?:href|src)=\"(/[^\"]*)\"")) {
        EXPECT_THAT(paths, Contains(path));
    }
    for (const std::string& path : paths) {
        for (const std::string& name : all_matches(asked(path).body, "from \"\\./([^\"]+)\"")) {
            EXPECT_THAT(paths, Contains("/page/" + name)) << "named by " << path;
        }
    }
}

TEST(SimulatorPage, ServesNoFileThatNothingNames)
{
    std::string texts;
    for (const Route& route : page_routes()) texts += route.handler({}).body;
    for (const Route& route : page_routes()) {
        if (route.path == "/") continue;
        const std::string name = route.path.substr(std::string("/page/").size());
        EXPECT_THAT(texts, HasSubstr("/" + name + "\""));
    }
}

TEST(SimulatorPage, TellsWhatEachFileIsAndForbidsToGuess)
{
    EXPECT_EQ(asked("/").content_type, "text/html; charset=utf-8");
    EXPECT_EQ(asked("/page/style.css").content_type, "text/css; charset=utf-8");
    EXPECT_EQ(asked("/page/main.js").content_type, "text/javascript; charset=utf-8");
    for (const Route& route : page_routes()) {
        EXPECT_THAT(route.handler({}).fields, Contains(Pair("X-Content-Type-Options", "nosniff")))
            << route.path;
        EXPECT_THAT(route.handler({}).fields, Contains(Pair("Cache-Control", "no-cache"))) << route.path;
    }
}

TEST(SimulatorPage, MayLoadAndRunNothingButItsOwnFiles)
{
    for (const Route& route : page_routes()) {
        const Fields fields = route.handler({}).fields;
        const auto policy = std::find_if(fields.begin(), fields.end(), [](const auto& field) {
            return field.first == "Content-Security-Policy";
        });
        ASSERT_NE(policy, fields.end()) << route.path;
        EXPECT_THAT(policy->second, StartsWith("default-src 'none'; script-src 'self'; style-src 'self';"));
        EXPECT_THAT(policy->second, Not(HasSubstr("unsafe")));
        EXPECT_THAT(policy->second, HasSubstr("frame-ancestors 'none'"));
    }
}

TEST(SimulatorPage, HasNoScriptOrStyleInItsDocument)
{
    const std::string document = asked("/").body;
    EXPECT_THAT(all_matches(document, "(<script(?![^>]* src=)[^>]*>)"), IsEmpty());
    EXPECT_THAT(all_matches(document, "(<style)"), IsEmpty());
    EXPECT_THAT(all_matches(document, "( (?:style|on[a-z]+)=)"), IsEmpty());
}

TEST(SimulatorPage, PutsTextsIntoTheDocumentAsTextsOnly)
{
    for (const Route& route : page_routes()) {
        EXPECT_THAT(all_matches(route.handler({}).body,
                                "(innerHTML|outerHTML|insertAdjacentHTML|document\\.write|eval\\()"),
                    IsEmpty())
            << route.path;
    }
}

} // namespace
