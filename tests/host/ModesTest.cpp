#include "Designs.h"
#include "Tool.h"

#include "host/base/Json.h"
#include "host/estimate/EditedDesign.h"
#include "host/estimate/Modes.h"
#include "host/report/Report.h"

#include <fmt/format.h>

namespace zelm::test::modesTest {

using namespace zelm::host;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr const char* kModes =
    R"("modes": [{"name": "idle", "for": 9e-3, "set": {"groups[memories].inputs.TOGGLE_RATE_A": 0, "groups[0].count": 1}},
                 {"name": "burst", "for": 1e-3, "set": {"groups[memories].count": 4}}])";

std::string design(const std::string& fields, const char* toggles = "0.5", const char* count = "2")
{
    return "{" + fields + (fields.empty() ? "" : ", ") +
           R"("groups": [{"block": "Bram", "name": "memories", "count": )" + count +
           R"(, "inputs": {"NUM_BRAMS": 500, "CASCADE_GROUP_SIZE": 1, "TOGGLE_RATE_A": )" + toggles + "}}]}";
}

constexpr const char* kDevice = R"("device": {"part": "zq4410"})";

std::string with(std::initializer_list<std::string> fields)
{
    std::string text;
    for (const std::string& field : fields)
        text += (text.empty() ? "" : ", ") + field;
    return text;
}

TEST(Modes, EachIsTheEstimateOfTheDesignSoSet)
{
    const Estimate estimate = estimateOf(design(kModes));
    ASSERT_TRUE(estimate.period.has_value());
    const double idle = estimateOf(design("", "0", "1")).dynamicWatts;
    const double burst = estimateOf(design("", "0.5", "4")).dynamicWatts;
    EXPECT_GT(burst, idle);
    EXPECT_EQ(estimate.dynamicWatts, estimateOf(design("")).dynamicWatts) << "the design without modes stays";
    EXPECT_EQ(estimate.period->modes.at(0).dynamicWatts, idle);
    EXPECT_EQ(estimate.period->modes.at(1).dynamicWatts, burst);
    EXPECT_EQ(estimate.period->modes[1].groupWatts.at(0), burst);
}

// The device has 967 block RAMs, which the static power model counts: 2 x 500 are too many, and a mode may use others.
TEST(Modes, UseTheDeviceAsTheDesignSoSet)
{
    const std::string given = R"("environment": {"junctionTemperature": 80})";
    const auto so = [&](const char* count) { return estimateOf(design(with({kDevice, given}), "0.5", count)); };
    const Estimate estimate = estimateOf(design(with({kDevice, given, kModes}), "0.5", "1"));
    EXPECT_LT(so("1").side().staticWatts, so("4").side().staticWatts) << "more memories leak more";
    EXPECT_EQ(estimate.side().staticWatts, so("1").side().staticWatts);
    EXPECT_NEAR(estimate.period->modes.at(0).sides.at(0).staticWatts, so("1").side().staticWatts, 1e-5);
    EXPECT_NEAR(estimate.period->modes.at(1).sides.at(0).staticWatts, so("4").side().staticWatts, 1e-5);
    EXPECT_THAT(estimate.warnings,
                testing::ElementsAre("mode \"burst\": the design uses 2000 BRAM of the 967 that ZQ4410 has"));
}

TEST(Modes, AverageAndEnergyAreWeighedByTime)
{
    const Estimate estimate = estimateOf(design(with({kModes, R"("battery": {"energy": 3})"})));
    const double idle = estimateOf(design("", "0", "1")).dynamicWatts;
    const double burst = estimateOf(design("", "0.5", "4")).dynamicWatts;
    const PeriodSide& side = estimate.period->sides.at(0);
    EXPECT_NEAR(estimate.period->seconds, 0.01, 1e-15);
    EXPECT_NEAR(side.watts, 0.9 * idle + 0.1 * burst, 1e-9);
    EXPECT_EQ(side.peakWatts, burst);
    EXPECT_EQ(side.peakMode, "burst");
    EXPECT_NEAR(side.joules, 9e-3 * idle + 1e-3 * burst, 1e-12);
    EXPECT_NEAR(estimate.period->modes[0].sides.at(0).joules, 9e-3 * idle, 1e-12);
    EXPECT_NEAR(*side.batteryHours, 3.0 / (0.9 * idle + 0.1 * burst), 1e-9);
    double rails = 0.0;
    for (const RailPeriod& rail : side.rails)
        rails += rail.watts;
    EXPECT_NEAR(rails, side.watts, 1e-9);
}

