#include "Designs.h"
#include "Sweeps.h"
#include "Tool.h"

#include "host/base/Json.h"
#include "host/report/Report.h"
#include "host/report/SampleReport.h"
#include "host/report/StudyReports.h"
#include "host/study/Draws.h"
#include "host/study/Explain.h"
#include "host/study/Spread.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <mutex>
#include <random>
#include <set>

namespace zelm::test::sampleTest {

using namespace zelm::host;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

// One group of nets that draw C V^2 f: linear in the clock and in the toggles.
std::string wires(const std::string& clock, const std::string& toggles = "0.1", const std::string& more = "")
{
    return fmt::format(R"({{{}"groups": [{{"block": "Signal", "name": "wires",
  "inputs": {{"SIGNAL_COUNT": 100000,
    "CLOCK_FREQ": {},
    "TOGGLE_RATE": {}}}}}]}})",
                       more, clock, toggles);
}

class SampleTest : public testing::Test {
protected:
    SampleWish wish(std::size_t points, bool dataUncertainty = false) const
    {
        SampleWish wish;
        wish.points = points;
        wish.dataUncertainty = dataUncertainty;
        wish.jobs = 2;
        wish.barAfter = std::chrono::hours(1);
        return wish;
    }

    Sample of(const std::string& text, const SampleWish& wish, std::vector<SamplePoint>* points = nullptr) const
    {
        Sampling sampling(m_scratch.write("d.json", text), wish);
        std::map<std::size_t, SamplePoint> drawn; // by index: threads do them in any order
        std::mutex mutex;
        Sample sample = sampling.run(
            [&](const SamplePoint& point) {
                const std::lock_guard lock(mutex);
                drawn.emplace(point.index, point);
                return std::string();
            },
            [](std::string_view) {});
        for (const auto& entry : drawn) {
            if (points)
                points->push_back(entry.second);
        }
        return sample;
    }

    static const Band& band(const Sample& sample, const std::string& quantity)
    {
        for (const SampledQuantity& each : sample.quantities) {
            if (each.quantity.name() == quantity)
                return each.band;
        }
        throw std::runtime_error("no quantity " + quantity);
    }

    static std::size_t placeOf(const Sample& sample, const std::string& quantity)
    {
        const auto found = std::find_if(sample.quantities.begin(), sample.quantities.end(),
                                        [&](const SampledQuantity& each) { return each.quantity.name() == quantity; });
        if (found == sample.quantities.end())
            throw std::runtime_error("no quantity " + quantity);
        return static_cast<std::size_t>(found - sample.quantities.begin());
    }

    const Scratch m_scratch;
};

// ---- Designs with distributions ----

TEST_F(SampleTest, PlainEstimatesTakeTheCentreAndSaySo)
{
    const std::pair<const char*, const char*> rows[] = {
        {R"({"low": 100, "high": 300})", "200"},
        {R"({"low": "0.1 GHz", "high": "300 MHz"})", "200"},
        {R"({"low": 100, "mode": 125, "high": 300})", "125"},
        {R"({"mean": 300, "sd": 15})", "300"},
        {R"({"values": [100, 200, 300], "weights": [1, 3, 2]})", "200"},
        {R"({"values": [100, 200]})", "100"},
    };
    for (const auto& [distribution, centre] : rows) {
        const Estimate result = estimateOf(wires(distribution));
        EXPECT_EQ(result.dynamicWatts, estimateOf(wires(centre)).dynamicWatts) << distribution;
        EXPECT_THAT(result.warnings, IsEmpty()) << distribution;
        EXPECT_THAT(textReport(result, false), HasSubstr("1 input is a distribution and counts with its"))
            << distribution;
        EXPECT_THAT(jsonReport(result)["remarks"][0].get<std::string>(), HasSubstr("groups[wires].inputs.CLOCK_FREQ"));
    }
    EXPECT_FALSE(jsonReport(estimateOf(wires("200"))).contains("remarks"));
    const Scratch scratch;
    const std::string file = scratch.write("d.json", wires(R"({"low": 100, "high": 300})"));
    EXPECT_EQ(scratch.run("estimate --strict " + file).code, 0) << "a remark is no warning";
}

TEST_F(SampleTest, ParametersRailsEnvironmentAndWordsMayBeDistributions)
{
    const auto text = [](const char* f, const char* volts, const char* ambient, const char* theta, const char* mode,
                         const char* count) {
        return fmt::format(R"({{"parameters": {{"f": {}}}, "device": {{"part": "zq4410"}}, "rails": {{"VCCINT": {}}},
            "environment": {{"ambientTemperature": {}, "thetaJA": {}}}, "groups": [{{"block": "Bram", "name": "b",
            "inputs": {{"NUM_BRAMS": {}, "MODE": {}, "PORT_A_CLOCK": "= f"}}}}]}})",
                           f, volts, ambient, theta, count, mode);
    };
    const Estimate uncertain = estimateOf(
        text(R"({"values": ["200 MHz", "300 MHz"], "weights": [1, 2]})", R"({"low": "0.79 V", "high": "0.81 V"})",
             R"({"mean": 40, "sd": 3})", R"({"low": 1, "mode": 1.5, "high": 4})",
             R"({"values": ["BLKM18", "BLKM36"], "weights": [1, 3]})", R"({"low": 10, "high": 21})"));
    // The middle of 10 and 21 is no whole number: 15.5 rounds to 16.
    const Estimate plain = estimateOf(text("\"300 MHz\"", "0.8", "40", "1.5", "\"BLKM36\"", "16"));
    EXPECT_EQ(uncertain.sides[0].totalWatts, plain.sides[0].totalWatts);
    EXPECT_EQ(uncertain.sides[1].junction, plain.sides[1].junction);
    EXPECT_EQ(uncertain.design.uncertain.size(), 6u);
}

