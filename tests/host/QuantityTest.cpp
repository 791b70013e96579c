#include "Designs.h"

#include "host/study/Quantity.h"

#include <gmock/gmock.h>

#include <cmath>

namespace zelm::test::quantityTest {

using namespace zelm::host;
using testing::HasSubstr;

namespace {

constexpr const char* kDesign = R"({"device": {"part": "zq4410"},
  "environment": {"ambientTemperature": 40, "thetaJA": 1},
  "groups": [{"block": "Signal", "name": "wires", "inputs": {"SIGNAL_COUNT": 5000}},
             {"block": "Signal", "name": "a.b@c", "count": 3, "inputs": {"SIGNAL_COUNT": 200}},
             {"block": "Clock", "name": "clock"}]})";

double valueIn(const Estimate& estimate, const std::string& name)
{
    return valueOf(namedQuantity(name, estimate), estimate);
}

TEST(Quantity, IsWhatTheEstimateHas)
{
    const Estimate estimate = estimateOf(kDesign);
    ASSERT_EQ(estimate.sides.size(), 2u);
    const Side& typ = estimate.sides[0];
    const Side& max = estimate.sides[1];
    EXPECT_EQ(valueIn(estimate, "total"), typ.totalWatts);
    EXPECT_EQ(valueIn(estimate, "total@MAX"), max.totalWatts);
    EXPECT_EQ(valueIn(estimate, "dynamic@MAX"), estimate.dynamicWatts);
    EXPECT_EQ(valueIn(estimate, "static@TYP"), typ.staticWatts);
    EXPECT_EQ(valueIn(estimate, "junction@MAX"), max.junction);
    EXPECT_EQ(valueIn(estimate, "rail:VCCINT@MAX"), max.rail("VCCINT")->amperes());
    EXPECT_EQ(valueIn(estimate, "rail:MLORVPAVCC"), 0.0) << "nothing loads it";
    EXPECT_EQ(valueIn(estimate, "group:wires"), groupOf(estimate, "wires").watts);
    EXPECT_EQ(valueIn(estimate, "group:wires.SIGNAL_COUNT"), 5000.0);
    EXPECT_FLOAT_EQ(static_cast<float>(valueIn(estimate, "group:wires.SIGNAL_POWER") * 1e-6),
                    static_cast<float>(groupOf(estimate, "wires").watts))
        << "in microwatts";
    EXPECT_FLOAT_EQ(static_cast<float>(3.0 * valueIn(estimate, "group:a.b@c.SIGNAL_POWER@MAX") * 1e-6),
                    static_cast<float>(valueIn(estimate, "group:a.b@c")))
        << "a cell is of one unit, a group of all";
}

TEST(Quantity, IsNamedAsItIsAskedForWithItsSideAndUnit)
{
    const Estimate estimate = estimateOf(kDesign);
    const std::pair<const char*, const char*> rows[] = {{"total@TYP", "W"},
                                                        {"junction@MAX", "C"},
                                                        {"rail:VCCINT@TYP", "A"},
                                                        {"group:a.b@c@TYP", "W"},
                                                        {"group:wires.SIGNAL_POWER@TYP", "uW"},
                                                        {"group:wires.CLOCK_FREQ@MAX", "MHz"}};
    for (const auto& [name, unit] : rows) {
        EXPECT_EQ(namedQuantity(name, estimate).name(), name);
        EXPECT_EQ(namedQuantity(name, estimate).unit(), unit) << name;
    }
    EXPECT_EQ(namedQuantity("group:a.b@c", estimate).name(), "group:a.b@c@TYP");
    for (const NamedQuantity& quantity : quantitiesOf(estimate))
        EXPECT_EQ(namedQuantity(quantity.name(), estimate), quantity) << quantity.name();
}

TEST(Quantity, IsUnknownWhereTheDeviceRunsAway)
{
    const Estimate estimate = estimateOf(R"({"device": {"part": "zq4410"}, "groups": [{"block": "Signal"}],
        "environment": {"ambientTemperature": 100, "thetaJA": 100}})");
    EXPECT_EQ(valueIn(estimate, "rail:MLORVPAVCC"), 0.0) << "nothing leaks there, however hot";
    for (const char* name : {"total", "static", "junction", "rail:VCCINT"})
        EXPECT_TRUE(std::isnan(valueIn(estimate, name))) << name;
    EXPECT_EQ(valueIn(estimate, "dynamic"), estimate.dynamicWatts);
}

TEST(Quantity, MistakesNameTheNearestRightThing)
{
    const Estimate estimate = estimateOf(kDesign);
    const std::pair<std::string, const char*> rows[] = {
        {"totl", "totl: there is no such quantity; did you mean total?"},
        {"wires", "did you mean group:wires?"},
        {"VCCINT", "did you mean rail:VCCINT?"},
        {"", "there are total, dynamic, static, junction, rail:NAME"},
        {"total@MIN", "there is no process side MIN"},
        {"total@", "there are TYP or MAX"},
        {"rail:VCCIN", "there is no rail VCCIN; did you mean VCCINT"},
        {"group:wirs", "the design has no group wirs; did you mean wires?"},
        {"group:wires.SIGNAL_POWR", "did you mean SIGNAL_POWER"},
        {"group:wires.DRIVER_TYPE", "DRIVER_TYPE is no number"},
    };
    for (const auto& [name, words] : rows) {
        try {
            namedQuantity(name, estimate);
            ADD_FAILURE() << name << " is taken";
        } catch (const Error& error) {
            EXPECT_THAT(error.what(), HasSubstr(words)) << name;
        }
    }
    const Estimate without = estimateOf(R"({"groups": [{"block": "Signal"}]})");
    EXPECT_EQ(namedQuantity("total", without).name(), "total");
    EXPECT_THROW(namedQuantity("total@MAX", without), Error) << "no device, no sides";
    EXPECT_THROW(namedQuantity("junction", without), Error);
}

} // namespace

} // namespace zelm::test::quantityTest