TEST(Modes, AModeThatSetsNothingIsTheDesign)
{
    const std::string modes = R"("modes": [{"name": "on", "for": 2}])";
    const std::string cooled = R"("environment": {"ambientTemperature": 40, "thetaJA": 2})";
    const Estimate estimate = estimateOf(design(with({kDevice, cooled, modes})));
    for (std::size_t i = 0; i < 2; ++i) {
        const PeriodSide& side = estimate.period->sides.at(i);
        EXPECT_NEAR(side.settledJunction, estimate.sides.at(i).junction, 1e-3) << side.process;
        EXPECT_NEAR(side.watts, estimate.sides[i].totalWatts, 1e-4) << side.process;
        EXPECT_NEAR(side.peakWatts, side.watts, 1e-5) << "nothing changes";
        for (const RailPeriod& rail : side.rails)
            EXPECT_NEAR(rail.watts, estimate.sides[i].rail(rail.rail)->watts(), 1e-4) << rail.rail;
    }
}

TEST(Modes, WithoutStagesTheJunctionStandsWhereTheAverageSettles)
{
    const Estimate estimate =
        estimateOf(design(with({kDevice, R"("environment": {"ambientTemperature": 40, "thetaJA": 1})", kModes})));
    for (const PeriodSide& side : estimate.period->sides) {
        EXPECT_NEAR(side.settledJunction, 40.0 + 1.0 * side.watts, 1e-3) << side.process;
        for (const Moment& moment : side.moments)
            EXPECT_EQ(moment.junction, side.settledJunction);
        // The worst is where a mode alone would settle: nothing tells that it is too short for that.
        const std::size_t index = &side == &estimate.period->sides.front() ? 0 : 1;
        const Side burst =
            estimateOf(
                design(with({kDevice, R"("environment": {"ambientTemperature": 40, "thetaJA": 1})"}), "0.5", "4"))
                .sides.at(index);
        EXPECT_EQ(side.highest.junction, burst.junction);
        EXPECT_NEAR(side.peakWatts, burst.totalWatts, 1e-4);
        EXPECT_EQ(side.peakMode, "burst");
    }
}

TEST(Modes, StagesMoveTheJunctionWithThePower)
{
    const auto sideOf = [](const char* stages) {
        return estimateOf(design(with({kDevice, R"("environment": {"ambientTemperature": 40})", stages, kModes})))
            .period->sides.front();
    };
    const PeriodSide slow = sideOf(R"("thermal": {"stages": [{"r": 2, "tau": 1000}]})");
    EXPECT_NEAR(slow.highest.junction, slow.lowest.junction, 1e-2);
    EXPECT_NEAR(slow.highest.junction, slow.settledJunction, 1e-2) << "too slow to follow";
    const PeriodSide fast = sideOf(R"("thermal": {"stages": [{"r": 2, "tau": 1e-6}]})");
    // Fast enough to settle in each mode: as 40 + 2 x the power of that moment.
    EXPECT_NEAR(fast.highest.junction, 40.0 + 2.0 * fast.highest.watts, 1e-2);
    EXPECT_NEAR(fast.lowest.junction, 40.0 + 2.0 * fast.lowest.watts, 1e-2);
    EXPECT_GT(fast.highest.junction - fast.lowest.junction, 0.5);
    EXPECT_EQ(fast.highest.mode, 1u);
    EXPECT_EQ(fast.lowest.mode, 0u);
}

TEST(Modes, StagesAreThetaInTheLongRun)
{
    const Estimate plain =
        estimateOf(design(with({kDevice, R"("environment": {"ambientTemperature": 40, "thetaJA": 0.75})"})));
    const Estimate stages =
        estimateOf(design(with({kDevice, R"("environment": {"ambientTemperature": 40})",
                                R"("thermal": {"stages": [{"r": 0.25, "tau": 1}, {"r": 0.5, "tau": 9}]})"})));
    EXPECT_EQ(stages.side().junction, plain.side().junction);
}

