#include "Designs.h"
#include "Tool.h"

#include "host/base/Json.h"
#include "host/estimate/Supplies.h"
#include "host/report/Report.h"

namespace zelm::test::suppliesTest {

using namespace zelm::host;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr double kNear = 1e-9;

// Two supplies below one, with a curve, a constant and none.
const std::vector<Supply> kTree{
    {"CORE", {"VCCINT", "VCCRAM"}, "MID", 20.0, std::nullopt, {{5.0, 0.84}, {30.0, 0.91}}},
    {"AUX", {"VCCAUX"}, "MID", std::nullopt, std::nullopt, {{0.0, 0.5}}},
    {"MID", {}, "12V", 5.0, 3.3, {{0.0, 0.9}}},
    {"VCCO18", {"VCCO18"}, "", 1.0, std::nullopt},
};

// rail, volts, dynamic A and W, static A, power-up A
const std::vector<SupplyLoad> kLoads{
    {"VCCINT", 0.8, 10.0, 8.0, 4.0, 6.0},
    {"VCCRAM", 0.8, 0.5, 0.4, 0.5, 1.0},
    {"VCCAUX", 1.5, 1.0, 1.5, 1.0, 3.0},
    {"VCCO18", 1.8, 0.5, 0.9, 0.0, 0.0},
};

const SupplyResult& of(const SupplyTree& tree, const std::string& name)
{
    const SupplyResult* supply = tree.find(name);
    if (!supply)
        throw std::runtime_error("the tree has no supply " + name);
    return *supply;
}

TEST(Supplies, EachAddsUpWhatHangsOnIt)
{
    const SupplyTree tree = supplyTree({kTree, {}}, kLoads);
    // 10 + 4 + 0.5 + 0.5 A at 0.8 V; ten of the curve's twenty-five amperes above 5: 0.84 + 0.07 x 10 / 25
    EXPECT_NEAR(of(tree, "CORE").loadAmperes, 15.0, kNear);
    EXPECT_NEAR(of(tree, "CORE").outputWatts, 12.0, kNear);
    EXPECT_NEAR(of(tree, "CORE").efficiency, 0.868, kNear);
    EXPECT_NEAR(of(tree, "CORE").inputWatts, 12.0 / 0.868, kNear);
    EXPECT_NEAR(of(tree, "CORE").lossWatts(), 12.0 / 0.868 - 12.0, kNear);
    // 2 A at 1.5 V, half of it lost
    EXPECT_NEAR(of(tree, "AUX").outputWatts, 3.0, kNear);
    EXPECT_NEAR(of(tree, "AUX").inputWatts, 6.0, kNear);
    // what both take, at 3.3 V
    const double middle = 12.0 / 0.868 + 6.0;
    EXPECT_NEAR(of(tree, "MID").loadAmperes, middle / 3.3, kNear);
    EXPECT_NEAR(of(tree, "MID").inputWatts, middle / 0.9, kNear);
    EXPECT_NEAR(tree.inputWatts, middle / 0.9 + 0.9, kNear) << "and VCCO18's, which has no loss";
    EXPECT_THAT(tree.unfed, ElementsAre());
}

TEST(Supplies, EfficiencyIsLinearBetweenPointsAndHeldBeyond)
{
    const Supply supply{"S", {}, "", std::nullopt, std::nullopt, {{5.0, 0.8}, {10.0, 0.9}, {20.0, 0.7}}};
    const std::pair<double, double> expected[] = {{0.0, 0.8},  {5.0, 0.8},  {7.5, 0.85},
                                                  {10.0, 0.9}, {15.0, 0.8}, {40.0, 0.7}};
    for (const auto& [load, share] : expected)
        EXPECT_NEAR(efficiencyAt(supply, load), share, kNear) << load << " A";
    EXPECT_EQ(efficiencyAt({"S", {}, "", std::nullopt, std::nullopt}, 3.0), 1.0);
}

TEST(Supplies, PowerUpTakesTheWorstStepOfTheOrder)
{
    const auto core = [](std::vector<std::vector<std::string>> sequence) {
        const SupplyTree tree = supplyTree({kTree, std::move(sequence)}, kLoads);
        return std::pair(of(tree, "CORE").powerUpAmperes, of(tree, "MID").powerUpAmperes);
    };
    // All at once: 6 + 1 A; 3.3 V carries 7 A x 0.8 V / 0.8456 and 3 A x 1.5 V / 0.5.
    EXPECT_NEAR(core({}).first, 7.0, kNear);
    EXPECT_NEAR(core({}).second, (5.6 / 0.8456 + 9.0) / 3.3, kNear);
    // VCCINT's 6 A first; then its static 4 A and VCCRAM's 1 A; 6 A are at 0.8428 of efficiency, 4.5 A below the curve.
    EXPECT_NEAR(core({{"VCCINT"}, {"VCCRAM"}, {"VCCAUX"}}).first, 6.0, kNear);
    EXPECT_NEAR(core({{"VCCINT"}, {"VCCRAM"}, {"VCCAUX"}}).second, (3.6 / 0.84 + 9.0) / 3.3, kNear) << "the last step";
    // VCCRAM's static 0.5 A below VCCINT's 6 A.
    EXPECT_NEAR(core({{"VCCRAM"}, {"VCCINT"}}).first, 6.5, kNear);
    EXPECT_NEAR(core({{"VCCAUX"}, {"VCCINT", "VCCRAM"}}).first, 7.0, kNear);
}

TEST(Supplies, PowerUpNamesTheRailsOfItsStep)
{
    const SupplyTree tree = supplyTree({kTree, {{"VCCRAM"}, {"VCCINT"}}}, kLoads);
    EXPECT_THAT(of(tree, "CORE").powerUpRails, ElementsAre("VCCINT"));
    EXPECT_THAT(of(tree, "AUX").powerUpRails, ElementsAre("VCCAUX")) << "rails of no step power up last";
}

TEST(Supplies, RailsNobodyFeedsAreApart)
{
    const SupplyTree tree = supplyTree({{{"CORE", {"VCCINT"}, "", std::nullopt, std::nullopt}}, {}}, kLoads);
    EXPECT_THAT(tree.unfed, ElementsAre("VCCRAM", "VCCAUX", "VCCO18"));
    EXPECT_NEAR(tree.unfedWatts, 0.8 + 3.0 + 0.9, kNear);
    EXPECT_NEAR(tree.inputWatts, 14.0 * 0.8, kNear);
}

TEST(Supplies, ARailInsideAnotherIsFedWithItUnlessNamed)
{
    Side side;
    side.rails = {{"VCCINT", "", 0.8, 1.0, 0.8, 5.0, 4.0, 9.0}, {"VCCME", "VCCINT", 0.8, 0.0, 0.0, 2.0, 1.6, 3.0}};
    const std::vector<SupplyLoad> loads = supplyLoads(side, {side});
    const SupplyTree together = supplyTree({{{"A", {"VCCINT"}, "", 20.0, std::nullopt}}, {}}, loads);
    EXPECT_NEAR(of(together, "A").loadAmperes, 6.0, kNear) << "1 dynamic, 5 static of which VCCME has 2";
    EXPECT_NEAR(of(together, "A").powerUpAmperes, 9.0, kNear);
    const SupplyTree apart =
        supplyTree({{{"A", {"VCCINT"}, "", 20.0, std::nullopt}, {"B", {"VCCME"}, "", 20.0, std::nullopt}}, {}}, loads);
    EXPECT_NEAR(of(apart, "A").loadAmperes, 4.0, kNear);
    EXPECT_NEAR(of(apart, "B").loadAmperes, 2.0, kNear);
    EXPECT_NEAR(of(apart, "B").powerUpAmperes, 3.0, kNear);
}

std::string designWith(const std::string& fields)
{
    return R"({"device": {"part": "zq4410"}, "environment": {"junctionTemperature": 60}, )" + fields +
           R"(, "groups": [{"block": "Bram", "inputs": {"NUM_BRAMS": 64, "CASCADE_GROUP_SIZE": 1}}]})";
}

TEST(Supplies, AnEstimateLoadsThemWithItsRailsOnBothSides)
{
    const Estimate estimate = estimateOf(designWith(
        R"("supplies": {"CORE": {"rails": ["VCCINT", "VCCRAM"], "efficiency": 0.9, "maxCurrent": 3, "from": "12V"}})"));
    ASSERT_EQ(estimate.sides.size(), 2u);
    for (const Side& side : estimate.sides) {
        const double watts = side.rail("VCCINT")->watts() + side.rail("VCCRAM")->watts();
        const SupplyResult& core = of(*side.supplies, "CORE");
        EXPECT_NEAR(core.outputWatts, watts, 1e-6) << side.process;
        EXPECT_NEAR(core.loadAmperes, side.rail("VCCINT")->amperes() + side.rail("VCCRAM")->amperes(), 1e-9);
        EXPECT_NEAR(core.inputWatts, watts / 0.9, 1e-6) << side.process;
        EXPECT_NEAR(side.supplies->inputWatts + side.supplies->unfedWatts, side.totalWatts + watts / 9.0, 1e-6)
            << "all that the chip burns is fed or said not to be, and a tenth of the input is lost";
    }
    EXPECT_THAT(estimate.warnings, testing::Contains(HasSubstr("test.json:1: supplies: no supply feeds VAUXPSGTA, ")));
}

TEST(Supplies, LimitsAreBudgets)
{
    const std::string supply = R"("supplies": {"CORE": {"rails": ["VCCINT"], "maxCurrent": )";
    const Estimate small = estimateOf(designWith(supply + "0.5}}"));
    const Estimate large = estimateOf(designWith(supply + "50}}"));
    ASSERT_EQ(small.budgets.size(), 2u);
    EXPECT_EQ(small.budgets[0].name, "supply CORE");
    EXPECT_EQ(small.budgets[1].name, "power-up of supply CORE");
    EXPECT_TRUE(small.budgets[0].broken() && small.budgets[1].broken());
    EXPECT_FALSE(large.budgetBroken());
    EXPECT_EQ(small.budgets[0].actual, small.side().rail("VCCINT")->amperes());
    EXPECT_EQ(small.budgets[1].actual,
              std::fmax(small.sides[1].rail("VCCINT")->powerUpAmperes, small.sides[0].rail("VCCINT")->staticAmperes));
    EXPECT_THAT(junitReport(small), HasSubstr("name=\"power-up of supply CORE\">\n    <failure message="));
}

TEST(Supplies, RegulatorsJoinTheTreeAndStayWhatTheyAre)
{
    const std::string regulator = R"("regulators": {"VCCAUX": {"maxCurrent": 3}})";
    const Estimate alone = estimateOf(designWith(regulator));
    EXPECT_FALSE(alone.side().supplies.has_value());
    const Estimate joined = estimateOf(designWith(regulator + R"(, "supplies": {"CORE": {"rails": ["VCCINT"]}})"));
    EXPECT_NEAR(of(*joined.side().supplies, "VCCAUX").inputWatts, joined.side().rail("VCCAUX")->watts(), 1e-9);
    ASSERT_EQ(joined.budgets.size(), 1u) << "no limit counts twice";
    EXPECT_EQ(joined.budgets[0].name, "regulator of VCCAUX");
}

TEST(Supplies, RunawaysLeaveThemWithoutAmounts)
{
    const Estimate estimate = estimateOf(
        R"({"device": {"part": "zq4410"}, "environment": {"ambientTemperature": 100, "thetaJA": 60},
            "supplies": {"CORE": {"rails": ["VCCINT"], "maxCurrent": 500}}, "groups": []})");
    ASSERT_FALSE(estimate.side().settles());
    EXPECT_TRUE(std::isnan(estimate.side().supplies->inputWatts));
    EXPECT_TRUE(estimate.budgetBroken());
    EXPECT_TRUE(jsonReport(estimate)["sides"][0]["supplies"]["inputWatts"].is_null());
}