TEST_F(SampleTest, BadDistributionsAreToldWithLineAndField)
{
    const Bad rows[] = {
        {"LowAboveHigh", wires(R"({"low": 300, "high": 100})"), {"CLOCK_FREQ.low: 300 is above high, 100"}},
        {"ModeOutside", wires(R"({"low": 100, "mode": 90, "high": 200})"), {"CLOCK_FREQ.mode: 90 is outside"}},
        {"NegativeSd", wires(R"({"mean": 100, "sd": -5})"), {"CLOCK_FREQ.sd: ", "above 0, found -5"}},
        {"NoSd", wires(R"({"mean": 100})"), {"CLOCK_FREQ: ", "lacks its \"sd\""}},
        {"NoHigh", wires(R"({"low": 100})"), {"CLOCK_FREQ: ", "lacks its \"high\""}},
        {"WeightsOfZero", wires(R"({"values": [1, 2], "weights": [0, 0]})"), {"CLOCK_FREQ.weights: ", "all 0"}},
        {"NegativeWeight", wires(R"({"values": [1, 2], "weights": [3, -1]})"), {"CLOCK_FREQ.weights[1]: ", "found -1"}},
        {"OtherCount", wires(R"({"values": [1, 2], "weights": [1]})"), {"CLOCK_FREQ.weights: ", "expected 2 weights"}},
        {"NoValues", wires(R"({"values": []})"), {"CLOCK_FREQ.values: ", "found []"}},
        {"WeightsAlone", wires(R"({"low": 1, "high": 2, "weights": [1]})"), {"CLOCK_FREQ.weights: "}},
        {"UnknownField", wires(R"({"low": 100, "hihg": 200})"), {"CLOCK_FREQ.hihg: ", "did you mean high?"}},
        {"TwoKinds", wires(R"({"mean": 100, "sd": 5, "mode": 90})"), {"CLOCK_FREQ.mode: "}},
        {"LowOutsideTheDomain", wires(R"({"low": -1, "high": 5})"), {"CLOCK_FREQ.low: "}},
        {"ValueOutsideTheDomain", wires(R"({"values": [100, -1]})"), {"CLOCK_FREQ.values[1]: "}},
        {"MeanOutsideTheDomain", wires(R"({"mean": -5, "sd": 1})"), {"CLOCK_FREQ.mean: "}},
        {"OneUnitForAll", wires(R"({"low": "100 MHz", "high": 300})"), {"CLOCK_FREQ.high: 300 has no unit"}},
        {"OtherUnit", wires(R"({"low": "100 mV", "high": "300 mV"})"), {"CLOCK_FREQ.low: ", "a voltage"}},
        {"Expression", wires(R"({"low": "= 3", "high": 300})"), {"CLOCK_FREQ.low: ", "let a parameter be"}},
        {"Words", wires(R"({"values": ["fast", "slow"]})"), {"CLOCK_FREQ.values: expected numbers"}},
        {"WordsAndNumbers", wires(R"({"values": ["fast", 3]})"), {"CLOCK_FREQ.values: ", "both"}},
        {"Empty", wires("{}"), {"CLOCK_FREQ: ", "lacks its \"low\""}},
    };
    for (const Bad& bad : rows) {
        const std::string message = messageOf(bad.text);
        EXPECT_THAT(message, HasSubstr("test.json:3: groups[0].inputs.")) << bad.name << ": " << bad.text;
        for (const std::string& words : bad.words)
            EXPECT_THAT(message, HasSubstr(words)) << bad.name << ": " << bad.text;
    }
}

TEST_F(SampleTest, OtherPlacesTellBadDistributionsToo)
{
    const std::pair<std::string, const char*> rows[] = {
        {wires("\"= f\"", "0.1", "\"parameters\": {\n\"f\": {\"low\": 2, \"high\": 1}},"),
         "test.json:2: parameters.f.low: "},
        {wires("1", "0.1", "\"rails\": {\"VCCINT\": {\"low\": 0.7, \"high\": 200}},"),
         "rails.VCCINT.high: 200 is outside"},
        {wires("1", "0.1", R"("environment": {"junctionTemperature": {"mean": 2000, "sd": 5}},)"),
         "junctionTemperature.mean: 2000 is outside"},
        {wires("1", "0.1", R"("device": {"part": "zq4410", "process": {"values": ["TYP", "MAX"]}},)"),
         "device.process: studies tell both process sides"},
        {R"({"groups": [{"block": "Bram", "inputs": {"MODE": {"values": ["BLKM18", "BLKM63"]}}}]})",
         "MODE.values[1]: "},
        {R"({"groups": [{"block": "Bram", "inputs": {"NUM_BRAMS": {"low": 1.5, "high": 4}}}]})",
         "NUM_BRAMS.low: expected a whole number"},
        {R"({"groups": [{"block": "Bram", "inputs": {"MODE": {"low": 1, "high": 4}}}]})", "MODE: expected words"},
        {wires("1", "0.1", R"("modes": [{"name": "m", "for": 1, "set":
            {"groups[wires].inputs.TOGGLE_RATE": {"low": 0, "high": 1}}}],)"),
         "a mode can't set a distribution"},
    };
    for (const auto& [text, words] : rows)
        EXPECT_THAT(messageOf(text), HasSubstr(words)) << text;
}

