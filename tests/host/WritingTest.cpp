// What engineers write in a design: comments, units, parameters.

#include "Designs.h"
#include "Sweeps.h"
#include "Tool.h"

#include "host/base/Units.h"
#include "host/design/Sections.h"

#include "host/base/Json.h"

#include <clocale>

namespace zelm::test::writingTest {

using namespace zelm::host;
using testing::HasSubstr;

namespace {

// A design of one memory, with parameters and inputs that a test writes out.
std::string memory(const std::string& parameters, const std::string& inputs)
{
    return "{\"parameters\": {" + parameters + "},\n\"groups\": [{\"block\": \"Bram\", \"inputs\": {" + inputs + "}}]}";
}

Value read(const std::string& parameters, const std::string& cell, const std::string& value)
{
    const Design design = parseDesign("test.json", memory(parameters, "\"" + cell + "\": " + value));
    return design.groups.at(0).inputs.at(0).second;
}

double quantity(const std::string& text, const std::string& unit)
{
    const auto written = writtenQuantity(text);
    return written ? inUnit(*written, unit) : std::nan("");
}

TEST(Comments, AreReadOverAndLinesStayRight)
{
    const std::string text = "// a design\n{ /* of\n two lines */ \"name\": \"a // b /* c */\", // the name\n"
                             "\"groups\": [ // none\n{\"block\": /* here */ \"Bram\",\n/* 1\n2\n*/ \"inputs\":\n"
                             "{\"NUM_BRAMS\": 2 // so many\n, \"MODE\": /*\n*/ \"BLKM36\"}}]}\n// the end";
    const Design design = parseDesign("test.json", text);
    EXPECT_EQ(design.name, "a // b /* c */");
    EXPECT_EQ(design.source.at("name"), "test.json:3: name");
    EXPECT_EQ(design.source.at("groups"), "test.json:4: groups");
    EXPECT_EQ(design.source.at("groups[0].block"), "test.json:5: groups[0].block");
    EXPECT_EQ(design.source.at("groups[0].inputs"), "test.json:8: groups[0].inputs");
    EXPECT_EQ(design.source.at("groups[0].inputs.NUM_BRAMS"), "test.json:9: groups[0].inputs.NUM_BRAMS");
    EXPECT_EQ(design.source.at("groups[0].inputs.MODE"), "test.json:10: groups[0].inputs.MODE");
}

TEST(Comments, NumbersBeforeThemKeepTheirLine)
{
    JsonSource source{"test.json", {}};
    parseJson("[\n1// one\n,\n2/* two\n*/,\n3\n]", source);
    EXPECT_EQ(source.at("[0]"), "test.json:2: [0]");
    EXPECT_EQ(source.at("[1]"), "test.json:4: [1]");
    EXPECT_EQ(source.at("[2]"), "test.json:6: [2]");
}

TEST(Units, OfAllCellsAreKnown)
{
    for (const Block& block : blocks()) {
        for (const ZelmCellInfo& cell : block.cells) {
            if (cell.kind == ZelmCellInfo::Kind::userInput) {
                EXPECT_NE(findUnit(cell.unit), nullptr) << block.name << " " << cell.name << " " << cell.unit;
            }
        }
    }
}

TEST(Units, ConvertByTensAsIfTheNumberWereWrittenSo)
{
    struct Case {
        const char* text;
        const char* unit;
        double expected; // what the compiler makes of the decimal
    };
    const Case cases[] = {
        {"322 MHz", "MHz", 322.0},
        {"1.5 GHz", "MHz", 1500.0},
        {"322.265625MHz", "MHz", 322.265625},
        {"850 mV", "V", 0.85},
        {"780mV", "V", 0.78},
        {"0.1 V", "mV", 100.0},
        {"12.5 %", "", 0.125},
        {"0.1%", "", 0.001},
        {"25.6 GB/s", "MB/s", 25600.0},
        {"25.6 Gb/s", "MB/s", 3200.0},
        {"10 ms", "s", 0.01},
        {"40 Wh", "J", 144000.0},
        {"1 kWh", "J", 3.6e6},
        {"3.3e2 uA", "A", 3.3e-4},
        {"+1E3 kHz", "MHz", 1.0},
        {"-40 C", "C", -40.0},
        {"85 °C", "C", 85.0},
        {"85 degC", "C", 85.0},
        {"0.9 K/W", "C/W", 0.9},
        {"0.9 °C/W", "C/W", 0.9},
        {"5 µs", "ns", 5000.0},
        {"50 Ω", "ohm", 50.0},
        {"4 B", "bit", 32.0},
        {".5 W", "mW", 500.0},
        {"5. W", "W", 5.0},
        {"0.3 mV", "V", 0.0003},
        {"1.1 GHz", "MHz", 1100.0},
    };
    for (const Case& each : cases)
        EXPECT_EQ(quantity(each.text, each.unit), each.expected) << each.text << " in " << each.unit;
}

TEST(Units, BelongToTextsThatBeginAsANumber)
{
    for (const char* text : {"", "BLKM36", "250", "1e3", "MHz", "-", ".", "+ 3 V", "e5 V", "= 3 V"})
        EXPECT_FALSE(writtenQuantity(text)) << text;
    for (const char* text : {"3 MHZ", "3 mhz", "3 e", "3e V", "1,5 V", "0x10 V", "5 deg", "5 V V", "1e9999999 V"})
        EXPECT_THROW(writtenQuantity(text), Error) << text;
}

TEST(Units, GiveTheBitsThatPlainNumbersGive)
{
    // 322.266 isn't exact in binary: only one rounding to a double and one to a float make these the same.
    for (const char* number : {"250", "322.266", "0.1", "333.333333333", "16777217", "1e-7"}) {
        const Value plain = read("", "PORT_A_CLOCK", number);
        const std::string text(number);
        EXPECT_EQ(read("", "PORT_A_CLOCK", "\"" + text + " MHz\""), plain) << number;
        EXPECT_EQ(read("\"f\": \"" + text + " MHz\"", "PORT_A_CLOCK", "\"= f\""), plain) << number;
        EXPECT_EQ(read("\"f\": " + text, "PORT_A_CLOCK", "\"= f\""), plain) << number;
        EXPECT_EQ(read("\"f\": \"" + text + "\\tMHz\", \"g\": \"= f\"", "PORT_A_CLOCK", "\"=g\""), plain) << number;
        EXPECT_EQ(read("", "PORT_A_CLOCK", "\"= " + text + " MHz\""), plain) << number;
    }
    EXPECT_EQ(read("", "PORT_A_CLOCK", "\"0.25 GHz\""), Value(250.0f));
    EXPECT_EQ(read("", "PORT_A_CLOCK", "\"250000000 Hz\""), Value(250.0f));
    EXPECT_EQ(read("", "PORT_A_ENABLE_RATE", "\"12.5 %\""), Value(0.125f));
    EXPECT_EQ(read("", "NUM_BRAMS", "\"400 %\""), Value(4));
}

TEST(Units, StandInEveryField)
{
    const Design design = parseDesign("test.json", R"({
        "parameters": {"core": "780 mV", "hot": "100 C"},
        "environment": {"ambientTemperature": "45 C", "thetaJA": "1.4 C/W", "junctionLimit": "= hot"},
        "rails": {"VCCINT": "= core", "VCCAUX": "1500 mV"}, "regulators": {"VCCINT": {"maxCurrent": "30000 mA"}},
        "budgets": {"totalPower": "20 W", "junctionTemperature": "= hot - 5 C", "rails": {"VCCAUX": "2 A"}},
        "static": {"USED_BRAMS_ACTIVE": "= 2 * 3"},
        "groups": [{"block": "Bram", "count": "= 3 + 4"}]})");
    EXPECT_EQ(design.environment.ambient, 45.0);
    EXPECT_EQ(design.environment.cooling.at(0).thetaJA, 1.4);
    EXPECT_EQ(design.environment.junctionLimit, 100.0);
    EXPECT_EQ(design.rails, (std::map<std::string, float>{{"VCCAUX", 1.5f}, {"VCCINT", 0.78f}}));
    EXPECT_EQ(design.regulators, (std::map<std::string, double>{{"VCCINT", 30.0}}));
    EXPECT_EQ(design.budgets.totalPower, 20.0);
    EXPECT_EQ(design.budgets.junction, 95.0);
    EXPECT_EQ(design.budgets.rails, (std::map<std::string, double>{{"VCCAUX", 2.0}}));
    EXPECT_EQ(design.staticInputs.at(0).second, Value(6));
    EXPECT_EQ(design.groups.at(0).count, 7);
}

TEST(Units, StandInCalc)
{
    const Scratch scratch;
    const ToolRun plain = scratch.run("calc Bram PORT_A_CLOCK=322.266 PORT_A_ENABLE_RATE=0.125 NUM_BRAMS=8 --bits");
    ASSERT_EQ(plain.code, 0) << plain.err;
    EXPECT_EQ(scratch.run("calc Bram 'PORT_A_CLOCK=0.322266 GHz' PORT_A_ENABLE_RATE=12.5% NUM_BRAMS=8 --bits").out,
              plain.out);
    EXPECT_THAT(scratch.run("calc Bram 'PORT_A_CLOCK=850 mV'").err,
                HasSubstr("PORT_A_CLOCK: \"850 mV\" is a voltage, expected a frequency (MHz)"));
    EXPECT_THAT(scratch.run("calc Bram PORT_A_CLOCK=3MHZ").err, HasSubstr("there is no unit MHZ; did you mean MHz"));
    EXPECT_THAT(scratch.run("calc Bram NUM_BRAMS=50%").err, HasSubstr("NUM_BRAMS takes a whole number"));
}

TEST(Parameters, ComputeWithTheirUnits)
{
    struct Case {
        const char* parameters;
        const char* cell;
        const char* expression;
        Value expected;
    };
    const Case cases[] = {
        {R"("lanes": 8)", "NUM_BRAMS", "= lanes / 4", 2},
        {R"("lanes": 8)", "NUM_BRAMS", "=lanes/4", 2},
        {R"("f": "322 MHz")", "PORT_A_CLOCK", "= f / 2", 161.0f},
        {R"("f": "322 MHz")", "PORT_A_CLOCK", "= f + 10 MHz", 332.0f},
        {R"("f": "0.3 GHz", "g": "= f * 2")", "PORT_A_CLOCK", "= g - 100000 kHz", 500.0f},
        {R"("f": 300)", "PORT_A_CLOCK", "= f + 10", 310.0f},                                      // plain fits any
        {R"("rate": "25.6 GB/s", "width": "64 bit")", "PORT_A_CLOCK", "= rate / width", 3200.0f}, // 204.8e9 / 64
        {R"("period": "4 ns")", "PORT_A_CLOCK", "= 1 / period", 250.0f},
        {R"("p": "2 W", "i": "2.5 A")", "VCCINT", "= p / i", 0.8f},
        {R"("f": "300 MHz")", "PORT_A_CLOCK", "= max(f, 200 MHz)", 300.0f},
        {R"("f": "300 MHz")", "PORT_A_CLOCK", "= sqrt(f * f)", 300.0f},
        {R"("f": "300 MHz")", "NUM_BRAMS", "= f > 200 MHz ? 4 : 2", 4},
        {R"("f": "300 MHz")", "NUM_BRAMS", "= rint(f / 70 MHz)", 4}, // 4.29
        {R"("f": "300 MHz")", "PORT_A_CLOCK", "= f * 0", 0.0f},
        {R"("duty": "25 %")", "PORT_A_ENABLE_RATE", "= duty / 2", 0.125f},
        {R"("duty": 0.25)", "PORT_A_ENABLE_RATE", "= duty * 50 %", 0.125f},
        {R"("third": "= 1 / 3")", "NUM_BRAMS", "= third * 9", 3}, // whole but for its last bits
        {R"("mode": "BLKM36")", "MODE", "= mode", std::string("BLKM36")},
        {R"("mode": "BLKM36", "other": "= mode")", "MODE", "= other", std::string("BLKM36")},
        {R"("e": 3)", "NUM_BRAMS", "= e + 2e0", 5},
        {R"("last": "= first", "first": 7)", "NUM_BRAMS", "= last", 7}, // in any order
    };
    for (const Case& each : cases)
        EXPECT_EQ(read(each.parameters, each.cell, "\"" + std::string(each.expression) + "\""), each.expected)
            << each.parameters << " " << each.cell << " " << each.expression;
}

TEST(Parameters, ComputeTheSameInEveryLocale)
{
    const std::string before = std::setlocale(LC_ALL, nullptr);
    // Where none is installed that writes 0,5 the test holds all the same.
    for (const char* locale : {"de_DE.UTF-8", "fr_FR.UTF-8", "C"}) {
        std::setlocale(LC_ALL, locale);
        EXPECT_EQ(read("\"duty\": 0.5", "PORT_A_ENABLE_RATE", "\"= duty * 0.5\""), Value(0.25f)) << locale;
    }
    std::setlocale(LC_ALL, before.c_str());
}

TEST(Parameters, AreComputedOnceForAllSections)
{
    JsonSource source{"test.json", {}};
    const Json root = parseJson(R"({"parameters": {"n": 4, "f": "250 MHz"}, "rails": {"VCCINT": "800 mV"},
        "groups": [{"block": "Bram"}, {"block": "Bram", "name": "b", "inputs": {"NUM_BRAMS": "= n"}}]})",
                                source);
    Reading reading = startReading(root, source);
    EXPECT_EQ(readGroup(root["groups"][1], 1, reading).inputs.at(0).second, Value(4));
    EXPECT_EQ(readGroup(root["groups"][1], 1, reading).place, "groups[1]");
    EXPECT_EQ(readRails(root["rails"], reading).at("VCCINT"), 0.8f);
}