TEST(Modes, BudgetsAreJudgedOnTheWorstMoment)
{
    const double plain = estimateOf(design("")).dynamicWatts;
    const double burst = estimateOf(design("", "0.5", "4")).dynamicWatts;
    const auto broken = [&](double limit, const char* modes) {
        return estimateOf(design(with({fmt::format(R"("budgets": {{"totalPower": {}}})", limit), modes})))
            .budgets.at(0)
            .broken();
    };
    EXPECT_FALSE(broken(0.5 * (plain + burst), R"("name": "x")")) << "the design keeps it";
    EXPECT_TRUE(broken(0.5 * (plain + burst), kModes)) << "a tenth of the time it doesn't";
    EXPECT_FALSE(broken(0.5 * plain, R"("modes": [{"name": "off", "for": 1, "set": {"groups[0].count": 0}}])"))
        << "the design never runs as it stands";
}

TEST(Modes, RailsAndSuppliesAreSizedByTheWorst)
{
    const Estimate estimate = estimateOf(
        design(with({kDevice, R"("environment": {"junctionTemperature": 60})", R"("budgets": {"rails": {"VCCINT": 9}})",
                     R"("supplies": {"CORE": {"rails": ["VCCINT"], "maxCurrent": 9, "efficiency": 0.8}})", kModes})));
    const Estimate burst =
        estimateOf(design(with({kDevice, R"("environment": {"junctionTemperature": 60})"}), "0.5", "4"));
    const Estimate idle =
        estimateOf(design(with({kDevice, R"("environment": {"junctionTemperature": 60})"}), "0", "1"));
    for (std::size_t i = 0; i < 2; ++i) {
        const double most = burst.sides.at(i).rail("VCCINT")->amperes();
        const double held = most - burst.sides[i].rail("VCCINT")->amperes();
        EXPECT_EQ(held, 0.0);
        const BudgetResult& rail = estimate.budgets.at(0);
        EXPECT_NEAR(i == 0 ? rail.actual : *rail.otherActual, most, 1e-9) << rail.name;
        const BudgetResult& supply = estimate.budgets.at(1);
        EXPECT_EQ(supply.name, "supply CORE");
        EXPECT_NEAR(i == 0 ? supply.actual : *supply.otherActual, most, 1e-6);
        const PeriodSide& side = estimate.period->sides.at(i);
        // 0.8 of the input is what the rail takes, nine tenths of the time idle's.
        EXPECT_NEAR(side.inputWatts * 0.8,
                    0.9 * idle.sides[i].rail("VCCINT")->watts() + 0.1 * burst.sides[i].rail("VCCINT")->watts(), 1e-6);
        EXPECT_NEAR(side.peakInputWatts * 0.8, burst.sides[i].rail("VCCINT")->watts(), 1e-6);
        EXPECT_EQ(side.supplies.at(0).peakMode, "burst");
    }
}

TEST(Modes, RegulatorsShowTheirLeastMargin)
{
    const std::string fixed = R"("environment": {"junctionTemperature": 60})";
    const Estimate burst = estimateOf(design(with({kDevice, fixed}), "0.5", "4"));
    const Estimate estimate =
        estimateOf(design(with({kDevice, fixed, R"("regulators": {"VCCINT": {"maxCurrent": 20}})", kModes})));
    EXPECT_NEAR(jsonReport(estimate)["regulators"][0]["marginAmperes"].get<double>(),
                20.0 - burst.side().rail("VCCINT")->amperes(), 1e-9);
}

TEST(Modes, ARunawayLeavesThePeriodWithoutAmounts)
{
    const Estimate estimate = estimateOf(
        design(with({kDevice, R"("environment": {"ambientTemperature": 100})", R"("budgets": {"totalPower": 1000})",
                     R"("thermal": {"stages": [{"r": 60, "tau": 1}]})", kModes})));
    EXPECT_FALSE(estimate.period->sides.front().settles);
    EXPECT_TRUE(std::isnan(estimate.period->sides.front().watts));
    EXPECT_TRUE(estimate.budgetBroken());
    EXPECT_TRUE(jsonReport(estimate)["period"]["sides"][0]["watts"].is_null());
    EXPECT_THAT(textReport(estimate, false), HasSubstr("thermal runaway"));
    EXPECT_THAT(csvReport(estimate), Not(HasSubstr("nan")));
}

