#include "Designs.h"
#include "Sweeps.h"
#include "Tool.h"

#include "host/base/Json.h"

#include <fmt/format.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <sstream>
#include <thread>

namespace zelm::test::sweepOutputTest {

using namespace zelm::host;
using testing::HasSubstr;

namespace {

std::string designText(const std::string& ambient, const std::string& thetaJA)
{
    return R"({"name": "Two groups", "device": {"part": "zq4410"},
  "environment": {"ambientTemperature": )" +
           ambient + R"(, "thetaJA": )" + thetaJA + R"(},
  "budgets": {"totalPower": 4},
  "groups": [{"block": "Signal", "name": "wires, all", "inputs": {"SIGNAL_COUNT": 5000}},
             {"block": "Bram", "name": "line buffers", "inputs": {"NUM_BRAMS": 8, "MODE": "BLKM18"}}]})";
}

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

class SweepOutputTest : public testing::Test {
protected:
    ToolRun swept(const std::string& options) const
    {
        return m_scratch.run("sweep '" + m_file + "' " + options);
    }
    std::string out(const std::string& options) const
    {
        const ToolRun run = swept(options);
        EXPECT_EQ(run.code, 0) << options << "\n" << run.err;
        return run.out;
    }

    const Scratch m_scratch;
    const std::string m_file = m_scratch.write("d.json", designText("40", "1"));
};

TEST_F(SweepOutputTest, ColumnsAreTheQuantitiesOfEachPointsEstimate)
{
    const std::string columns =
        "'total@MAX,junction,rail:VCCINT,group:wires, all,group:line buffers.NUM_BRAMS,budget:total power,"
        "budget:total power@TYP'";
    const std::string variation = "--vary environment.ambientTemperature=20,60 --columns " + columns;
    const std::vector<std::string> csv = linesOf(out(variation + " --csv"));
    ASSERT_EQ(csv.size(), 3u);
    EXPECT_EQ(csv[0], "environment.ambientTemperature,total@MAX [W],junction@TYP [C],rail:VCCINT@TYP [A],"
                      "\"group:wires, all@TYP [W]\",group:line buffers.NUM_BRAMS@TYP,budget:total power [W],"
                      "budget:total power@TYP [W]");
    const Json points = Json::parse(out(variation + " --json")).at("points");
    const std::string table = out(variation);
    std::size_t row = 1;
    for (const char* ambient : {"20", "60"}) {
        const Estimate expected = estimateOf(designText(ambient, "1"));
        const double typ = expected.sides[0].totalWatts;
        const double max = expected.sides[1].totalWatts;
        EXPECT_EQ(csv[row], fmt::format("{},{},{},{},{},{},{},{}", ambient, max, expected.sides[0].junction,
                                        expected.sides[0].rail("VCCINT")->amperes(),
                                        groupOf(expected, "wires, all").watts, 8, 4.0 - std::max(typ, max), 4.0 - typ));
        const Json& quantities = points.at(row - 1).at("quantities");
        EXPECT_EQ(quantities.size(), 7u);
        EXPECT_EQ(quantities.at("total@MAX"), max);
        EXPECT_EQ(quantities.at("budget:total power@TYP"), 4.0 - typ);
        EXPECT_THAT(table, HasSubstr(fmt::format("{:.2f} C", expected.sides[0].junction)));
        ++row;
    }
}

TEST_F(SweepOutputTest, OverTheProcessColumnsAreEachPointsOwnSide)
{
    const Estimate both = estimateOf(designText("40", "1"));
    const std::vector<std::string> lines =
        linesOf(out("--vary device.process=TYP,MAX --columns total,total@MAX,budget:total\\ power --csv"));
    ASSERT_EQ(lines.size(), 3u);
    const double typ = both.sides[0].totalWatts;
    const double max = both.sides[1].totalWatts;
    EXPECT_EQ(lines[0], "device.process,total [W],total@MAX [W],budget:total power [W]");
    EXPECT_EQ(lines[1], fmt::format("TYP,{},{},{}", typ, max, 4.0 - typ));
    EXPECT_EQ(lines[2], fmt::format("MAX,{},{},{}", max, max, 4.0 - max));
}