TEST(Parameters, Vary)
{
    const Scratch scratch;
    const std::string file = scratch.write(
        "d.json", memory(R"("fclk": "322 MHz", "n": 4)", R"("PORT_A_CLOCK": "= fclk / 2", "NUM_BRAMS": "= n")"));
    const auto swept = [&](const std::string& variation) { return sweepText(file, {variation}, SweepFormat::json); };
    const auto expected = [](const std::string& clock, const std::string& memories) {
        return estimateOf(memory("", "\"PORT_A_CLOCK\": " + clock + ", \"NUM_BRAMS\": " + memories)).dynamicWatts;
    };
    for (const char* variation : {"parameters.fclk=100:400:50", "parameters.fclk=100MHz:400MHz:50MHz",
                                  "parameters.fclk=100:0.4GHz:50", "parameters.fclk=100,150,200,250,300,350,400"}) {
        const Json points = Json::parse(swept(variation)).at("points");
        ASSERT_EQ(points.size(), 7u) << variation;
        EXPECT_EQ(points[3]["settings"]["parameters.fclk [MHz]"], 250) << variation;
        EXPECT_EQ(points[3]["dynamicWatts"], expected("125", "4")) << variation;
    }
    EXPECT_EQ(Json::parse(swept("parameters.n=8,9"))["points"][1]["dynamicWatts"], expected("161", "9"));
    const Json rails = Json::parse(swept("rails.VCCINT=780mV,0.78")).at("points");
    EXPECT_EQ(rails[0]["settings"]["rails.VCCINT"], "780mV");
    EXPECT_EQ(rails[0]["dynamicWatts"], rails[1]["dynamicWatts"]);
    EXPECT_EQ(Json::parse(swept("groups[0].inputs.PORT_A_CLOCK=100:200:100"))["points"][0]["dynamicWatts"],
              expected("100", "4"));
    EXPECT_THROW(swept("parameters.fclk=100V:200V:10V"), Error);
    EXPECT_THROW(swept("parameters.fclk=100MHZ:200:10"), Error);
}

