// soapwrapper-probe changes, against a service whose answers are written down.
#include "probe_operations_fixture.h"

#include <nlohmann/json.hpp>

#include <sstream>
#include <tuple>

namespace
{

using nlohmann::json;
using ::testing::AllOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

constexpr char kList[] = "listFile";

class ProbeChanges : public ProbeOperationsTest
{
  protected:
    ProbeChanges()
    {
        service.answer("getSnapPropByName", snapshot("filer", "/vol/v/.snapshot/b"));
        service.answer("openSnapChangeList", token("fileListHandle"));
        service.answer("closeSnapChangeList", "");
        service.answer(kList, batch({}));
    }

    static std::string snapshot(const std::string& filer, const std::string& path)
    {
        return element("snapInfo",
                       element("snapDef", element("snapName", "b") + element("snapType", "7") +
                                              element("snapFlags", "8") + element("snapSaveas", "9")) +
                           element("snapServer", "s") + element("snapLsu", "l") +
                           element("snapVolSpec", element("ndmp", element("exportfiler", filer) +
                                                                      element("exportpath", path)) +
                                                      element("volumeType", "4")) +
                           element("snapStatus", "0") + element("snapSize", "0"));
    }
    static std::string entry(const std::string& name, int change = 2, int type = 1,
                             const std::string& size = "10", const std::string& time = "1767571200")
    {
        std::string rest;
        for (const char* number : {"accesstime", "createtime", "changetime"}) rest += element(number, "0");
        rest += element("size", size);
        for (const char* number : {"ownerid", "groupid", "permissions", "inode", "gnum"}) {
            rest += element(number, "0");
        }
        return element("item", element("name", name) + element("ftype", std::to_string(type)) +
                                   element("changetype", std::to_string(change)) + element("modtime", time) +
                                   rest);
    }
    static std::string batch(const std::vector<std::string>& entries, int error = 0, int retry = 0)
    {
        std::string all;
        for (const std::string& each : entries) all += each;
        return element("fileAttrList", all) + element("numFiles", std::to_string(entries.size())) +
               element("error", std::to_string(error)) + element("retryInterval", std::to_string(retry));
    }

    std::vector<std::string> command(const std::vector<std::string>& more = {}) const
    {
        std::vector<std::string> words = {"changes", kName, "vol1", "a", "b"};
        words.insert(words.end(), more.begin(), more.end());
        return words;
    }
    ProcessResult changes(const std::vector<std::string>& more = {}) const { return run(command(more)); }

    // All but the sum, which tells of the time.
    static std::vector<std::string> lines(const std::string& text)
    {
        std::vector<std::string> all;
        std::istringstream in(text);
        for (std::string line; std::getline(in, line);) all.push_back(line);
        return all;
    }