TEST_F(SweepOutputTest, ColumnsThatAreNoneAreTold)
{
    const auto message = [&](const std::string& columns) {
        const ToolRun run = swept("--vary rails.VCCINT=0.8 --columns '" + columns + "'");
        EXPECT_EQ(run.code, 2);
        return run.err;
    };
    EXPECT_THAT(message("totl"), HasSubstr("did you mean total?"));
    EXPECT_THAT(message("total,,junction"), HasSubstr("a name is empty"));
    EXPECT_THAT(message("total,total@TYP"), HasSubstr("total@TYP stands twice"));
    EXPECT_THAT(message("budget:total pwer"), HasSubstr("did you mean total power?"));
    EXPECT_THAT(message("group:wires, al"), HasSubstr("the design has no group"));
}

// On the straight line between the points whose totals lie on both sides of the budget.
TEST_F(SweepOutputTest, CrossingsOfBudgetsAreFoundAlongEachVariation)
{
    const auto total = [](const std::string& ambient, const std::string& thetaJA) {
        return estimateOf(designText(ambient, thetaJA)).sides[0].totalWatts;
    };
    const double cold = total("40", "1");
    const double warm = total("60", "1");
    ASSERT_LT(cold, 4.0);
    ASSERT_GT(warm, 4.0);
    const double ambient = 40.0 + 20.0 * (4.0 - cold) / (warm - cold);
    const double low = total("40", "1");
    const double high = total("40", "4");
    ASSERT_GT(high, 4.0);
    const double thetaJA = 1.0 + 3.0 * (4.0 - low) / (high - low);
    const std::string variations = "--vary environment.ambientTemperature=20:60:20 --vary environment.thetaJA=1,4";
    const Json json = Json::parse(out(variations + " --json"));
    std::vector<std::string> found;
    for (const Json& crossing : json.at("crossings")) {
        EXPECT_EQ(crossing.at("budget"), "total power");
        EXPECT_EQ(crossing.at("limit"), 4.0);
        EXPECT_EQ(crossing.at("kept"), "below");
        if (crossing.at("process") == "TYP" && crossing.at("value").is_number())
            found.push_back(fmt::format("{} {:.9g} {}", crossing.at("path").get<std::string>(),
                                        crossing.at("value").get<double>(), crossing.at("settings").dump()));
    }
    EXPECT_THAT(found, testing::Contains(fmt::format("environment.ambientTemperature {:.9g} "
                                                     "{{\"environment.thetaJA\":1}}",
                                                     ambient)));
    EXPECT_THAT(found, testing::Contains(fmt::format("environment.thetaJA {:.9g} "
                                                     "{{\"environment.ambientTemperature\":40}}",
                                                     thetaJA)));
    EXPECT_THAT(out(variations),
                testing::ContainsRegex(fmt::format("total power @TYP +4.000 W +below +environment.ambientTemperature = "
                                                   "{:.6g} +environment.thetaJA = 1",
                                                   ambient)));
    EXPECT_TRUE(Json::parse(out("--vary device.speedGrade=1,2 --json")).at("crossings").empty()) << "words";
}

TEST_F(SweepOutputTest, JsonLinesAreTheRowsOfTheTable)
{
    const std::string variations = "--vary environment.thetaJA=1,2.5,40 --vary device.speedGrade=1,2 ";
    const std::vector<std::string> lines = linesOf(out(variations + "--jsonl"));
    ASSERT_EQ(lines.size(), 6u);
    const Json first = Json::parse(lines[0]);
    EXPECT_EQ(first.at("environment.thetaJA"), 1.0);
    EXPECT_EQ(first.at("device.speedGrade"), "1");
    EXPECT_EQ(first.at("budget:total power [W]").get<double>(), 4.0 - first.at("total@MAX [W]").get<double>());
    EXPECT_TRUE(Json::parse(lines[5]).at("junction@MAX [C]").is_null()) << lines[5];
    for (const char* jobs : {"1", "3"})
        EXPECT_EQ(out(variations + "--jsonl --jobs " + jobs), out(variations + "--jsonl"));
}

