#include "Designs.h"

#include "device/ZelmOrvaneStaticModel.h"
#include "host/blocks/Rails.h"
#include "host/blocks/RollUp.h"
#include "host/design/ResolvedDevice.h"

#include <cmath>
#include <filesystem>
#include <map>
#include <set>

using namespace zelm::test;
using namespace zelm::host;

namespace {

std::vector<std::string> exampleNames()
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(ZELM_SOURCE_DIR "/examples")) {
        if (entry.path().extension() == ".json")
            names.push_back(entry.path().stem().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

void expectClose(double actual, double expected, const std::string& where)
{
    EXPECT_LE(std::fabs(actual - expected), 1e-9 * std::max(std::fabs(expected), 1e-12))
        << where << ": " << actual << ", by hand " << expected;
}

double numberOf(const Instance& instance, const Block& block, std::string_view cell)
{
    const Value value = instance.get(block.cell(cell));
    if (const int* whole = std::get_if<int>(&value))
        return *whole;
    const float* real = std::get_if<float>(&value);
    return real ? static_cast<double>(*real) : std::nan("");
}

// The published units of outputs, as factors to W or A.
const std::map<std::string_view, double> kFactors{{"uW", 1e-6}, {"mW", 1e-3}, {"W", 1.0},
                                                  {"uA", 1e-6}, {"mA", 1e-3}, {"A", 1.0}};

// How many units the group's input counts where the block computes one of them.
double unitsOf(const GroupResult& group)
{
    static const std::map<std::string_view, std::string_view> cells{{"DspCplx", "NUM_DSP"},
                                                                    {"Lorv", "NUM_LORVQUAD_CHANNELS"},
                                                                    {"Lorvp", "NUM_LORVP_QUAD_CHANNELS"},
                                                                    {"Sarn", "NUM_SARNQUAD_CHANNELS"}};
    const auto cell = cells.find(group.block->name);
    return cell == cells.end() ? 1.0 : std::get<int>(inputOf(group, cell->second).value);
}

class Example : public testing::TestWithParam<std::string> {
protected:
    const Estimate estimate = zelm::host::estimate(readDesign(ZELM_SOURCE_DIR "/examples/" + GetParam() + ".json"));
};

TEST_P(Example, GroupsRailsAndTotalAddUp)
{
    std::map<std::string, double> railWatts;
    double dynamic = 0.0;
    double offchip = 0.0;
    for (const GroupResult& group : estimate.groups) {
        // The block alone, with the group's inputs.
        const auto instance = group.block->create();
        for (const InputValue& input : group.inputs)
            instance->set(group.block->input(input.cell), input.value);
        group.block->load();
        instance->calculate();
        double watts = 0.0;
        double outside = 0.0;
        for (const Output& output : outputs()) {
            if (output.block != group.block->name || output.role == Role::shown)
                continue;
            const std::string_view unit = group.block->cell(output.cell).unit;
            const auto factor = kFactors.find(unit);
            ASSERT_NE(factor, kFactors.end()) << group.name << " " << output.cell << " in " << unit;
            double amount = numberOf(*instance, *group.block, output.cell) * factor->second;
            if (!output.scaling.empty())
                amount *= numberOf(*instance, *group.block, output.scaling);
            std::string rail(output.rail);
            if (rail == "VCCO")
                rail = bankRail(std::get<float>(inputOf(group, group.block->name == "Selv" ? "VCCO15" : "VCCO").value));
            if (unit.ends_with("A")) {
                for (const RailResult& result : estimate.side().rails) {
                    if (result.name == rail) {
                        amount *= result.volts;
                        break;
                    }
                }
            }
            amount *= group.count * unitsOf(group);
            if (output.role == Role::offchip)
                outside += amount;
            else {
                watts += amount;
                railWatts[rail] += amount;
            }
        }
        expectClose(group.watts, watts, "group " + group.name);
        expectClose(group.offchipWatts, outside, "off chip of group " + group.name);
        dynamic += watts;
        offchip += outside;
    }
    expectClose(estimate.dynamicWatts, dynamic, "dynamic power");
    expectClose(estimate.offchipWatts, offchip, "off-chip power");
    for (const Side& side : estimate.sides) {
        for (const RailResult& rail : side.rails) {
            expectClose(rail.dynamicWatts, railWatts[rail.name], side.process + " rail " + rail.name);
            if (rail.volts > 0.0 && estimate.design.rails.contains(rail.name))
                expectClose(rail.volts, estimate.design.rails.at(rail.name), "volts of " + rail.name);
        }
        expectClose(side.totalWatts, dynamic + side.staticWatts, side.process + " total");
    }
}

TEST_P(Example, StaticPowerIsTheModelsAtTheJunction)
{
    if (!estimate.design.device)
        GTEST_SKIP() << "a design without a device";
    const Block& block = zelm::host::block("Static");
    block.load();
    const ResolvedDevice device = resolve(estimate.design);
    for (const Side& side : estimate.sides) {
        ZelmOrvaneStaticParams params;
        const auto set = [&](std::string_view cellName, const Value& value) {
            const ZelmCellInfo& cell = block.input(cellName);
            const std::string name(cellName);
            if (cell.type == ZelmCellInfo::Type::integer)
                params[ZelmOrvaneStaticParams::string_to_int_enum(name)] = std::get<int>(value);
            else if (cell.type == ZelmCellInfo::Type::real)
                params[ZelmOrvaneStaticParams::string_to_float_enum(name)] = std::get<float>(value);
            else
                params[ZelmOrvaneStaticParams::string_to_string_enum(name)] = std::get<std::string>(value);
        };
        for (const auto& [cell, word] : device.staticInputs)
            set(cell, word);
        set("PROCESS", side.process);
        const bool managed = std::any_of(estimate.groups.begin(), estimate.groups.end(),
                                         [](const GroupResult& group) { return group.block->name == "Harl"; });
        set("HAS_HARL_IO", std::string(managed ? "YES" : "NO"));
        for (const Carried& carried : estimate.carried) {
            if (carried.to.starts_with("Static.")) {
                const std::string cell = carried.to.substr(7);
                set(cell, parseValue(block.input(cell), carried.value));
            }
        }
        for (const auto& [rail, volts] : estimate.design.rails)
            set(rail, volts);
        for (const auto& [cell, value] : estimate.design.staticInputs)
            set(cell, value);
        set("JUNCTION_TEMPERATURE", static_cast<float>(side.junction));
        ZelmOrvaneStaticModel::getGlobal().calculate(params);

        double watts = 0.0;
        std::set<std::string> seen;
        for (const RailResult& rail : side.rails) {
            seen.insert(rail.name);
            const double amperes = params[ZelmOrvaneStaticParams::string_to_float_enum(rail.name + "_STATIC_CURRENT")];
            const double volts = params[ZelmOrvaneStaticParams::string_to_float_enum(rail.name)];
            EXPECT_EQ(rail.staticAmperes, amperes) << side.process << " " << rail.name;
            EXPECT_EQ(rail.volts, volts) << side.process << " " << rail.name;
            expectClose(rail.staticWatts, amperes * volts, side.process + " static power of " + rail.name);
            if (rail.name != "VCCINTWIST" && rail.name != "VCCME") // within VCCINT's
                watts += amperes * volts;
        }
        expectClose(side.staticWatts, watts, side.process + " static power");
        for (const std::string& rail : railNames())
            EXPECT_TRUE(seen.contains(rail)) << rail;
    }
}

TEST_P(Example, JunctionIsTheFixedPointOfItsOwnCurve)
{
    if (!estimate.side().thermal || !estimate.side().thermal->converged)
        GTEST_SKIP() << "no junction to be found";
    const Side& side = estimate.side();
    const double theta = estimate.design.environment.cooling.front().thetaJA;
    // Plain iteration from ambient: each step is the design at a given junction.
    Design given = estimate.design;
    double junction = *estimate.design.environment.ambient;
    for (int step = 0; step < 60; ++step) {
        given.environment = {};
        given.environment.junction = junction;
        const double next =
            *estimate.design.environment.ambient + theta * zelm::host::estimate(given).side().totalWatts;
        if (std::fabs(next - junction) < 1e-6)
            break;
        junction = next;
    }
    EXPECT_NEAR(side.junction, junction, 0.001) << estimate.design.source.file;
    EXPECT_NEAR(side.junction, *estimate.design.environment.ambient + theta * side.totalWatts, 0.001);
}

INSTANTIATE_TEST_SUITE_P(All, Example, testing::ValuesIn(exampleNames()), [](const auto& one) { return one.param; });

TEST(RollUp, ListsOnlyCellsAndRailsThatExist)
{
    const std::vector<std::string> rails = railNames();
    std::set<std::string> rows;
    for (const Output& output : outputs()) {
        const std::string where = std::string(output.block) + " " + std::string(output.cell);
        EXPECT_TRUE(rows.insert(where).second) << where << " stands twice";
        const ZelmCellInfo* cell = block(output.block).findCell(output.cell);
        ASSERT_NE(cell, nullptr) << where;
        EXPECT_NE(cell->kind, ZelmCellInfo::Kind::userInput) << where;
        EXPECT_TRUE(kFactors.contains(cell->unit)) << where << " in " << cell->unit;
        if (!output.scaling.empty()) {
            EXPECT_NE(block(output.block).findCell(output.scaling), nullptr) << where;
        }
        if (output.role == Role::rail && output.rail != "VCCO") {
            EXPECT_NE(std::find(rails.begin(), rails.end(), output.rail), rails.end()) << where << " " << output.rail;
        }
    }
    for (const RailInput& input : railInputs()) {
        EXPECT_NE(block(input.block).findCell(input.cell), nullptr) << input.block << " " << input.cell;
        if (input.rail != "VCCO") {
            EXPECT_NE(std::find(rails.begin(), rails.end(), input.rail), rails.end()) << input.rail;
        }
    }
    for (const PerUnit& rule : perUnit())
        EXPECT_NE(block(rule.block).findCell(rule.cell), nullptr) << rule.block << " " << rule.cell;
}

TEST(RollUp, BankRailIsTheNearest)
{
    EXPECT_EQ(bankRail(1.0f), "VCCO10");
    EXPECT_EQ(bankRail(1.14f), "VCCO11"); // 0.04 from 1.1, 0.06 from 1.2
    EXPECT_EQ(bankRail(1.35f), "VCCO135");
    EXPECT_EQ(bankRail(1.42f), "VCCO135"); // 0.07 from 1.35, 0.08 from 1.5
    EXPECT_EQ(bankRail(1.8f), "VCCO18");
    EXPECT_EQ(bankRail(5.0f), "VCCO33");
    EXPECT_EQ(bankRail(0.0f), "VCCO10");
}

TEST(RollUp, CountMultipliesPowerAndCurrent)
{
    const Estimate one = estimateOf(R"({"groups": [{"block": "Bram", "inputs": {"VCCINT": 0.5}}]})");
    const Estimate seven = estimateOf(R"({"groups": [{"block": "Bram", "count": 7, "inputs": {"VCCINT": 0.5}}]})");
    expectClose(seven.dynamicWatts, 7.0 * one.dynamicWatts, "7 groups of Bram");
    for (std::size_t i = 0; i < one.groups[0].contributions.size(); ++i) {
        const Contribution& part = one.groups[0].contributions[i];
        expectClose(seven.groups[0].contributions[i].amperes, 7.0 * part.amperes, part.cell);
        if (part.rail == "VCCINT")
            expectClose(part.amperes, part.watts / 0.5, part.cell);
    }
    EXPECT_EQ(estimateOf(R"({"groups": [{"block": "Bram", "count": 0}]})").dynamicWatts, 0.0);
}

TEST(RollUp, ChannelsMultiplyToo)
{
    const auto watts = [](int channels, int count) {
        return estimateOf(R"({"groups": [{"block": "Lorv", "count": )" + std::to_string(count) +
                          R"(, "inputs": {"NUM_LORVQUAD_CHANNELS": )" + std::to_string(channels) + "}}]}")
            .dynamicWatts;
    };
    const Block& lorv = block("Lorv");
    const auto channel = lorv.create();
    channel->set(lorv.cell("NUM_LORVQUAD_CHANNELS"), 3);
    lorv.load();
    channel->calculate();
    const double milliwatts = numberOf(*channel, lorv, "VCCINT_POWER") + numberOf(*channel, lorv, "MLORVAVCC_POWER") +
                              numberOf(*channel, lorv, "MLORVAVTT_POWER") +
                              numberOf(*channel, lorv, "MLORVVCCAUX_POWER");
    EXPECT_GT(milliwatts, 0.0);
    expectClose(watts(3, 2), 6.0 * milliwatts * 1e-3, "2 groups of 3 channels");
}

} // namespace
