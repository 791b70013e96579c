#include "Designs.h"

#include <fstream>

namespace zelm::test::designTest {

using namespace zelm::host;
using testing::HasSubstr;

namespace {

class BadDesign : public testing::TestWithParam<Bad> {};

TEST_P(BadDesign, IsToldWithPlaceAndExpectation)
{
    const std::string message = messageOf(GetParam().text);
    for (const std::string& words : GetParam().words)
        EXPECT_THAT(message, HasSubstr(words)) << GetParam().text;
}

#define GROUPS(text) "{\"groups\": [" text "]}"
#define BRAM(inputs) GROUPS("{\"block\": \"Bram\", \"inputs\": {" inputs "}}")
#define WITH(fields) "{" fields ", \"groups\": []}"

const Bad kBad[] = {
    // clang-format off
    {"BrokenOnFirstLine", R"({"groups": [})", {"test.json:1:13: ", "syntax error", "'}'"}},
    {"BrokenOnThirdLine", "{\n  \"name\": \"x\",\n  \"groups\": nil\n}", {"test.json:3:14: ", "syntax error"}},
    {"Unfinished", "{\"groups\": [\n", {"test.json:2:", "unexpected end of input"}},
    {"Empty", "", {"test.json:1:1: ", "unexpected end of input"}},
    {"TextBehind", "{\"groups\": []}\nx", {"test.json:2:1: "}},
    {"NotAnObject", "[]", {"test.json: expected an object", "found the array []"}},
    {"FieldTwice", R"({"groups": [], "name": "a", "groups": []})", {"test.json:1: ", "\"groups\" stands twice"}},
    {"InputTwice", BRAM(R"("NUM_BRAMS": 1, "NUM_BRAMS": 2)"), {"test.json:1: ", "\"NUM_BRAMS\" stands twice"}},
    {"UnknownField", R"({"group": []})", {"test.json:1: group: there is no field", "did you mean groups?", "known fields: name"}},
    {"UnknownGroupField", GROUPS(R"({"block": "Bram", "conut": 2})"), {"test.json:1: groups[0].conut: there is no field of this name here", "did you mean count?"}},
    {"UnknownDeviceField", WITH(R"("device": {"part": "zq4410", "speedgrad": "1"})"), {"test.json:1: device.speedgrad: there is no field of this name here", "did you mean speedGrade?"}},
    {"UnknownEnvironmentField", WITH(R"("environment": {"thetaJa": 1})"), {"test.json:1: environment.thetaJa: there is no field of this name here", "did you mean thetaJA?"}},
    {"UnknownBudgetField", WITH(R"("budgets": {"totalpower": 1})"), {"test.json:1: budgets.totalpower: ", "did you mean totalPower?"}},
    {"UnknownCoolingField", WITH(R"("environment": {"ambientTemperature": 25, "cooling": [{"thetaJA": 1, "nme": "fan"}]})"), {"test.json:1: environment.cooling[0].nme: there is no field of this name here", "did you mean name?"}},
    {"UnknownRegulatorField", WITH(R"("regulators": {"VCCINT": {"maxCurrent": 1, "volts": 1}})"), {"test.json:1: regulators.VCCINT.volts: there is no field of this name here", "known fields: maxCurrent"}},
    {"UnknownBlock", GROUPS(R"({"block": "Brem"})"), {"test.json:1: groups[0].block: there is no block Brem", "did you mean Bram?"}},
    {"UnknownBlockUnlikeAny", GROUPS(R"({"block": "Xyzzyxyz"})"), {"test.json:1: groups[0].block: there is no block Xyzzyxyz", "zelm blocks lists all"}},
    {"NoBlock", GROUPS(R"({"name": "a"})"), {"test.json:1: groups[0]: a group needs a \"block\""}},
    {"BlockNotText", GROUPS(R"({"block": 3})"), {"test.json:1: groups[0].block: expected a text, found the number 3"}},
    {"StaticAsGroup", GROUPS(R"({"block": "Static"})"), {"test.json:1: groups[0].block: ", "put its inputs under \"static\""}},
    {"UnknownCell", BRAM(R"("NUM_BRAM": 1)"), {"test.json:1: groups[0].inputs.NUM_BRAM: block Bram has no input NUM_BRAM", "did you mean NUM_BRAMS?"}},
    {"UnknownCellOfSecondGroup", GROUPS(R"({"block": "Bram"}, {"block": "Signal", "inputs": {"CLOCK_FRQ": 1}})"), {"test.json:1: groups[1].inputs.CLOCK_FRQ: ", "did you mean CLOCK_FREQ?"}},
    {"ComputedCell", BRAM(R"("VCCINT_POWER": 1)"), {"test.json:1: groups[0].inputs.VCCINT_POWER: ", "is computed, not an input"}},
    {"TextForInt", BRAM(R"("NUM_BRAMS": "many")"), {"test.json:1: groups[0].inputs.NUM_BRAMS: expected a whole number, found the string \"many\""}},
    {"FractionForInt", BRAM(R"("NUM_BRAMS": 1.5)"), {"test.json:1: groups[0].inputs.NUM_BRAMS: expected a whole number, found the number 1.5"}},
    {"BooleanForInt", BRAM(R"("NUM_BRAMS": true)"), {"test.json:1: groups[0].inputs.NUM_BRAMS: expected a whole number, found the boolean true"}},
    {"NullForFloat", BRAM(R"("PORT_A_CLOCK": null)"), {"test.json:1: groups[0].inputs.PORT_A_CLOCK: expected a number, found null"}},
    {"TextForFloat", BRAM(R"("PORT_A_CLOCK": "250")"), {"test.json:1: groups[0].inputs.PORT_A_CLOCK: expected a number, found the string \"250\""}},
    {"NumberForText", BRAM(R"("MODE": 18)"), {"test.json:1: groups[0].inputs.MODE: expected a text, found the number 18"}},
    {"NumberBeyondDouble", BRAM(R"("PORT_A_CLOCK": 1e999)"), {"test.json:1: groups[0].inputs.PORT_A_CLOCK: ", "number overflow", "1e999"}},
    {"NumberBeyondFloat", BRAM(R"("PORT_A_CLOCK": 1e39)"), {"test.json:1: groups[0].inputs.PORT_A_CLOCK: 1e+39 is outside", "MHz"}},
    {"NumberBelowFloat", BRAM(R"("PORT_A_CLOCK": -1e39)"), {"test.json:1: groups[0].inputs.PORT_A_CLOCK: -1e+39 is outside"}},
    {"LargestFloatIsUnset", BRAM(R"("PORT_A_CLOCK": 3.4028235e38)"), {"test.json:1: groups[0].inputs.PORT_A_CLOCK: ", "is outside"}},
    {"NotANumber", BRAM(R"("PORT_A_CLOCK": NaN)"), {"test.json:1:", "syntax error"}},
    {"IntTooLarge", BRAM(R"("NUM_BRAMS": 3000000000)"), {"test.json:1: groups[0].inputs.NUM_BRAMS: 3000000000 is outside -2147483648 to 2147483645"}},
    {"IntTooSmall", BRAM(R"("NUM_BRAMS": -2147483649)"), {"test.json:1: groups[0].inputs.NUM_BRAMS: -2147483649 is outside"}},
    {"LargestIntIsUnset", BRAM(R"("NUM_BRAMS": 2147483647)"), {"test.json:1: groups[0].inputs.NUM_BRAMS: 2147483647 is outside"}},
    {"NextToLargestIntIsNoNumber", BRAM(R"("NUM_BRAMS": 2147483646)"), {"test.json:1: groups[0].inputs.NUM_BRAMS: 2147483646 is outside"}},
    {"InputsNotAnObject", GROUPS(R"({"block": "Bram", "inputs": [1]})"), {"test.json:1: groups[0].inputs: expected an object of inputs by cell name, found the array [1]"}},
    {"FractionalCount", GROUPS(R"({"block": "Bram", "count": 1.5})"), {"test.json:1: groups[0].count: expected a whole number"}},
    {"NegativeCount", GROUPS(R"({"block": "Bram", "count": -1})"), {"test.json:1: groups[0].count: -1 is outside 0 to 1000000 instances"}},
    {"HugeCount", GROUPS(R"({"block": "Bram", "count": 1000001})"), {"test.json:1: groups[0].count: 1000001 is outside"}},
    {"CountNotNumber", GROUPS(R"({"block": "Bram", "count": "2"})"), {"test.json:1: groups[0].count: expected a whole number"}},
    {"NoGroups", R"({"name": "x"})", {"test.json: a design needs \"groups\""}},
    {"GroupsNotList", R"({"groups": {"block": "Bram"}})", {"test.json:1: groups: expected a list [...], found the object"}},
    {"GroupNotObject", GROUPS("\"Bram\""), {"test.json:1: groups[0]: expected an object {...}, found the string \"Bram\""}},
    {"NameTwice", GROUPS(R"({"block": "Bram", "name": "a"}, {"block": "Plam", "name": "a"})"), {"test.json:1: groups[1].name: two groups are named \"a\""}},
    {"NoNameTwice", GROUPS(R"({"block": "Bram"}, {"block": "Bram"})"), {"test.json:1: groups[1].name: two groups are named \"Bram\""}},
    {"NameNotText", WITH(R"("name": 1)"), {"test.json:1: name: expected a text, found the number 1"}},
    {"UnknownRail", WITH(R"("rails": {"VCCIN": 0.8})"), {"test.json:1: rails.VCCIN: there is no rail", "VCCINT"}},
    {"UnknownRegulatorRail", WITH(R"("regulators": {"VCCAX": {"maxCurrent": 1}})"), {"test.json:1: regulators.VCCAX: there is no rail", "VCCAUX"}},
    {"UnknownBudgetRail", WITH(R"("budgets": {"rails": {"VCCRM": 1}})"), {"test.json:1: budgets.rails.VCCRM: there is no rail", "VCCRAM"}},
    {"VoltsTooHigh", WITH(R"("rails": {"VCCINT": 800})"), {"test.json:1: rails.VCCINT: 800 is outside 0 to 100 V"}},
    {"VoltsNegative", WITH(R"("rails": {"VCCINT": -0.8})"), {"test.json:1: rails.VCCINT: -0.8 is outside"}},
    {"VoltsText", WITH(R"("rails": {"VCCINT": "low"})"), {"test.json:1: rails.VCCINT: expected a number, found the string \"low\""}},
    {"RailsList", WITH(R"("rails": [0.8])"), {"test.json:1: rails: expected an object {...}, found the array [0.8]"}},
    {"RegulatorWithoutCurrent", WITH(R"("regulators": {"VCCINT": {}})"), {"test.json:1: regulators.VCCINT: a regulator needs its \"maxCurrent\""}},
    {"RegulatorNumber", WITH(R"("regulators": {"VCCINT": 30})"), {"test.json:1: regulators.VCCINT: expected {\"maxCurrent\": amperes}, found the number 30"}},
    {"BudgetNegative", WITH(R"("budgets": {"totalPower": -1})"), {"test.json:1: budgets.totalPower: -1 is outside"}},
    {"JunctionAndAmbient", WITH(R"("environment": {"junctionTemperature": 80, "ambientTemperature": 25, "thetaJA": 1})"), {"test.json:1: environment: ", "not both"}},
    {"AmbientWithoutTheta", WITH(R"("environment": {"ambientTemperature": 25})"), {"test.json:1: environment: ambientTemperature needs thetaJA"}},
    {"ThetaWithoutAmbient", WITH(R"("environment": {"thetaJA": 1})"), {"test.json:1: environment: thetaJA and cooling need an ambientTemperature"}},
    {"CoolingEmpty", WITH(R"("environment": {"ambientTemperature": 25, "cooling": []})"), {"test.json:1: environment.cooling: expected a list"}},
    {"CoolingWithoutTheta", WITH(R"("environment": {"ambientTemperature": 25, "cooling": [{"thetaJA": 1}, {"name": "fan"}]})"), {"test.json:1: environment.cooling[1]: a cooling needs its \"thetaJA\""}},
    {"ThetaNegative", WITH(R"("environment": {"ambientTemperature": 25, "thetaJA": -1})"), {"test.json:1: environment.thetaJA: -1 is outside 0 to 1000 degrees per watt"}},
    {"BelowAbsoluteZero", WITH(R"("environment": {"junctionTemperature": -300})"), {"test.json:1: environment.junctionTemperature: -300 is outside -273"}},
    {"DeviceWithoutPart", WITH(R"("device": {"process": "TYP"})"), {"test.json:1: device: a device needs its \"part\""}},
    {"DeviceText", WITH(R"("device": "zq4410")"), {"test.json:1: device: expected an object {...}, found the string \"zq4410\""}},
    {"UnknownPart", WITH(R"("device": {"part": "zq4410_ktba3310_1_MP_i_X"})"), {"test.json:1: device.part: there is no part or device zq4410_ktba3310_1_MP_i_X", "did you mean zq4410_ktba3310_1_MP_i_S"}},
    {"UnknownDevice", WITH(R"("device": {"part": "ZQ4411"})"), {"test.json:1: device.part: there is no part or device ZQ4411", "did you mean ZQ4410", "zelm parts lists all"}},
    {"UnknownProcess", WITH(R"("device": {"part": "zq4410", "process": "typ"})"), {"test.json:1: device.process: there is no process typ; legal: MAX, TYP"}},
    {"UnknownSpeedGrade", WITH(R"("device": {"part": "zq4410", "speedGrade": "9"})"), {"there is no speed grade", "9; legal: ", "3"}},
    {"UnknownPowerScreen", WITH(R"("device": {"part": "zq4410", "powerScreen": "X"})"), {"there is no power screen", "X; legal: LOW, STANDARD"}},
    {"UnknownTemperatureGrade", WITH(R"("device": {"part": "zq4410", "temperatureGrade": "X"})"), {"there is no temperature grade", "X; legal: EXTENDED, INDUSTRIAL, MILITARY"}},
    {"UnknownOverdrive", WITH(R"("device": {"part": "zq4410", "overdrive": "Yes"})"), {"there is no overdrive", "Yes; legal: OD_NO, OD_YES"}},
    {"ContradictoryGrades", WITH(R"("device": {"part": "zq4410_ktba3310_1_MP_i_S", "speedGrade": "2"})"), {"test.json:1: device.speedGrade: the design says 2, its part says 1"}},
    {"OtherFamily", WITH(R"("device": {"part": "zq4410_ktba3310_1_MP_i_S", "family": "Halden Rim Series"})"), {"test.json:1: device.family: zq4410_ktba3310_1_MP_i_S is not in the Halden Rim Series; it is in the Halden Axis Series"}},
    {"UnknownStaticCell", WITH(R"("static": {"USED_BRAM_ACTIVE": 1})"), {"test.json:1: static.USED_BRAM_ACTIVE: block Static has no input", "USED_BRAMS_ACTIVE"}},
    {"ComputedStaticCell", WITH(R"("static": {"TOTAL_STATIC_POWER": 1})"), {"test.json:1: static.TOTAL_STATIC_POWER: ", "is computed, not an input"}},
    {"StaticDeviceName", WITH(R"("static": {"DEVICE_NAME": "ZQ4410"})"), {"test.json:1: static.DEVICE_NAME: give it as device.part"}},
    {"StaticProcess", WITH(R"("static": {"PROCESS": "MAX"})"), {"test.json:1: static.PROCESS: give it as device.process"}},
    {"StaticSpeedGrade", WITH(R"("static": {"SPEED_GRADE": "1"})"), {"static.SPEED_GRADE: give it as device.speedGrade"}},
    {"StaticVoltageGrade", WITH(R"("static": {"VOLTAGE_GRADE": "HP"})"), {"static.VOLTAGE_GRADE: give it as device.voltageGrade"}},
    {"StaticPowerScreen", WITH(R"("static": {"POWER_SCREEN": "LOW"})"), {"static.POWER_SCREEN: give it as device.powerScreen"}},
    {"StaticTemperatureGrade", WITH(R"("static": {"TEMP_GRADE": "MILITARY"})"), {"static.TEMP_GRADE: give it as device.temperatureGrade"}},
    {"StaticOverdrive", WITH(R"("static": {"OVER_DRIVE": "OD_YES"})"), {"static.OVER_DRIVE: give it as device.overdrive"}},
    {"StaticJunction", WITH(R"("static": {"JUNCTION_TEMPERATURE": 85})"), {"static.JUNCTION_TEMPERATURE: give it as environment.junctionTemperature"}},
    {"LineOfCell", "{\n\"groups\": [\n{\"block\": \"Bram\"},\n{\"block\": \"Bram\", \"name\": \"b\",\n\"inputs\": {\n\"NUM_BRAMS\":\n1.5\n}}]}", {"test.json:6: groups[1].inputs.NUM_BRAMS: "}},
    {"LineOfEnclosing", "{\"groups\": [{\"block\": \"Bram\"},\n\n{\"name\": \"x\"}]}", {"test.json:3: groups[1]: a group needs"}},
    {"LineOfNumberInList", "{\"groups\": [\n17\n]}", {"test.json:2: groups[0]: expected an object"}},
    {"LineOfTextInList", "{\"groups\": [{\"block\": \"Bram\"},\n\"Bram\"\n]}", {"test.json:2: groups[1]: expected an object"}},
    {"LineOfUnknownField", "{\n\"groups\": [],\n\"budget\": {}\n}", {"test.json:3: budget: there is no field", "did you mean budgets?"}},
    {"LineOfFieldTwice", "{\n\"groups\": [],\n\"name\": \"a\",\n\"name\": \"b\"\n}", {"test.json:4: the field \"name\" stands twice"}},
    {"LineOfOverflow", "{\n\"rails\":\n{\"VCCINT\": 1e999\n}}", {"test.json:3: rails.VCCINT: number overflow"}},
    {"LineOfRail", "{\n\"groups\": [],\n\"rails\": {\n\"VCCIN\": 0.8}}", {"test.json:4: rails.VCCIN: there is no rail"}},
    {"LineOfPart", "{\n\"groups\": [],\n\"device\": {\n\"part\": \"ZQ4411\"}}", {"test.json:4: device.part: there is no part"}},
    {"LineOfGradeNotGiven", "{\"groups\": [],\n\"device\": {\n\"part\": \"zq4410\",\n\"voltageGrade\": \"XP\"}}", {"test.json:4: device.voltageGrade: there is no voltage grade"}},
    // clang-format on
};

INSTANTIATE_TEST_SUITE_P(All, BadDesign, testing::ValuesIn(kBad), [](const auto& one) { return one.param.name; });

TEST(Design, UnreadableFilesAreNamed)
{
    const std::pair<std::string, std::string> files[] = {
        {"/nonexistent/design.json", "/nonexistent/design.json: cannot be read: there is no such file"},
        {"/", "/: cannot be read: is a folder, not a file"},
        {"/dev/null", "/dev/null: is empty"},
        {"", "the name of the file to read is empty"},
    };
    for (const auto& [file, words] : files) {
        try {
            readDesign(file);
            ADD_FAILURE() << file << " was read";
        } catch (const Error& error) {
            EXPECT_EQ(error.what(), words);
        }
    }
}

TEST(Design, ChangesOfACopyAreItsOwn)
{
    const Design design = parseDesign("test.json", GROUPS(R"({"block": "Bram", "name": "a"})"));
    Design copy = design;
    EXPECT_EQ(&copy.groups[0], &design.groups[0]) << "shared as long as they are the same";
    copy.groups.change()[0].name = "b";
    EXPECT_EQ(design.groups[0].name, "a");
    EXPECT_EQ(copy.groups[0].name, "b");
    copy.groups.change().push_back(design.groups[0]);
    EXPECT_EQ(copy.groups.size(), 2u);
    EXPECT_EQ(design.groups.size(), 1u);
    EXPECT_TRUE(Design().groups.empty());
}

TEST(Design, TakesEveryFieldInItsOwnPlace)
{
    const Design design = parseDesign("test.json", R"({
        "$schema": "x", "description": "y", "name": "n",
        "device": {"part": "p", "family": "f", "process": "MAX", "speedGrade": "1", "voltageGrade": "v",
                   "powerScreen": "s", "temperatureGrade": "t", "overdrive": "o"},
        "environment": {"ambientTemperature": 25, "junctionLimit": 90,
                        "cooling": [{"thetaJA": 1}, {"name": "fan", "thetaJA": 0.5}]},
        "rails": {"VCCINT": 0.75}, "regulators": {"VCCAUX": {"maxCurrent": 3}},
        "budgets": {"totalPower": 4, "junctionTemperature": 80, "rails": {"VCCRAM": 5}, "judgedAt": "MAX"},
        "static": {"USED_BRAMS_ACTIVE": 6},
        "groups": [{"block": "Bram", "count": 7.0, "inputs": {"NUM_BRAMS": 8.0, "PORT_A_CLOCK": 9, "MODE": "BLKM36"}}]})");
    EXPECT_EQ(design.name, "n");
    EXPECT_EQ(design.device->part + design.device->family + design.device->process + design.device->speedGrade +
                  design.device->voltageGrade + design.device->powerScreen + design.device->temperatureGrade +
                  design.device->overdrive,
              "pfMAX1vsto");
    EXPECT_EQ(design.environment.ambient, 25.0);
    EXPECT_EQ(design.environment.junction, std::nullopt);
    EXPECT_EQ(design.environment.junctionLimit, 90.0);
    std::string cooling;
    for (const Cooling& c : design.environment.cooling)
        cooling += c.name + "=" + std::to_string(c.thetaJA) + ";";
    EXPECT_EQ(cooling, "cooling 1=1.000000;fan=0.500000;");
    EXPECT_EQ(design.rails, (std::map<std::string, float>{{"VCCINT", 0.75f}}));
    EXPECT_EQ(design.regulators, (std::map<std::string, double>{{"VCCAUX", 3.0}}));
    EXPECT_EQ(design.budgets.totalPower, 4.0);
    EXPECT_EQ(design.budgets.junction, 80.0);
    EXPECT_EQ(design.budgets.judgedAt, "MAX");
    EXPECT_EQ(design.groups.at(0).place, "groups[0]");
    EXPECT_EQ(design.budgets.rails, (std::map<std::string, double>{{"VCCRAM", 5.0}}));
    using Inputs = std::vector<std::pair<std::string, Value>>;
    EXPECT_EQ(design.staticInputs, (Inputs{{"USED_BRAMS_ACTIVE", 6}}));
    ASSERT_EQ(design.groups.size(), 1u);
    EXPECT_EQ(design.groups[0].name, "Bram");
    EXPECT_EQ(design.groups[0].count, 7);
    EXPECT_EQ(design.groups[0].inputs,
              (Inputs{{"NUM_BRAMS", 8}, {"PORT_A_CLOCK", 9.0f}, {"MODE", std::string("BLKM36")}}));
}

} // namespace

} // namespace zelm::test::designTest
