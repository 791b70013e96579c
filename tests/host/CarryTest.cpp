#include "Designs.h"

namespace zelm::test::carryTest {

using namespace zelm::host;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

// A design on ZQ4410, which has 12 banks of 648 SELV pins (54 each) and 2 of 44 NALT pins (22 each).
Estimate onDevice(const std::string& groups, const std::string& fields = "")
{
    return estimateOf(R"({"device": {"part": "zq4410"}, )" + fields + R"("groups": [)" + groups + "]}");
}

TEST(Carry, ClockAccountingEntersInputsOfTheSameName)
{
    const Estimate result = onDevice(
        R"({"block": "Clock", "name": "c", "inputs": {"FANOUT": 2600, "FFS_USING_CLK": 20000, "NUM_FSR": 8, "CLOCK_FREQ": 250}})");
    const Block& clock = block("Clock");
    const GroupResult& accounting = groupOf(result, "c");
    const auto instance = clock.create();
    for (const InputValue& input : accounting.inputs)
        instance->set(clock.input(input.cell), input.value);
    instance->calculate();
    int carried = 0;
    for (const char* name : {"c (Slice clocking)", "c (Clock distribution)"}) {
        const GroupResult& fed = groupOf(result, name);
        for (const ZelmCellInfo& cell : clock.cells) {
            const ZelmCellInfo* to = fed.block->findCell(cell.name);
            if (cell.kind != ZelmCellInfo::Kind::modelOutput || !to)
                continue;
            const std::string expected = valueText(instance->get(cell));
            EXPECT_EQ(shownInput(fed, cell.name), expected + " from carried") << name << " " << cell.name;
            EXPECT_EQ(carriedTo(result, std::string(name) + "." + std::string(cell.name)), expected);
            ++carried;
        }
        EXPECT_EQ(shownInput(fed, "CLOCK_FREQ"), "250 from design") << name;
    }
    EXPECT_GT(carried, 20);
    EXPECT_EQ(shownInput(accounting, "AVAIL_BRAMS"), "967 from carried");
    EXPECT_EQ(shownInput(accounting, "AVAIL_FFS"), "1799680 from carried");
}

TEST(Carry, ClockInputsSetByHandWin)
{
    const Estimate result = onDevice(
        R"({"block": "Clock", "name": "c", "inputs": {"AVAIL_BRAMS": 5, "NUM_FF_SLICES": 77, "LEAF_1_COUNT": 88}})");
    EXPECT_EQ(shownInput(groupOf(result, "c"), "AVAIL_BRAMS"), "5 from design");
    EXPECT_EQ(shownInput(groupOf(result, "c (Slice clocking)"), "NUM_FF_SLICES"), "77 from design");
    EXPECT_EQ(shownInput(groupOf(result, "c (Clock distribution)"), "LEAF_1_COUNT"), "88 from design");
    EXPECT_EQ(carriedTo(result, "c (Slice clocking).NUM_FF_SLICES"), "nothing");
}

TEST(Carry, UsedCountsAreSumsOverGroups)
{
    const Estimate result = onDevice(
        R"({"block": "Bram", "name": "a", "count": 3, "inputs": {"NUM_BRAMS": 10}},
           {"block": "Bram", "name": "b", "inputs": {"NUM_BRAMS": 4}},
           {"block": "Lorv", "name": "l", "count": 2, "inputs": {"NUM_LORVQUAD_CHANNELS": 3}},
           {"block": "Gorb", "name": "g"},
           {"block": "Yond", "name": "y", "inputs": {"RPU_CORES": 1, "OCM_MEMORY_CORES": 3}})");
    EXPECT_EQ(carriedTo(result, "Static.USED_BRAMS_ACTIVE"), "34");    // 3 x 10 + 4
    EXPECT_EQ(carriedTo(result, "Static.USED_LORV_POWER_QUADS"), "2"); // 6 channels, four to a quad
    EXPECT_EQ(carriedTo(result, "Static.USED_OCM2S_ACTIVE"), "1");
    EXPECT_EQ(carriedTo(result, "Static.USED_PS_LPD_R5"), "1");
    EXPECT_EQ(carriedTo(result, "Static.USED_PS_LPD_OCM"), "3");
    EXPECT_EQ(carriedTo(result, "Static.USED_PLAMS_ACTIVE"), "0");
}

TEST(Carry, SpeedGradeAndPadVoltageComeFromTheDevice)
{
    const Estimate result = estimateOf(
        R"({"device": {"part": "zr3320_ktba1760_2_MP_i_S"}, "rails": {"VCCOHARLIO2": 2.5},
            "groups": [{"block": "Sarn", "name": "s"}, {"block": "Sarn", "name": "t", "inputs": {"SPEEDGRADE": -1}},
                       {"block": "Yond", "name": "y", "inputs": {"LPD_MIO_GEM1_VOLTAGE": 3.3}}]})");
    EXPECT_EQ(shownInput(groupOf(result, "s"), "SPEEDGRADE"), "-2 from carried");
    EXPECT_EQ(carriedTo(result, "s.SPEEDGRADE"), "-2");
    EXPECT_EQ(shownInput(groupOf(result, "t"), "SPEEDGRADE"), "-1 from design");
    EXPECT_EQ(shownInput(groupOf(result, "y"), "LPD_MIO_GEM0_VOLTAGE"), "2.5 from rails");
    EXPECT_EQ(shownInput(groupOf(result, "y"), "LPD_MIO_GEM1_VOLTAGE"), "3.3 from design");
    EXPECT_EQ(shownInput(groupOf(onDevice(R"({"block": "Yond", "name": "y"})"), "y"), "LPD_MIO_LOW_PER_IO_VOLTAGE"),
              "1.8 from device");
}