TEST(Supplies, StandInEveryReport)
{
    const Scratch scratch;
    const std::string file = scratch.write("d.json", designWith(R"("supplies": {
        "CORE": {"rails": ["VCCINT", "VCCRAM"], "efficiency": 0.5, "maxCurrent": 0.1, "from": "MID"},
        "MID": {"volts": 5, "from": "12V"}}, "sequence": ["VCCRAM", "VCCINT"])"));
    const ToolRun text = scratch.run("estimate --check " + file);
    EXPECT_EQ(text.code, 1);
    EXPECT_THAT(text.err, HasSubstr("budget broken: supply CORE: "));
    EXPECT_THAT(text.out, HasSubstr("\nSupplies\n========\nSupply "));
    EXPECT_THAT(text.out, HasSubstr("\nBoard input "));
    EXPECT_THAT(text.out, HasSubstr("TYP: no supply feeds "));
    const Json json = Json::parse(scratch.run("estimate --json " + file).out);
    const Json supplies = json["sides"][0]["supplies"];
    EXPECT_EQ(supplies["supplies"][0]["name"], "CORE");
    EXPECT_EQ(supplies["supplies"][0]["rails"][0]["rail"], "VCCINT");
    EXPECT_NEAR(supplies["supplies"][1]["loadAmperes"].get<double>() * 5.0,
                supplies["supplies"][0]["outputWatts"].get<double>() / 0.5, 1e-9);
    const std::string csv = scratch.run("estimate --csv " + file).out;
    EXPECT_THAT(csv, HasSubstr("\n\nsupply,process,from,volts,load_a,"));
    EXPECT_THAT(csv, HasSubstr("\nCORE,TYP,MID,0.8"));
    EXPECT_THAT(csv, HasSubstr("\nboard input,MAX,,,,,,,,,"));
}

