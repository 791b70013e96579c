#include "Designs.h"
#include "Tool.h"

#include "host/base/Json.h"
#include "host/report/StudyReports.h"
#include "host/study/Sensitivity.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace zelm::test::sensitivityTest {

using namespace zelm::host;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

namespace {

class SensitivityTest : public testing::Test {
protected:
    Sensitivity of(const std::string& text, const std::string& quantity = "total", double span = 0.1) const
    {
        return sensitivity(m_scratch.write("d.json", text), {quantity, span, 2});
    }

    static const SensitivityRow& row(const Sensitivity& all, const std::string& path)
    {
        const auto found =
            std::find_if(all.rows.begin(), all.rows.end(), [&](const SensitivityRow& r) { return r.path == path; });
        if (found == all.rows.end())
            throw std::runtime_error("there is no row " + path);
        return *found;
    }

    const Scratch m_scratch;
};

std::string wires(const std::string& more)
{
    return R"({"groups": [{"block": "Signal", "name": "wires", "inputs": {"SIGNAL_COUNT": 1000)" + more + "}}]}";
}

// Nets draw C V^2 f: a tenth more of f is a tenth more, of V 21 % more and 19 % less.
TEST_F(SensitivityTest, OfNetsFollowsFromTheirFormula)
{
    const Sensitivity all = of(wires(""), "dynamic");
    const SensitivityRow& clock = row(all, "groups[wires].inputs.CLOCK_FREQ");
    EXPECT_NEAR(clock.minus.change, -0.1 * all.nominal, 1e-6 * all.nominal);
    EXPECT_NEAR(clock.plus.change, 0.1 * all.nominal, 1e-6 * all.nominal);
    EXPECT_NEAR(clock.elasticity.value(), 1.0, 1e-4);
    EXPECT_NEAR(clock.overSpan.value(), 1.0, 1e-4);
    EXPECT_TRUE(clock.agrees);
    EXPECT_EQ(clock.origin, "default");
    EXPECT_EQ(row(all, "groups[wires].inputs.SIGNAL_COUNT").origin, "design");
    const SensitivityRow& volts = row(all, "rails.VCCINT");
    EXPECT_NEAR(volts.minus.change, -0.19 * all.nominal, 1e-5 * all.nominal);
    EXPECT_NEAR(volts.plus.change, 0.21 * all.nominal, 1e-5 * all.nominal);
    EXPECT_NEAR(volts.elasticity.value(), 2.0, 1e-3);
    EXPECT_TRUE(std::is_sorted(all.rows.begin(), all.rows.end(), [](const SensitivityRow& a, const SensitivityRow& b) {
        return a.largest() > b.largest();
    })) << "what moves most comes first";
}

TEST_F(SensitivityTest, IsTheDifferenceOfTwoPlainEstimates)
{
    const auto text = [](const std::string& ambient, const std::string& memories, const std::string& mode) {
        return R"({"device": {"part": "zq4410"}, "environment": {"ambientTemperature": )" + ambient +
               R"(, "thetaJA": 1.5}, "groups": [{"block": "Bram", "name": "buffers", "inputs": {"NUM_BRAMS": )" +
               memories + R"(, "MODE": ")" + mode + "\"}}]}";
    };
    const auto junction = [](const std::string& design) { return estimateOf(design).sides[1].junction; };
    const double nominal = junction(text("40", "64", "BLKM36"));
    const Sensitivity all = of(text("40", "64", "BLKM36"), "junction@MAX", 0.25);
    EXPECT_EQ(all.nominal, nominal);
    const SensitivityRow& ambient = row(all, "environment.ambientTemperature");
    EXPECT_EQ(ambient.minus.change, junction(text("30", "64", "BLKM36")) - nominal);
    EXPECT_EQ(ambient.plus.change, junction(text("50", "64", "BLKM36")) - nominal);
    const SensitivityRow& memories = row(all, "groups[buffers].inputs.NUM_BRAMS");
    EXPECT_EQ(memories.minus.change, junction(text("40", "48", "BLKM36")) - nominal);
    EXPECT_EQ(memories.plus.change, junction(text("40", "80", "BLKM36")) - nominal);
    const SensitivityRow& mode = row(all, "groups[buffers].inputs.MODE");
    ASSERT_GT(mode.words.size(), 1u);
    for (const Move& word : mode.words) {
        const std::string name = std::get<std::string>(word.to);
        if (!word.why.empty()) {
            EXPECT_THROW(junction(text("40", "64", name)), Error) << name << ": " << word.why;
            continue;
        }
        EXPECT_EQ(word.change, junction(text("40", "64", name)) - nominal) << name;
        EXPECT_LE(mode.minus.change, word.change) << name;
        EXPECT_GE(mode.plus.change, word.change) << name;
    }
}

