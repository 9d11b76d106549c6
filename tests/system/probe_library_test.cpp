// soapwrapper-probe with libraries that aren't as they should be, and with libraries in several places.
#include "probe_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace
{

using nlohmann::json;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

namespace fs = std::filesystem;

constexpr char kName[] = "Network_store:filer";

fs::path fake(const std::string& kind)
{
    return fs::path(FAKE_PLUGIN_FOLDER) / ("libprobe_fake_" + kind + ".so");
}

// Runs the probe; `record` takes what the fake library was told.
ProcessResult probe_with(const fs::path& library, const fs::path& record = {},
                         std::vector<std::string> arguments = {"discover", kName})
{
    arguments.insert(arguments.end(), {"--library", library.string()});
    return run_process(PROBE_PROGRAM, arguments, {{"FAKE_PLUGIN_RECORD", record.string()}});
}

TEST(ProbeLibrary, ThatIsMissingIsSaidToBe)
{
    const TemporaryFolder folder;
    const ProcessResult result = probe_with(folder / "libabsent.so");
    EXPECT_EQ(result.exit_code, 3);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, AllOf(StartsWith("library: the library could not be loaded\n    "),
                                  HasSubstr((folder / "libabsent.so").string())));
}

TEST(ProbeLibrary, ThatCannotBeLoadedIsAlsoToldInJson)
{
    const TemporaryFolder folder;
    const ProcessResult result = probe_with(folder / "libabsent.so", {}, {"discover", kName, "--json"});
    EXPECT_EQ(result.exit_code, 3);
    const json error = json::parse(result.out).at("error");
    EXPECT_EQ(error.at("name"), "library");
    EXPECT_TRUE(error.at("status").is_null());
    EXPECT_EQ(error.at("meaning"), "the library could not be loaded");
    EXPECT_THAT(std::string(error.at("detail")), HasSubstr("libabsent.so"));
}

TEST(ProbeLibrary, ThatCannotBeLoadedIsALineOfJsonWhereDocumentsAreLines)
{
    const TemporaryFolder folder;
    const std::vector<std::vector<std::string>> commands = {{"events", kName, "--json"},
                                                            {"changes", kName, "l", "a", "b", "--json"}};
    for (const auto& command : commands) {
        const ProcessResult result = probe_with(folder / "libabsent.so", {}, command);
        EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 1) << result.out;
        EXPECT_EQ(json::parse(result.out).at("error").at("name"), "library");
    }
}

TEST(ProbeLibrary, ThatIsSomeOtherFileIsNotLoaded)
{
    const TemporaryFolder folder;
    for (const fs::path& file :
         {fs::path(folder.write("text.so", "not a library, but long enough to be read as "
                                           "the head of one, were it to be tried")),
          fs::path(folder.write("empty.so", "")), folder / "."}) {
        const ProcessResult result = probe_with(file);
        EXPECT_EQ(result.exit_code, 3) << file;
        EXPECT_THAT(result.err, StartsWith("library: the library could not be loaded\n    ")) << file;
    }
}

TEST(ProbeLibrary, OfSomebodyElseLacksTheHandshake)
{
    const ProcessResult result = probe_with("/lib/x86_64-linux-gnu/libm.so.6");
    EXPECT_EQ(result.exit_code, 3);
    EXPECT_THAT(result.err, StartsWith("library: the library does not export stspi_init\n"));
}

TEST(ProbeLibrary, WithOneHandshakeOnlyLacksTheOther)
{
    const TemporaryFolder folder;
    const ProcessResult result = probe_with(fake("halved"), folder / "record");
    EXPECT_EQ(result.exit_code, 3);
    EXPECT_THAT(result.err, StartsWith("library: the library does not export stspi_init3\n"));
    EXPECT_FALSE(fs::exists(folder / "record")) << "nothing of it was called";
}

TEST(ProbeLibrary, ThatRefusesTheHandshakeIsToldWithItsStatus)
{
    const TemporaryFolder folder;
    const ProcessResult result = probe_with(fake("refuses"), folder / "record");
    EXPECT_EQ(result.exit_code, 3);
    EXPECT_THAT(result.err, StartsWith("STS_EVERSION(2060008): the library refused stspi_init: "));
    EXPECT_THAT(read_file(folder / "record"), Not(HasSubstr("init3")));
}

TEST(ProbeLibrary, OfAnOlderInterfaceIsNotDriven)
{
    const ProcessResult result = probe_with(fake("old"));
    EXPECT_EQ(result.exit_code, 3);
    EXPECT_EQ(result.err,
              "library: the library's answer to stspi_init cannot be used\n    interface version 10\n");
}