class BadWriting : public testing::TestWithParam<Bad> {};

TEST_P(BadWriting, IsToldWithPlaceAndExpectation)
{
    const std::string message = messageOf(GetParam().text);
    for (const std::string& words : GetParam().words)
        EXPECT_THAT(message, HasSubstr(words)) << GetParam().text;
}

#define WITH(fields) "{" fields ", \"groups\": []}"
#define CLOCK "test.json:2: groups[0].inputs.PORT_A_CLOCK: "
#define COUNT "test.json:2: groups[0].inputs.NUM_BRAMS: "
#define MODE "test.json:2: groups[0].inputs.MODE: "
#define PARAMETER "test.json:1: parameters."

const Bad kBad[] = {
    // clang-format off
    {"CommentWithoutEnd", "{\n/* \"groups\": []}", {"test.json:2:", "syntax error", "comment"}},
    {"CommentOfOneSlash", "{\n/ x\n\"groups\": []}", {"test.json:2:2: ", "invalid comment"}},
    {"CommentOfOtherLanguages", "{\n# x\n\"groups\": []}", {"test.json:2:1: ", "syntax error"}},
    {"FieldBehindComment", "{ // one\n/* two\n*/ \"grups\": []}", {"test.json:3: grups: there is no field"}},
    {"UnknownUnit", memory("", R"("PORT_A_CLOCK": "322 MHZz")"), {CLOCK "there is no unit MHZz; did you mean MHz"}},
    {"UnitInOtherCase", memory("", R"("PORT_A_CLOCK": "322 mhz")"), {CLOCK "there is no unit mhz; did you mean MHz"}},
    {"UnitUnlikeAny", memory("", R"("PORT_A_CLOCK": "3 parsecs")"), {CLOCK "there is no unit parsecs; units: %, ppm, Hz, kHz, MHz"}},
    {"VoltsForClock", memory("", R"("PORT_A_CLOCK": "850 mV")"), {CLOCK "\"850 mV\" is a voltage, expected a frequency (MHz)"}},
    {"ShareForClock", memory("", R"("PORT_A_CLOCK": "50 %")"), {CLOCK "\"50 %\" is a plain number, expected a frequency (MHz)"}},
    {"ClockForShare", memory("", R"("PORT_A_ENABLE_RATE": "10 MHz")"), {"PORT_A_ENABLE_RATE: \"10 MHz\" is a frequency, expected a plain number"}},
    {"ClockForCount", memory("", R"("NUM_BRAMS": "10 MHz")"), {COUNT "\"10 MHz\" is a frequency, expected a plain number"}},
    {"HalfOfACount", memory("", R"("NUM_BRAMS": "50 %")"), {COUNT "expected a whole number, \"50 %\" is 0.5"}},
    {"NumberInQuotes", memory("", R"("PORT_A_CLOCK": "250")"), {CLOCK "expected a number, found the string \"250\""}},
    {"CommaForPoint", memory("", R"("PORT_A_CLOCK": "1,5 GHz")"), {CLOCK "there is no unit ,5 GHz"}},
    {"TwoUnits", memory("", R"("PORT_A_CLOCK": "5 MHz MHz")"), {CLOCK "there is no unit MHz MHz"}},
    {"BeyondDouble", memory("", R"("PORT_A_CLOCK": "1e400 MHz")"), {CLOCK "the number 1e400 is too large or too small"}},
    {"BeyondFloat", memory("", R"("PORT_A_CLOCK": "1e39 MHz")"), {CLOCK "\"1e39 MHz\" (1e+39) is outside"}},
    {"NegativeClock", memory("", R"("PORT_A_CLOCK": "-1 GHz")"), {CLOCK "PORT_A_CLOCK takes from 0, usually up to 10000 MHz, not -1000; it is written \"-1 GHz\""}},
    {"UnitForWord", memory("", R"("MODE": "36 bit")"), {MODE "\"36 bit\" is no word of MODE"}},
    {"AmperesForRail", WITH(R"("rails": {"VCCINT": "0.8 A"})"), {"test.json:1: rails.VCCINT: \"0.8 A\" is a current, expected a voltage (V)"}},
    {"RailTooHigh", WITH(R"("rails": {"VCCINT": "1 kV"})"), {"test.json:1: rails.VCCINT: \"1 kV\" (1000) is outside 0 to 100 V"}},
    {"VoltsForCurrent", WITH(R"("regulators": {"VCCINT": {"maxCurrent": "30 V"}})"), {"regulators.VCCINT.maxCurrent: \"30 V\" is a voltage, expected a current (A)"}},
    {"AmperesForPower", WITH(R"("budgets": {"totalPower": "20 A"})"), {"budgets.totalPower: \"20 A\" is a current, expected a power (W)"}},
    {"WattsForCurrent", WITH(R"("budgets": {"rails": {"VCCAUX": "2 W"}})"), {"budgets.rails.VCCAUX: \"2 W\" is a power, expected a current (A)"}},
    {"KelvinForTemperature", WITH(R"("environment": {"junctionTemperature": "350 K"})"), {"environment.junctionTemperature: there is no unit K"}},
    {"WattsForTheta", WITH(R"("environment": {"ambientTemperature": 25, "thetaJA": "1.4 W"})"), {"environment.thetaJA: \"1.4 W\" is a power, expected a thermal resistance (C/W)"}},
    {"TooHotInUnits", WITH(R"("environment": {"junctionTemperature": "2000 C"})"), {"environment.junctionTemperature: \"2000 C\" (2000) is outside -273 to 1000 degrees Celsius"}},
    {"FractionalCount", R"({"groups": [{"block": "Bram", "count": "= 3 / 2"}]})", {"test.json:1: groups[0].count: expected a whole number, \"= 3 / 2\" is 1.5"}},
    {"NegativeCount", R"({"groups": [{"block": "Bram", "count": "= 1 - 2"}]})", {"groups[0].count: \"= 1 - 2\" (-1) is outside 0 to 1000000 instances"}},
    {"ParametersNoObject", WITH(R"("parameters": [1])"), {"test.json:1: parameters: expected an object {...}, found the array [1]"}},
    {"ParameterOfList", memory(R"("a": [1])", ""), {PARAMETER "a: expected a number, a text with a unit, an expression or a word, found the array [1]"}},
    {"ParameterOfNull", memory(R"("a": null)", ""), {PARAMETER "a: expected a number"}},
    {"ParameterTwice", memory(R"("a": 1, "a": 2)", ""), {"test.json:1: the field \"a\" stands twice"}},
    {"ParameterNamedAsUnit", memory(R"("V": 1)", ""), {PARAMETER "V: V is a unit; choose another name"}},
    {"ParameterNamedAsFunction", memory(R"("min": 1)", ""), {PARAMETER "min: min is a function; choose another name"}},
    {"ParameterNameWithDash", memory(R"("f-clk": 1)", ""), {PARAMETER "f-clk: a parameter's name has letters, digits and _"}},
    {"ParameterNameOfDigits", memory(R"("2x": 1)", ""), {PARAMETER "2x: a parameter's name has letters"}},
    {"ParameterWithoutName", memory(R"("": 1)", ""), {"test.json:1: parameters.: a parameter's name has letters"}},
    {"ParameterOfUnknownUnit", memory(R"("f": "322 MHZz")", ""), {PARAMETER "f: there is no unit MHZz; did you mean MHz"}},
    {"ParameterOnItself", memory(R"("a": "= a + 1")", ""), {PARAMETER "a: stands on itself: a -> a"}},
    {"ParametersInACircle", memory(R"("a": "= b", "b": "= c * 2", "c": "= a + 1")", ""), {PARAMETER "a: stands on itself: a -> b -> c -> a"}},
    {"ParameterOfUnknownName", memory(R"("lanes": 4, "half": "= lane / 2")", ""), {PARAMETER "half: \"= lane / 2\" names lane, and there is no such parameter; did you mean lanes?"}},
    {"ParameterByZero", memory(R"("a": 0, "b": "= 1 / a")", ""), {PARAMETER "b: \"= 1 / a\" is no finite number: it divides by zero"}},
    {"ParameterOfZeroByZero", memory(R"("b": "= 0 / 0")", ""), {PARAMETER "b: \"= 0 / 0\" is no finite number"}},
    {"ParameterOfRootBelowZero", memory(R"-("b": "= sqrt(-1)")-", ""), {PARAMETER "b: \"= sqrt(-1)\" is no finite number: it divides by zero, or takes a function outside its domain"}},
    {"ParameterOfOneWrongFurtherOn", memory(R"("a": "= b + 1", "b": "= 1 / 0")", ""), {PARAMETER "b: \"= 1 / 0\" is no finite number"}},
    {"ByZero", memory(R"("n": 0)", R"("NUM_BRAMS": "= 4 / n")"), {COUNT "\"= 4 / n\" is no finite number: it divides by zero"}},
    {"UnknownParameter", memory(R"("lanes": 4)", R"("NUM_BRAMS": "= lane / 4")"), {COUNT "\"= lane / 4\" names lane, and there is no such parameter; did you mean lanes?"}},
    {"NoParameters", R"({"groups": [{"block": "Bram", "inputs": {"NUM_BRAMS": "= lanes"}}]})", {"NUM_BRAMS: \"= lanes\" names lanes, and there is no such parameter"}},
    {"NotWhole", memory(R"("lanes": 4)", R"("NUM_BRAMS": "= lanes / 3")"), {COUNT "expected a whole number, \"= lanes / 3\" is 1.333333333"}},
    {"VoltsForClockByParameter", memory(R"("v": "0.8 V")", R"("PORT_A_CLOCK": "= v")"), {CLOCK "\"= v\" is a voltage, expected a frequency (MHz)"}},
    {"VoltsForClockByExpression", memory(R"("v": "0.8 V")", R"("PORT_A_CLOCK": "= v * 2")"), {CLOCK "\"= v * 2\" is a voltage, expected a frequency (MHz)"}},
    {"SquareForClock", memory(R"("f": "3 MHz")", R"("PORT_A_CLOCK": "= f * f")"), {CLOCK "\"= f * f\" is in 1/s^2, expected a frequency (MHz)"}},
    {"ClockForCountByParameter", memory(R"("f": "3 MHz")", R"("NUM_BRAMS": "= f")"), {COUNT "\"= f\" is a frequency, expected a plain number"}},
    {"ClockAndPlainNumber", memory(R"("f": "3 MHz")", R"("PORT_A_CLOCK": "= f + 10")"), {CLOCK "\"= f + 10\" mixes units"}},
    {"ClockAndVolts", memory(R"("f": "3 MHz", "v": "1 V")", R"("PORT_A_CLOCK": "= f + v")"), {CLOCK "\"= f + v\" mixes units"}},
    {"SineOfClock", memory(R"("f": "3 MHz")", R"-("PORT_A_CLOCK": "= sin(f)")-"), {CLOCK "\"= sin(f)\" mixes units"}},
    {"RootOfClock", memory(R"("f": "3 MHz")", R"-("PORT_A_CLOCK": "= sqrt(f)")-"), {CLOCK "\"= sqrt(f)\" mixes units"}},
    {"ClockAgainstPlainNumber", memory(R"("f": "300 MHz")", R"("NUM_BRAMS": "= f > 200 ? 4 : 2")"), {COUNT "\"= f > 200 ? 4 : 2\" mixes units: it adds, compares"}},
    {"UnknownUnitInExpression", memory("", R"("PORT_A_CLOCK": "= 2 * 10 MHZz")"), {CLOCK "\"= 2 * 10 MHZz\" is no expression: there is no unit MHZz; did you mean MHz"}},
    {"NothingBehindSign", memory("", R"("PORT_A_CLOCK": "= ")"), {CLOCK "\"= \" has nothing behind its ="}},
    {"Unfinished", memory("", R"("PORT_A_CLOCK": "= 2 *")"), {CLOCK "\"= 2 *\" is no expression: "}},
    {"Parenthesis", memory("", R"("PORT_A_CLOCK": "= (2 * 3")"), {CLOCK "\"= (2 * 3\" is no expression: Missing parenthesis"}},
    {"TwoValues", memory("", R"("PORT_A_CLOCK": "= 1, 2")"), {CLOCK "\"= 1, 2\" has more than one value"}},
    {"Assignment", memory(R"("a": 1)", R"("PORT_A_CLOCK": "= a = 3")"), {CLOCK "\"= a = 3\" assigns; equality is written =="}},
    {"TextInExpression", memory("", R"("PORT_A_CLOCK": "= \"a\" + 1")"), {CLOCK, "is no expression: "}},
    {"LongExpression", memory("", "\"PORT_A_CLOCK\": \"= 0" + std::string(1001, '0') + "\""), {CLOCK, "has 1002 characters, at most 1000 are read"}},
    {"WordInNumber", memory(R"("mode": "BLKM36")", R"("NUM_BRAMS": "= mode + 1")"), {COUNT "\"= mode + 1\" computes with mode, which is the word \"BLKM36\""}},
    {"NumberForWord", memory(R"("mode": 36)", R"("MODE": "= mode")"), {MODE "\"= mode\" names mode, which is a number and no word"}},
    {"UnknownWordParameter", memory(R"("mode": "BLKM36")", R"("MODE": "= mod")"), {MODE "\"= mod\" names mod, and there is no such parameter; did you mean mode?"}},
    {"ParameterOfUnknownWord", memory(R"("mode": "BLKM37")", R"("MODE": "= mode")"), {MODE "\"BLKM37\" is no word of MODE; did you mean BLKM36"}},
    // clang-format on
};

INSTANTIATE_TEST_SUITE_P(All, BadWriting, testing::ValuesIn(kBad), [](const auto& one) { return one.param.name; });

TEST(Parameters, StandOnEachOtherToALimit)
{
    const auto chain = [](int length) {
        std::string parameters = "\"p0\": 1";
        for (int i = 1; i < length; ++i)
            parameters += ", \"p" + std::to_string(i) + "\": \"= p" + std::to_string(i - 1) + " + 0\"";
        // Read from its end first, so that all stand on each other.
        const std::size_t last = parameters.rfind(", ");
        return memory(parameters.substr(last + 2) + ", " + parameters.substr(0, last), "");
    };
    EXPECT_EQ(messageOf(chain(64)), "no error");
    EXPECT_THAT(messageOf(chain(65)), HasSubstr("parameters.p0: more than 64 parameters stand on each other"));
}

// tests/data/designs has the examples as they were written with plain numbers.
class OldWriting : public testing::TestWithParam<const char*> {};

TEST_P(OldWriting, GivesTheBitsOfTheNew)
{
    const std::string name = std::string(GetParam()) + ".json";
    const Estimate before = estimate(readDesign(ZELM_SOURCE_DIR "/tests/data/designs/" + name));
    const Estimate after = estimate(readDesign(ZELM_SOURCE_DIR "/examples/" + name));
    ASSERT_EQ(before.groups.size(), after.groups.size());
    for (std::size_t i = 0; i < before.groups.size(); ++i) {
        EXPECT_EQ(before.groups[i].name, after.groups[i].name);
        EXPECT_EQ(before.groups[i].watts, after.groups[i].watts) << after.groups[i].name;
        EXPECT_FALSE(after.groups[i].in.empty()) << after.groups[i].name;
    }
    ASSERT_EQ(before.sides.size(), after.sides.size());
    for (std::size_t i = 0; i < before.sides.size(); ++i) {
        EXPECT_EQ(before.sides[i].totalWatts, after.sides[i].totalWatts);
        EXPECT_EQ(before.sides[i].junction, after.sides[i].junction);
        EXPECT_EQ(before.sides[i].highestAmbient, after.sides[i].highestAmbient);
    }
    ASSERT_EQ(before.budgets.size(), after.budgets.size());
    for (std::size_t i = 0; i < before.budgets.size(); ++i)
        EXPECT_EQ(before.budgets[i].words(), after.budgets[i].words());
}

INSTANTIATE_TEST_SUITE_P(Examples, OldWriting, testing::Values("controller", "first", "gateway", "network"),
                         [](const auto& one) { return std::string(one.param); });

} // namespace

} // namespace zelm::test::writingTest