TEST_F(SensitivityTest, ValuesStayInTheirDomain)
{
    const Sensitivity all = of(wires(R"(, "TOGGLE_RATE": 0.5}}, {"block": "Bram", "name": "b", "inputs":
        {"NUM_BRAMS": 3, "PORT_A_ENABLE_RATE": 1, "PORT_B_ENABLE_RATE": 0)"));
    const SensitivityRow& share = row(all, "groups[b].inputs.PORT_A_ENABLE_RATE");
    EXPECT_EQ(std::get<double>(share.plus.to), 1.0) << "a share ends at 1";
    EXPECT_EQ(share.plus.change, 0.0);
    EXPECT_DOUBLE_EQ(std::get<double>(share.minus.to), 0.9);
    const SensitivityRow& memories = row(all, "groups[b].inputs.NUM_BRAMS");
    EXPECT_EQ(std::get<double>(memories.minus.to), 2.0) << "whole numbers move by one at least";
    EXPECT_EQ(std::get<double>(memories.plus.to), 4.0);
    EXPECT_EQ(row(all, "groups[b].inputs.PORT_B_ENABLE_RATE").largest(), 0.0);
    EXPECT_GE(all.atZero, 1u);
}

TEST_F(SensitivityTest, ParametersMoveAllThatTheyReach)
{
    const std::string file = R"({"parameters": {"f": "100 MHz", "half": "= f / 2"}, "groups": [
        {"block": "Signal", "name": "a", "inputs": {"CLOCK_FREQ": "= f"}},
        {"block": "Signal", "name": "b", "inputs": {"CLOCK_FREQ": "= half"}}]})";
    const Sensitivity all = of(file, "dynamic");
    const SensitivityRow& f = row(all, "parameters.f");
    EXPECT_NEAR(f.plus.change, 0.1 * all.nominal, 1e-6 * all.nominal);
    EXPECT_EQ(f.unit, "MHz");
    EXPECT_NEAR(row(all, "groups[b].inputs.CLOCK_FREQ").plus.change, 0.1 * all.nominal / 3.0, 1e-6 * all.nominal)
        << "a third of the power: 50 of 150 MHz";
}

TEST_F(SensitivityTest, DefaultsThatCountAreAListOfTheirOwn)
{
    const Sensitivity all = of(wires(""), "dynamic");
    std::set<std::string> next;
    for (const std::size_t i : all.findOutNext) {
        EXPECT_EQ(all.rows[i].origin, "default") << all.rows[i].path;
        next.insert(all.rows[i].path);
    }
    EXPECT_THAT(next, Contains("groups[wires].inputs.CLOCK_FREQ"));
    EXPECT_THAT(next, Not(Contains("groups[wires].inputs.SIGNAL_COUNT")));
    const Sensitivity known = of(wires(R"(, "CLOCK_FREQ": 200)"), "dynamic");
    for (const std::size_t i : known.findOutNext)
        EXPECT_NE(known.rows[i].path, "groups[wires].inputs.CLOCK_FREQ");
}

TEST_F(SensitivityTest, IsShownAsTextJsonAndPage)
{
    const std::string file = m_scratch.write("d.json", wires(R"(}}, {"block": "Bram", "name": "<b>&", "inputs": {)"));
    const Sensitivity all = sensitivity(file, {"dynamic", 0.1, 1});
    const Json json = sensitivityJson(all, std::nullopt);
    EXPECT_EQ(json["rows"].size(), all.rows.size());
    EXPECT_EQ(sensitivityJson(all, 3)["rows"].size(), 3u);
    EXPECT_EQ(json["rows"][0]["path"], all.rows.front().path);
    const std::string page = sensitivityHtml(all, 5);
    EXPECT_THAT(page, HasSubstr("&lt;b&gt;&amp;"));
    EXPECT_THAT(page, Not(HasSubstr("<b>&")));
    EXPECT_THAT(page, Not(HasSubstr("<script")));
    EXPECT_THAT(sensitivityText(all, 2), HasSubstr("2 of "));
}

TEST_F(SensitivityTest, MistakesAreTold)
{
    const std::string file = m_scratch.write("d.json", wires(""));
    const std::pair<std::string, const char*> rows[] = {
        {"--of totl", "totl: there is no such quantity; did you mean total?"},
        {"--of junction", "names no device"},
        {"--span 0", "--span 0: expected a share above 0"},
        {"--span nan", "expected a share"},
        {"--span 10W", "--span 10W: "},
        {"--span 200%", "up to 100%"},
        {"--top 0", "--top"},
        {"--html " + file, "d.json"},
    };
    for (const auto& [options, words] : rows) {
        const ToolRun run = m_scratch.run("sensitivity " + file + " " + options);
        EXPECT_EQ(run.code, 2) << options;
        EXPECT_THAT(run.err, HasSubstr(words)) << options;
    }
    const std::string hot =
        m_scratch.write("hot.json", R"({"device": {"part": "zq4410"}, "groups": [{"block": "Signal"}],
        "environment": {"ambientTemperature": 100, "thetaJA": 100}})");
    EXPECT_THAT(m_scratch.run("sensitivity " + hot).err, HasSubstr("runs away"));
}

} // namespace

} // namespace zelm::test::sensitivityTest
