// How the command line and the API tell of what is to go wrong.
#include "simulator/options.h"
#include "simulator/service/interference.h"
#include "simulator/service/operation_names.h"
#include "simulator/service/trouble.h"
#include "simulator/service/trouble_json.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{

using namespace soapwrapper::simulator;
using nlohmann::json;
using std::chrono::milliseconds;
using testing::HasSubstr;

std::vector<Trouble> troubles_of(const std::vector<std::string>& arguments)
{
    const CommandLine parsed = parse_command_line(arguments);
    EXPECT_TRUE(parsed.options) << parsed.text;
    return parsed.options ? parsed.options->troubles : std::vector<Trouble>();
}

std::string refusal_of(const std::string& option, const std::string& value)
{
    const CommandLine parsed = parse_command_line({option, value});
    EXPECT_FALSE(parsed.options) << value;
    EXPECT_EQ(parsed.exit_code, 2);
    return parsed.text;
}

TEST(SimulatorCommandLine, AFaultMayBeAKindOfTrouble)
{
    const std::vector<Trouble> troubles = troubles_of(
        {"--fault", "openServer=cut", "--fault", "openServer=malformed-chunk,2", "--fault",
         "listLSU=http-error", "--fault", "listLSU=http-error:418,1", "--fault", "listLSU=dribble:3000"});
    ASSERT_EQ(troubles.size(), 5U);
    EXPECT_EQ(troubles[0].kind, TroubleKind::kCut);
    EXPECT_EQ(troubles[0].count, std::nullopt);
    EXPECT_EQ(troubles[1].kind, TroubleKind::kMalformedChunk);
    EXPECT_EQ(troubles[1].count, 2U);
    EXPECT_EQ(troubles[2].status, 503);
    EXPECT_EQ(troubles[3].status, 418);
    EXPECT_EQ(troubles[3].count, 1U);
    EXPECT_EQ(troubles[4].kind, TroubleKind::kDribble);
    EXPECT_EQ(troubles[4].time, milliseconds(3000));
    EXPECT_EQ(troubles[4].operation, "listLSU");
}

TEST(SimulatorCommandLine, AWrongKindOfTroubleIsExplained)
{
    for (const char* wrong : {"openServer=cutx", "openServer=fault", "openServer=delay", "openServer=:1"}) {
        EXPECT_THAT(refusal_of("--fault", wrong), HasSubstr("nor a KIND of trouble")) << wrong;
    }
    for (const char* wrong : {"openServer=cut:1", "openServer=reset:"}) {
        EXPECT_THAT(refusal_of("--fault", wrong), HasSubstr("a value behind a KIND that takes none"));
    }
    for (const char* wrong : {"http-error:399", "http-error:600", "http-error:", "http-error:5x"}) {
        EXPECT_THAT(refusal_of("--fault", std::string("openServer=") + wrong),
                    HasSubstr("a STATUS that is not a number from 400 to 599"));
    }
    for (const char* wrong : {"dribble", "dribble:", "dribble:3600001", "dribble:-1"}) {
        EXPECT_THAT(refusal_of("--fault", std::string("openServer=") + wrong),
                    HasSubstr("MS that are not a number from 0 to 3600000"));
    }
    EXPECT_THAT(refusal_of("--fault", "openServer=cut,0"), HasSubstr("a COUNT that is not 1 or more"));
}

TEST(SimulatorCommandLine, ADelayMayVary)
{
    const std::vector<Trouble> troubles =
        troubles_of({"--delay", "openServer=200~0.5", "--delay", "listLSU=200"});
    ASSERT_EQ(troubles.size(), 2U);
    EXPECT_EQ(troubles[0].time, milliseconds(200));
    EXPECT_EQ(troubles[0].sigma, 0.5);
    EXPECT_EQ(troubles[1].sigma, 0);
    for (const char* wrong : {"200~", "200~0", "200~-1", "200~10.1", "200~x", "200~nan", "200~inf"}) {
        EXPECT_THAT(refusal_of("--delay", std::string("openServer=") + wrong),
                    HasSubstr("a SIGMA that is not a number above 0"))
            << wrong;
    }
    EXPECT_THAT(refusal_of("--delay", "openServer=~1"), HasSubstr("not a number from 0 to 3600000"));
}

TEST(SimulatorCommandLine, MoreThanAThousandTroublesAreRefused)
{
    std::vector<std::string> arguments;
    for (std::size_t i = 0; i < Interference::kMostTroubles; ++i) {
        arguments.insert(arguments.end(), {"--fault", "openServer=1,1"});
    }
    EXPECT_EQ(troubles_of(arguments).size(), Interference::kMostTroubles);
    arguments.insert(arguments.end(), {"--fault", "openServer=1,1"});
    EXPECT_THAT(parse_command_line(arguments).text, HasSubstr("the greatest number of troubles"));
}

TEST(SimulatorCommandLine, ListsTheOperationsAndEnds)
{
    const CommandLine parsed = parse_command_line({"--list-operations"});
    EXPECT_FALSE(parsed.options);
    EXPECT_EQ(parsed.exit_code, 0);
    EXPECT_EQ(parsed.text.find("addExport\nasyncCancel\n"), 0U);
    EXPECT_THAT(parsed.text, HasSubstr("\nopenServer\nopenSnapChangeList\n"));
    std::vector<std::string> lines;
    std::istringstream text(parsed.text);
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    EXPECT_EQ(lines.size(), operation_names().size());
    EXPECT_TRUE(std::is_sorted(lines.begin(), lines.end()));
    for (const std::string& line : lines) troubles_of({"--fault", line + "=1", "--delay", line + "=1"});
}