TEST_F(SampleTest, OtherSubcommandsKnowDistributions)
{
    const std::string text = wires(R"({"low": 100, "high": 300})", R"({"low": 0.1, "mode": 0.125, "high": 0.25})");
    const std::string file = m_scratch.write("d.json", text);
    EXPECT_EQ(sweepText(file, {"groups[wires].inputs.CLOCK_FREQ=200"}, SweepFormat::csv),
              sweepText(m_scratch.write("p.json", wires("1", "0.125")), {"groups[wires].inputs.CLOCK_FREQ=200"},
                        SweepFormat::csv))
        << "a sweep replaces a distribution";
    EXPECT_THAT(m_scratch.run("explain " + file + " group:wires").out,
                AllOf(HasSubstr("as the design says, middle of 100 to 300"),
                      HasSubstr("as the design says, mode of 0.1 to 0.25")));
    const Sensitivity all = sensitivity(file, {"dynamic", 0.1, 1});
    EXPECT_EQ(all.nominal, estimateOf(wires("200", "0.125")).dynamicWatts);
    const std::string other = m_scratch.write("o.json", wires(R"({"low": 150, "high": 250})", "0.2"));
    const ToolRun diff = m_scratch.run("diff " + file + " " + other);
    EXPECT_THAT(diff.out,
                AllOf(HasSubstr("0.1 to 0.25, mode 0.125"), HasSubstr("100 to 300"), HasSubstr("150 to 250")));
    EXPECT_EQ(m_scratch.run("diff " + file + " " + file).out.find("100 to 300"), std::string::npos);
    EXPECT_THAT(m_scratch
                    .run("solve " + file + " --vary 'groups[wires].inputs.CLOCK_FREQ=1:1000' --until 'dynamic <= " +
                         fmt::format("{} W'", estimateOf(wires("400", "0.125")).dynamicWatts))
                    .out,
                HasSubstr("400"));
    ASSERT_EQ(m_scratch.run("format " + file + " -o " + m_scratch.path("f.json")).code, 0);
    const Sample before = of(text, wish(64));
    EXPECT_EQ(sampleJson(before), sampleJson(of(Scratch::read(m_scratch.path("f.json")), wish(64))));
}

// ---- Draws ----

// By the distribution functions, written out.
TEST_F(SampleTest, QuantilesInvertTheDistributionFunctions)
{
    const auto number = [](const Distribution& all, double p) { return std::get<double>(valueAt(all, p)); };
    const auto phi = [](double z) { return 0.5 * std::erfc(-z / std::sqrt(2.0)); };
    for (const double p : {0.001, 0.05, 0.3, 0.5, 0.77, 0.95, 0.999}) {
        const double uniform = number({Distribution::Kind::uniform, "", 2.0, 6.0}, p);
        EXPECT_NEAR((uniform - 2.0) / 4.0, p, 1e-12);
        const double x = number({Distribution::Kind::triangular, "", 1.0, 5.0, 2.0}, p);
        EXPECT_NEAR(x < 2.0 ? (x - 1.0) * (x - 1.0) / 4.0 : 1.0 - (5.0 - x) * (5.0 - x) / 12.0, p, 1e-12) << x;
        const double n = number({Distribution::Kind::normal, "", 0.0, 1.5, 1.0, 0.5}, p);
        EXPECT_NEAR((phi((n - 1.0) / 0.5) - phi(-2.0)) / (phi(1.0) - phi(-2.0)), p, 1e-9) << n;
    }
    const Distribution some{Distribution::Kind::discrete, "", 0.0, 0.0, 0.0, 0.0, {64.0, 96.0, 128.0}, {1.0, 0.0, 3.0}};
    EXPECT_EQ(number(some, 0.249), 64.0);
    EXPECT_EQ(number(some, 0.251), 128.0);
    Distribution whole{Distribution::Kind::uniform, "", 1.0, 4.0};
    whole.isWhole = true;
    EXPECT_EQ(number(whole, 0.249), 1.0) << "each whole number is as likely";
    EXPECT_EQ(number(whole, 0.251), 2.0);
    EXPECT_EQ(number(whole, 0.9999), 4.0);
}

