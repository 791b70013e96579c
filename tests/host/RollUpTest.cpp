#include "Designs.h"

#include "device/ZelmOrvaneStaticModel.h"
#include "host/blocks/Rails.h"
#include "host/blocks/RollUp.h"
#include "host/design/ResolvedDevice.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <cmath>
#include <filesystem>
#include <map>
#include <set>

namespace zelm::test::rollUpTest {

using namespace zelm::host;

namespace {

// What loads a rail or burns off the chip, by hand: a row of cells that loses or changes where it goes is noticed.
struct Load {
    std::string_view block;
    std::string_view cell;
    std::string_view rail; ///< "off chip" if none
    std::string_view scaling{};
};

constexpr Load kLoads[] = {
    // clang-format off
    {"Signal",    "SIGNAL_POWER",                         "VCCINT"},
    {"CleLogic",  "LOGIC_POWER",                          "VCCINT"},
    {"CleClk",    "CLE_CLOCK_POWER",                      "VCCINT"},
    {"ClkDist",   "CLK_NETWORK_VCCINT_PWR",               "VCCINT"},
    {"ClkDist",   "CLK_NETWORK_VCCRAM_PWR",               "VCCRAM"},
    {"ClkDist",   "CLK_BUF_VCCRAM_PWR",                   "VCCRAM"},
    {"IriClk",    "CLOCK_POWER",                          "VCCINT"},
    {"IriImux",   "IMUX_POWER",                           "VCCINT"},
    {"Bram",      "VCCINT_POWER",                         "VCCINT"},
    {"Bram",      "VCCRAM_POWER",                         "VCCRAM"},
    {"Plam",      "VCCINT_PWR_N_PLAMS",                   "VCCINT"},
    {"Plam",      "VCCRAM_PWR_N_PLAMS",                   "VCCRAM"},
    {"DspInt24",  "DYNAMIC_VCCINT_POWER",                 "VCCINT"},
    {"DspInt8",   "DYNAMIC_VCCINT_POWER",                 "VCCINT"},
    {"DspLegacy", "DYNAMIC_VCCINT_POWER",                 "VCCINT"},
    {"DspCplx",   "DYNAMIC_VCCINT_POWER",                 "VCCINT"},
    {"DspFp32",   "DYNAMIC_VCCINT_POWER",                 "VCCINT"},
    {"Veko",      "VCCAUX_PWR",                           "VCCAUX"},
    {"Veko",      "VCCRAM_PWR",                           "VCCRAM"},
    {"Dpll",      "VCCAUX_PWR",                           "VCCAUX"},
    {"Dpll",      "VCCINT_PWR",                           "VCCINT"},
    {"Dpll",      "VCCRAM_PWR",                           "VCCRAM"},
    {"Rusk",      "VCCAUX_PWR",                           "VCCAUX"},
    {"Rusk",      "VCCINTIO_PWR",                         "VCCINTIO"},
    {"Pspll",     "VCC_AUX_CURRENT",                      "VCCAUX"},
    {"Pspll",     "VCCINT_CURRENT",                       "VCCINT"},
    {"Selv",      "VCCIO_POWER",                          "VCCINTIO"},
    {"Selv",      "VCCAUX_POWER",                         "VCCAUX"},
    {"Selv",      "VCCO_POWER",                           "VCCO"},
    {"Selv",      "OFFCHIP_POWER",                        "off chip"},
    {"Nalt",      "VCCINT_POWER",                         "VCCINT"},
    {"Nalt",      "VCCAUX_POWER",                         "VCCAUX"},
    {"Nalt",      "VCCO_POWER",                           "VCCO"},
    {"Nalt",      "OFFCHIP_POWER",                        "off chip"},
    {"Iologic",   "VCC_IO_PWR",                           "VCCINTIO"},
    {"Kelp",      "RP_TOTAL_POWER",                       "VCCINTIO"},
    {"Lorv",      "VCCINT_POWER",                         "VCCINT"},
    {"Lorv",      "MLORVAVCC_POWER",                      "MLORVAVCC"},
    {"Lorv",      "MLORVAVTT_POWER",                      "MLORVAVTT"},
    {"Lorv",      "MLORVVCCAUX_POWER",                    "MLORVVCCAUX"},
    {"Lorvp",     "VCCINT_POWER",                         "VCCINT"},
    {"Lorvp",     "MLORVAVCC_POWER",                      "MLORVPAVCC"},
    {"Lorvp",     "MLORVAVTT_POWER",                      "MLORVPAVTT"},
    {"Lorvp",     "MLORVVCCAUX_POWER",                    "MLORVPVCCAUX"},
    {"Sarn",      "VCCINT_POWER",                         "VCCINT"},
    {"Sarn",      "VCCINT_GT_POWER",                      "VCCINTGT"},
    {"Sarn",      "MSARNAVCC_POWER",                      "MSARNAVCC"},
    {"Sarn",      "MSARNAVTT_POWER",                      "MSARNAVTT"},
    {"Sarn",      "MSARNVCCAUX_POWER",                    "MSARNVCCAUX"},
    {"Sarn",      "RX_MSARNAVCCAUX_POWER",                "MSARNVCCAUX"},
    {"Sarn",      "TX_MSARNAVCCAUX_POWER",                "MSARNVCCAUX"},
    {"Noc",       "VCC_SOC_PWR",                          "VCCSOC"},
    {"Ddrmc",     "VCCSOC_POWER",                         "VCCSOC"},
    {"Gorb",      "GORB_TOP_DYNAMIC_POWER",               "VCCPSLP"},
    {"Nemt",      "NEMT_VCCINT_POWER",                    "VCCINT"},
    {"Nemt",      "NEMT_VCCAUX_POWER",                    "VCCAUX"},
    {"Jorl",      "VCCINT_POWER",                         "VCCINT"},
    {"Ilkn",      "VCCINT_POWER",                         "VCCINT"},
    {"Hsc",       "VCCINT_POWER",                         "VCCINT"},
    {"Tuvo",      "POWER",                                "VCCINT"},
    {"Sdfec",     "POWER",                                "VCCINT"},
    {"Pcieb",     "POWER",                                "VCCINT"},
    {"Pcieb5",    "POWER",                                "VCCINT"},
    {"Mulm",      "VCCINT_POWER",                         "VCCINT"},
    {"Wist",      "VCCINT_POWER_A0",                      "VCCINTWIST"},
    {"Wist",      "VCCINT_POWER_A1",                      "VCCINTWIST"},
    {"Wist",      "VCCAUX_POWER",                         "VCCAUX"},
    {"Wist5",     "DYNAMIC_PWR_VCC_WIST5",                "VCCWIST5"},
    {"Wist5",     "DYNAMIC_PWR_VCCAUX",                   "VCCAUX"},
    {"Yond",      "APU_CPU_POWER",                        "VCCPSFP"},
    {"Yond",      "L2_MEMORY_POWER",                      "VCCPSFP"},
    {"Yond",      "FP_INTERCONNECT_POWER",                "VCCPSFP"},
    {"Yond",      "CCI_POWER",                            "VCCPSFP"},
    {"Yond",      "FPD_PLL_DYNAMIC_VCCINT_POWER",         "VCCPSFP"},
    {"Yond",      "FPD_PLL_DYNAMIC_VCCAUX_POWER",         "VCCAUX"},
    {"Yond",      "IOU_WITHOUT_IO_POWER",                 "VCCPSLP"},
    {"Yond",      "GEM0_POWER",                           "VCCPSLP"},
    {"Yond",      "GEM1_POWER",                           "VCCPSLP"},
    {"Yond",      "USB0_POWER",                           "VCCPSLP"},
    {"Yond",      "LP_INTECONNECT_POWER",                 "VCCPSLP"},
    {"Yond",      "DUAL_R5_POWER",                        "VCCPSLP"},
    {"Yond",      "OCM_MEMORY_POWER",                     "VCCPSLP"},
    {"Yond",      "TCM_MEMORY_POWER",                     "VCCPSLP"},
    {"Yond",      "LPD_PLL_VCCPSLP_DYNAMIC_POWER",        "VCCPSLP"},
    {"Yond",      "LPD_PLL_VCCAUX_DYNAMIC_POWER",         "VCCAUX"},
    {"Yond",      "LPD_GEM0_DYNAMIC_VCCINT_POWER",        "VCCPSLP"},
    {"Yond",      "LPD_GEM1_DYNAMIC_VCCINT_POWER",        "VCCPSLP"},
    {"Yond",      "LPD_LOW_PER_IO_DYNAMIC_VCCINT_POWER",  "VCCPSLP"},
    {"Yond",      "LPD_GEM0_DYNAMIC_MIO_POWER",           "VCCOHARLIO2"},
    {"Yond",      "LPD_GEM1_DYNAMIC_MIO_POWER",           "VCCOHARLIO2"},
    {"Yond",      "LPD_LOW_PER_IO_DYNAMIC_MIO_POWER",     "VCCOHARLIO2"},
    {"Harl",      "VCCINT_HARL_POWER",                    "VCCHARL"},
    {"Harl",      "VCCAUX_HARL_POWER",                    "VCCAUXHARL"},
    {"Harl",      "VCCHARLIO0_POWER",                     "VCCOHARLIO0"},
    {"Harl",      "VCCHARLIO1_POWER",                     "VCCOHARLIO1"},
    {"Harl",      "VCC_FIO_POWER",                        "VCCOFIO"},
    {"Harl",      "HARL_AUXHARLSYSMON_POWER",             "VCCAUXHARL"},
    {"Harl",      "HARL_AMSAUXPOWER",                     "VCCAUX"},
    {"Harl",      "HARL_AMSVCCSOCPOWER",                  "VCCSOC"},
    {"Harl",      "HARL_AMSINTPOWER",                     "VCCINT"},
    {"Harl",      "HARL_AMSHARLPOWER",                    "VCCHARL"},
    {"Sysmon",    "VCCHARL_POWER",                        "VCCHARL", "VCCHARL_SCALING"},
    {"Sysmon",    "VCCPSLP_POWER",                        "VCCPSLP", "VCCPSLP_SCALING"},
    {"Sysmon",    "VCCPSFP_POWER",                        "VCCPSFP", "VCCPSFP_SCALING"},
    {"Sysmon",    "VCCSOC_POWER",                         "VCCSOC", "VCCSOC_SCALING"},
    {"Sysmon",    "VCCAUXHARL_POWER",                     "VCCAUXHARL", "VCCAUXHARL_SCALING"},
    {"Sysmon",    "VCCAUXSYSMON_POWER",                   "VCCAUXSMON", "VCCAUXSMON_SCALING"},
    {"Sysmon",    "VCCAUX_POWER",                         "VCCAUX", "VCCAUX_SCALING"},
    // clang-format on
};

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
        for (const Load& output : kLoads) {
            if (output.block != group.block->name)
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
            if (output.rail == "off chip")
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
    const auto device = resolve(estimate.design);
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
        for (const auto& [cell, word] : device->staticInputs)
            set(cell, word);
        set("PROCESS", side.process);
        const bool managed = std::any_of(estimate.groups.begin(), estimate.groups.end(),
                                         [](const GroupResult& group) { return group.block->name == "Harl"; });
        set("HAS_HARL_IO", std::string(managed ? "YES" : "NO"));
        for (const Carried& carried : estimate.carried) {
            if (*carried.to.name == "Static") {
                set(carried.to.cell, carried.value);
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

TEST(RollUp, RowsSendToRailsWhatTheTableAboveSays)
{
    const auto line = [](auto block, auto cell, auto rail, auto scaling) {
        return fmt::format("{} {} to {} {}", block, cell, rail, scaling);
    };
    std::set<std::string> expected, actual;
    for (const Load& load : kLoads)
        EXPECT_TRUE(expected.insert(line(load.block, load.cell, load.rail, load.scaling)).second) << load.cell;
    for (const Block& block : blocks()) {
        if (block.name == "Static") // by its own sums: see StaticPowerIsTheModelsAtTheJunction
            continue;
        for (const ZelmCellInfo& cell : block.cells) {
            if (cell.goes.kind == zelm::Destination::Kind::rail)
                actual.insert(line(block.name, cell.name, cell.goes.name, cell.goes.scaling));
            if (cell.goes.kind == zelm::Destination::Kind::offchip)
                actual.insert(line(block.name, cell.name, "off chip", ""));
        }
    }
    std::vector<std::string> lost, unexpected;
    std::set_difference(expected.begin(), expected.end(), actual.begin(), actual.end(), std::back_inserter(lost));
    std::set_difference(actual.begin(), actual.end(), expected.begin(), expected.end(), std::back_inserter(unexpected));
    EXPECT_THAT(lost, testing::IsEmpty()) << "rows that no longer go where they went";
    EXPECT_THAT(unexpected, testing::IsEmpty()) << "rows that the table above lacks";
}

TEST(RollUp, StaticCurrentsGoToTheirOwnRailOrAreHeldByAnother)
{
    const std::map<std::string, std::string> nested{{"VCCINTWIST", "VCCINT"}, {"VCCME", "VCCINT"}};
    for (const std::string& rail : railNames()) {
        const auto held = nested.find(rail);
        EXPECT_EQ(railHolding(rail), held == nested.end() ? "" : held->second) << rail;
        const zelm::Destination& goes = block("Static").cell(rail + "_STATIC_CURRENT").goes;
        EXPECT_EQ(goes.kind == zelm::Destination::Kind::rail ? std::string(goes.name) : railHolding(rail),
                  held == nested.end() ? rail : held->second)
            << rail;
    }
    for (const ZelmCellInfo& cell : block("Static").cells) { // else a load would count beside the rails' currents
        if (cell.goes.kind == zelm::Destination::Kind::rail) {
            EXPECT_EQ(std::string(cell.name), std::string(cell.goes.name) + "_STATIC_CURRENT");
        }
    }
}

TEST(RollUp, UnitsAreCountedByInputsThatExist)
{
    for (const PerUnit& rule : perUnit()) {
        const ZelmCellInfo* cell = block(rule.block).findCell(rule.cell);
        ASSERT_NE(cell, nullptr) << rule.block << " " << rule.cell;
        EXPECT_EQ(cell->kind, ZelmCellInfo::Kind::userInput) << rule.block << " " << rule.cell;
    }
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
        expectClose(seven.groups[0].contributions[i].amperes, 7.0 * part.amperes, std::string(part.cell));
        if (part.rail == "VCCINT")
            expectClose(part.amperes, part.watts / 0.5, std::string(part.cell));
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

} // namespace zelm::test::rollUpTest