TEST(SimulatorCommandLine, AFolderForFilesHasAName)
{
    EXPECT_EQ(parse_command_line({"--dump", "x"}).options->dump, "x");
    EXPECT_THAT(refusal_of("--dump", ""), HasSubstr("names no folder"));
}

Trouble from_json(const char* text)
{
    return trouble_from_json(json::parse(text));
}

TEST(SimulatorTroubleJson, IsReadWithTheMembersOfItsKind)
{
    const Trouble fault =
        from_json(R"({"operation": "openServer", "kind": "fault", "code": -2147483648, "count": 2})");
    EXPECT_EQ(fault.operation, "openServer");
    EXPECT_EQ(fault.kind, TroubleKind::kFault);
    EXPECT_EQ(fault.code, -2147483647 - 1);
    EXPECT_EQ(fault.count, 2U);
    const Trouble delay =
        from_json(R"({"operation": "listLSU", "kind": "delay", "milliseconds": 200, "sigma": 0.5})");
    EXPECT_EQ(delay.time, milliseconds(200));
    EXPECT_EQ(delay.sigma, 0.5);
    EXPECT_EQ(delay.count, std::nullopt);
    EXPECT_EQ(from_json(R"({"operation": "listLSU", "kind": "dribble", "milliseconds": 0})").time.count(), 0);
    EXPECT_EQ(from_json(R"({"operation": "listLSU", "kind": "http-error", "status": 404})").status, 404);
    EXPECT_EQ(from_json(R"({"operation": "listLSU", "kind": "http-error", "count": null})").status, 503);
}

TEST(SimulatorTroubleJson, WhatIsWrongIsExplained)
{
    struct Case {
        const char* text;
        const char* why;
    };
    for (const Case& each : {
             Case{"[]", "a trouble is an object"},
             Case{R"({"kind": "cut"})", "operation is missing"},
             Case{R"({"operation": 1, "kind": "cut"})", "operation is a string"},
             Case{R"({"operation": "x", "kind": "cut"})", "\"x\" is no operation"},
             Case{R"({"operation": "listLSU"})", "kind is missing"},
             Case{R"({"operation": "listLSU", "kind": "Cut"})", "\"Cut\" is no kind of trouble"},
             Case{R"({"operation": "listLSU", "kind": "fault"})", "code is missing"},
             Case{R"({"operation": "listLSU", "kind": "fault", "code": 2147483648})",
                  "code is a whole number from -2147483648 to 2147483647, not 2147483648"},
             Case{R"({"operation": "listLSU", "kind": "fault", "code": 18446744073709551615})", "not 184467"},
             Case{R"({"operation": "listLSU", "kind": "fault", "code": 1.5})", "not 1.5"},
             Case{R"({"operation": "listLSU", "kind": "fault", "code": [[1]]})", "not array"},
             Case{R"({"operation": "listLSU", "kind": "cut", "code": 1})", "\"code\" is no member"},
             Case{R"({"operation": "listLSU", "kind": "cut", "count": 0})", "from 1 to 4294967295"},
             Case{R"({"operation": "listLSU", "kind": "delay"})", "milliseconds is missing"},
             Case{R"({"operation": "listLSU", "kind": "delay", "milliseconds": 3600001})", "0 to 3600000"},
             Case{R"({"operation": "listLSU", "kind": "delay", "milliseconds": 1, "sigma": 11})", "0 to 10"},
             Case{R"({"operation": "listLSU", "kind": "delay", "milliseconds": 1, "sigma": "1"})", "0 to 10"},
             Case{R"({"operation": "listLSU", "kind": "http-error", "status": 399})", "from 400 to 599"},
         }) {
        try {
            from_json(each.text);
            ADD_FAILURE() << each.text;
        } catch (const std::invalid_argument& refused) {
            EXPECT_THAT(refused.what(), HasSubstr(each.why)) << each.text;
        }
    }
}

TEST(SimulatorTroubleJson, TellsWhatIsSet)
{
    Interference interference;
    interference.add(
        from_json(R"({"operation": "openServer", "kind": "fault", "code": 2060005, "count": 2})"));
    interference.add(from_json(R"({"operation": "listLSU", "kind": "http-error"})"));
    interference.add(
        from_json(R"({"operation": "listLSU", "kind": "delay", "milliseconds": 200, "sigma": 0.5})"));
    interference.meet("openServer");
    const std::vector<SetTrouble> set = interference.list();
    EXPECT_EQ(to_json(set[0]), json::parse(R"({"number": 1, "operation": "openServer", "kind": "fault",
        "code": 2060005, "count": 2, "left": 1, "hits": 1})"));
    EXPECT_EQ(to_json(set[1]), json::parse(R"({"number": 2, "operation": "listLSU", "kind": "http-error",
        "status": 503, "count": null, "left": null, "hits": 0})"));
    EXPECT_EQ(to_json(set[2]), json::parse(R"({"number": 3, "operation": "listLSU", "kind": "delay",
        "milliseconds": 200, "sigma": 0.5, "count": null, "left": null, "hits": 0})"));
}

} // namespace
