// The long operations that soapwrapper-probe starts: what it asks for, and what it shows of their results.
#include "probe_operations_fixture.h"

#include <nlohmann/json.hpp>

#include <tuple>

namespace
{

using nlohmann::json;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

using ProbeOperations = ProbeOperationsTest;
using Words = std::vector<std::string>;

// A command, the end of its operations' names, and what its request holds, in this order.
struct Case {
    Words command;
    std::string operation;
    Words members;
};

const std::string kFiler = "Network_store:filer";
const std::string kVolume = "nfs:filer:/vol/vol1";

const Case kCases[] = {
    {{"snapshot", "create", kFiler, "s", "--volume", kVolume, "--target", "vol2", "--target",
      "Network_store:b/vol\\/3", "--imageset", "set", "--pending", "-2"},
     "CreateSnapByName",
     {"<ns1:serverHandle><ns1:token>T-1<", ">filer</ns1:exportHost>", ">/vol/vol1</ns1:exportName>",
      ">s</ns1:snapName>", ">Network_store:filer</ns1:server>", ">vol2</ns1:lsu>",
      ">Network_store:b</ns1:server>", ">vol/3</ns1:lsu>", "<ns1:ntargets>2<", ">set</ns1:imageset>",
      "<ns1:pendingflag>-2<"}},
    {{"snapshot", "prepare", kFiler, "s", "--volume", kVolume, "--target", "vol2"},
     "PrepareSnapByName",
     {">filer</ns1:exportHost>", ">s</ns1:snapName>", ">vol2</ns1:lsu>", "<ns1:ntargets>1<",
      "<ns1:imageset/>", "<ns1:pendingflag>0<"}},
    {{"snapshot", "validate", kFiler, "s", "--volume", kVolume, "--target", "vol2", "--topology", "mirror"},
     "ValidateSnapByName",
     {">filer</ns1:exportHost>", ">s</ns1:snapName>", ">vol2</ns1:lsu>", "<ns1:ntargets>1<",
      ">mirror</ns1:targetTopology>"}},
    {{"topology", "provision", kFiler, "s", "--volume", kVolume, "--topology", "mirror", "--imageset", "set",
      "--pending", "3"},
     "ProvisionTopology",
     {">filer</ns1:exportHost>", ">s</ns1:snapName>", "<ns1:ntargets>0<", ">mirror</ns1:targetTopology>",
      ">set</ns1:imageset>", "<ns1:pendingflag>3<"}},
    {{"snapshot", "import", kFiler, "s", "--volume", kVolume, "--imageset", "set", "--pending", "3"},
     "ImportSnapByName",
     {">filer</ns1:exportHost>", ">s</ns1:snapName>", ">set</ns1:imageset>", "<ns1:pendingflag>3<"}},
    {{"snapshot", "copy", kFiler, "vol1", "s", "--target", "vol2", "--imageset", "set", "--pending", "3"},
     "CopySnapByName",
     {">T-1</ns1:token>", ">vol1<", ">s</ns1:snapName>", ">vol2</ns1:lsu>", "<ns1:ntargets>1<",
      ">set</ns1:imageset>", "<ns1:pendingflag>3<"}},
    {{"snapshot", "postprocess", kFiler, "vol1", "s"},
     "PostProcessSnapByName",
     {">T-1</ns1:token>", ">vol1<", ">s</ns1:snapName>"}},
    {{"snapshot", "rollback", kFiler, "vol1", "s", "--volume", kVolume, "--over", "o1", "--over", "o2",
      "--flag", "5", "--yes"},
     "RollbackSnap",
     {">T-1</ns1:token>", ">vol1<", ">s</ns1:snapName>", "<ns1:targetServerHandle>", "<ns1:token/>",
      ">filer</ns1:exportHost>", ">o1<", ">o2<", "<ns1:numRollbacks>2<", "<ns1:rollbackFlag>5<"}},
    {{"snapshot", "diff", kFiler, "s", "--volume", kVolume, "--volume", "nfs:other:/vol/vol2"},
     "GetSnapDiff",
     {"<ns1:serverHandle><ns1:token>T-1<", ">s</ns1:snapName>", "<ns1:targetServerHandle><ns1:token>T-1<",
      ">filer</ns1:exportHost>", ">other</ns1:exportHost>", "<ns1:numRollbacks>2<"}}};

// Holds if the texts stand in `request` one behind the other.
void expect_in_order(const std::string& request, const Words& texts)
{
    std::size_t at = request.find("Body>");
    for (const std::string& text : texts) {
        const std::size_t found = request.find(text, at);
        ASSERT_NE(found, std::string::npos) << text << " isn't behind the one before it in\n" << request;
        at = found + text.size() - 1;
    }
}

Words with(Words command, const Words& more)
{
    command.insert(command.end(), more.begin(), more.end());
    return command;
}

TEST_F(ProbeOperations, WithoutANameAreStartedAndFollowedByTheirId)
{
    for (const Case& example : kCases) {
        answer_waits("");
        const ProcessResult result = run(example.command);
        EXPECT_EQ(result.exit_code, 0) << example.operation << result.err;
        EXPECT_THAT(result.err, IsEmpty());
        EXPECT_EQ(result.out, "Operation id       OP-1\nBytes transferred  0 B\n");
        expect_in_order(asked("async" + example.operation), example.members);
        EXPECT_THAT(asked(kWithId), HasSubstr(">OP-1</ns1:token>"));
        EXPECT_EQ(count("namedAsync" + example.operation), 0);
        EXPECT_EQ(service.operations().back(), "closeServer");
    }
    EXPECT_EQ(count(kWithName), 0);
}

TEST_F(ProbeOperations, WithANameAreStartedAndFollowedByIt)
{
    for (const Case& example : kCases) {
        answer_waits("");
        const ProcessResult result = run(with(example.command, {"--name", "my op"}));
        EXPECT_EQ(result.exit_code, 0) << example.operation << result.err;
        EXPECT_EQ(result.out, "Operation name     my op\nBytes transferred  0 B\n");
        expect_in_order(asked("namedAsync" + example.operation),
                        with(example.members, {">my op</ns1:opname>"}));
        EXPECT_THAT(asked(kWithName), HasSubstr(">my op</ns1:opname>"));
        EXPECT_EQ(count("async" + example.operation), 0);
    }
    EXPECT_EQ(count(kWithId), 0);
}

TEST_F(ProbeOperations, MayHaveAnEmptyName)
{
    answer_waits("");
    EXPECT_EQ(run(with(kCreate, {"--name", ""})).exit_code, 0);
    EXPECT_THAT(asked("namedAsyncCreateSnapByName"), HasSubstr("<ns1:opname/>"));
}

TEST_F(ProbeOperations, WithNoWaitAreStartedOnlyAndTellTheirIdOrName)
{
    for (const Case& example : kCases) {
        const ProcessResult by_id = run(with(example.command, {"--no-wait"}));
        EXPECT_EQ(by_id.exit_code, 0) << by_id.err;
        EXPECT_EQ(by_id.out, "Operation id  OP-1\n");
        EXPECT_EQ(json::parse(run(with(example.command, {"--no-wait", "--name", "n", "--json"})).out),
                  json({{"schema", 1}, {"operation_name", "n"}}));
        EXPECT_EQ(run(with(example.command, {"--no-wait", "--separator", "|"})).out, "operation_id|OP-1\n");
    }
    EXPECT_EQ(count(kWithId) + count(kWithName), 0);
}

TEST_F(ProbeOperations, ThatAreRefusedAtTheStartAreNotFollowed)
{
    for (const Case& example : kCases) {
        for (const char* family : {"async", "namedAsync"}) {
            service.refuse(family + example.operation, "in use", 2060012);
            Words command = example.command;
            if (family[0] == 'n') command = with(command, {"--name", "n"});
            const ProcessResult result = run(command);
            EXPECT_EQ(result.exit_code, 4);
            EXPECT_THAT(result.err, StartsWith("STS_EINUSE(2060012): the resource is in use\n"));
            EXPECT_THAT(result.out, IsEmpty());
            EXPECT_EQ(service.operations().back(), "closeServer");
        }
    }
    EXPECT_EQ(count(kWithId) + count(kWithName), 0);
}

TEST_F(ProbeOperations, ASnapshotThatWasMadeIsShownWithItsPlace)
{
    const std::tuple<const char*, int, std::string> kinds[] = {{"createSnap", 2, "STS_RESULT_CREATE"},
                                                               {"importSnap", 8, "STS_RESULT_IMPORT"},
                                                               {"copySnap", 3, "STS_RESULT_COPY"}};
    for (const auto& [arm, kind, name] : kinds) {
        answer_waits(made_snapshot(arm), {0, 0, 4096});
        const std::string number = std::to_string(kind);
        EXPECT_EQ(run(with(kCreate, {"--name", "n"})).out, "Operation name     n\n"
                                                           "Bytes transferred  4.0 KiB\n"
                                                           "Result             " +
                                                               number + " (" + name +
                                                               ")\n"
                                                               "Snapshot           nightly.0\n"
                                                               "Server             Network_store:filer\n"
                                                               "LSU                vol1\n");
        EXPECT_EQ(json::parse(run(with(kCreate, {"--name", "n", "--json"})).out),
                  json({{"schema", 1},
                        {"operation_name", "n"},
                        {"bytes_transferred", 4096},
                        {"result_kind", kind},
                        {"result_kind_name", name},
                        {"snapshot", "nightly.0"},
                        {"server", "Network_store:filer"},
                        {"lsu", "vol1"}}));
        EXPECT_THAT(run(with(kCreate, {"--separator", "|"})).out,
                    AllOf(StartsWith("operation_id|OP-1\nbytes_transferred|"),
                          HasSubstr("\nresult_kind|" + number +
                                    "\nsnapshot|nightly.0\nserver|Network_store:filer\nlsu|vol1\n")));
    }
}

TEST_F(ProbeOperations, ATopologyIsShownOnOneLine)
{
    for (const char* arm : {"validateSnap", "provisionTopology"}) {
        answer_waits(topology(arm));
        EXPECT_THAT(run(kCreate).out, HasSubstr("Topology           mirror of vol1\n"));
        EXPECT_EQ(json::parse(run(with(kCreate, {"--json"})).out).at("topology"), "mirror of vol1");
    }
}

const Words kDiff = {"snapshot", "diff", kFiler, "s", "--volume", kVolume};

TEST_F(ProbeOperations, ADifferenceIsShownAsAList)
{
    const auto object = [](const std::string& name, int type, int state) {
        return element("item", element("objectName", name) + element("objectType", std::to_string(type)) +
                                   element("objectState", std::to_string(state)));
    };
    answer_waits(element("getSnapDiff",
                         element("numDiffs", "2") +
                             element("diffObjectList", object("/a&#27;b", 1, -2) + object("/c d", 3, 4))));
    EXPECT_EQ(run(kDiff).out, "Operation id       OP-1\n"
                              "Bytes transferred  0 B\n"
                              "Result             6 (STS_RESULT_DIFFERENCE)\n"
                              "\n"
                              "Differences\n"
                              "OBJECT  TYPE  STATE\n"
                              "/a\xEF\xBF\xBD"
                              "b       1     -2\n"
                              "/c d       3      4\n");
    EXPECT_EQ(run(with(kDiff, {"--separator", "|"})).out, "/a\xEF\xBF\xBD"
                                                          "b|1|-2\n/c d|3|4\n");
    const json document = json::parse(run(with(kDiff, {"--json", "--name", "n"})).out);
    EXPECT_EQ(document.at("differences").at(1), json({{"name", "/c d"}, {"type", 3}, {"state", 4}}));
    EXPECT_EQ(document.at("complete"), true);
    EXPECT_EQ(document.at("operation_name"), "n");
}

TEST_F(ProbeOperations, ADifferenceOfNothingIsAnEmptyList)
{
    answer_waits(element("getSnapDiff", element("numDiffs", "0")));
    EXPECT_THAT(run(kDiff).out, HasSubstr("\nDifferences\nOBJECT  TYPE  STATE\n"));
    EXPECT_THAT(run(with(kDiff, {"--separator", "|"})).out, IsEmpty());
    EXPECT_THAT(json::parse(run(with(kDiff, {"--json"})).out).at("differences"), IsEmpty());
}

TEST_F(ProbeOperations, TheFlagOfADifferenceIsATruthForANamedOne)
{
    answer_waits("");
    run(with(kDiff, {"--flag", "2"}));
    EXPECT_THAT(asked("asyncGetSnapDiff"), HasSubstr("<ns1:diffFlag>2<"));
    run(with(kDiff, {"--flag", "2", "--name", "n"}));
    EXPECT_THAT(asked("namedAsyncGetSnapDiff"), HasSubstr("<ns1:diffFlag>true<"));
}

TEST_F(ProbeOperations, ATargetServerIsOpenedThroughTheServerAndClosedAheadOfIt)
{
    answer_waits("");
    service.answer("openTargetServer", element("targetServerHandle", element("token", "T-2")));
    const Words target = {"--target-server", "Network_store:other"};
    EXPECT_EQ(run(with(kDiff, target)).exit_code, 0);
    EXPECT_THAT(asked("asyncGetSnapDiff"), HasSubstr("<ns1:targetServerHandle><ns1:token>T-2<"));
    EXPECT_THAT(service.operations(), ElementsAre("openServer", "openTargetServer", "asyncGetSnapDiff",
                                                  "asyncWaitSnap", "closeServer", "closeServer"));
    EXPECT_THAT(asked("openTargetServer"), HasSubstr(">Network_store:other<"));
    EXPECT_THAT(asked("closeServer"), HasSubstr(">T-1<"));
    EXPECT_EQ(run(with({"snapshot", "rollback", kFiler, "vol1", "s", "--volume", kVolume, "--yes"}, target))
                  .exit_code,
              0);
    EXPECT_THAT(asked("asyncRollbackSnap"), HasSubstr("<ns1:targetServerHandle><ns1:token>T-2<"));
}

TEST_F(ProbeOperations, ATargetServerThatDoesNotOpenEndsTheCommandAndClosesTheServer)
{
    service.refuse("openTargetServer", "unknown", 2060022);
    const ProcessResult result = run(with(kDiff, {"--target-server", "Network_store:other"}));
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, StartsWith("STS_EBADARG(2060022): "));
    EXPECT_THAT(service.operations(), ElementsAre("openServer", "openTargetServer", "closeServer"));
}