TEST_F(SampleTest, DrawsAreEvenAndDependOnSeedAndIndexAlone)
{
    constexpr std::size_t count = 64;
    for (const SampleMethod method : {SampleMethod::sobol, SampleMethod::latin}) {
        std::vector<std::set<int>> taken(5);
        Draws draws(method, 7, count, 5);
        std::vector<double> point(5);
        for (std::size_t i = 0; i < count; ++i) {
            draws.point(i, point);
            for (std::size_t k = 0; k < 5; ++k)
                taken[k].insert(static_cast<int>(point[k] * count));
        }
        for (const std::set<int>& stretches : taken)
            EXPECT_EQ(stretches.size(), count) << methodWord(method) << ": each 64th of the line has one point";
    }
    for (const SampleMethod method : {SampleMethod::sobol, SampleMethod::latin, SampleMethod::random}) {
        Draws forward(method, 7, 100, 3);
        Draws there(method, 7, 100, 6);
        Draws other(method, 8, 100, 3);
        std::vector<double> a(3);
        std::vector<double> b(6);
        std::vector<double> c(3);
        for (std::size_t i = 0; i < 100; ++i) {
            forward.point(i, a);
            there.point(99 - i, b);
            there.point(i, b);
            other.point(i, c);
            EXPECT_TRUE(std::equal(a.begin(), a.end(), b.begin())) << methodWord(method) << " " << i;
            EXPECT_NE(a, c) << methodWord(method) << " " << i;
            EXPECT_TRUE(std::all_of(a.begin(), a.end(), [](double u) { return u > 0.0 && u < 1.0; }));
        }
    }
}

TEST_F(SampleTest, SpreadsTellQuantilesOfFewAndOfMany)
{
    Spread few;
    for (const double value : {4.0, 1.0, 3.0, 2.0, 5.0})
        few.add(value);
    EXPECT_DOUBLE_EQ(few.quantile(0.5), 3.0);
    EXPECT_DOUBLE_EQ(few.quantile(0.25), 2.0);
    EXPECT_DOUBLE_EQ(few.band().mean, 3.0);
    EXPECT_DOUBLE_EQ(few.band().sd, std::sqrt(2.5));
    few.add(std::nan(""));
    EXPECT_DOUBLE_EQ(few.quantile(0.5), 3.5) << "a runaway counts as above all";
    EXPECT_TRUE(std::isnan(few.quantile(0.95)));
    Spread many;
    std::mt19937_64 engine(1);
    std::normal_distribution<double> normal(10.0, 2.0);
    for (int i = 0; i < 200000; ++i)
        many.add(normal(engine));
    EXPECT_NEAR(many.quantile(0.05), 10.0 - 1.6449 * 2.0, 0.03);
    EXPECT_NEAR(many.quantile(0.5), 10.0, 0.03);
    EXPECT_NEAR(many.quantile(0.95), 10.0 + 1.6449 * 2.0, 0.03);
    // The density at P50 is 1 / (2 sqrt(2 pi)); at P95 it is exp(-1.6449^2 / 2) of that.
    EXPECT_NEAR(many.band().p50Error, std::sqrt(0.25 / 200000.0) * 2.0 * std::sqrt(2.0 * 3.14159265), 0.002);
}

// ---- Bands ----

double quantileOf(std::vector<double> values, double share)
{
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))];
}

// Against numbers of the standard library's own distributions, each put into a design of its own.
TEST_F(SampleTest, BandsAreThoseOfAPlainRandomSample)
{
    const auto text = [](const std::string& clock, const std::string& toggles, const std::string& theta,
                         const std::string& memories) {
        return fmt::format(
            R"({{"device": {{"part": "zq4410"}}, "environment": {{"ambientTemperature": 40, "thetaJA": {}}},
            "budgets": {{"totalPower": 3.7}}, "groups": [{{"block": "Signal", "name": "wires", "inputs":
            {{"SIGNAL_COUNT": 100000, "CLOCK_FREQ": {}, "TOGGLE_RATE": {}}}}}, {{"block": "Bram", "name": "b", "inputs":
            {{"NUM_BRAMS": {}}}}}]}})",
            theta, clock, toggles, memories);
    };
    const Sample sample = of(text(R"({"mean": 200, "sd": 40})", R"({"low": 0.05, "mode": 0.1, "high": 0.3})",
                                  R"({"low": 0.5, "high": 1.5})", R"({"values": [64, 128], "weights": [1, 3]})"),
                             wish(1024));
    std::mt19937_64 engine(12345);
    std::normal_distribution<double> clock(200.0, 40.0);
    const std::array<double, 3> ends{0.05, 0.1, 0.3};
    const std::array<double, 3> heights{0.0, 1.0, 0.0};
    std::piecewise_linear_distribution<double> toggles(ends.begin(), ends.end(), heights.begin());
    std::uniform_real_distribution<double> theta(0.5, 1.5);
    std::discrete_distribution<int> memories({1.0, 3.0});
    std::map<std::string, std::vector<double>> values;
    std::size_t kept = 0;
    constexpr std::size_t count = 1500;
    for (std::size_t i = 0; i < count; ++i) {
        const Estimate result =
            estimateOf(text(fmt::format("{}", clock(engine)), fmt::format("{}", toggles(engine)),
                            fmt::format("{}", theta(engine)), memories(engine) == 0 ? "64" : "128"));
        for (const Side& side : result.sides) {
            values["total@" + side.process].push_back(side.totalWatts);
            values["junction@" + side.process].push_back(side.junction);
            values["rail:VCCINT@" + side.process].push_back(side.rail("VCCINT")->amperes());
        }
        kept += result.sides[0].totalWatts <= 3.7 ? 1U : 0U;
    }
    for (const auto& [quantity, all] : values) {
        const Band& own = band(sample, quantity);
        // The random sample's errors are larger than ours by the root of 1024 / 1500, and both may be off.
        const auto expectNear = [&](double value, double error, double share) {
            EXPECT_NEAR(value, quantileOf(all, share), 5.0 * error) << quantity << " at " << share;
        };
        expectNear(own.p5, own.p5Error, 0.05);
        expectNear(own.p50, own.p50Error, 0.5);
        expectNear(own.p95, own.p95Error, 0.95);
    }
    const double share = static_cast<double>(kept) / count;
    ASSERT_GT(share, 0.1);
    ASSERT_LT(share, 0.9);
    EXPECT_NEAR(sample.budgets.front().sides[0].probabilityKept, share, 5.0 * std::sqrt(share * (1.0 - share) / count));
}