TEST_F(SweepOutputTest, ThePageHasChartsWithBudgetsAndCrossings)
{
    const std::string file = m_scratch.path("page.html");
    const std::string line = "--vary environment.ambientTemperature=0:60:20"; // both sides cross the budget there
    out(line + " --html " + file);
    const std::string page = Scratch::read(file);
    const Json crossings = Json::parse(out(line + " --json")).at("crossings");
    ASSERT_EQ(crossings.size(), 2u);
    for (const Json& crossing : crossings)
        EXPECT_THAT(page, HasSubstr(fmt::format(">{:.4g} {}<", crossing.at("value").get<double>(),
                                                crossing.at("process").get<std::string>())));
    EXPECT_THAT(page, HasSubstr("total [W]"));
    EXPECT_THAT(page, HasSubstr("budget: total power"));
    const auto count = [](const std::string& text, const std::string& what) {
        std::size_t times = 0;
        for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1))
            ++times;
        return times;
    };
    EXPECT_EQ(count(page, "<polyline"), 2u * 2 + 1) << "both sides of total and junction, and the budget";
    out("--vary environment.thetaJA=1:8:1 " + line + " --columns total@TYP --html " + file);
    EXPECT_EQ(count(Scratch::read(file), "<rect"), 8u * 4 * 2) << "the total, and what the budget holds of MAX";
    EXPECT_THAT(swept("--vary rails.VCCINT=0.7:0.8:0.000001 --html " + file).err, HasSubstr("at most 20000 points"));
    EXPECT_THAT(swept(line + " --csv --html " + file).err, HasSubstr("--html goes with the table"));
}

// ---- Going on ----

const char* const kManyPoints = "--vary environment.ambientTemperature=0:49.9:0.1 --vary environment.thetaJA=0.5:1:0.1";

// Runs the tool until its file is so large, and kills it.
void killAt(std::uintmax_t bytes, const std::string& growing, const std::string& command)
{
    const pid_t child = ::fork();
    if (child == 0) {
        const std::string line = "exec nice -n 19 '" ZELM_TOOL "' " + command + " >/dev/null";
        ::execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
        ::_exit(99);
    }
    std::error_code none;
    int status = 0;
    const auto size = [&] {
        const std::uintmax_t now = std::filesystem::file_size(growing, none);
        return none ? 0 : now;
    };
    while (size() < bytes) {
        ASSERT_EQ(::waitpid(child, &status, WNOHANG), 0) << "it ended by itself: " << command;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    ::kill(child, SIGKILL);
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status)) << "it ended before it was killed: " << command;
}

std::size_t loggedBytes(const std::string& log)
{
    const std::vector<std::string> lines = linesOf(Scratch::read(log));
    std::size_t chunks = 0;
    std::size_t bytes = 0;
    if (lines.size() > 1)
        std::istringstream(lines.back()) >> chunks >> bytes;
    return bytes;
}

TEST_F(SweepOutputTest, WhatWasKilledGoesOnAndEndsUpTheSame)
{
    for (const char* name : {"a.csv", "a.jsonl", "a.h5"}) {
        const std::string whole = m_scratch.path(std::string("whole-") + name);
        const std::string file = m_scratch.path(name);
        const std::string options = std::string(kManyPoints) + " --jobs 2 --resume ";
        out(options + whole);
        ASSERT_FALSE(std::filesystem::exists(whole + ".resume"));
        const bool isHdf5 = file.ends_with(".h5");
        const std::string growing = isHdf5 ? file + ".rows" : file;
        const std::uintmax_t step = isHdf5 ? 60'000 : std::filesystem::file_size(whole) / 4;
        for (std::uintmax_t bytes = step; bytes < 3 * step; bytes += step) {
            killAt(bytes, growing, "sweep " + m_file + " " + kManyPoints + " --jobs 1 --resume " + file);
            constexpr std::size_t longestRow = 600;
            constexpr std::size_t chunkRows = 3000 / 64; // points of the sweep, and the chunks that it has at least
            EXPECT_GE(loggedBytes(file + ".resume") + longestRow * chunkRows, bytes) << "more than a chunk is lost";
        }
        const std::string said = out(options + file);
        EXPECT_EQ(said, "3000 points, 0 with warnings\n");
        EXPECT_TRUE(Scratch::read(file) == Scratch::read(whole)) << file;
        EXPECT_FALSE(std::filesystem::exists(file + ".resume"));
        EXPECT_FALSE(std::filesystem::exists(file + ".rows"));
    }
    const std::string printed = out(std::string(kManyPoints) + " --csv");
    EXPECT_TRUE(printed == Scratch::read(m_scratch.path("a.csv")));
}