TEST(ProbeLibrary, WithoutATableIsNotDriven)
{
    const ProcessResult result = probe_with(fake("tableless"));
    EXPECT_EQ(result.exit_code, 3);
    EXPECT_EQ(
        result.err,
        "library: the library's answer to stspi_init3 cannot be used\n    it gave no table of entries\n");
}

TEST(ProbeLibrary, WithAnEmptySlotIsSaidNotToServeTheEntry)
{
    const ProcessResult without_claim = probe_with(fake("empty"));
    EXPECT_EQ(without_claim.exit_code, 4);
    EXPECT_EQ(without_claim.err,
              "not served: the library does not serve stspi_claim: slot 4 of its main table is empty\n");

    const ProcessResult without_discovery = probe_with(fake("claims_only"));
    EXPECT_EQ(without_discovery.exit_code, 4);
    EXPECT_EQ(without_discovery.err,
              "not served: the library does not serve stspi_get_server_prop_byname: slot "
              "22 of its main table is empty\n");
}

TEST(ProbeLibrary, ThatCouldNotCloseAServerIsNotAskedToOpenOne)
{
    const ProcessResult result =
        run_process(PROBE_PROGRAM, {"server", kName, "--library", fake("claims_only").string()},
                    {{"SOAPWRAPPER_CREDENTIAL", "secret"}});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_EQ(
        result.err,
        "not served: the library does not serve stspi_close_server: slot 9 of its main table is empty\n");
}

TEST(ProbeLibrary, IsGreetedWithItsRealPathAndSeenOff)
{
    const TemporaryFolder folder;
    fs::create_symlink(fake("claims_only"), folder / "link.so");
    probe_with(folder / "link.so", folder / "record");
    const std::string greeting =
        "init 11\npath " + fs::canonical(fake("claims_only")).string() + "\ninit3 11\n";
    EXPECT_EQ(read_file(folder / "record"),
              greeting + "terminate called\n" // in the process that tries it
                  + greeting + "claim Network_store:filer\nterminate called\n");
}

TEST(ProbeLibrary, IsToldAnotherPathIfTheUserWantsIt)
{
    const TemporaryFolder folder;
    probe_with(fake("empty"), folder / "record", {"discover", kName, "--plugin-path", "/elsewhere/lib.so"});
    EXPECT_THAT(read_file(folder / "record"), HasSubstr("path /elsewhere/lib.so\n"));
}

TEST(ProbeLibrary, IsLookedForBesideTheProbe)
{
    const TemporaryFolder folder;
    fs::copy_file(PROBE_PROGRAM, folder / "probe");
    fs::copy_file(fake("empty"), folder / "libsoapwrapper.so");
    const ProcessResult result = run_process(folder / "probe", {"discover", kName},
                                             {{"FAKE_PLUGIN_RECORD", (folder / "record").string()}});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(read_file(folder / "record"),
                HasSubstr("path " + (folder / "libsoapwrapper.so").string() + "\n"));
}

TEST(ProbeLibrary, IsElseLeftToTheLoaderToFind)
{
    const TemporaryFolder folder;
    const TemporaryFolder elsewhere;
    fs::copy_file(PROBE_PROGRAM, folder / "probe");
    fs::copy_file(fake("empty"), elsewhere / "libsoapwrapper.so");
    const ProcessResult result = run_process(folder / "probe", {"discover", kName},
                                             {{"FAKE_PLUGIN_RECORD", (folder / "record").string()},
                                              {"LD_LIBRARY_PATH", (elsewhere / "").string()}});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(read_file(folder / "record"),
                HasSubstr("path " + (elsewhere / "libsoapwrapper.so").string() + "\n"));
}

TEST(ProbeLibrary, ThatCrashesIsSaidToAndWhere)
{
    const ProcessResult result = probe_with(fake("crashes"));
    EXPECT_EQ(result.exit_code, 3);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_EQ(result.err, "library: the library crashed with SIGSEGV in stspi_init\n    " +
                              fake("crashes").string() + "\n");
}

TEST(ProbeLibrary, ThatEndsTheProcessIsSaidToAndWhatItPrintsIsNotSeen)
{
    const ProcessResult result = probe_with(fake("exits"), {}, {"discover", kName, "--json"});
    EXPECT_EQ(result.exit_code, 3);
    EXPECT_EQ(json::parse(result.out).at("error").at("meaning"),
              "the library ended the process with exit code 0 while it was loaded");
    const ProcessResult manager =
        run_process(PROBE_PROGRAM, {"discover", kName, "--manager", fake("exits").string()});
    EXPECT_EQ(manager.exit_code, 3);
    EXPECT_THAT(manager.err, StartsWith("library: the plug-in manager ended the process with exit code 0 "
                                        "while the plug-in manager was loaded\n"));
}