TEST(Modes, StandInEveryReport)
{
    const Scratch scratch;
    const std::string file = scratch.write(
        "d.json", design(with({kDevice, R"("environment": {"ambientTemperature": 40})",
                               R"("thermal": {"stages": [{"r": 0.5, "tau": 1e-3}, {"r": 1, "tau": 0.1}]})",
                               R"("battery": {"energy": 40})", R"("budgets": {"totalPower": 0.1})", kModes})));
    const ToolRun text = scratch.run("estimate --check --start-up --junit " + scratch.path("j.xml") + " --html " +
                                     scratch.path("h.html") + " " + file);
    EXPECT_EQ(text.code, 1) << text.err;
    EXPECT_THAT(text.out, HasSubstr("\nModes\n=====\nMode "));
    EXPECT_THAT(text.out, HasSubstr("\nStart-up\n"));
    EXPECT_THAT(text.out, HasSubstr("TYP: the battery of 40 Wh lasts "));
    EXPECT_THAT(text.out, HasSubstr("TYP: the junction is lowest with "));
    EXPECT_THAT(Scratch::read(scratch.path("j.xml")), HasSubstr("failures=\"1\""));
    EXPECT_THAT(Scratch::read(scratch.path("h.html")), HasSubstr("\"period\":{\"seconds\":0.0"));
    const ToolRun json = scratch.run("estimate --json --start-up " + file);
    const Json parsed = Json::parse(json.out);
    const Json moments = parsed["period"]["sides"][0]["moments"];
    EXPECT_EQ(moments.front()["mode"], "idle");
    EXPECT_EQ(moments.back()["mode"], "burst");
    EXPECT_NEAR(moments.back()["seconds"].get<double>(), 0.01, 1e-12);
    EXPECT_NEAR(moments.front()["junctionTemperature"].get<double>(),
                moments.back()["junctionTemperature"].get<double>(), 1e-3)
        << "the period ends as it began";
    EXPECT_EQ(parsed["sides"][1]["startUp"].size(), 300u);
    EXPECT_EQ(parsed["sides"][1]["startUp"][0]["lowestJunctionTemperature"], 40.0);
    const std::string csv = scratch.run("estimate --csv --start-up " + file).out;
    for (const char* table :
         {"\n\nmode,process,seconds,", "\n\nmode,group,dynamic_w\nidle,memories,", "\n\nrail,process,average_w,",
          "\n\nseconds,process,mode,junction_c,", "\n\nstart_up_s,process,"})
        EXPECT_THAT(csv, HasSubstr(table));
    const ToolRun without = scratch.run("estimate --start-up " + scratch.write("e.json", design("")));
    EXPECT_EQ(without.code, 2);
    EXPECT_THAT(without.err, HasSubstr("e.json: the start-up needs a device and \"thermal\" with its stages"));
}

TEST(Modes, TakeUnitsAndParameters)
{
    const Estimate estimate = estimateOf(R"({"parameters": {"fast": "400 MHz", "frame": "10 ms"},
        "environment": {"ambientTemperature": "40 C"}, "device": {"part": "zq4410"},
        "thermal": {"stages": [{"r": "0.5 C/W", "tau": "20 ms"}, {"r": "1.5 C/W", "tau": "= frame * 3"}]},
        "battery": {"energy": "7.2 kJ"},
        "supplies": {"CORE": {"rails": ["VCCINT"], "maxCurrent": "60000 mA", "volts": "800 mV", "efficiency": "90 %",
                              "from": "MAIN"},
                     "MAIN": {"volts": "= 12", "efficiency": [["2 A", 0.8], ["3 A", "88 %"]], "from": "48 V"}},
        "modes": [{"name": "half", "for": "= frame / 2", "set": {"parameters.fast": "200 MHz"}},
                  {"name": "full", "for": "5 ms", "set": {"groups[0].count": "= 1 + 1"}}],
        "groups": [{"block": "Bram", "inputs": {"NUM_BRAMS": 10, "PORT_A_CLOCK": "= fast"}}]})");
    const Design& design = estimate.design;
    EXPECT_NEAR(design.stages.at(0).tau, 0.02, 1e-15);
    EXPECT_EQ(design.stages.at(1).r, 1.5);
    EXPECT_NEAR(design.stages[1].tau, 0.03, 1e-15);
    EXPECT_NEAR(*design.batteryWattHours, 2.0, 1e-12) << "7200 J over 3600 J/Wh";
    EXPECT_EQ(design.supplies.all.at(0).maxCurrent, 60.0);
    EXPECT_EQ(design.supplies.all[0].volts, 0.8);
    EXPECT_EQ(design.supplies.all[0].efficiency.at(0).second, 0.9);
    EXPECT_EQ(design.supplies.all.at(1).efficiency.at(1), std::pair(3.0, 0.88));
    EXPECT_EQ(design.modes.at(0).seconds, 0.005);
    EXPECT_EQ(design.modes.at(0).design->groups.at(0).input("PORT_A_CLOCK")[0], Value(200.0f));
    EXPECT_EQ(design.modes.at(1).design->groups.at(0).input("PORT_A_CLOCK")[0], Value(400.0f));
    EXPECT_EQ(design.modes[1].design->groups[0].count, 2);
}