    const std::string kPath = "/vol/v/.snapshot/b/";
};

TEST_F(ProbeChanges, ShowsEachEntryInItsLineAndTheSumOnStandardError)
{
    service.answer_first(kList, batch({entry(kPath + "x", 0), entry(kPath + "d", 2, 2, "4096"),
                                       entry("/vol/v/.snapshot/a/gone", 1, 5, "2000")}));
    service.answer_first(kList, batch({entry(kPath + "odd", 9, 77, "-5", "-9223372036854775808")}));
    const ProcessResult result = changes();
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_EQ(result.out, "CHANGE   TYPE           SIZE  MODIFIED              PATH\n"
                          "created  file           10 B  2026-01-05T00:00:00Z  /vol/v/.snapshot/b/x\n"
                          "deleted  symlink     2.0 KiB  2026-01-05T00:00:00Z  /vol/v/.snapshot/b/gone\n"
                          "changed  directory   4.0 KiB  2026-01-05T00:00:00Z  /vol/v/.snapshot/b/d\n"
                          "9        77               -5  -9223372036854775808  /vol/v/.snapshot/b/odd\n");
    EXPECT_THAT(result.err, StartsWith("4 entries, 10 B, 0:0"));
    EXPECT_EQ(lines(result.err).size(), 1U);
    EXPECT_THAT(service.operations(),
                ElementsAre("openServer", "getSnapPropByName", "getSnapPropByName", "getSnapPropByName",
                            "getSnapPropByName", "openSnapChangeList", kList, kList, kList,
                            "closeSnapChangeList", "closeServer"));
}

TEST_F(ProbeChanges, HandsOnWhatTheServiceKeepsOfTheSnapshots)
{
    EXPECT_EQ(changes({"--flags", "5"}).exit_code, 0);
    const std::string request = asked("openSnapChangeList");
    EXPECT_THAT(request, HasSubstr(element("snapType", "7") + element("snapFlags", "8")));
    EXPECT_THAT(request, HasSubstr(element("exportpath", "/vol/v/.snapshot/b")));
    EXPECT_THAT(request, HasSubstr(element("diffFlag", "5")));
    EXPECT_THAT(request, HasSubstr("dXNlX3phcGk9MA==")) << "use_zapi=0";
}

TEST_F(ProbeChanges, AnEmptyListIsHeadingsAndNothingForScripts)
{
    EXPECT_EQ(changes().out, "CHANGE   TYPE           SIZE  MODIFIED              PATH\n");
    EXPECT_THAT(changes({"--separator", ","}).out, IsEmpty());
    EXPECT_EQ(lines(changes({"--json"}).out).size(), 1U);
}

TEST_F(ProbeChanges, InJsonEachEntryIsALineAndTheSumIsTheLast)
{
    service.answer_first(kList, batch({entry(kPath + "\"q\"\t&#xe9;", 0), entry(kPath + "y", 1)}));
    const ProcessResult result = changes({"--json"});
    EXPECT_THAT(result.err, IsEmpty());
    const std::vector<std::string> all = lines(result.out);
    ASSERT_EQ(all.size(), 3U);
    const json first = json::parse(all[0]);
    EXPECT_EQ(first, json({{"schema", 1},
                           {"change", "created"},
                           {"type", "file"},
                           {"size", 10},
                           {"modified", "2026-01-05T00:00:00Z"},
                           {"path", kPath + "\"q\" \xef\xbf\xbd"}}));
    EXPECT_EQ(json::parse(all[1]).at("change"), "deleted");
    const json sum = json::parse(all[2]);
    EXPECT_EQ(sum.at("route"), "service");
    EXPECT_EQ(sum.at("complete"), true);
    EXPECT_EQ(sum.at("entries"), 2);
    EXPECT_EQ(sum.at("bytes"), 10);
    EXPECT_GE(sum.at("seconds"), 0.0);
}

TEST_F(ProbeChanges, EscapesPathsByteForByteIfAsked)
{
    service.answer_first(kList, batch({entry(kPath + "\\ff\\5c\\0a &#xe9;~")}));
    EXPECT_EQ(changes({"--escape", "--separator", "|"}).out,
              "changed|file|10|2026-01-05T00:00:00Z|" + kPath + "\\ff\\5c\\0a \\e9~\n");
}

TEST_F(ProbeChanges, SendsEveryFilterWithEveryRequest)
{
    service.answer_first(kList, batch({entry(kPath + "x")}));
    EXPECT_EQ(changes({"--filter", "home/a", "--filter", std::string(1023, 'f')}).exit_code, 0);
    EXPECT_THAT(asked(kList),
                HasSubstr(element("filterPathNum", "2") +
                          element("filterPathList",
                                  element("item", "home/a") + element("item", std::string(1023, 'f')))));
    EXPECT_EQ(changes({"--filter", std::string(1024, 'f')}).exit_code, 2);
}

TEST_F(ProbeChanges, AsksABusyServiceAgain)
{
    for (int i = 0; i < 3; ++i) service.answer_first(kList, batch({}, kBusy));
    service.answer_first(kList, batch({entry(kPath + "x")}));
    const ProcessResult result = changes({"--separator", ","});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_EQ(lines(result.out).size(), 1U);
    EXPECT_EQ(count(kList), 5);
}

TEST_F(ProbeChanges, FailsBehindWhatWasReadAndClosesTheList)
{
    service.answer_first(kList, batch({entry(kPath + "x"), entry(kPath + "y")}));
    service.refuse(kList, "the filer burns", 2069999);
    const ProcessResult text = changes({"--separator", ","});
    EXPECT_EQ(text.exit_code, 4);
    EXPECT_EQ(lines(text.out).size(), 2U);
    ASSERT_GE(lines(text.err).size(), 2U);
    EXPECT_THAT(lines(text.err)[0], HasSubstr("2 entries, 20 B, "));
    EXPECT_THAT(lines(text.err)[0], HasSubstr(", incomplete"));
    EXPECT_THAT(lines(text.err)[1], HasSubstr("(2069999)"));
    EXPECT_EQ(count("closeSnapChangeList"), 1);

    service.answer_first(kList, batch({entry(kPath + "x")}));
    const std::vector<std::string> all = lines(changes({"--json"}).out);
    ASSERT_EQ(all.size(), 2U);
    const json sum = json::parse(all[1]);
    EXPECT_EQ(sum.at("complete"), false);
    EXPECT_EQ(sum.at("entries"), 1);
    EXPECT_EQ(sum.at("error").at("status"), 2069999);
    EXPECT_THAT(service.operations().back(), "closeServer");
}

TEST_F(ProbeChanges, TakesALostConnectionForNoEnd)
{
    service.answer_first(kList, batch({entry(kPath + "x")}));
    service.answer_raw(kList, "");
    const ProcessResult result = changes();
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, HasSubstr("STS_ESOAPERROR(2060017)"));
}