TEST_F(SampleTest, ThePointsAreEstimatesOfTheirOwn)
{
    std::vector<SamplePoint> points;
    const auto text = [](const std::string& clock, const std::string& volts, const std::string& ambient) {
        return wires(clock, "0.1",
                     fmt::format(R"("device": {{"part": "zq4410"}}, "rails": {{"VCCINT": {}}},
                         "environment": {{"ambientTemperature": {}, "thetaJA": 2}},)",
                                 volts, ambient));
    };
    const Sample sample =
        of(text(R"({"low": 100, "high": 300})", R"({"low": 0.78, "high": 0.82})", R"({"mean": 40, "sd": 5})"), wish(40),
           &points);
    ASSERT_EQ(points.size(), 40u);
    std::map<std::string, std::size_t> order;
    for (std::size_t i = 0; i < sample.inputs.size(); ++i)
        order[sample.inputs[i].path] = i;
    for (const SamplePoint& point : points) {
        const auto drawn = [&](const char* path) {
            return fmt::format("{}", std::get<double>(point.inputs[order.at(path)]));
        };
        const Estimate plain = estimateOf(text(drawn("groups[wires].inputs.CLOCK_FREQ"), drawn("rails.VCCINT"),
                                               drawn("environment.ambientTemperature")));
        for (std::size_t i = 0; i < sample.quantities.size(); ++i) {
            const double expected = valueOf(sample.quantities[i].quantity, plain);
            EXPECT_NEAR(point.quantities[i], expected, 1e-6 * std::fabs(expected))
                << sample.quantities[i].quantity.name() << " at point " << point.index;
        }
    }
}

// Without a device there are just the nets, whose entry of the data says 30 %.
TEST_F(SampleTest, ABlocksFactorIsLogNormal)
{
    std::vector<SamplePoint> points;
    const Sample sample = of(wires("200"), wish(4096, true), &points);
    ASSERT_EQ(sample.data.size(), 1u);
    EXPECT_EQ(sample.data.front().name(), "Signal dynamic");
    EXPECT_EQ(sample.data.front().relative, 0.3);
    const double nominal = estimateOf(wires("200")).dynamicWatts;
    for (const SamplePoint& point : points)
        EXPECT_NEAR(point.quantities[placeOf(sample, "total")], nominal * point.factors.front(), 1e-9 * nominal);
    const double sigma = std::sqrt(std::log(1.0 + 0.3 * 0.3));
    const Band& total = band(sample, "total");
    EXPECT_NEAR(total.p5, nominal * std::exp(-1.6448536 * sigma), 2e-3 * nominal);
    EXPECT_NEAR(total.p50, nominal, 2e-3 * nominal);
    EXPECT_NEAR(total.p95, nominal * std::exp(1.6448536 * sigma), 4e-3 * nominal);
    EXPECT_NEAR(total.mean, nominal * std::exp(0.5 * sigma * sigma), 2e-3 * nominal);
    EXPECT_NEAR(total.sd / total.mean, 0.3, 2e-3) << "that is what relative means";
    const Sample exact = of(wires(R"({"values": [200]})"), wish(8));
    EXPECT_THAT(exact.data, IsEmpty());
    EXPECT_EQ(band(exact, "total").p5, nominal);
}

// Leakage moves with the model's factors, rails of bias each by its own, and nets by theirs; the junction follows.
TEST_F(SampleTest, StaticPowerIsOffByItsOwnFactors)
{
    const std::string text =
        wires("200", "0.1", R"("device": {"part": "zq4410"}, "environment": {"junctionTemperature": 85},)");
    std::vector<SamplePoint> points;
    const Sample sample = of(text, wish(32, true), &points);
    const Estimate plain = estimateOf(text);
    std::map<std::string, std::size_t> factor;
    for (std::size_t i = 0; i < sample.data.size(); ++i)
        factor[sample.data[i].name()] = i;
    for (const SamplePoint& point : points) {
        const auto of = [&](const std::string& name) { return point.factors.at(factor.at(name)); };
        for (const Side& side : plain.sides) {
            const double leakage = of("Static static") * (side.process == "MAX" ? of("Static process") : 1.0) *
                                   std::pow(of("Static temperature"), (85.0 - 25.0) / 30.0);
            double expected = 0.0;
            for (const RailResult& rail : side.rails) {
                const bool isApart = factor.contains("Static " + rail.name);
                expected +=
                    rail.inside.empty() ? rail.staticWatts * (isApart ? of("Static " + rail.name) : leakage) : 0.0;
            }
            EXPECT_NEAR(point.quantities[placeOf(sample, "static@" + side.process)], expected, 1e-6 * expected)
                << side.process << " at point " << point.index;
            const double core = side.rail("VCCINT")->staticAmperes * leakage +
                                side.rail("VCCINT")->dynamicAmperes * of("Signal dynamic");
            EXPECT_NEAR(point.quantities[placeOf(sample, "rail:VCCINT@" + side.process)], core, 1e-6 * core);
        }
    }
    const std::string warm = wires(
        "200", "0.1", R"("device": {"part": "zq4410"}, "environment": {"ambientTemperature": 30, "thetaJA": 1},)");
    points.clear();
    const Sample closed = of(warm, wish(32, true), &points);
    for (const SamplePoint& point : points)
        EXPECT_NEAR(point.quantities[placeOf(closed, "junction@MAX")],
                    30.0 + point.quantities[placeOf(closed, "total@MAX")], 0.01)
            << "point " << point.index;
}

