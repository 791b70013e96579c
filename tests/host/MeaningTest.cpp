#include "Designs.h"
#include "Tool.h"

#include "host/blocks/LegalWords.h"
#include "host/study/Sweep.h"

namespace zelm::test::meaningTest {

using namespace zelm::host;
using testing::Contains;
using testing::HasSubstr;

namespace {

// A design and what its reading or its estimate must say.
struct Meaning {
    const char* name;
    const char* text;
    std::vector<std::string> words; ///< each must stand in the message
};

void PrintTo(const Meaning& meaning, std::ostream* out)
{
    *out << meaning.text;
}

#define ONE(block, inputs) "{\"groups\": [{\"block\": \"" block "\", \"inputs\": {" inputs "}}]}"
#define FIELDS(fields) "{" fields ", \"groups\": []}"
#define DEVICE(fields, groups) "{\"device\": {\"part\": \"zq4410\"}, " fields ", \"groups\": [" groups "]}"

const Meaning kErrors[] = {
    // clang-format off
    // words
    {"MemoryMode", ONE("Bram", R"("MODE": "RAMB36")"), {"test.json:1: groups[0].inputs.MODE: \"RAMB36\" is no word of MODE", "legal: BLKM18, BLKM36,"}},
    {"WriteMode", ONE("Bram", R"("PORT_A_WRITE_MODE": "NOCHANGE")"), {"groups[0].inputs.PORT_A_WRITE_MODE: ", "did you mean NO_CHANGE?", "legal: READ_FIRST, WRITE_FIRST, NO_CHANGE"}},
    {"PowerMode", ONE("Lorv", R"("POWER_MODE": "LPM")"), {"inputs.POWER_MODE: \"LPM\"", "legal: LOW_POWER, DFE"}},
    {"Direction", ONE("Selv", R"("IO_DIRECTION": "OUT")"), {"inputs.IO_DIRECTION: \"OUT\"", "OUTPUT"}},
    {"SmallLetters", ONE("Selv", R"("DATA_RATE": "ddr")"), {"inputs.DATA_RATE: \"ddr\"", "did you mean DDR"}},
    {"InstanceType", ONE("CleLogic", R"("INSTANCE_TYPE": "FF")"), {"inputs.INSTANCE_TYPE: \"FF\"", "REG_FF"}},
    {"YesAsInSpeech", ONE("DspInt24", R"("MULT_USED": "yes")"), {"inputs.MULT_USED: \"yes\"", "did you mean YES?"}},
    {"DataPath", ONE("Noc", R"("DATA_PATH": "PL_TO_PL_X")"), {"inputs.DATA_PATH: \"PL_TO_PL_X\"", "legal: "}},
    {"Standard", ONE("Selv", R"("OUTPUT_IO_STANDARD": "LVCMOS15_9")"), {"inputs.OUTPUT_IO_STANDARD: ", "did you mean LVCMOS15_"}},
    {"WordOfAFedBlock", ONE("Clock", R"("BUF_TYPE": "GLOBL")"), {"inputs.BUF_TYPE: \"GLOBL\"", "did you mean GLOBAL"}},
    {"Uninitialized", ONE("Bram", R"("MODE": "UninitializedString")"), {"inputs.MODE: ", "is how an unset cell reads"}},
    {"UninitializedFreeText", ONE("Lorv", R"("RX_DATA_MODE": "UninitializedString")"), {"inputs.RX_DATA_MODE: ", "is how an unset cell reads"}},
    {"SecondLine", "{\"groups\": [{\"block\": \"Bram\", \"inputs\": {\n\"MODE\": \"RAMB36\"}}]}", {"test.json:2: groups[0].inputs.MODE"}},
    // numbers
    {"NegativeCount", ONE("Bram", R"("NUM_BRAMS": -5)"), {"groups[0].inputs.NUM_BRAMS: NUM_BRAMS takes from 0", "not -5"}},
    {"NegativeClock", ONE("Signal", R"("CLOCK_FREQ": -250)"), {"groups[0].inputs.CLOCK_FREQ: CLOCK_FREQ takes from 0", "not -250"}},
    {"NegativeRate", ONE("Signal", R"("TOGGLE_RATE": -0.1)"), {"groups[0].inputs.TOGGLE_RATE: TOGGLE_RATE takes from 0"}},
    {"NoCascade", ONE("Bram", R"("CASCADE_GROUP_SIZE": 0)"), {"groups[0].inputs.CASCADE_GROUP_SIZE: CASCADE_GROUP_SIZE takes from 1", "not 0"}},
    {"Width", ONE("Ddrmc", R"("DATA_WIDTH": 48)"), {"groups[0].inputs.DATA_WIDTH: DATA_WIDTH takes 16, 32 or 64 bit, not 48"}},
    {"RailAtZero", FIELDS(R"("rails": {"VCCINT": 0})"), {"test.json:1: rails.VCCINT: a rail at 0 V"}},
    {"OwnRailAtZero", ONE("Bram", R"("VCCINT": 0)"), {"groups[0].inputs.VCCINT: a rail at 0 V"}},
    {"NegativeUsedCount", FIELDS(R"("static": {"USED_ADC_CORE": -1})"), {"static.USED_ADC_CORE: USED_ADC_CORE takes from 0"}},
    // combinations
    {"ChannelTooWide", ONE("Ddrmc", R"("DDR_STANDARD": "LP4", "NUM_CHANNELS": 1, "DATA_WIDTH": 64)"), {"test.json:1: groups[0].inputs: group \"Ddrmc\": ", "DATA_WIDTH 64", "NUM_CHANNELS 1", "DDR_STANDARD LP4", " don't go together", "DDRMC_DATA", "--keep-going"}},
    {"LanesOfTwoControllers", ONE("Wist", R"("LINK_WIDTH_A0": 16)"), {"groups[0].inputs: group \"Wist\": LINK_WIDTH_A0 16, PCI_CHANNELS 2 don't go together"}},
    {"WidthsOfNoMode", ONE("Bram", R"("MODE": "BLKM18SDP")"), {"test.json:1: groups[0].inputs: group \"Bram\": PORT_A_BIT_WIDTH 18, PORT_B_BIT_WIDTH 18, MODE BLKM18SDP don't go together", "--keep-going"}},
    {"BothWidthsOfNoMode", ONE("Bram", R"("MODE": "BLKM36SDP", "PORT_A_BIT_WIDTH": 64, "PORT_B_BIT_WIDTH": 64)"), {"MODE BLKM36SDP, PORT_A_BIT_WIDTH 64, PORT_B_BIT_WIDTH 64 don't go together"}},
    {"NothingLeftToDo", ONE("Tuvo", R"("FEC_USED": "NO")"), {"group \"Tuvo\": FEC_USED NO, TRANSCODE_BYPASS YES don't go together"}},
    {"ReceiverThatAlwaysDrives", ONE("Nalt", R"("IO_DIRECTION": "BIDI_INPUT")"), {"group \"Nalt\": OUTPUT_ENABLE 1, IO_DIRECTION BIDI_INPUT don't go together"}},
    // the rest
    {"FamilyOfAnotherDevice", FIELDS(R"("device": {"part": "zq4410", "family": "Halden Rim Series"})"), {"device.family: zq4410 is not in the Halden Rim Series; it is in the Halden Axis Series"}},
    {"EmptyGroupName", R"({"groups": [{"block": "Bram", "name": ""}]})", {"groups[0].name: is empty; leave it out"}},
    {"EmptyClock", R"({"groups": [{"block": "Bram", "clock": ""}]})", {"groups[0].clock: is empty; leave it out"}},
    {"EmptyProcess", FIELDS(R"("device": {"part": "zq4410", "process": ""})"), {"device.process: is empty; leave it out"}},
    {"ThetaBesideCooling", FIELDS(R"("environment": {"ambientTemperature": 25, "thetaJA": 1, "cooling": [{"thetaJA": 1}]})"), {"environment.cooling: give thetaJA, or a list of cooling, not both"}},
    {"CatalogueAsGroup", ONE("Parts", ""), {"groups[0].block: the catalogue", "isn't part of a design"}},
    {"NameLikeAnIndex", R"({"groups": [{"block": "Bram", "name": "0"}]})", {"groups[0].name: \"0\" reads like a group's index"}},
    {"JudgedAtNoSide", FIELDS(R"("budgets": {"judgedAt": "typ"})"), {"budgets.judgedAt: there is no process side typ; legal: TYP, MAX"}},
    // clang-format on
};

class Refused : public testing::TestWithParam<Meaning> {};

TEST_P(Refused, WithPlaceAndExpectation)
{
    std::string message = "no error";
    try {
        estimateOf(GetParam().text);
    } catch (const Error& error) {
        message = error.what();
    }
    for (const std::string& words : GetParam().words)
        EXPECT_THAT(message, HasSubstr(words)) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(Meaning, Refused, testing::ValuesIn(kErrors), [](const auto& one) { return one.param.name; });

const Meaning kWarnings[] = {
    // clang-format off
    {"Percent", ONE("Signal", R"("TOGGLE_RATE": 12.5)"), {"test.json:1: groups[0].inputs.TOGGLE_RATE: TOGGLE_RATE is 12.5, usually at most 2; percent?"}},
    {"Hertz", ONE("Signal", R"("CLOCK_FREQ": 250000000)"), {"groups[0].inputs.CLOCK_FREQ: CLOCK_FREQ is ", "hertz?"}},
    {"Millivolts", FIELDS(R"("rails": {"VCCINT": 72})"), {"rails.VCCINT: VCCINT is 72, usually at most 4"}},
    {"RegulatorThatNothingLoads", R"({"regulators": {"VCCRAM": {"maxCurrent": 1}}, "groups": [{"block": "Signal"}]})", {"test.json:1: regulators.VCCRAM: nothing loads this rail"}},
    {"RegulatorALetterOff", R"({"regulators": {"MLORVAVCC": {"maxCurrent": 1}}, "groups": [{"block": "Lorvp"}]})", {"regulators.MLORVAVCC: nothing loads this rail; did you mean MLORVPAVCC"}},
    {"BudgetThatNothingLoads", R"({"budgets": {"rails": {"VCCRAM": 1}}, "groups": [{"block": "Signal"}]})", {"budgets.rails.VCCRAM: nothing loads this rail"}},
    {"Megabits", ONE("Sarn", R"("RX_DATA_RATE": 112000)"), {"inputs.RX_DATA_RATE: RX_DATA_RATE is 112000, usually at most 1000; it is in Gb/s: megabits?"}},
    {"Bits", ONE("Ddrmc", R"("DATA_RATE": 3.2e9)"), {"inputs.DATA_RATE: ", "it is in Mb/s: bits?"}},
    {"Bytes", ONE("Noc", R"("BANDWITH_READ": 12800000000)"), {"inputs.BANDWITH_READ: ", "it is in MB/s: bytes?", "carries 1.28e+07 GB/s"}},
    {"Kelvin", R"({"device": {"part": "zq4410"}, "environment": {"ambientTemperature": 298, "thetaJA": 0.1}, "groups": []})", {"environment.ambientTemperature: 298 degrees Celsius: kelvin?"}},
    {"MoreThanAnyDeviceTakes", ONE("Bram", R"("NUM_BRAMS": 2000000000)"), {"W are more than any device takes: look for a count, clock or rate in the wrong unit"}},
    {"LimitsWithoutADevice", R"({"budgets": {"junctionTemperature": 95, "totalPower": 3, "judgedAt": "MAX"}, "static": {"USED_ADC_CORE": 1}, "groups": []})", {"budgets.junctionTemperature, budgets.judgedAt, static count for nothing", "budgets.totalPower is judged on dynamic power alone"}},
    {"VoltsOfARailThatTheDeviceLacks", DEVICE(R"("rails": {"MSARNAVCC": 0.9})", ""), {"rails.MSARNAVCC: ZQ4410 has no such rail"}},
    {"StaticCountsBeyondTheDevice", DEVICE(R"("static": {"USED_ADC_CORE": 4, "USED_BRAMS_ACTIVE": 968, "USED_SARN_POWER_QUADS": 2})", ""), {"static.USED_ADC_CORE: 4 is more than the 0 ADC of ZQ4410", "static.USED_BRAMS_ACTIVE: 968 is more than the 967 BRAM", "static.USED_SARN_POWER_QUADS: 2 is more than the 0 SARN_QUAD"}},
    {"RailThatTheDeviceLacks", DEVICE(R"("regulators": {"VCCWIST5": {"maxCurrent": 1}})", ""), {"regulators.VCCWIST5: ZQ4410 has no such rail"}},
    // clang-format on
};

class Doubted : public testing::TestWithParam<Meaning> {};

TEST_P(Doubted, WithPlaceAndSlip)
{
    const std::vector<std::string> warnings = estimateOf(GetParam().text).warnings;
    for (const std::string& words : GetParam().words)
        EXPECT_THAT(warnings, Contains(HasSubstr(words))) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(Meaning, Doubted, testing::ValuesIn(kWarnings),
                         [](const auto& one) { return one.param.name; });

// Any two words or widths of any block: refused, or the group draws power, or a word switches it off.
TEST(Meaning, NoWordsMakeAGroupDrawNothingInSilence)
{
    constexpr const char* offWords[] = {"NONE", "DISABLED", "OFF"};
    int refused = 0;
    for (const Block& block : blocks()) {
        if (block.name == "Parts" || block.name == "Static")
            continue;
        block.load();
        Group active{&block, "g", 1, "", {}, "groups[0]", {}};
        std::vector<std::pair<std::string, Value>> choices;
        for (const ZelmCellInfo& cell : block.cells) {
            if (cell.kind != ZelmCellInfo::Kind::userInput)
                continue;
            for (const Value& value : legalValues(block, cell))
                choices.emplace_back(cell.name, value);
            if (legalValues(block, cell).empty() && constantDefault(cell) == "0" && cell.legal.highest > 1.0)
                active.inputs.emplace_back(cell.name,
                                           cell.type == ZelmCellInfo::Type::integer ? Value(1) : Value(0.5f));
        }
        for (std::size_t i = 0; i < choices.size(); ++i) {
            for (std::size_t j = i + 1; j < choices.size(); ++j) {
                Design design;
                Group& group = design.groups.change().emplace_back(active);
                group.inputs.insert(group.inputs.end(), {choices[i], choices[j]});
                const std::string words = std::string(block.name) + ": " + choices[i].first + " " +
                                          valueText(choices[i].second) + ", " + choices[j].first + " " +
                                          valueText(choices[j].second);
                try {
                    const GroupResult result = estimate(design).groups.front();
                    const bool off = std::any_of(std::begin(offWords), std::end(offWords), [&](const char* word) {
                        return words.find(std::string(" ") + word) != std::string::npos;
                    });
                    EXPECT_TRUE(result.onlyCarries || off || result.watts + result.offchipWatts != 0.0) << words;
                } catch (const Error& error) {
                    EXPECT_THAT(error.what(), HasSubstr(" don't go together")) << words;
                    ++refused;
                }
            }
        }
    }
    EXPECT_GT(refused, 0);
}

TEST(Meaning, PartialDataMayBeWorkedWith)
{
    const Design design = parseDesign("test.json", ONE("Wist", R"("LINK_WIDTH_A0": 16)"));
    const Estimate result = estimate(design, Curves::none, Gaps::warned);
    EXPECT_THAT(result.warnings, Contains(HasSubstr("LINK_WIDTH_A0 16, PCI_CHANNELS 2 don't go together")));
    const Design widths = parseDesign("test.json", ONE("Bram", R"("MODE": "BLKM18SDP")"));
    EXPECT_THAT(estimate(widths, Curves::none, Gaps::warned).warnings,
                Contains(HasSubstr("MODE BLKM18SDP don't go together")));
}

// But for pads at a voltage that the formulas don't know, of which examples/README.md speaks.
TEST(Meaning, ExamplesAreReadWithoutWarnings)
{
    for (const char* name : {"controller", "first", "gateway", "network", "radio", "vision"}) {
        const Estimate result = estimate(readDesign(std::string(ZELM_SOURCE_DIR "/examples/") + name + ".json"));
        EXPECT_THAT(result.warnings, testing::Each(HasSubstr("pads are estimated at 3.3 V"))) << name;
        EXPECT_FALSE(result.budgetBroken()) << name;
    }
}

TEST(Meaning, CommandsJudgeToo)
{
    const Scratch scratch;
    const std::string design = scratch.write("d.json", ONE("Bram", R"("MODE": "BLKM18")"));
    const auto expect = [&](const std::string& arguments, int code, const std::string& words) {
        const ToolRun result = scratch.run(arguments);
        EXPECT_EQ(result.code, code) << arguments << "\n" << result.err;
        EXPECT_THAT(result.err, HasSubstr(words)) << arguments;
    };
    expect("calc Bram MODE=RAMB36", 0, "zelm: warning: \"RAMB36\" is no word of MODE");
    expect("calc Bram NUM_BRAMS=-5", 0, "zelm: warning: NUM_BRAMS takes from 0, not -5");
    expect("calc Bram NUM_BRAMS=1 NUM_BRAMS=2", 2, "NUM_BRAMS is given twice");
    expect("calc Bram MODE=UninitializedString", 2, "is how an unset cell reads");
    expect("calc Bram NUM_BRAMS=2147483647", 2, "is how an unset cell reads");
    expect("calc Bram PORT_A_CLOCK=3.4028235e38", 2, "is how an unset cell reads");
    expect("sweep " + design + " --vary groups[0].inputs.MODE=BLKM36,RAMB36", 2, "(at groups[0].inputs.MODE = RAMB36)");
    expect("sweep " + design + " --vary groups[0].count=1 --vary groups[0].count=2", 2, "this place varies twice");
    expect("sweep " + design + " --vary groups[0].count=1 --vary groups[Bram].count=2", 2, "this place varies twice");
    expect("estimate --strict " + design, 0, "");
    const std::string doubtful = scratch.write("w.json", ONE("Signal", R"("TOGGLE_RATE": 12.5)"));
    expect("estimate " + doubtful, 0, "");
    expect("estimate --strict " + doubtful, 1, "");
    expect("estimate --strict --check " + doubtful, 1, "");
    const std::string gap = scratch.write("g.json", ONE("Wist", R"("LINK_WIDTH_A0": 16)"));
    expect("estimate " + gap, 2, "don't go together");
    expect("estimate --keep-going " + gap, 0, "");
}

TEST(Meaning, ABudgetKeptAtTypicalAndBrokenAtWorstIsSaid)
{
    const Scratch scratch;
    const auto design = [&](const std::string& judged) {
        return scratch.write("d.json", R"({"device": {"part": "zq4410"}, "environment": {"junctionTemperature": 80},
                                           "budgets": {"totalPower": 8)" +
                                           judged + R"(}, "groups": []})");
    };
    const Estimate bare = estimateOf(R"({"device": {"part": "zq4410"}, "environment": {"junctionTemperature": 80},
                                         "groups": []})");
    ASSERT_LT(bare.sides[0].totalWatts, 8.0); // the budget lies between the sides
    ASSERT_GT(bare.sides[1].totalWatts, 8.0);
    const ToolRun worse = scratch.run("estimate --check " + design(""));
    EXPECT_EQ(worse.code, 1);
    EXPECT_THAT(worse.out, HasSubstr("kept at TYP, BROKEN at MAX"));
    EXPECT_THAT(worse.err, HasSubstr("budget broken: total power: "));
    EXPECT_EQ(scratch.run("estimate --check " + design(R"(, "judgedAt": "TYP")")).code, 0);
    EXPECT_EQ(scratch.run("estimate --check " + design(R"(, "judgedAt": "MAX")")).code, 1);
}

TEST(Meaning, TheJunctionIsNeverBelowAmbient)
{
    for (const char* theta : {"0", "0.1", "1", "3"}) {
        const Estimate result = estimateOf(std::string(R"({"device": {"part": "zq4410"}, "groups": [], "environment":
            {"ambientTemperature": -40, "thetaJA": )") +
                                           theta + "}}");
        for (const Side& side : result.sides)
            EXPECT_TRUE(!side.settles() || side.junction >= -40.0) << theta << " " << side.process << side.junction;
    }
}

} // namespace

} // namespace zelm::test::meaningTest