TEST_F(ProbeChanges, OfALongerListAsManyAreShownAsWereWantedAndThatThereIsMoreIsSaid)
{
    const std::string three = batch({entry(kPath + "x"), entry(kPath + "y"), entry(kPath + "z")});
    service.answer_first(kList, three);
    const ProcessResult limited = changes({"--limit", "2", "--separator", ","});
    EXPECT_EQ(limited.exit_code, 0);
    EXPECT_EQ(lines(limited.out).size(), 2U);
    ASSERT_EQ(lines(limited.err).size(), 2U);
    EXPECT_THAT(lines(limited.err)[0], AllOf(StartsWith("2 entries, 20 B, "), Not(HasSubstr("incomplete"))));
    EXPECT_EQ(lines(limited.err)[1], "... and more: shown are the first 2 (--limit)");
    EXPECT_EQ(count("closeSnapChangeList"), 1);
    EXPECT_EQ(service.operations().back(), "closeServer");
    service.answer_first(kList, three);
    const json sum = json::parse(lines(changes({"--limit", "2", "--json"}).out).back());
    EXPECT_EQ(sum.at("entries"), 2);
    EXPECT_EQ(sum.at("complete"), false);
    EXPECT_EQ(sum.at("limited"), true);
}

TEST_F(ProbeChanges, SizesAreToldToTheByteIfAsked)
{
    service.answer_first(kList, batch({entry(kPath + "x", 2, 1, "1073741825")}));
    const ProcessResult result = changes({"--bytes"});
    EXPECT_EQ(result.out, "CHANGE   TYPE               SIZE  MODIFIED              PATH\n"
                          "changed  file         1073741825  2026-01-05T00:00:00Z  /vol/v/.snapshot/b/x\n");
    EXPECT_THAT(result.err, StartsWith("1 entries, 1073741825 bytes, "));
}

TEST_F(ProbeChanges, AnotherEndIsTakenAsTold)
{
    service.refuse(kList, "that was all", 2061111);
    EXPECT_EQ(changes({"--end-status", "2061111"}).exit_code, 0);
}

TEST_F(ProbeChanges, TellsOfAListThatCannotBeClosed)
{
    service.refuse("closeSnapChangeList", "no", 2069998);
    const ProcessResult result = changes();
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, HasSubstr("(2069998)"));
    EXPECT_EQ(service.operations().back(), "closeServer");
}