// ---- What makes the band ----

// Two groups of nets of like size: power is as 1 f + 1 g, whose variances are as 200^2 and 100^2.
TEST_F(SampleTest, IndicesOfALinearCaseAreTheSharesOfVariance)
{
    const Sample sample = of(R"({"groups": [
        {"block": "Signal", "name": "a", "inputs": {"SIGNAL_COUNT": 1000, "CLOCK_FREQ": {"low": 100, "high": 300}}},
        {"block": "Signal", "name": "b", "inputs": {"SIGNAL_COUNT": 1000, "CLOCK_FREQ": {"low": 100, "high": 200}}},
        {"block": "Signal", "name": "c", "count": 0, "inputs": {"CLOCK_FREQ": {"low": 100, "high": 200}}}]})",
                             wish(2048));
    ASSERT_EQ(sample.indices.size(), 3u);
    EXPECT_EQ(sample.indexEstimates, 512u * 5u);
    const std::pair<const char*, double> expected[] = {{"groups[a].inputs.CLOCK_FREQ", 0.8},
                                                       {"groups[b].inputs.CLOCK_FREQ", 0.2},
                                                       {"groups[c].inputs.CLOCK_FREQ", 0.0}};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(sample.indices[i].path, expected[i].first);
        EXPECT_NEAR(sample.indices[i].first, expected[i].second, 0.03) << expected[i].first;
        EXPECT_NEAR(sample.indices[i].total, expected[i].second, 0.03) << expected[i].first;
    }
    EXPECT_THAT(sample.correlations, IsEmpty());
}

// Of x y, both even from 0 to 1, the variance is 1/9 - 1/16 = 7/144; x alone makes Var(x)/4 = 3/144, and with y 4/144.
TEST_F(SampleTest, TotalIndicesHoldWhatInputsDoTogether)
{
    const Sample sample = of(wires(R"({"low": 0, "high": 400})", R"({"low": 0, "high": 1})"), wish(4096));
    ASSERT_EQ(sample.indices.size(), 2u);
    for (const SampledIndex& index : sample.indices) {
        EXPECT_NEAR(index.first, 3.0 / 7.0, 0.04) << index.path;
        EXPECT_NEAR(index.total, 4.0 / 7.0, 0.04) << index.path;
    }
}

TEST_F(SampleTest, FewPointsTellRankCorrelations)
{
    const Sample sample = of(R"({"groups": [
        {"block": "Signal", "name": "a", "inputs": {"CLOCK_FREQ": {"low": 100, "mode": 110, "high": 300}}},
        {"block": "Signal", "name": "c", "count": 0, "inputs": {"CLOCK_FREQ": {"mean": 100, "sd": 5}}}]})",
                             wish(1000));
    EXPECT_THAT(sample.indices, IsEmpty());
    ASSERT_EQ(sample.correlations.size(), 2u);
    EXPECT_EQ(sample.correlations[0].path, "groups[a].inputs.CLOCK_FREQ");
    EXPECT_NEAR(sample.correlations[0].first, 1.0, 1e-9) << "power rises with the clock, and with nothing else";
    EXPECT_NEAR(sample.correlations[1].first, 0.0, 0.05);
}

// ---- Runs ----

TEST_F(SampleTest, ResultsAreTheSameBitsWhateverTheThreads)
{
    const std::string text = wires(R"({"low": 100, "high": 300})", "0.1",
                                   R"("device": {"part": "zq4410"}, "budgets": {"totalPower": 3.5},
        "environment": {"ambientTemperature": {"mean": 40, "sd": 5}, "thetaJA": 2},)");
    const std::string file = m_scratch.write("d.json", text);
    for (const SampleMethod method : {SampleMethod::sobol, SampleMethod::latin, SampleMethod::random}) {
        std::vector<std::string> results;
        for (const unsigned jobs : {1U, 2U, 3U}) {
            SampleWish own = wish(method == SampleMethod::sobol ? 2000 : 200, true);
            own.method = method;
            own.jobs = jobs;
            Sampling sampling(file, own);
            const PointColumns columns = samplePointColumns(sampling.plan());
            std::string text_ = pointHead(PointForm::csv, columns);
            const auto render = [&](const SamplePoint& point) {
                std::string line;
                addPoint(line, PointForm::csv, columns, samplePointRow(point));
                return line;
            };
            const Sample sample = sampling.run(render, [&](std::string_view more) { text_ += more; });
            results.push_back(text_ + jsonText(sampleJson(sample)));
        }
        EXPECT_EQ(results[0], results[1]) << methodWord(method);
        EXPECT_EQ(results[0], results[2]) << methodWord(method);
        EXPECT_THAT(results[0], HasSubstr("groups[wires].inputs.CLOCK_FREQ [MHz]"));
    }
}

