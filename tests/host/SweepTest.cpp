#include "Designs.h"
#include "Sweeps.h"
#include "Tool.h"

#include "host/base/Json.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <sstream>
#include <thread>

namespace zelm::test::sweepTest {

using namespace zelm::host;
using testing::HasSubstr;

namespace {

// A design with the ambient temperature and the number of memories left open.
std::string designText(const std::string& ambient, const std::string& memories, const std::string& process = "TYP")
{
    return R"({"device": {"part": "zq4410", "process": ")" + process + R"("},
  "environment": {"ambientTemperature": )" +
           ambient + R"(, "thetaJA": 1},
  "budgets": {"totalPower": 4},
  "groups": [{"block": "Signal"}, {"block": "Bram", "name": "line buffers", "inputs": {"NUM_BRAMS": )" +
           memories + R"(, "MODE": "BLKM18"}}]})";
}

class SweepTest : public testing::Test {
protected:
    Json swept(const std::vector<std::string>& variations) const
    {
        return Json::parse(sweepText(m_file, variations, SweepFormat::json)).at("points");
    }

    std::string messageOf(const std::vector<std::string>& variations) const
    {
        try {
            sweepText(m_file, variations, SweepFormat::table);
        } catch (const Error& error) {
            return error.what();
        }
        return "no error";
    }

    static void expectPoint(const Json& point, const std::string& text)
    {
        const Estimate expected = estimateOf(text);
        EXPECT_EQ(point.at("dynamicWatts"), expected.dynamicWatts) << text;
        ASSERT_EQ(point.at("sides").size(), expected.sides.size()) << text;
        for (std::size_t i = 0; i < expected.sides.size(); ++i) {
            EXPECT_EQ(point["sides"][i]["process"], expected.sides[i].process);
            EXPECT_EQ(point["sides"][i]["totalWatts"], expected.sides[i].totalWatts) << text;
            EXPECT_EQ(point["sides"][i]["junctionTemperature"], expected.sides[i].junction) << text;
        }
    }

    const Scratch m_scratch;
    const std::string m_file = m_scratch.write("d.json", designText("40", "8"));
};

TEST_F(SweepTest, EachPointIsTheEstimateOfItsDesign)
{
    const Json points =
        swept({"environment.ambientTemperature=20:60:20", "groups[line buffers].inputs.NUM_BRAMS=1,500"});
    ASSERT_EQ(points.size(), 6u);
    std::size_t index = 0;
    for (const char* ambient : {"20", "40", "60"}) {
        for (const char* memories : {"1", "500"})
            expectPoint(points[index++], designText(ambient, memories));
    }
    EXPECT_LT(points[0]["dynamicWatts"], points[1]["dynamicWatts"]);
    EXPECT_EQ(points[1]["settings"].dump(),
              R"({"environment.ambientTemperature":20,"groups[line buffers].inputs.NUM_BRAMS":500})");
}

// An edit that only its own group reads may not hide a later one that others read: memories leak by their number.
TEST_F(SweepTest, WhatOthersReadOfAGroupIsReadAgainAfterAnEditThatNobodyReads)
{
    const auto text = [](const std::string& memories, const std::string& toggles) {
        return R"({"device": {"part": "zq4410"}, "environment": {"junctionTemperature": 60}, "groups": [{"block": "Bram",
            "name": "line buffers", "inputs": {"NUM_BRAMS": )" +
               memories + R"(, "TOGGLE_RATE_A": )" + toggles + "}}]}";
    };
    const std::string file = m_scratch.write("reads.json", text("8", "0.5"));
    const Json points = Json::parse(sweepText(file,
                                              {"groups[line buffers].inputs.NUM_BRAMS=8,500",
                                               "groups[line buffers].inputs.TOGGLE_RATE_A=0.1,0.2,0.3"},
                                              SweepFormat::json, 1))
                            .at("points");
    ASSERT_EQ(points.size(), 6u);
    std::size_t index = 0;
    for (const char* memories : {"8", "500"}) {
        for (const char* toggles : {"0.1", "0.2", "0.3"})
            expectPoint(points[index++], text(memories, toggles));
    }
}

TEST_F(SweepTest, WordsFieldsNotThereAndIndexes)
{
    EXPECT_EQ(swept({"device.speedGrade=1,2"}).size(), 2u) << "grades are words, whatever they look like";
    const Json modes = swept({"groups[1].inputs.MODE=BLKM18,BLKM36"});
    ASSERT_EQ(modes.size(), 2u);
    EXPECT_NE(modes[0]["dynamicWatts"], modes[1]["dynamicWatts"]);
    EXPECT_EQ(
        swept({"groups[Signal].inputs.SIGNAL_COUNT=0"})[0]["dynamicWatts"],
        estimateOf(
            R"({"device": {"part": "zq4410"}, "groups": [{"block": "Bram", "inputs": {"NUM_BRAMS": 8, "MODE": "BLKM18"}}]})")
            .dynamicWatts);
}

TEST_F(SweepTest, RangesHaveTheValuesThatPeopleCount)
{
    const auto values = [&](const std::string& range) {
        std::string text;
        for (const Json& point : swept({"rails.VCCINT=" + range}))
            text += point["settings"]["rails.VCCINT"].dump() + " ";
        return text;
    };
    EXPECT_EQ(values("0.7:1:0.1"), "0.7 0.8 0.9 1 ");
    EXPECT_EQ(values("0.72:0.78:0.02"), "0.72 0.74 0.76 0.78 ");
    EXPECT_EQ(values("1:0.5:-0.25"), "1 0.75 0.5 ");
    EXPECT_EQ(values("1:1.9:0.5"), "1 1.5 ");
    EXPECT_EQ(values("1:1:5"), "1 ");
    EXPECT_THAT(messageOf({"rails.VCCINT=7.81e-321:0.5:0.25"}), HasSubstr("a rail at 0 V"))
        << "less than a double's normal numbers";
}

TEST_F(SweepTest, MistakesAreTold)
{
    EXPECT_THAT(messageOf({"rails.VCCINT"}), HasSubstr("--vary rails.VCCINT: expected PATH="));
    EXPECT_THAT(messageOf({"rails.VCCINT=1:2:0"}), HasSubstr("a step that isn't 0"));
    EXPECT_THAT(messageOf({"rails.VCCINT=1:2:-1"}), HasSubstr("the step doesn't lead"));
    EXPECT_THAT(messageOf({"rails.VCCINT=0:1:1e-17"}), HasSubstr("more values than anybody can wait for"));
    EXPECT_THAT(messageOf({"rails.VCCINT=0:1:1e-14", "rails.VCCRAM=0:1:1e-14"}),
                HasSubstr("more points than can be counted"));
    EXPECT_THAT(messageOf({"environment=1", "environment.thetaJA=1"}), HasSubstr("isn't a field of an object"));
    EXPECT_THAT(messageOf({"environment.thetaJA=1", "environment=1"}), HasSubstr("isn't a field of an object"));
    EXPECT_THAT(messageOf({"rails.VCCINT=1,,2"}), HasSubstr("a value is empty"));
    EXPECT_THAT(messageOf({"groups[line bufers].count=1"}), HasSubstr("did you mean line buffers?"));
    EXPECT_THAT(messageOf({"groups[7].count=1"}), HasSubstr("\"groups\" has no element 7"));
    EXPECT_THAT(messageOf({"groups[1.count=1"}), HasSubstr("a ']' is missing"));
    EXPECT_THAT(messageOf({"rails[1]=1"}), HasSubstr("\"rails\" isn't a list"));
    EXPECT_THAT(messageOf({"budgets.totalPower.x=1"}), HasSubstr("\"x\" isn't a field of an object"));
    EXPECT_THAT(messageOf({"rails.VCCINT=0.8,800"}), HasSubstr("800 is outside 0 to 100 V (at rails.VCCINT = 800)"));
    EXPECT_THAT(messageOf({"rails.VCCIN=0.8"}), HasSubstr("did you mean VCCINT"));
}

TEST_F(SweepTest, TableAndCsvSayWhatBreaksAndRunsAway)
{
    const std::vector<std::string> variations{"environment.ambientTemperature=-20,50", "environment.thetaJA=1,40"};
    const std::string table = sweepText(m_file, variations, SweepFormat::table);
    EXPECT_THAT(table, HasSubstr("kept"));
    EXPECT_THAT(table, HasSubstr("BROKEN: total power"));
    EXPECT_THAT(table, HasSubstr("runaway"));
    const std::string csv = sweepText(m_file, variations, SweepFormat::csv);
    EXPECT_EQ(csv.substr(0, csv.find('\n')), "environment.ambientTemperature,environment.thetaJA,process,dynamic_w,"
                                             "static_w,total_w,junction_c,settles,budgets_broken");
    EXPECT_EQ(std::count(csv.begin(), csv.end(), '\n'), 1 + 4 * 2);
    EXPECT_THAT(csv, HasSubstr("\n-20,1,TYP,"));
    EXPECT_THAT(csv, HasSubstr(",no,total power\n"));
}

// Each thread keeps a design at work, whose order of changes differs with the number of threads.
TEST_F(SweepTest, ResultsDontDependOnThreads)
{
    const std::vector<std::string> variations{"environment.ambientTemperature=-20:60:2",
                                              "groups[line buffers].inputs.NUM_BRAMS=1,8,500", "rails.VCCINT=0.8,0.82"};
    const std::string one = sweepText(m_file, variations, SweepFormat::json, 1);
    EXPECT_EQ(Json::parse(one).at("points").size(), 41u * 3 * 2);
    for (const unsigned jobs : {2u, 3u, 16u})
        EXPECT_EQ(sweepText(m_file, variations, SweepFormat::json, jobs), one) << jobs << " threads";
}

TEST_F(SweepTest, TheFirstPointThatFailsIsToldAndThoseBeforeItStand)
{
    std::string list = "groups[line buffers].inputs.NUM_BRAMS=";
    for (int i = 1; i <= 100; ++i)
        list += std::to_string(i) + ",";
    std::string text;
    try {
        printSweep(Sweep(m_file, {list + "-1,-2,-3"}), {2, std::chrono::hours(1), Gaps::refused}, SweepFormat::csv,
                   Paint(), [&](std::string_view more) { text += more; });
        FAIL() << "no error";
    } catch (const Error& error) {
        EXPECT_THAT(error.what(), HasSubstr("(at groups[line buffers].inputs.NUM_BRAMS = -1)"));
    }
    EXPECT_THAT(text, HasSubstr("\n90,TYP,")); // threads take some points at once
    EXPECT_EQ(text.back(), '\n');
}

TEST_F(SweepTest, TablesWithoutEndKeepTheirColumns)
{
    const std::string table = sweepText(m_file, {"environment.ambientTemperature=20:50:0.02"}, SweepFormat::table);
    std::size_t points = 0;
    std::size_t place = 0;
    std::istringstream lines(table);
    for (std::string line; std::getline(lines, line) && !line.empty();) { // crossings stand below
        const std::size_t here = line.find("W ");
        if (here == std::string::npos)
            continue;
        ++points;
        if (place == 0)
            place = here;
        EXPECT_EQ(here, place) << line;
    }
    EXPECT_EQ(points, 1501u);
}

TEST_F(SweepTest, WarningsCountIfTheyAreToCount)
{
    const auto codeOf = [&](const std::string& options) {
        return m_scratch.run("sweep " + m_file + " --vary rails.VCCINT=" + options).code;
    };
    EXPECT_EQ(codeOf("0.8,0.2"), 0);
    EXPECT_EQ(codeOf("0.8,0.2 --strict"), 1); // 0.2 V is outside what the rail allows
    EXPECT_EQ(codeOf("0.8 --strict"), 0);
    EXPECT_EQ(codeOf("0.8 --jobs 0"), 2);
}

// A sweep of more points than anybody waits for ends when it is told to, with a whole line.
TEST_F(SweepTest, AnInterruptLeavesWholeLines)
{
    const std::string out = m_scratch.path("rows.csv");
    const int descriptor = ::open(out.c_str(), O_CREAT | O_WRONLY, 0600);
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(descriptor, STDOUT_FILENO);
        ::signal(SIGINT, SIG_DFL); // which a shell's job in the background ignores, and what it starts
        ::execl(ZELM_TOOL, "zelm", "sweep", m_file.c_str(), "--csv", "--vary",
                "environment.ambientTemperature=20:50:1e-9", nullptr);
        ::_exit(99);
    }
    while (std::filesystem::file_size(out) < 20000 && ::waitpid(child, nullptr, WNOHANG) == 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    ::kill(child, SIGINT);
    int status = 0;
    ::waitpid(child, &status, 0);
    ::close(descriptor);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 128 + SIGINT);
    const std::string text = Scratch::read(out);
    ASSERT_GE(text.size(), 20000u);
    EXPECT_EQ(text.back(), '\n');
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        ASSERT_EQ(std::count(line.begin(), line.end(), ','), 7) << line;
}

TEST_F(SweepTest, OverTheProcessEachPointIsItsOwnSide)
{
    const Estimate both = estimateOf(designText("40", "8"));
    ASSERT_LT(both.sides[0].totalWatts, 4.0); // the budget lies between the sides
    ASSERT_GT(both.sides[1].totalWatts, 4.0);
    const std::vector<std::string> variation{"device.process=TYP,MAX"};
    const std::string csv = sweepText(m_file, variation, SweepFormat::csv);
    EXPECT_EQ(std::count(csv.begin(), csv.end(), '\n'), 1 + 2) << csv;
    EXPECT_THAT(csv, testing::ContainsRegex("\nTYP,TYP,[^\n]*,yes,\n"));
    EXPECT_THAT(csv, testing::ContainsRegex("\nMAX,MAX,[^\n]*,yes,total power\n"));
    const std::string table = sweepText(m_file, variation, SweepFormat::table);
    EXPECT_THAT(table, testing::ContainsRegex("\nTYP [^\n]* C +kept *\n"));
    EXPECT_THAT(table, testing::ContainsRegex("\nMAX [^\n]* C +BROKEN: total power *\n"));
    const Json points = swept(variation);
    for (std::size_t i = 0; i < 2; ++i) {
        ASSERT_EQ(points[i]["sides"].size(), 1u);
        EXPECT_EQ(points[i]["sides"][0]["process"], both.sides[i].process);
        EXPECT_EQ(points[i]["sides"][0]["totalWatts"], both.sides[i].totalWatts);
    }
}

} // namespace

} // namespace zelm::test::sweepTest
