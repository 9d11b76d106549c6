// What names that aren't ASCII are on the wire.
#include "tests/system/probe_process.h"
#include "tests/system/simulator_catalogue.h"

namespace
{

using namespace simulator_catalogue;

constexpr char kName[] = "Br\xc3\xbc"
                         "cke \xe6\xa9\x8b"; // a bridge in German and in Chinese, in UTF-8

std::string scenario()
{
    return std::string(R"({"servers": [{"prefix": "Mine", "lsus": [{"name": ")") + kName + R"("}]}]})";
}

class NamesOnTheWire : public Client
{
  protected:
    explicit NamesOnTheWire(const SimulatorProcess::Arguments& encoding)
        : NamesOnTheWire(encoding, TemporaryFolder())
    {
    }

    std::string name_in_a_list() const
    {
        const std::string list = open("openLSUList", server_handle(server_) + nil("lsudef"));
        return text_of(next(kLsus, list).body, "lsu");
    }
    // The label of the LSU with that name; what becomes of one that was set.
    std::string label_of(const std::string& name) const
    {
        return text_of(ask("getLSUPropByName", lsu(server_, name)).body, "label");
    }
    long set_label(const std::string& name, const std::string& label) const
    {
        return ask("labelLSU", lsu(server_, name) + element("lsuLabel", label)).status;
    }

  private:
    NamesOnTheWire(SimulatorProcess::Arguments arguments, const TemporaryFolder& folder)
        : Client(with_scenario(std::move(arguments), folder.write("names.json", scenario())))
    {
    }
    static SimulatorProcess::Arguments with_scenario(SimulatorProcess::Arguments arguments,
                                                     const std::string& file)
    {
        arguments.insert(arguments.end(), {"--scenario", file});
        return arguments;
    }

    const std::string server_ = open_server("Mine:host");
};

class NamesInUtf8 : public NamesOnTheWire
{
  protected:
    NamesInUtf8() : NamesOnTheWire({"--text-encoding", "utf-8"}) {}
};

TEST_F(NamesInUtf8, AreTheCharactersThatTheScenarioHas)
{
    EXPECT_EQ(name_in_a_list(), kName);
}

TEST_F(NamesInUtf8, AreFoundHoweverTheirCharactersAreWritten)
{
    for (const char* name : {kName, "Br&#xFC;cke &#x6A4B;", "Br&#252;cke &#27211;"}) {
        EXPECT_EQ(set_label(name, "here"), 200) << name;
        EXPECT_EQ(label_of(name), "here") << name;
    }
}

TEST_F(NamesInUtf8, ComeBackAsTheyWereSent)
{
    ASSERT_EQ(set_label(kName, kName), 200);
    EXPECT_EQ(label_of(kName), kName);
    const std::string beyond_16_bits = "\xf0\x9f\x8c\x89";
    ASSERT_EQ(set_label(kName, beyond_16_bits), 200);
    EXPECT_EQ(label_of(kName), beyond_16_bits);
}

TEST_F(NamesInUtf8, AreBoundedByTheirBytes)
{
    std::string longest; // 63 bytes
    for (int i = 0; i < 21; ++i) longest += "\xe6\xa9\x8b";
    EXPECT_EQ(set_label(kName, longest), 200);
    EXPECT_EQ(label_of(kName), longest);
    EXPECT_EQ(set_label(kName, longest + "x"), 500);
}

class NamesInLatin1 : public NamesOnTheWire
{
  protected:
    explicit NamesInLatin1(const SimulatorProcess::Arguments& encoding = {"--text-encoding", "latin-1"})
        : NamesOnTheWire(encoding)
    {
    }

    // Each byte the character of its number.
    const std::string on_the_wire_ = "Br\xc3\x83\xc2\xbc"
                                     "cke \xc3\xa6\xc2\xa9&#x8B;";
};

TEST_F(NamesInLatin1, AreACharacterForEachByteThatTheScenarioHas)
{
    EXPECT_EQ(name_in_a_list(), on_the_wire_);
    EXPECT_EQ(set_label(on_the_wire_, "here"), 200);
    EXPECT_EQ(set_label(kName, "here"), 500);
}

class NamesInNoEncodingThatWasAskedFor : public NamesInLatin1
{
  protected:
    NamesInNoEncodingThatWasAskedFor() : NamesInLatin1({}) {}
};

TEST_F(NamesInNoEncodingThatWasAskedFor, AreInLatin1)
{
    EXPECT_EQ(name_in_a_list(), on_the_wire_);
}

} // namespace