TEST(Modes, FollowEditsOfTheDesign)
{
    const auto text = [](int memories) {
        return fmt::format(R"({{"environment": {{"ambientTemperature": 40}}, "device": {{"part": "zq4410"}},
            "thermal": {{"stages": [{{"r": 0.5, "tau": 0.02}}]}},
            "modes": [{{"name": "a", "for": 1}}, {{"name": "b", "for": 2, "set": {{"groups[0].count": 3}}}}],
            "groups": [{{"block": "Bram", "inputs": {{"NUM_BRAMS": {}}}}}]}})",
                           memories);
    };
    JsonSource source{"test.json", {}};
    const Json root = parseJson(text(10), source);
    EditedDesign edited(root, source, {"groups[0].inputs.NUM_BRAMS", "environment.ambientTemperature"}, Gaps::refused);
    EXPECT_EQ(edited.estimate().period->sides.at(0).watts, estimateOf(text(10)).period->sides.at(0).watts);
    edited.set(0, 200);
    EXPECT_EQ(edited.estimate().period->sides.at(0).watts, estimateOf(text(200)).period->sides.at(0).watts);
    const double before = edited.estimate().period->sides[0].highest.junction;
    edited.set(1, 50);
    EXPECT_GT(edited.estimate().period->sides.at(0).highest.junction, before + 9.0);
}

struct BadMode {
    const char* name;
    const char* field; ///< stands on line 3
    const char* words;
};

void PrintTo(const BadMode& bad, std::ostream* out)
{
    *out << bad.field;
}

class BadModes : public testing::TestWithParam<BadMode> {};

TEST_P(BadModes, AreToldWithPlaceAndExpectation)
{
    const std::string text =
        "{\"groups\": [{\"block\": \"Bram\", \"name\": \"fir\"}, {\"block\": \"Clock\", \"name\": \"clk\"}],\n\n" +
        std::string(GetParam().field) + "}";
    std::string message = "no error";
    try {
        estimateOf(text);
    } catch (const Error& error) {
        message = error.what();
    }
    EXPECT_THAT(message, HasSubstr("test.json:3: ")) << text;
    EXPECT_THAT(message, HasSubstr(GetParam().words)) << text;
}

#define MODES(text) "\"modes\": [" text "]"
#define SET(text) MODES("{\"name\": \"a\", \"for\": 1, \"set\": {" text "}}")
#define STAGES(text) "\"environment\": {\"ambientTemperature\": 25}, \"thermal\": {\"stages\": [" text "]}"