TEST_F(SweepOutputTest, AnotherStudyIsntGoneOnWith)
{
    const std::string file = m_scratch.path("b.csv");
    const std::string options = std::string(kManyPoints) + " --resume " + file;
    killAt(20'000, file, "sweep " + m_file + " " + options + " --jobs 1");
    const std::string before = Scratch::read(file);
    EXPECT_THAT(swept(options + " --columns total").err, HasSubstr("columns was [] and is [\"total@TYP\"]"));
    EXPECT_THAT(swept(options + " --jsonl").err, HasSubstr("form was \"csv\" and is \"jsonLines\""));
    EXPECT_THAT(swept("--vary environment.thetaJA=1,2 --resume " + file).err, HasSubstr("variations was ["));
    m_scratch.write("d.json", designText("40", "2"));
    EXPECT_THAT(swept(options).err, HasSubstr("designSha256 was "));
    m_scratch.write("d.json", designText("40", "1"));
    const std::string data = m_scratch.copyData();
    std::ofstream(Scratch::dataFile(data, "Bram"), std::ios::app) << "\n";
    EXPECT_THAT(swept(options + " --datadir " + data).err, HasSubstr("dataFiles was ["));
    EXPECT_EQ(Scratch::read(file), before) << "a file was touched that isn't gone on with";
    const std::string log = Scratch::read(file + ".resume");
    m_scratch.write("b.csv.resume", log + "99999 1 1\n");
    EXPECT_THAT(swept(options).err, testing::ContainsRegex("b.csv.resume:[0-9]+: isn't what a study writes"));
    m_scratch.write("b.csv.resume", "[]\n");
    EXPECT_THAT(swept(options).err, HasSubstr("isn't the log of a study"));
    std::filesystem::remove(file + ".resume");
    EXPECT_THAT(swept(options).err, HasSubstr("this one is whole, or another's file"));
}

// What was written ahead of the log's last whole line is written again.
TEST_F(SweepOutputTest, HalfAChunkAndHalfALineAreMadeGood)
{
    const std::string file = m_scratch.path("c.csv");
    const std::string options = std::string(kManyPoints) + " --resume " + file;
    killAt(20'000, file, "sweep " + m_file + " " + options + " --jobs 1");
    std::ofstream(file, std::ios::app) << "0,0.5,T";
    std::ofstream(file + ".resume", std::ios::app) << "7 12";
    out(options);
    EXPECT_TRUE(Scratch::read(file) == out(std::string(kManyPoints) + " --csv"));
}

TEST_F(SweepOutputTest, AFullDiskIsToldAndGoneOnFrom)
{
    const std::string file = m_scratch.path("d.csv");
    const std::string options = "sweep '" + m_file + "' " + kManyPoints + " --resume " + file;
    const std::string command = "ulimit -f 100; '" ZELM_TOOL "' " + options + " 2>" + m_scratch.path("err");
    const int status = std::system(command.c_str());
    EXPECT_EQ(WEXITSTATUS(status), 2);
    EXPECT_THAT(Scratch::read(m_scratch.path("err")), HasSubstr("d.csv: cannot be written"));
    EXPECT_EQ(m_scratch.run(options).code, 0);
    EXPECT_TRUE(Scratch::read(file) == out(std::string(kManyPoints) + " --csv"));
}

TEST_F(SweepOutputTest, OutputsThatContradictEachOtherAreTold)
{
    const auto message = [&](const std::string& options) {
        const ToolRun run = swept("--vary rails.VCCINT=0.8 " + options);
        EXPECT_EQ(run.code, 2) << options;
        return run.err;
    };
    const std::string file = m_scratch.path("e");
    EXPECT_THAT(message("--resume " + file), HasSubstr("which form?"));
    EXPECT_THAT(message("--hdf5 a.h5 --csv"), HasSubstr("--hdf5 is a form of its own"));
    EXPECT_THAT(message("--hdf5 a.h5 --resume b.h5"), HasSubstr("name two files"));
    EXPECT_THAT(message("--json --resume a.csv"), HasSubstr("--json is for standard output"));
    EXPECT_THAT(message("--csv --resume " + m_file), HasSubstr("this run reads this file"));
    EXPECT_THAT(message("--hdf5 /nowhere/a.h5"), HasSubstr("cannot be written as HDF5"));
    EXPECT_THAT(message("--csv --resume /dev/null"), HasSubstr("isn't, which a study leaves"));
}

} // namespace

} // namespace zelm::test::sweepOutputTest