TEST_F(SampleTest, EndsOnceTheTotalsAreKnownWellEnough)
{
    SampleWish own = wish(65536, true);
    own.untilError = 0.02;
    const Sample sample = of(wires("200"), own);
    EXPECT_LE(sample.error, 0.02);
    EXPECT_LT(sample.points, own.points);
    EXPECT_GE(sample.points, 256u);
    EXPECT_EQ(sample.points & (sample.points - 1), 0u) << "looks at powers of two: " << sample.points;
    own.untilError = 0.05;
    EXPECT_LT(of(wires("200"), own).points, sample.points);
    own.points = 300;
    own.untilError = 0.0001;
    EXPECT_THAT(sampleLead(of(wires("200"), own)), HasSubstr("isn't yet"));
}

TEST_F(SampleTest, RunawaysAreCounted)
{
    const Sample sample = of(wires("200", "0.1", R"("device": {"part": "zq4410"}, "budgets": {"totalPower": 1000},
        "environment": {"ambientTemperature": 60, "thetaJA": {"values": [1, 100], "weights": [3, 1]}},)"),
                             wish(64));
    const Band& total = band(sample, "total@MAX");
    EXPECT_EQ(total.lost, 16u) << "a quarter of even points";
    EXPECT_TRUE(std::isnan(total.p95));
    EXPECT_FALSE(std::isnan(total.p50));
    EXPECT_EQ(sample.budgets.front().sides.back().probabilityKept, 0.75);
    const Json json = sampleJson(sample);
    EXPECT_THAT(jsonText(json), HasSubstr("\"p95Reason\": \"thermal runaway\""));
    EXPECT_THAT(sampleText(sample, Paint()), HasSubstr("16 of 64 points run away"));
}

TEST_F(SampleTest, PointsThatWarnAreCounted)
{
    const Sample sample = of(wires("200", "0.1", R"("device": {"part": "zq4410"},
        "environment": {"junctionTemperature": {"low": 100, "high": 140}},)"),
                             wish(64));
    ASSERT_EQ(sample.warnings.rows().size(), 2u) << "above 125 degrees, on both sides";
    const WarningCounts::Row& row = sample.warnings.rows().front();
    EXPECT_EQ(row.points, 24u) << "15 degrees of 40, of even points";
    EXPECT_FALSE(row.isSame) << row.text;
    EXPECT_THAT(row.text, testing::MatchesRegex("process ...: the junction temperature of 1.* degrees is outside the "
                                                "characterisation \\(-40 to 125\\)"));
    EXPECT_THAT(sampleText(sample, Paint()), HasSubstr(row.text + " (at 24 of 64 points, numbers of the first)"));
    EXPECT_THAT(sampleHtml(sample), HasSubstr("(at 24 of 64 points, numbers of the first)</li>"));
    EXPECT_EQ(sampleJson(sample)["warnings"][0], (Json{{"text", row.text}, {"points", 24}}));
    EXPECT_THAT(sampleHtml(of(wires(R"({"low": 100, "high": 300})"), wish(64))), Not(HasSubstr("Warnings")));
}

TEST(WarningCountsTest, WarningsThatDifferInNumbersAloneAreOne)
{
    EXPECT_EQ(withoutNumbers("a junction of -12.75 degrees, 3e-05 W"), "a junction of # degrees, # W");
    EXPECT_EQ(withoutNumbers("rail VCCO18 of group \"fir 2\" (1)"), "rail VCCO18 of group \"fir 2\" (#)");
    EXPECT_EQ(withoutNumbers("at 4.: 1.5e3, 7e"), "at #.: #e3, #e") << "as the tool never writes them";
    WarningCounts counts;
    counts.add({"uses 5 LUT", "rail VCCO18", "uses 6 LUT"});
    counts.add(std::vector<std::string>{});
    WarningCounts later;
    later.add({"rail VCCO18"});
    later.add({"rail VCCO33", "uses 7 LUT"});
    counts.addLater(later);
    ASSERT_EQ(counts.rows().size(), 3u);
    EXPECT_EQ(warningLine(counts.rows()[0], 4), "uses 5 LUT (at 2 of 4 points, numbers of the first)");
    EXPECT_EQ(warningLine(counts.rows()[1], 4), "rail VCCO18 (at 2 of 4 points)");
    EXPECT_EQ(warningLine(counts.rows()[2], 4), "rail VCCO33 (at 1 of 4 points)");
    for (int i = 0; i < 1200; ++i)
        counts.add({"group \"" + std::to_string(i) + "\""});
    EXPECT_EQ(counts.rows().size(), 1000u) << "memory doesn't follow the names";
    EXPECT_EQ(counts.others(), 203u);
}

