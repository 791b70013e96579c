#include "Designs.h"
#include "Tool.h"

#include "host/base/Json.h"
#include "host/blocks/Catalogue.h"
#include "host/report/StudyReports.h"
#include "host/study/Fit.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace zelm::test::fitTest {

using namespace zelm::host;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

std::string designText(const std::string& part, int memories)
{
    return R"({"device": {"part": ")" + part +
           R"("}, "environment": {"ambientTemperature": 40, "thetaJA": 1}, "budgets": {"totalPower": 7},
  "groups": [{"block": "Bram", "name": "buffers", "inputs": {"NUM_BRAMS": )" +
           std::to_string(memories) + "}}]}";
}

constexpr const char* kPart = "zq4410_ktba3310_1_MP_i_S";

Fit fitted(const Scratch& scratch, int memories, FitWish wish = {})
{
    wish.jobs = 2;
    return fit(scratch.write("d.json", designText(kPart, memories)), wish);
}

TEST(Fit, EachPartIsItsOwnEstimate)
{
    const Scratch scratch;
    const Fit fit = fitted(scratch, 480);
    EXPECT_EQ(fit.parts.size(), orderableParts().size());
    int lacking = 0;
    for (const FitPart& part : fit.parts) {
        const Estimate expected = estimateOf(designText(part.part, 480));
        ASSERT_EQ(part.sides.size(), expected.sides.size()) << part.part << part.why;
        for (std::size_t i = 0; i < part.sides.size(); ++i) {
            EXPECT_EQ(part.sides[i].totalWatts, expected.sides[i].totalWatts) << part.part;
            EXPECT_EQ(part.sides[i].staticWatts, expected.sides[i].staticWatts) << part.part;
            EXPECT_EQ(part.sides[i].junction, expected.sides[i].junction) << part.part;
        }
        EXPECT_EQ(part.keeps(), !expected.budgetBroken()) << part.part;
        EXPECT_EQ(part.isDesigns, part.part == kPart);
        lacking += part.fits() ? 0 : 1;
    }
    EXPECT_GT(lacking, 0) << "the smallest devices have fewer memories";
    EXPECT_LT(lacking, static_cast<int>(fit.parts.size()));
}

TEST(Fit, TellsWhichResourceIsShort)
{
    const Scratch scratch;
    for (const FitPart& part : fitted(scratch, 480).parts) {
        const bool isSmall = part.device == "ZB2810"; // 450 memories
        if (!isSmall)
            continue;
        ASSERT_EQ(part.lacking.size(), 1u) << part.part;
        EXPECT_EQ(part.lacking.front().resource, "BRAM");
        EXPECT_EQ(part.lacking.front().used, 480.0);
        EXPECT_EQ(part.lacking.front().available, 450.0);
        EXPECT_FALSE(part.fits());
    }
}

TEST(Fit, ThoseThatKeepEverythingComeFirstByPower)
{
    const Scratch scratch;
    const Fit fit = fitted(scratch, 480);
    const auto rank = [](const FitPart& part) { return part.fits() && part.keeps() ? 0 : part.fits() ? 1 : 2; };
    for (std::size_t i = 1; i < fit.parts.size(); ++i) {
        const FitPart& a = fit.parts[i - 1];
        const FitPart& b = fit.parts[i];
        EXPECT_LE(rank(a), rank(b)) << a.part << " before " << b.part;
        EXPECT_FALSE(rank(a) == rank(b) && a.sides.front().totalWatts > b.sides.front().totalWatts)
            << a.part << " before " << b.part;
    }
    EXPECT_EQ(rank(fit.parts.front()), 0);
    EXPECT_GT(rank(fit.parts.back()), 0);
}

TEST(Fit, FiltersChooseParts)
{
    const Scratch scratch;
    const Fit fit = fitted(scratch, 8, {"2", "INDUSTRIAL", "KTBA3310", 1});
    ASSERT_FALSE(fit.parts.empty());
    for (const FitPart& part : fit.parts)
        EXPECT_THAT(part.part, testing::MatchesRegex("[a-z0-9]+_ktba3310_2_[A-Z]+_i_.*"));
    const Json json = fitJson(fit);
    EXPECT_EQ(json["parts"].size(), fit.parts.size());
    EXPECT_EQ(json["parts"][0]["totalWatts"]["MAX"], fit.parts[0].sides[1].totalWatts);
}

// A device alone is any of its parts whose grades the design doesn't contradict.
TEST(Fit, GradesOfTheDesignMarkItsParts)
{
    const Scratch scratch;
    const std::string file =
        scratch.write("d.json", R"({"device": {"part": "zq4410", "speedGrade": "2", "voltageGrade": "MP",
        "temperatureGrade": "INDUSTRIAL", "powerScreen": "LOW"}, "groups": [{"block": "Signal"}]})");
    std::vector<std::string> marked;
    for (const FitPart& part : fit(file, {}).parts) {
        EXPECT_EQ(part.why, "") << part.part;
        if (part.isDesigns)
            marked.push_back(part.part);
    }
    EXPECT_THAT(marked, ElementsAre("zq4410_ktba3310_2_MP_i_L"));
}

TEST(Fit, MistakesAreTold)
{
    const Scratch scratch;
    const std::string file = scratch.write("d.json", designText(kPart, 8));
    const std::string bare = scratch.write("bare.json", R"({"groups": [{"block": "Signal"}]})");
    const std::pair<std::string, const char*> rows[] = {
        {file + " --speed 9", "--speed 9: no part of the catalogue has it; there are 1, 2 or 3"},
        {file + " --temperature INDUSTRAL", "--temperature INDUSTRAL: no part"},
        {file + " --package ktba331", "did you mean ktba3310"},
        {file + " --speed 3 --temperature m", "no part of the catalogue has all"},
        {bare, "the design names no device"},
    };
    for (const auto& [arguments, words] : rows) {
        const ToolRun run = scratch.run("fit " + arguments);
        EXPECT_EQ(run.code, 2) << arguments;
        EXPECT_THAT(run.err, HasSubstr(words)) << arguments;
    }
}

} // namespace

} // namespace zelm::test::fitTest
