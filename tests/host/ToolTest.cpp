#include "Tool.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace zelm::test::toolTest {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

const std::string kBram = R"({"groups": [{"block": "Bram"}])";

class Tool : public testing::Test {
protected:
    void expectUserError(const std::string& arguments, const std::string& words)
    {
        const ToolRun result = scratch.run(arguments);
        EXPECT_EQ(result.code, 2) << arguments;
        EXPECT_THAT(result.out, IsEmpty()) << arguments;
        EXPECT_THAT(result.err, HasSubstr(words)) << arguments;
    }

    const Scratch scratch;
};

TEST_F(Tool, EstimatesAndEndsWithZero)
{
    const ToolRun result = scratch.run("estimate " + scratch.write("d.json", kBram + "}"));
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("Dynamic power"));
    EXPECT_THAT(result.err, IsEmpty());
}

// Where the page isn't built, the tool tells how to build it.
TEST_F(Tool, LivePagesHoldTheDesignAsText)
{
    const std::string design = scratch.write("d.json", R"({"name": "</script>", "groups": [{"block": "Bram"}]})");
    const std::string page = scratch.path("page.html");
    const ToolRun result = scratch.run("estimate " + design + " --live " + page);
    const ToolRun empty = scratch.run("live -o " + scratch.path("empty.html"));
    if (result.code == 2) {
        EXPECT_THAT(result.err, HasSubstr("make live"));
        EXPECT_THAT(empty.err, HasSubstr("make live"));
        EXPECT_FALSE(std::filesystem::exists(page));
        return;
    }
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_THAT(Scratch::read(page), HasSubstr(R"({"file":"d.json","text":"{\"name\": \"\u003c/script>\")"));
    EXPECT_EQ(empty.code, 0) << empty.err;
    EXPECT_THAT(Scratch::read(scratch.path("empty.html")), HasSubstr(R"({"file":"design.json","text":")"));
}

TEST_F(Tool, LivePagesTakeOneFile)
{
    scratch.write("part.json", kBram + "}");
    const std::string design = scratch.write("d.json", R"({"include": ["part.json"], "groups": []})");
    expectUserError("estimate " + design + " --live " + scratch.path("page.html"), "includes other files");
    expectUserError("estimate " + design + " --live " + design, "d.json");
    expectUserError("live", "--output");
}

TEST_F(Tool, ErrorsLeaveNothingOnStandardOutput)
{
    expectUserError("estimate /nonexistent.json", "zelm: /nonexistent.json: cannot be read");
    const std::string broken = scratch.write("broken.json", "{\n\"groups\" [");
    expectUserError("estimate " + broken, "zelm: " + broken + ":2:10: ");
    expectUserError("estimate --json " + broken, broken + ":2:10: ");
    expectUserError("calc Brem", "there is no block Brem; did you mean Bram?");
    expectUserError("cells Brem", "there is no block Brem; did you mean Bram?");
    expectUserError("calc Bram NUM_BRAM=1", "block Bram has no input NUM_BRAM; did you mean NUM_BRAMS?");
    expectUserError("calc Bram NUM_BRAMS=a", "NUM_BRAMS takes a whole number of 32 bits, not \"a\"");
    expectUserError("calc Bram PORT_A_CLOCK=inf", "PORT_A_CLOCK takes a finite number, not \"inf\"");
    expectUserError("calc Bram NUM_BRAMS", "\"NUM_BRAMS\" is not of the form CELL=VALUE");
    expectUserError("calc Bram VCCINT_POWER=1", "is computed, not an input");
    expectUserError("frobnicate", "");
    expectUserError("", "subcommand");
    expectUserError("estimate", "design");
    expectUserError("--datadir /nonexistent parts", "/nonexistent: this directory has no powercfg folder");
    expectUserError("estimate " + scratch.write("d.json", kBram + "}") + " --html /nonexistent/r.html",
                    "/nonexistent/r.html: cannot be written");
}

TEST_F(Tool, CheckEndsWithOneIfABudgetIsBroken)
{
    const std::string broken = scratch.write("b.json", kBram + R"(, "budgets": {"totalPower": 0}})");
    const std::string kept = scratch.write("k.json", kBram + R"(, "budgets": {"totalPower": 1000}})");
    EXPECT_EQ(scratch.run("estimate " + broken).code, 0);
    EXPECT_EQ(scratch.run("estimate --check " + kept).code, 0);
    const ToolRun result = scratch.run("estimate --check --junit " + scratch.path("j.xml") + " " + broken);
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("budget broken: total power"));
    EXPECT_THAT(Scratch::read(scratch.path("j.xml")), HasSubstr("failures=\"1\""));
}

TEST_F(Tool, CalcShowsBits)
{
    // 200 is 1.5625 x 2^7: exponent 127 + 7 = 0x86, fraction 0.5625 = 0x480000: 0x43480000.
    const ToolRun bits = scratch.run("calc Bram --bits --json PORT_A_CLOCK=200");
    ASSERT_EQ(bits.code, 0) << bits.err;
    bool found = false;
    const auto json = nlohmann::json::parse(bits.out);
    for (const auto& cell : json.at("cells")) {
        if (cell.at("cell") != "PORT_A_CLOCK")
            continue;
        found = true;
        EXPECT_EQ(cell.at("bits"), "43480000");
        EXPECT_EQ(cell.at("value"), 200);
        EXPECT_EQ(cell.at("origin"), "given");
    }
    EXPECT_TRUE(found) << bits.out;
    EXPECT_THAT(scratch.run("calc Bram --bits PORT_A_CLOCK=200").out, HasSubstr("43480000"));
}

TEST_F(Tool, ListsSpeakJson)
{
    for (const std::string command :
         {"blocks --json", "cells Bram --json", "parts --json", "standards --json", "schema", "schema --output"}) {
        const ToolRun result = scratch.run(command);
        EXPECT_EQ(result.code, 0) << command << "\n" << result.err;
        EXPECT_FALSE(nlohmann::json::parse(result.out, nullptr, false).is_discarded()) << command;
    }
}

TEST_F(Tool, SaysWhichDataWithVerbose)
{
    EXPECT_THAT(scratch.run("-v blocks").err, StartsWith("data: "));
    const std::string data = scratch.copyData();
    EXPECT_EQ(scratch.run("-v --datadir " + data + " blocks").err, "data: " + data + " (--datadir)\n");
}

TEST_F(Tool, MissingDataFileIsNamed)
{
    const std::string data = scratch.copyData();
    std::filesystem::remove(Scratch::dataFile(data, "Bram"));
    expectUserError("--datadir " + data + " calc Bram", "powercfg/orvane/ZelmOrvaneBramData.cfg");
    EXPECT_EQ(scratch.run("--datadir " + data + " calc Plam").code, 0); // the other blocks still work
}

TEST_F(Tool, BrokenDataFileIsNamedWithItsLine)
{
    const std::string data = scratch.copyData();
    std::ofstream(Scratch::dataFile(data, "Gorb")) << "ZelmOrvaneGorbData :\n{\n  SIM_CONDITIONS ; 1\n};\n";
    expectUserError("--datadir " + data + " calc Gorb", Scratch::dataFile(data, "Gorb") + ":3: ");
}

TEST_F(Tool, MissingTableIsNamed)
{
    const std::string data = scratch.copyData();
    std::ofstream(Scratch::dataFile(data, "Gorb")) << "ZelmOrvaneGorbData : { };\n";
    expectUserError("--datadir " + data + " calc Gorb",
                    Scratch::dataFile(data, "Gorb") + ":1: expected a group ZelmOrvaneGorbData.GORB_POWER_PARAM");
}

TEST_F(Tool, PaintsOnATerminalOnly)
{
    const std::string design = scratch.write("d.json", kBram + R"(, "budgets": {"totalPower": 0}})");
    // script(1) gives its command a terminal, on which standard error comes out too.
    const auto onTerminal = [&](const std::string& environment, const std::string& arguments) {
        const std::string command = "env " + environment + " script -qec '" ZELM_TOOL " " + arguments +
                                    "' /dev/null </dev/null >" + scratch.path("tty");
        EXPECT_GE(std::system(command.c_str()), 0);
        return Scratch::read(scratch.path("tty"));
    };
    EXPECT_THAT(onTerminal("-u NO_COLOR TERM=xterm", "estimate " + design), HasSubstr("\x1b[1;31mBROKEN\x1b[0m"));
    EXPECT_THAT(onTerminal("-u NO_COLOR TERM=xterm", "calc Brem"),
                HasSubstr("\x1b[1;31mzelm:\x1b[0m there is no block"));
    for (const std::string environment : {"NO_COLOR=1 TERM=xterm", "-u NO_COLOR TERM=dumb"}) {
        const std::string text = onTerminal(environment, "estimate " + design);
        EXPECT_THAT(text, HasSubstr("BROKEN")) << environment;
        EXPECT_THAT(text, testing::Not(HasSubstr("\x1b"))) << environment;
    }
    EXPECT_THAT(scratch.run("estimate " + design).out, testing::Not(HasSubstr("\x1b")));
}

TEST_F(Tool, ShowsProgressOfLongWorkOnATerminalOnly)
{
    const std::string design = scratch.write("d.json", R"({"device": {"part": "zq4410"}, "groups": []})");
    const std::string sweep =
        "sweep --vary environment.junctionTemperature=0,100 --csv " + design + " --progress-after ";
    const auto onTerminal = [&](const std::string& milliseconds) {
        const std::string command = "TERM=xterm script -qec '" ZELM_TOOL " " + sweep + milliseconds +
                                    "' /dev/null </dev/null >" + scratch.path("tty");
        EXPECT_EQ(std::system(command.c_str()), 0);
        return Scratch::read(scratch.path("tty"));
    };
    // The first of two points fills half of the bar's 40 columns; the line is wiped at the end.
    const std::string half = "\rsweeping [" + std::string(20, '#') + std::string(20, ' ') + "] 1/2";
    EXPECT_THAT(onTerminal("0"), testing::AllOf(HasSubstr(half), HasSubstr("\r\x1b[K")));
    EXPECT_THAT(onTerminal("3600000"), testing::Not(HasSubstr("sweeping")));
    const ToolRun piped = scratch.run(sweep + "0");
    EXPECT_EQ(piped.code, 0);
    EXPECT_THAT(piped.err, IsEmpty());
}

TEST_F(Tool, ShowsTheUncertaintyOfBlocksAndGroups)
{
    const std::string data = scratch.copyData();
    scratch.write("data/uncertainty.json", R"({"blocks": {"Bram": {
        "dynamic": {"relative": 0.125, "reason": "a macro"},
        "rails": {"VCCRAM": {"relative": 0.07, "reason": "its array"}}}, "Plam": {"none": "text"}}})");
    const std::string with = "--datadir " + data;
    EXPECT_THAT(scratch.run(with + " cells Bram").out,
                HasSubstr("Uncertainty, one standard deviation over the number:\n"
                          "  dynamic 12.5 %: a macro\n  on VCCRAM 7 %: its array\n"));
    EXPECT_THAT(scratch.run(with + " cells Plam").out, Not(HasSubstr("Uncertainty")));
    const std::string design = scratch.write("d.json", kBram + "}");
    const auto group = nlohmann::json::parse(scratch.run(with + " estimate --json " + design).out)["groups"][0];
    EXPECT_EQ(group["uncertainty"][0]["relative"], 0.125) << group["uncertainty"];
    EXPECT_EQ(group["uncertainty"][1]["rail"], "VCCRAM") << group["uncertainty"];
    EXPECT_EQ(group["uncertainty"].size(), 2u);
    scratch.run(with + " estimate " + design + " --html " + scratch.path("r.html"));
    EXPECT_THAT(Scratch::read(scratch.path("r.html")), HasSubstr("on VCCRAM 7 %: its array"));

    scratch.write("data/uncertainty.json", "{\"blocks\": {\"Bram\": {\n\"dynamic\": {\"relative\": \"much\"}}}}");
    const ToolRun broken = scratch.run(with + " cells Bram");
    EXPECT_EQ(broken.code, 2);
    EXPECT_THAT(broken.err, HasSubstr("uncertainty.json:2: blocks.Bram.dynamic: expected"));
}