TEST_F(ProbeOperations, ARollbackWithoutATerminalNeedsAYes)
{
    const ProcessResult result = run({"snapshot", "rollback", kFiler, "vol1", "s", "--volume", kVolume});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_EQ(
        result.err,
        "soapwrapper-probe: usage: nothing was rolled back: there is no terminal to ask on; say --yes\n");
    EXPECT_THAT(service.operations(), IsEmpty());
}

TEST_F(ProbeOperations, ArgumentsThatCannotBeSentAreRefused)
{
    const std::string long_name(256, 'n');
    const Words refused[] = {
        {"snapshot", "create", kFiler, "s"},
        with(kCreate, {"--target", "/vol1"}),
        with(kCreate, {"--target", "server/"}),
        with(kCreate, {"--target", std::string(512, 's') + "/vol1"}),
        with(kCreate, {"--target", std::string(1024, 'l')}),
        with(kCreate, {"--imageset", long_name}),
        with(kCreate, {"--name", long_name}),
        {"snapshot", "diff", kFiler, "s"},
        {"snapshot", "diff", kFiler, "s", "--volume", "cifs:filer:share"},
        {"snapshot", "create", kFiler, std::string(2048, 's'), "--volume", kVolume},
        {"topology", "provision", kFiler, "s", "--volume", kVolume},
    };
    for (const Words& command : refused) {
        const ProcessResult result = run(command);
        EXPECT_EQ(result.exit_code, 2) << ::testing::PrintToString(command);
        EXPECT_THAT(result.err, Not(IsEmpty()));
    }
    EXPECT_THAT(service.operations(), IsEmpty());
}

} // namespace