TEST(ProbeLibrary, ThatIsTruncatedIsSaidNotToBeLoadable)
{
    const TemporaryFolder folder;
    const fs::path copy = folder / "libsoapwrapper.so";
    fs::copy_file(PROBE_LIBRARY, copy);
    // The second half of a library that wasn't stripped is for debuggers, and loading does without it.
    for (const std::uintmax_t size : {1000000U, 65536U, 1000U, 16U}) {
        fs::resize_file(copy, size);
        const ProcessResult result = probe_with(copy);
        EXPECT_EQ(result.exit_code, 3) << size;
        EXPECT_THAT(result.err, AllOf(StartsWith("library: the library "), HasSubstr(copy.string()))) << size;
    }
}

TEST(ProbeLibrary, IsFoundInTheFolderOfLibrariesOfAnInstalledProgram)
{
    for (const char* libraries : {"lib", LIBRARIES_FOLDER}) {
        const TemporaryFolder folder;
        fs::create_directories(folder / "bin");
        fs::create_directories(folder / libraries);
        fs::copy_file(PROBE_PROGRAM, folder / "bin/probe");
        const fs::path library = folder / libraries / "libsoapwrapper.so";
        fs::copy_file(fake("empty"), library);
        const ProcessResult found = run_process(folder / "bin/probe", {"discover", kName},
                                                {{"FAKE_PLUGIN_RECORD", (folder / "record").string()}});
        EXPECT_EQ(found.exit_code, 4) << found.err;
        EXPECT_THAT(read_file(folder / "record"), HasSubstr("path " + library.string() + "\n"));
        // A bare name that the loader doesn't find, for the manager as well.
        const ProcessResult named =
            run_process(folder / "bin/probe", {"discover", kName, "--manager", "libsoapwrapper.so"});
        EXPECT_EQ(named.err,
                  "library: the plug-in manager does not export stsm_init\n    " + library.string() + "\n");
    }
}

TEST(ProbeLibrary, WithABareNameIsLeftToTheLoaderAndNotTakenFromTheCurrentFolder)
{
    const ProcessResult found = probe_with("libm.so.6");
    EXPECT_THAT(found.err, StartsWith("library: the library does not export stspi_init\n"));

    const TemporaryFolder folder;
    fs::copy_file(fake("empty"), folder / "libhere.so");
    const std::string script = "cd \"$1\" && exec \"$2\" discover Network_x:y --library libhere.so";
    const ProcessResult here =
        run_process("/bin/sh", {"-c", script, "sh", (folder / "").string(), PROBE_PROGRAM});
    EXPECT_EQ(here.exit_code, 3);
    EXPECT_THAT(here.err, AllOf(StartsWith("library: the library could not be loaded\n    libhere.so: "),
                                HasSubstr("did you mean ./libhere.so?\n")));
}

TEST(ProbeLibrary, IsToldWithTheVersionOfTheProgram)
{
    const ProcessResult result = run_process(PROBE_PROGRAM, {"--version"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_THAT(result.out,
                AllOf(StartsWith("soapwrapper-probe 9.1.0.1\nLibrary             " PROBE_LIBRARY "\n"),
                      HasSubstr("\nRelease             910000 Tarnholme_9.1.0.1\n"),
                      HasSubstr("\nBuilt with gSOAP    2.8."), HasSubstr("\nBuilt with OpenSSL  3."),
                      HasSubstr("\nRuns with OpenSSL   3.")));
    const json document = json::parse(run_process(PROBE_PROGRAM, {"--version", "--json"}).out);
    EXPECT_EQ(document.at("version"), "9.1.0.1");
    EXPECT_EQ(document.at("library_version"), "9.1.0.1");
    EXPECT_EQ(document.at("library"), PROBE_LIBRARY);
}

TEST(ProbeLibrary, ThatCannotBeLoadedDoesNotHideTheVersionOfTheProgram)
{
    const TemporaryFolder folder;
    const ProcessResult result =
        run_process(PROBE_PROGRAM, {"--version", "--library", (folder / "absent.so").string()});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_THAT(result.out, AllOf(StartsWith("soapwrapper-probe 9.1.0.1\nLibrary  "),
                                  HasSubstr("\nProblem  the library could not be loaded: ")));
    const ProcessResult silent =
        run_process(PROBE_PROGRAM, {"--version", "--library", fake("empty").string()});
    EXPECT_THAT(silent.out, HasSubstr("\nBuilt with gSOAP    -\n"));
}

} // namespace