TEST_F(Tool, SaysWhatOfADeviceIsNotModelled)
{
    const std::string parts = scratch.run("parts").out;
    const auto noteOf = [&](const std::string& device) {
        const std::size_t start = parts.find(device + " (");
        const std::string entry = parts.substr(start, parts.find("\nZ", start) - start);
        const std::size_t note = entry.find("not modelled: ");
        return note == std::string::npos ? "" : entry.substr(note);
    };
    EXPECT_THAT(noteOf("ZW4630"), HasSubstr("dynamic power of the converters")); // 16 ADC and DAC each
    EXPECT_THAT(noteOf("ZR3320"), StartsWith("not modelled: the video unit"));
    EXPECT_THAT(noteOf("ZC7540"), StartsWith("not modelled: traffic of the stacked memory"));
    EXPECT_EQ(noteOf("ZQ4410"), "");
}

TEST_F(Tool, StandardsTellTheirPins)
{
    const auto list = nlohmann::json::parse(scratch.run("standards --json").out).at("standards");
    int pairs = 0;
    for (const auto& standard : list) {
        const std::string name = standard["standard"];
        const bool pair = name.starts_with("DIFF_") || name.starts_with("LVDS") || name.starts_with("MIPI_") ||
                          name == "LVPECL" || name == "SUB_LVDS" || name == "SLVS_400_25";
        EXPECT_EQ(standard["pins"], pair ? 2 : 1) << standard;
        pairs += pair ? 1 : 0;
    }
    EXPECT_GT(pairs, 20);
}

} // namespace

} // namespace zelm::test::toolTest