TEST_F(SampleTest, IsShownAsTextJsonAndPage)
{
    const std::string text = wires(R"({"low": 100, "high": 300})", "0.1",
                                   R"("name": "<b>&", "device": {"part": "zq4410"}, "budgets": {"totalPower": 3.5},
        "environment": {"ambientTemperature": 40, "thetaJA": 2},)");
    const Sample sample = of(text, wish(256, true));
    const std::string page = sampleHtml(sample);
    EXPECT_THAT(page, AllOf(HasSubstr("&lt;b&gt;&amp;"), HasSubstr("<polyline"), HasSubstr("budget 3.500 W"),
                            HasSubstr("rail:VCCINT@MAX"), HasSubstr("data:Signal dynamic"), Not(HasSubstr("<script")),
                            Not(HasSubstr("<b>&")), Not(HasSubstr("nan"))));
    const Json json = sampleJson(sample);
    EXPECT_EQ(json["points"], 256);
    EXPECT_EQ(json["quantities"][0]["quantity"], "total@TYP");
    EXPECT_EQ(json["quantities"][0]["p50"], band(sample, "total@TYP").p50);
    EXPECT_EQ(json["budgets"][0]["name"], "total power");
    EXPECT_THAT(sampleText(sample, Paint()), AllOf(HasSubstr("256 points, method sobol, seed 1: 1 distribution"),
                                                   HasSubstr("What makes the band of total@TYP")));
}

TEST_F(SampleTest, AnImpossiblePointIsTold)
{
    const std::string text = wires("\"= f\"", "0.1", R"("parameters": {"f": {"mean": 10, "sd": 20}},)");
    try {
        of(text, wish(256));
        ADD_FAILURE() << "a negative clock was estimated";
    } catch (const Error& error) {
        EXPECT_THAT(error.what(), AllOf(HasSubstr("CLOCK_FREQ"), HasSubstr("(at point "), HasSubstr("parameters.f = -"),
                                        HasSubstr("keep a distribution within")));
    }
    const std::string cut = wires("\"= f\"", "0.1", R"("parameters": {"f": {"mean": 10, "sd": 20, "low": 0}},)");
    EXPECT_GE(band(of(cut, wish(256)), "total").least, 0.0);
}

TEST_F(SampleTest, MistakesAreTold)
{
    const std::string plain = m_scratch.write("plain.json", wires("200"));
    const std::string file = m_scratch.write("d.json", wires(R"({"low": 100, "high": 300})"));
    const std::pair<std::string, const char*> rows[] = {
        {plain + " --no-data-uncertainty", "there is nothing to draw"},
        {file + " --points 1", "--points 1: expected a whole number, 2 to"},
        {file + " --points many", "--points many"},
        {file + " --seed -1", "--seed -1: expected a whole number"},
        {file + " --method sobl", "did you mean sobol?"},
        {file + " --method latin --until-error 1%", "doesn't go with --until-error"},
        {file + " --until-error 0", "expected a share above 0"},
        {file + " --until-error 3W", "--until-error 3W: "},
        {file + " --of totl", "did you mean total?"},
        {file + " --of group:wires", "only totals"},
        {file + " --html " + file, "d.json"},
        {file + " --json --csv", "--json"},
        {file + " --csv --html " + m_scratch.path("p.html"), "aren't kept"},
        {file + " --resume points.txt", ".csv, .jsonl or .h5"},
        {file + " --until-error 1% --hdf5 " + m_scratch.path("p.h5"), "how many it holds"},
    };
    for (const auto& [options, words] : rows) {
        const ToolRun run = m_scratch.run("sample " + options);
        EXPECT_EQ(run.code, 2) << options;
        EXPECT_THAT(run.err, HasSubstr(words)) << options;
    }
    const ToolRun csv = m_scratch.run("sample " + file + " --points 10 --csv");
    EXPECT_EQ(csv.code, 0) << csv.err;
    EXPECT_EQ(std::count(csv.out.begin(), csv.out.end(), '\n'), 11);
}

TEST_F(SampleTest, PointsGoOnWhereARunWasKilled)
{
    const std::string design = m_scratch.write("d.json", wires(R"({"low": 100, "high": 300})"));
    const std::string points = m_scratch.path("points.csv");
    const std::string line = "sample " + design + " --points 200 ";
    const std::string whole = m_scratch.run(line + "--csv").out;
    ASSERT_EQ(std::count(whole.begin(), whole.end(), '\n'), 201);
    ASSERT_EQ(m_scratch.run(line + "--resume " + points).out, "200 points\n");
    EXPECT_EQ(Scratch::read(points), whole);
    // A limit of the file's size ends a run as a full disk does.
    std::filesystem::remove(points);
    const std::string limited = "ulimit -f 8; '" ZELM_TOOL "' " + line + "--resume " + points + " >/dev/null 2>&1";
    EXPECT_NE(std::system(limited.c_str()), 0);
    const std::string some = Scratch::read(points);
    EXPECT_LT(some.size(), whole.size());
    EXPECT_EQ(m_scratch.run(line + "--seed 2 --resume " + points).code, 2);
    EXPECT_EQ(m_scratch.run(line + "--resume " + points).code, 0);
    EXPECT_EQ(Scratch::read(points), whole);
}

} // namespace

} // namespace zelm::test::sampleTest