TEST_F(ProbeChanges, AFailedOpenReadsNothing)
{
    service.refuse("openSnapChangeList", "no", 2069997);
    const ProcessResult result = changes();
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_EQ(count(kList), 0);
    const std::vector<std::string> documents = lines(changes({"--json"}).out);
    ASSERT_EQ(documents.size(), 1U) << "each line is a document";
    EXPECT_EQ(json::parse(documents[0]).at("error").at("status"), 2069997);
    EXPECT_EQ(count("closeSnapChangeList"), 0);
}

TEST_F(ProbeChanges, AnInterruptionClosesTheListAndTheServer)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        service.answer(kList, batch({}, kBusy));
        const long before = count(kList);
        const ProcessResult result = run_and_signal(command({"--json"}), kList, before + 2, signal);
        EXPECT_EQ(result.exit_code, 5);
        EXPECT_EQ(result.err, "interrupted: the list was not read to its end\n");
        const json sum = json::parse(result.out);
        EXPECT_EQ(sum.at("complete"), false);
        EXPECT_EQ(sum.at("error").at("name"), "interrupted");
        const std::vector<std::string> all = service.operations();
        EXPECT_EQ(all.back(), "closeServer");
        EXPECT_EQ(all[all.size() - 2], "closeSnapChangeList");
    }
}

TEST_F(ProbeChanges, AnEndlessListThatNobodyTakesIsClosed)
{
    std::vector<std::string> entries;
    for (int i = 0; i < 1000; ++i)
        entries.push_back(entry(kPath + std::string(100, 'x') + std::to_string(i)));
    service.answer(kList, batch(entries));
    Process::Streams closed;
    closed.out_is_closed = true;
    Process::Streams full;
    full.out_file = "/dev/full";
    for (const auto& [streams, code, told] :
         {std::tuple(closed, 141, ""),
          std::tuple(full, 4, "output: it could not be written\n    No space left on device\n")}) {
        const ProcessResult result =
            Process(PROBE_PROGRAM, complete(command()), kCredential, streams).finish();
        EXPECT_EQ(result.exit_code, code);
        EXPECT_EQ(result.err, told);
        const std::vector<std::string> all = service.operations();
        EXPECT_EQ(all.back(), "closeServer");
        EXPECT_EQ(all[all.size() - 2], "closeSnapChangeList");
    }
}

TEST_F(ProbeChanges, OnATerminalALineTellsHowItStandsAndInAPipeNothingDoes)
{
    // Behind three quick questions the probe pauses, and says so.
    for (int i = 0; i < 5; ++i) service.answer_first(kList, batch({}, kBusy));
    EXPECT_THAT(run_on_terminal(command()).err, StartsWith("\r0 entries, 0 B, 0:00, 0 entries/s"));
    for (int i = 0; i < 5; ++i) service.answer_first(kList, batch({}, kBusy));
    EXPECT_THAT(changes().err, Not(HasSubstr("\r")));
}

TEST_F(ProbeChanges, RefusesWhatCannotBeMeant)
{
    using Words = std::vector<std::string>;
    for (const Words& more :
         {Words{"--route", "fax"}, Words{"--mount", "/mnt", "--isid", "x"}, Words{"--volume", "/vol/v"},
          Words{"--zapi-user", "two words"}, Words{"--isid", std::string(4096, 'x')}, Words{"--mount", "a,b"},
          Words{"--route", "service", "--isid", "use_zapi=1"}}) {
        EXPECT_EQ(changes(more).exit_code, 2) << more[0] << ' ' << more[1];
    }
    const ProcessResult baseless = run({"changes", kName, "vol1", "-", "b"});
    EXPECT_EQ(baseless.exit_code, 2);
    EXPECT_THAT(baseless.err, HasSubstr("only the second plug-in lists without a base"));
    const ProcessResult loginless = changes({"--route", "zapi", "--zapi-user", "admin"});
    EXPECT_EQ(loginless.exit_code, 2);
    EXPECT_THAT(loginless.err, HasSubstr("SOAPWRAPPER_ZAPI_PASSWORD"));
    EXPECT_EQ(count("openSnapChangeList"), 0);
}

} // namespace