TEST(Carry, CountsBeyondAnIntAreNotWrapped)
{
    // 2e9 x 1e6 overflows 32 bits; the static model's input holds no more than the largest int but one.
    const Estimate result =
        onDevice(R"({"block": "Bram", "name": "a", "count": 1000000, "inputs": {"NUM_BRAMS": 2000000000}},
                    {"block": "Selv", "name": "s", "count": 1000000}, {"block": "Selv", "name": "t", "count": 1000000},
                    {"block": "DspCplx", "name": "d", "count": 1000000, "inputs": {"NUM_DSP": 2000000000}})");
    EXPECT_EQ(carriedTo(result, "Static.USED_BRAMS_ACTIVE"), "2147483646");
    EXPECT_THAT(result.warnings, Contains(HasSubstr("uses 2e+15 BRAM of the 967")));
    EXPECT_THAT(result.warnings, Contains(HasSubstr("uses 2e+06 SELV_IO of the 648")));
    const Estimate one = onDevice(R"({"block": "DspCplx", "name": "d", "inputs": {"NUM_DSP": 1}})");
    ASSERT_GT(one.dynamicWatts, 0.0);
    EXPECT_DOUBLE_EQ(groupOf(result, "d").watts, 2e15 * groupOf(one, "d").watts);
}

TEST(Carry, BanksAreCountedByVoltage)
{
    const Estimate result = onDevice(
        R"({"block": "Selv", "name": "a", "count": 54, "inputs": {"OUTPUT_IO_STANDARD": "LVCMOS15_8"}},
           {"block": "Selv", "name": "b", "count": 1, "inputs": {"OUTPUT_IO_STANDARD": "HSTL_I"}},
           {"block": "Selv", "name": "c", "count": 7, "inputs": {"OUTPUT_IO_STANDARD": "SSTL12"}},
           {"block": "Nalt", "name": "d", "count": 23, "inputs": {"OUTPUT_IO_STANDARD": "LVCMOS18_4", "VCCO": 1.8}})");
    EXPECT_EQ(carriedTo(result, "Static.USED_VCCO15_SELV_BANKS"), "2"); // 55 pins, 54 to a bank
    EXPECT_EQ(carriedTo(result, "Static.USED_VCCO12_SELV_BANKS"), "1");
    EXPECT_EQ(carriedTo(result, "Static.USED_VCCO10_SELV_BANKS"), "0");
    EXPECT_EQ(carriedTo(result, "Static.USED_VCCO18_NALT_BANKS"), "2"); // 23 pins, 22 to a bank
    EXPECT_EQ(carriedTo(result, "Static.USED_VCCO33_NALT_BANKS"), "0");
}

double usedOf(const Estimate& result, std::string_view resource)
{
    for (const Utilisation& use : result.utilisation) {
        if (use.resource == resource)
            return use.used;
    }
    return -1.0;
}

TEST(Carry, PairsTakeTwoPins)
{
    // 10 x 2 + 3 x 1 + 4 x 2 + 5 x 1 + 6 x 2 pins: a pair counts in the direction that is in use.
    const Estimate result = onDevice(
        R"({"block": "Selv", "name": "a", "count": 10, "inputs": {"OUTPUT_IO_STANDARD": "DIFF_SSTL12"}},
           {"block": "Selv", "name": "b", "count": 3, "inputs": {"OUTPUT_IO_STANDARD": "SSTL12", "INPUT_IO_STANDARD": "LVDS15"}},
           {"block": "Selv", "name": "c", "count": 4, "inputs": {"IO_DIRECTION": "INPUT", "INPUT_IO_STANDARD": "MIPI_DPHY_DCI_HS"}},
           {"block": "Selv", "name": "d", "count": 5, "inputs": {"IO_DIRECTION": "BIDI", "OUTPUT_IO_STANDARD": "POD12", "INPUT_IO_STANDARD": "POD12"}},
           {"block": "Selv", "name": "e", "count": 6, "inputs": {"IO_DIRECTION": "BIDI", "OUTPUT_IO_STANDARD": "DIFF_POD12", "INPUT_IO_STANDARD": "POD12"}},
           {"block": "Nalt", "name": "f", "count": 12, "inputs": {"IO_DIRECTION": "INPUT", "INPUT_IO_STANDARD": "SUB_LVDS"}})");
    EXPECT_EQ(usedOf(result, "SELV_IO"), 48.0);
    EXPECT_EQ(usedOf(result, "NALT_IO"), 24.0);
    EXPECT_EQ(carriedTo(result, "Static.USED_VCCO18_NALT_BANKS"), "2"); // 24 pins, 22 to a bank
}