struct BadSupply {
    const char* name;
    const char* fields;
    const char* words;
};

void PrintTo(const BadSupply& bad, std::ostream* out)
{
    *out << bad.fields;
}

class BadSupplies : public testing::TestWithParam<BadSupply> {};

TEST_P(BadSupplies, AreToldWithPlaceAndExpectation)
{
    // Each field on a line of its own, so that the line says something.
    std::string text = "{\"groups\": [],\n" + std::string(GetParam().fields) + "}";
    std::string message = "no error";
    try {
        estimateOf(text);
    } catch (const Error& error) {
        message = error.what();
    }
    EXPECT_THAT(message, HasSubstr("test.json:2: ")) << text;
    EXPECT_THAT(message, HasSubstr(GetParam().words)) << text;
}

const BadSupply kBad[] = {
    // clang-format off
    {"NoObject", R"("supplies": [])", "supplies: expected an object {...}, found the array []"},
    {"NoObjectInside", R"("supplies": {"A": 3})", "supplies.A: expected an object {...}, found the number 3"},
    {"NoName", R"("supplies": {"": {"rails": ["VCCINT"]}})", "a supply needs a name"},
    {"NamedLikeASource", R"("supplies": {"12V": {"rails": ["VCCINT"]}})", "supplies.12V: this name reads like a source's volts"},
    {"UnknownField", R"("supplies": {"A": {"rail": ["VCCINT"]}})", "supplies.A.rail: there is no field of this name here; did you mean rails?"},
    {"RailsNoList", R"("supplies": {"A": {"rails": "VCCINT"}})", "supplies.A.rails: expected a list of rails, found the string \"VCCINT\""},
    {"RailNoText", R"("supplies": {"A": {"rails": [1]}})", "supplies.A.rails[0]: expected a text, found the number 1"},
    {"UnknownRail", R"("supplies": {"A": {"rails": ["VCCIN"]}})", "supplies.A.rails[0]: there is no rail of the name \"VCCIN\"; did you mean VCCINT"},
    {"RailTwice", R"("supplies": {"A": {"rails": ["VCCINT", "VCCINT"]}})", "supplies.A.rails[1]: the rail VCCINT stands twice"},
    {"RailOnTwo", R"("supplies": {"A": {"rails": ["VCCINT"]}, "B": {"rails": ["VCCINT"]}})", "supplies.B.rails[0]: the rail VCCINT stands twice"},
    {"RailOfARegulator", R"("regulators": {"VCCINT": {"maxCurrent": 1}}, "supplies": {"A": {"rails": ["VCCINT"]}})", "supplies.A.rails[0]: VCCINT has a regulator of its own"},
    {"NamedLikeARegulator", R"("regulators": {"VCCAUX": {"maxCurrent": 1}}, "supplies": {"VCCAUX": {"rails": ["VCCINT"]}})", "supplies.VCCAUX: the regulator of VCCAUX has this name"},
    {"FeedsNothing", R"("supplies": {"A": {"volts": 5}})", "supplies.A: a supply needs its \"rails\", or another supply that draws \"from\" it"},
    {"FeederWithoutVolts", R"("supplies": {"A": {"rails": ["VCCINT"], "from": "B"}, "B": {}})", "supplies.B: a supply that feeds only other supplies needs its \"volts\""},
    {"FromNoText", R"("supplies": {"A": {"rails": ["VCCINT"], "from": 12}})", "supplies.A.from: expected a text, found the number 12"},
    {"UnknownFeeder", R"("supplies": {"MAIN": {"rails": ["VCCAUX"]}, "A": {"rails": ["VCCINT"], "from": "MIAN"}})", "supplies.A.from: there is no supply \"MIAN\"; did you mean MAIN?"},
    {"SourceOfNoVolts", R"("supplies": {"A": {"rails": ["VCCINT"], "from": "0V"}})", "supplies.A.from: there is no supply \"0V\""},
    {"SourceOfManyVolts", R"("supplies": {"A": {"rails": ["VCCINT"], "from": "400V"}})", "a source is named by its volts, \"12V\", up to 100"},
    {"FeedsItself", R"("supplies": {"A": {"rails": ["VCCINT"], "from": "A"}})", "supplies.A.from: a supply can't feed itself"},
    {"Circle", R"("supplies": {"A": {"rails": ["VCCINT"], "from": "B"}, "B": {"volts": 3, "from": "C"}, "C": {"volts": 5, "from": "B"}})", "supplies.B.from: the supplies feed each other in a circle: B from C from B"},
    {"NegativeCurrent", R"("supplies": {"A": {"rails": ["VCCINT"], "maxCurrent": -1}})", "supplies.A.maxCurrent: -1 is outside 0 to 100000 A"},
    {"CurrentNoNumber", R"("supplies": {"A": {"rails": ["VCCINT"], "maxCurrent": [3]}})", "supplies.A.maxCurrent: expected a number, found the array [3]"},
    {"NoVolts", R"("supplies": {"A": {"rails": ["VCCINT"], "volts": 0}})", "supplies.A.volts: a supply of 0 V feeds nothing"},
    {"ManyVolts", R"("supplies": {"A": {"rails": ["VCCINT"], "volts": 230}})", "supplies.A.volts: 230 is outside 0 to 100 V"},
    {"NoEfficiency", R"("supplies": {"A": {"rails": ["VCCINT"], "efficiency": 0}})", "supplies.A.efficiency: an efficiency of 0 would need endless input"},
    {"EfficiencyInPercent", R"("supplies": {"A": {"rails": ["VCCINT"], "efficiency": 90}})", "supplies.A.efficiency: 90 is outside 0 to 1"},
    {"EmptyCurve", R"("supplies": {"A": {"rails": ["VCCINT"], "efficiency": []}})", "supplies.A.efficiency: expected a share, or a list of [load in amperes, share]; the list is empty"},
    {"PointOfOne", R"("supplies": {"A": {"rails": ["VCCINT"], "efficiency": [[5]]}})", "supplies.A.efficiency[0]: expected [load in amperes, share], found the array [5]"},
    {"PointNoList", R"("supplies": {"A": {"rails": ["VCCINT"], "efficiency": [5, 0.9]}})", "supplies.A.efficiency[0]: expected [load in amperes, share], found the number 5"},
    {"CurveFalls", R"("supplies": {"A": {"rails": ["VCCINT"], "efficiency": [[5, 0.8], [5, 0.9]]}})", "supplies.A.efficiency[1][0]: 5 A doesn't lie above the 5 A of the point before"},
    {"CurvePointOfZero", R"("supplies": {"A": {"rails": ["VCCINT"], "efficiency": [[5, 0]]}})", "supplies.A.efficiency[0][1]: an efficiency of 0"},
    {"CurveOfNegativeLoad", R"("supplies": {"A": {"rails": ["VCCINT"], "efficiency": [[-5, 0.9]]}})", "supplies.A.efficiency[0][0]: -5 is outside 0 to 100000 A"},
    {"SequenceAlone", R"("sequence": ["VCCINT"])", "sequence: a sequence needs the \"supplies\" of its rails"},
    {"SequenceNoList", R"("supplies": {"A": {"rails": ["VCCINT"]}}, "sequence": "VCCINT")", "sequence: expected a list of rails in the order of powering up"},
    {"SequenceEmpty", R"("supplies": {"A": {"rails": ["VCCINT"]}}, "sequence": [])", "sequence: expected a list of rails in the order of powering up"},
    {"SequenceStepEmpty", R"("supplies": {"A": {"rails": ["VCCINT"]}}, "sequence": [[]])", "sequence[0]: expected rails that power up together; the list is empty"},
    {"SequenceTwice", R"("supplies": {"A": {"rails": ["VCCINT"]}}, "sequence": ["VCCINT", ["VCCINT"]])", "sequence[1][0]: the rail VCCINT stands twice"},
    {"SequenceUnknown", R"("supplies": {"A": {"rails": ["VCCINT"]}}, "sequence": ["VCCINTT"])", "sequence[0]: there is no rail of the name \"VCCINTT\"; did you mean VCCINT"},
    {"SequenceUnfed", R"("supplies": {"A": {"rails": ["VCCINT"]}}, "sequence": ["VCCAUX"])", "sequence[0]: no supply feeds VCCAUX"},
    {"DifferentVolts", R"("device": {"part": "zq4410"}, "supplies": {"A": {"rails": ["VCCINT", "VCCAUX"]}})", "supplies.A.rails[1]: VCCAUX has 1.5 V and VCCINT 0.8 V; rails of different volts need supplies of their own"},
    {"OtherVoltsThanSaid", R"("device": {"part": "zq4410"}, "supplies": {"A": {"rails": ["VCCINT"], "volts": 0.85}})", "supplies.A.rails[0]: VCCINT has 0.8 V and the supply 0.85 V"},
    {"OtherVoltsThanTheDesigns", R"("device": {"part": "zq4410"}, "rails": {"VCCINT": 0.82}, "supplies": {"A": {"rails": ["VCCINT", "VCCRAM"]}})", "supplies.A.rails[1]: VCCRAM has 0.8 V and VCCINT 0.82 V"},
    // clang-format on
};

INSTANTIATE_TEST_SUITE_P(All, BadSupplies, testing::ValuesIn(kBad), [](const auto& one) { return one.param.name; });

} // namespace

} // namespace zelm::test::suppliesTest