const BadMode kBad[] = {
    // clang-format off
    {"NoList", R"("modes": {"name": "a"})", "modes: expected a list of modes, found the object"},
    {"Empty", MODES(""), "modes: expected a list of modes, found the array []"},
    {"NoObject", MODES("1"), "modes[0]: expected an object {...}, found the number 1"},
    {"NoName", MODES(R"({"for": 1})"), "modes[0]: a mode needs its \"name\""},
    {"NoFor", MODES(R"({"name": "a"})"), "modes[0]: a mode needs how long it lasts: \"for\", in seconds"},
    {"NoLength", MODES(R"({"name": "a", "for": 0})"), "modes[0].for: a mode of no length never happens"},
    {"NegativeLength", MODES(R"({"name": "a", "for": -1})"), "modes[0].for: -1 is outside 0 to 1000000000 s"},
    {"EndlessLength", MODES(R"({"name": "a", "for": 1e12})"), "modes[0].for: 1000000000000.0 is outside 0 to 1000000000 s"},
    {"LengthNoNumber", MODES(R"({"name": "a", "for": [1]})"), "modes[0].for: expected a number, found the array [1]"},
    {"LengthOfVolts", MODES(R"({"name": "a", "for": "9 mV"})"), "modes[0].for: "},
    {"LengthOfNoUnit", MODES(R"({"name": "a", "for": "9 mss"})"), "modes[0].for: "},
    {"LengthOfNothing", MODES(R"({"name": "a", "for": "= 3 / 0"})"), "modes[0].for: "},
    {"UnknownParameter", SET(R"("groups[fir].count": "= twoo")"), "modes[0].set.groups[fir].count: groups[0].count: "},
    {"BatteryOfAmpereHours", R"("battery": {"energy": "3 Ah"})", "battery.energy: "},
    {"TauOfWatts", STAGES(R"({"r": 1, "tau": "2 W"})"), "thermal.stages[0].tau: "},
    {"NameTwice", MODES(R"({"name": "a", "for": 1}, {"name": "a", "for": 2})"), "modes[1].name: two modes are named \"a\"; give each its own name"},
    {"UnknownField", MODES(R"({"name": "a", "for": 1, "sets": {}})"), "modes[0].sets: there is no field of this name here; did you mean set?"},
    {"SetNoObject", MODES(R"({"name": "a", "for": 1, "set": [1]})"), "modes[0].set: expected an object of values by path, found the array [1]"},
    {"SetsTheName", SET(R"("name": "x")"), "modes[0].set.name: a mode sets places in groups, rails, static and parameters"},
    {"SetsTheDevice", SET(R"("device.process": "MAX")"), "modes[0].set.device.process: a mode sets places in groups"},
    {"SetsTheAmbient", SET(R"("environment.ambientTemperature": 5)"), "modes[0].set.environment.ambientTemperature: a mode sets places in groups"},
    {"SetsModes", SET(R"("modes[0].for": 5)"), "modes[0].set.modes[0].for: a mode sets places in groups"},
    {"SetsSupplies", SET(R"("supplies.A.maxCurrent": 5)"), "a mode sets places in groups"},
    {"SetsEverything", SET(R"("": 5)"), "a mode sets places in groups"},
    {"SetsAllGroups", SET(R"("groups": [])"), "modes[0].set.groups: a mode sets places in groups"},
    {"MistypedRoot", SET(R"("grups[fir].count": 5)"), "did you mean groups?"},
    {"RenamesAGroup", SET(R"("groups[fir].name": "fur")"), "a mode can't make a group another"},
    {"ChangesABlock", SET(R"("groups[0].block": "Plam")"), "a mode can't make a group another"},
    {"UnknownGroup", SET(R"("groups[fur].count": 5)"), "modes[0].set.groups[fur].count: \"groups\" has no element fur; did you mean fir?"},
    {"IndexBeyond", SET(R"("groups[2].count": 5)"), "\"groups\" has no element 2"},
    {"NoBracket", SET(R"("groups[fir.count": 5)"), "a ']' is missing"},
    {"GroupsByName", SET(R"("groups.fir.count": 5)"), "modes[0].set.groups.fir.count: \"fir\" isn't a field of an object"},
    {"UnknownGroupField", SET(R"("groups[fir].conut": 5)"), "modes[0].set.groups[fir].conut: groups[0].conut: there is no field of this name here; did you mean count?"},
    {"UnknownCell", SET(R"("groups[fir].inputs.NUM_BRAM": 5)"), "modes[0].set.groups[fir].inputs.NUM_BRAM: groups[0].inputs.NUM_BRAM: "},
    {"IllegalValue", SET(R"("groups[fir].inputs.MODE": "BLKM19")"), "modes[0].set.groups[fir].inputs.MODE: groups[0].inputs.MODE: "},
    {"ValueNoNumber", SET(R"("groups[clk].inputs.CLOCK_FREQ": "fast")"), "groups[1].inputs.CLOCK_FREQ: "},
    {"ValueNull", SET(R"("groups[fir].inputs.NUM_BRAMS": null)"), "groups[0].inputs.NUM_BRAMS: expected a whole number, found null"},
    {"CountBelowZero", SET(R"("groups[fir].count": -5)"), "groups[0].count: -5 is outside 0 to 1000000 instances"},
    {"RailOfNoVolts", SET(R"("rails.VCCINT": 200)"), "modes[0].set.rails.VCCINT: rails.VCCINT: 200 is outside 0 to 100 V"},
    {"PlaceTwice", SET(R"("groups[fir].count": 5, "groups[0].count": 6)"), "modes[0].set.groups[fir].count: this place is set twice"},
    {"BatteryNoObject", R"("battery": 40)", "battery: expected an object {...}, found the number 40"},
    {"BatteryEmpty", R"("battery": {})", "battery.energy: a battery needs its \"energy\", above 0 Wh"},
    {"BatteryOfZero", R"("battery": {"energy": 0})", "battery.energy: a battery needs its \"energy\", above 0 Wh"},
    {"BatteryOwing", R"("battery": {"energy": -3})", "battery.energy: -3 is outside 0 to 1000000000 Wh"},
    {"BatteryUnknownField", R"("battery": {"energy": 3, "volts": 3})", "battery.volts: there is no field of this name here"},
    {"ThermalNoObject", R"("thermal": [])", "thermal: expected an object"},
    {"ThermalEmpty", R"("thermal": {})", "thermal: expected \"stages\": a list of {\"r\": degrees per watt, \"tau\": seconds}"},
    {"NoStages", STAGES(""), "thermal.stages: expected \"stages\": a list"},
    {"StageNoObject", STAGES("3"), "thermal.stages[0]: expected an object"},
    {"NoTau", STAGES(R"({"r": 1})"), "thermal.stages[0].tau: a stage needs its \"tau\", a time constant above 0 seconds"},
    {"TauOfZero", STAGES(R"({"r": 1, "tau": 0})"), "thermal.stages[0].tau: a stage needs its \"tau\""},
    {"NegativeTau", STAGES(R"({"r": 1, "tau": -2})"), "thermal.stages[0].tau: -2 is outside 0 to 1000000000 s"},
    {"NoResistance", STAGES(R"({"tau": 1})"), "thermal.stages[0].r: a stage needs its \"r\", degrees per watt above 0"},
    {"NegativeResistance", STAGES(R"({"r": -1, "tau": 2})"), "thermal.stages[0].r: -1 is outside 0 to 1000 degrees per watt"},
    {"StageUnknownField", STAGES(R"({"r": 1, "tao": 2, "tau": 1})"), "thermal.stages[0].tao: there is no field of this name here; did you mean tau?"},
    {"StagesAndTheta", R"("environment": {"ambientTemperature": 25, "thetaJA": 1}, "thermal": {"stages": [{"r": 1, "tau": 1}]})", "environment: give thetaJA or a list of cooling, or thermal stages, not both"},
    {"StagesWithoutAmbient", R"("environment": {"junctionTemperature": 25}, "thermal": {"stages": [{"r": 1, "tau": 1}]})", "thermal: thermal stages need environment.ambientTemperature"},
    {"StagesWithoutEnvironment", R"("thermal": {"stages": [{"r": 1, "tau": 1}]})", "thermal: thermal stages need environment.ambientTemperature"},
    // clang-format on
};

INSTANTIATE_TEST_SUITE_P(All, BadModes, testing::ValuesIn(kBad), [](const auto& one) { return one.param.name; });

TEST(Modes, TakeNoEndlessMemory)
{
    const auto list = [](const char* element, int times) {
        std::string text;
        for (int i = 0; i < times; ++i)
            text += (i == 0 ? "" : ",\n") + fmt::format(fmt::runtime(element), i);
        return text;
    };
    const auto messageOf = [](const std::string& text) -> std::string {
        try {
            parseDesign("test.json", text);
        } catch (const Error& error) {
            return error.what();
        }
        return "no error";
    };
    const char* mode = R"({{"name": "m{}", "for": 1}})";
    const char* group = R"({{"block": "Bram", "name": "g{}"}})";
    EXPECT_THAT(messageOf("{\"groups\": [], \"modes\": [" + list(mode, 101) + "]}"),
                HasSubstr("test.json:1: modes: a design has at most 100 modes, found 101"));
    EXPECT_THAT(messageOf("{\"groups\": [" + list(group, 1001) + "],\n\"modes\": [" + list(mode, 100) + "]}"),
                HasSubstr("modes: 100 modes of 1001 groups are too many: at most 100000 in all"));
}

TEST(Modes, TheSettingThatCantBeIsBlamed)
{
    try {
        estimateOf(design(R"("modes": [{"name": "a", "for": 1, "set": {
            "groups[0].count": 5,
            "groups[memories].inputs.NUM_BRAMS": 0.5,
            "groups[0].inputs.MODE": "BLKM36"}}])"));
        FAIL() << "half a memory was read";
    } catch (const Error& error) {
        EXPECT_STREQ(error.what(), "test.json:3: modes[0].set.groups[memories].inputs.NUM_BRAMS: "
                                   "groups[0].inputs.NUM_BRAMS: expected a whole number, found the number 0.5");
    }
}

} // namespace

} // namespace zelm::test::modesTest