TEST(Carry, ComplexMultipliersTakeTwoDspSlices)
{
    const Estimate result = onDevice(R"({"block": "DspCplx", "name": "c", "count": 2, "inputs": {"NUM_DSP": 5}},
                                        {"block": "DspInt24", "name": "i", "inputs": {"NUM_DSP": 7}})");
    EXPECT_EQ(usedOf(result, "DSP"), 27.0); // 2 x 5 x 2 + 7
}

TEST(Carry, StaticInputsSetByHandWin)
{
    const std::string bram = R"({"block": "Bram", "inputs": {"NUM_BRAMS": 10}})";
    const Estimate counted = onDevice(bram);
    const Estimate same = onDevice(bram, R"("static": {"USED_BRAMS_ACTIVE": 10}, )");
    const Estimate more = onDevice(bram, R"("static": {"USED_BRAMS_ACTIVE": 900}, )");
    EXPECT_EQ(carriedTo(more, "Static.USED_BRAMS_ACTIVE"), "nothing");
    EXPECT_EQ(same.side().staticWatts, counted.side().staticWatts);
    EXPECT_GT(more.side().staticWatts, counted.side().staticWatts);
}

TEST(Carry, RailsBeatTheDevicesVoltagesAndTheDesignBeatsRails)
{
    const std::string groups = R"({"block": "Bram", "name": "b", "inputs": {"VCCRAM": 0.85}})";
    const Estimate nominal = onDevice(groups);
    EXPECT_EQ(shownInput(groupOf(nominal, "b"), "VCCINT"), "0.8 from device"); // grade MP
    EXPECT_EQ(shownInput(groupOf(nominal, "b"), "VCCRAM"), "0.85 from design");
    EXPECT_EQ(shownInput(groupOf(nominal, "b"), "NUM_BRAMS"), "100 from default");
    const Estimate given = onDevice(groups, R"("rails": {"VCCINT": 0.78, "VCCRAM": 0.79}, )");
    EXPECT_EQ(shownInput(groupOf(given, "b"), "VCCINT"), "0.78 from rails");
    EXPECT_EQ(shownInput(groupOf(given, "b"), "VCCRAM"), "0.85 from design");
    const Estimate bare = estimateOf(R"({"groups": [{"block": "Bram", "name": "b"}]})");
    EXPECT_EQ(shownInput(groupOf(bare, "b"), "VCCINT"), "0.88 from default");
}

TEST(Carry, BankVoltageFollowsTheStandard)
{
    const auto volts = [](const std::string& standard) {
        return shownInput(
            estimateOf(R"({"groups": [{"block": "Selv", "inputs": {"OUTPUT_IO_STANDARD": ")" + standard + "\"}}]}")
                .groups[0],
            "VCCO15");
    };
    EXPECT_EQ(volts("LVCMOS12_4"), "1.2 from carried");
    EXPECT_EQ(volts("LVCMOS15_4"), "1.5 from carried");
    EXPECT_EQ(volts("SSTL135"), "1.35 from carried");
    EXPECT_EQ(volts("DIFF_POD10"), "1 from carried");
    const Estimate onRail = estimateOf(
        R"({"rails": {"VCCO12": 1.22}, "groups": [{"block": "Selv", "inputs": {"OUTPUT_IO_STANDARD": "SSTL12"}}]})");
    EXPECT_EQ(shownInput(onRail.groups[0], "VCCO15"), "1.22 from rails");
}

TEST(Carry, UnfitVoltagesAreWarnedOf)
{
    const auto warnings = [](const std::string& inputs) {
        return estimateOf(R"({"groups": [{"block": "Selv", "name": "pins", "inputs": {)" + inputs + "}}]}").warnings;
    };
    EXPECT_THAT(warnings(R"("OUTPUT_IO_STANDARD": "LVCMOS15_8", "VCCO15": 1.2)"),
                Contains(HasSubstr("group \"pins\": VCCO15 at 1.2 V doesn't fit LVCMOS15_8, which is made for 1.5 V")));
    EXPECT_THAT(warnings(R"("OUTPUT_IO_STANDARD": "LVCMOS15_8", "VCCO15": 1.44)"),
                testing::Not(Contains(HasSubstr("doesn't fit")))); // 4 percent off
}

TEST(Carry, OverUseIsWarnedOf)
{
    EXPECT_THAT(onDevice(R"({"block": "Bram", "inputs": {"NUM_BRAMS": 967}})").warnings,
                testing::Not(Contains(HasSubstr("the design uses"))));
    EXPECT_THAT(onDevice(R"({"block": "Bram", "inputs": {"NUM_BRAMS": 968}})").warnings,
                Contains(HasSubstr("the design uses 968 BRAM of the 967 that ZQ4410 has")));
}

} // namespace

} // namespace zelm::test::carryTest
