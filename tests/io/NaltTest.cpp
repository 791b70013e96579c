#include "io/ZelmOrvaneNaltModel.h"

#include "BufferRows.h"
#include "support/BlockFixture.h"

#include <cmath>

namespace zelm::test::naltTest {

using Params = ZelmOrvaneNaltParams;
using Data = ZelmOrvaneNaltData;
using Model = ZelmOrvaneNaltModel;

const std::vector<std::string> kInputs{"LVDS_25",        "LVPECL",        "SUB_LVDS",  "SLVS_400_25",
                                       "DIFF_HSTL_I_18", "DIFF_SSTL18_I", "HSTL_I_18", "SSTL18_I",
                                       "LVTTL",          "LVCMOS33",      "LVCMOS25",  "LVCMOS18"};

const std::vector<std::string> kOutputs{"SSTL18_I",   "LVTTL_4",     "LVTTL_8",     "LVTTL_12",   "LVCMOS33_4",
                                        "LVCMOS33_8", "LVCMOS33_12", "LVCMOS25_4",  "LVCMOS25_8", "LVCMOS25_12",
                                        "LVCMOS18_4", "LVCMOS18_8",  "LVCMOS18_12", "HSTL_I_18"};

constexpr std::string_view kInputEntries =
    "VCCINT_IO_DC = 0.5; VCCINT_IO_AC = 0.25; VCCAUX_AC = 5.0; VCCO_AC = 8.0; VCCO_DC = 4.0; PW = 0.25;";
constexpr std::string_view kOutputEntries =
    "VCCINT_IO_DC = -0.5; VCCINT_IO_AC = 0.25; VCCAUX_AC = 5.0; VCCO_AC = 8.0; VCCO_DC = 4.0; OBUF_LOAD = 6.0; "
    "PW = 0.25; TERM = 25.0;";

std::string tables(std::string_view outputEntries)
{
    return "CAP_DATA : { CIO_HP = 2.0; CPKG = 0.5; };\n"
           "OBUF : { " +
           sameRows(kOutputs, outputEntries) +
           " };\n"
           "IBUF : { " +
           sameRows(kInputs, kInputEntries) +
           " };\n"
           "IO_LIST : { INPUT : { LVTTL = \"3.3\"; }; };";
}

class NaltTest : public BlockFixture<Model> {
protected:
    NaltTest()
    {
        load(tables(kOutputEntries));
        // A quarter of the supply of 2 V through 25 ohms against 75.
        params[Params::VCCO] = 2.0f;
        params[Params::VCCINT] = 0.75f;
        params[Params::VCCAUX] = 1.25f;
        params[Params::INPUT_TERMINATION] = 25.0f;
        params[Params::OFFCHIP_TERMINATION] = 75.0f;
        params[Params::CLOCK_FREQ] = 64.0f; // x 0.125 x 0.5 = 4 MHz
    }

    float cell(const std::string& name)
    {
        const auto found = Params::string_to_float_enum(name);
        EXPECT_NE(found, Params::LastFloat) << name;
        return params[found];
    }
};

TEST(Nalt, StandardsTimesMetricsAreTheListedCells)
{
    EXPECT_EQ(kInputs.size(), 12u);
    EXPECT_EQ(kOutputs.size(), 14u);
    const std::vector<std::string> metrics{"AC_VCCAUX_CURRENT",
                                           "AC_VCCIO_CURRENT",
                                           "AC_VCCO_CURRENT",
                                           "DC_VCCAUX_CURRENT",
                                           "DC_VCCIO_CURRENT",
                                           "DC_VCCO_CURRENT",
                                           "OFFCHIP_POWER",
                                           "ONCHIP_POWER",
                                           "VOH",
                                           "VOL"};
    for (const std::string side : {"IBUF_", "OBUF_"}) {
        std::vector<std::string> others{side + "OFFCHIP_MULTIPLIER"};
        for (const char* rail : {"AC_VCCAUX", "AC_VCCIO", "AC_VCCO", "DC_VCCAUX", "DC_VCCIO", "DC_VCCO"})
            others.push_back(side + rail + "_MULTIPLIER");
        if (side == "IBUF_")
            others.push_back("IBUF_ENABLE_FACTOR");
        expectFamily<Params>(side, side == "IBUF_" ? kInputs : kOutputs, metrics, others);
    }
}

TEST_F(NaltTest, CalculateFillsEveryCell)
{
    calculate();
    for (const ZelmCellInfo& info : Params::cells()) {
        const std::string name(info.name);
        if (info.type == ZelmCellInfo::Type::real)
            EXPECT_NE(cell(name), zelm::unsetFloat) << name;
        else
            EXPECT_NE(params[Params::string_to_string_enum(name)], zelm::unsetString) << name;
    }
}

TEST_F(NaltTest, InputsTakeTheirDefaults)
{
    params.resetUserInputs();
    calculate();
    EXPECT_THAT(params[Params::CLOCK_FREQ], IsBits(500.0f));
    EXPECT_THAT(params[Params::IBUF_DISABLE], IsBits(0.0f));
    EXPECT_THAT(params[Params::INPUT_TERMINATION], IsBits(60.0f));
    EXPECT_THAT(params[Params::OFFCHIP_TERMINATION], IsBits(60.0f));
    EXPECT_THAT(params[Params::OUTPUT_ENABLE], IsBits(1.0f));
    EXPECT_THAT(params[Params::OUTPUT_IMPEDANCE], IsBits(50.0f));
    EXPECT_THAT(params[Params::OUTPUT_LOAD], IsBits(1.5f));
    EXPECT_THAT(params[Params::TOGGLE_RATE], IsBits(0.125f));
    EXPECT_THAT(params[Params::VCCAUX], IsBits(1.5f));
    EXPECT_THAT(params[Params::VCCINT], IsBits(0.88f));
    EXPECT_THAT(params[Params::VCCO], IsBits(3.3f));
    EXPECT_EQ(params[Params::DATA_RATE], "SDR");
    EXPECT_EQ(params[Params::INPUT_IO_STANDARD], "LVDS_25");
    EXPECT_EQ(params[Params::IO_DIRECTION], "OUTPUT");
    EXPECT_EQ(params[Params::OUTPUT_IO_STANDARD], "SSTL18_I");
}

// ---- Inputs ----

TEST_F(NaltTest, InputCurrentsCountTheEnabledTime)
{
    params[Params::IBUF_DISABLE] = 0.75f;
    calculate();
    EXPECT_THAT(params[Params::IBUF_ENABLE_FACTOR], IsBits(0.25f));
    for (std::size_t i = 0; i < kInputs.size(); ++i) {
        const std::string prefix = "IBUF_" + kInputs[i];
        EXPECT_THAT(cell(prefix + "_DC_VCCIO_CURRENT"), IsBits(0.125f)) << prefix;
        EXPECT_THAT(cell(prefix + "_AC_VCCIO_CURRENT"), IsBits(0.0625f)) << prefix;
        EXPECT_THAT(cell(prefix + "_DC_VCCAUX_CURRENT"), IsBits(static_cast<float>(i + 1) * 0.25f)) << prefix;
        EXPECT_THAT(cell(prefix + "_AC_VCCAUX_CURRENT"), IsBits(1.25f)) << prefix;
        EXPECT_THAT(cell(prefix + "_AC_VCCO_CURRENT"), IsBits(4.0f)) << prefix; // 8 x 2 V x 0.25
    }
}

TEST_F(NaltTest, TerminatedInputs)
{
    params[Params::IBUF_DISABLE] = 0.5f;
    calculate();
    for (const std::string& standard : kInputs) {
        const std::string prefix = "IBUF_" + standard;
        const bool terminated =
            standard.find("HSTL") != std::string::npos || standard.find("SSTL") != std::string::npos;
        const float lines = standard.starts_with("DIFF") ? 2.0f : 1.0f;
        // Half of 2 V, times 75 / 100: 0.75 V low and 1.25 V high.
        EXPECT_THAT(cell(prefix + "_VOL"), IsBits(terminated ? 0.75f : 0.0f)) << prefix;
        EXPECT_THAT(cell(prefix + "_VOH"), IsBits(terminated ? 1.25f : 0.0f)) << prefix;
        // (0.75 x 0.5 + 1.25 x 0.5) / 50 x 1000, at a duty of a half whatever the table says, and not by the enable;
        // others tell the table's current.
        EXPECT_THAT(cell(prefix + "_DC_VCCO_CURRENT"), IsBits(terminated ? 1.0f / 50.0f * (1000.0f * lines) : 4.0f))
            << prefix;
        // (0.75^2 + 1.25^2) x 1000 / 50 at either level, and not by the enable.
        EXPECT_THAT(cell(prefix + "_ONCHIP_POWER"), IsBits(terminated ? 42.5f * lines : 0.0f)) << prefix;
        EXPECT_NEAR(cell(prefix + "_OFFCHIP_POWER"), terminated ? (40 - 42.5) * 0.5 * lines : 0, 1e-5) << prefix;
    }
}

TEST_F(NaltTest, TheCurrentOfATerminationCountsBothLevelsAlike)
{
    params[Params::OFFCHIP_TERMINATION] = 0.0f; // levels of 0 and 2 V
    calculate();
    EXPECT_THAT(params[Params::IBUF_SSTL18_I_VOL], IsBits(0.0f));
    EXPECT_THAT(params[Params::IBUF_SSTL18_I_VOH], IsBits(2.0f));
    // 2 V x 0.5 / 50 ohms; by the table's duty of a quarter it would be 2 V x 0.75 / 50.
    EXPECT_THAT(params[Params::IBUF_SSTL18_I_DC_VCCO_CURRENT], IsBits(1.0f / 50.0f * 1000.0f));
    EXPECT_THAT(params[Params::IBUF_SSTL18_I_ONCHIP_POWER], IsBits(80.0f)); // 4 V^2 / 50 ohms at either level
}

TEST_F(NaltTest, ATerminationOfZeroDividesNothing)
{
    params[Params::INPUT_TERMINATION] = 0.0f;
    calculate();
    EXPECT_THAT(params[Params::IBUF_SSTL18_I_VOL], IsBits(1.0f));
    EXPECT_THAT(params[Params::IBUF_SSTL18_I_DC_VCCO_CURRENT], IsBits(0.0f));
    EXPECT_THAT(params[Params::IBUF_DIFF_SSTL18_I_ONCHIP_POWER], IsBits(0.0f));
}

TEST_F(NaltTest, ADisabledBufferStillHeatsItsTermination)
{
    params[Params::IO_DIRECTION] = "INPUT";
    params[Params::INPUT_IO_STANDARD] = "SSTL18_I";
    params[Params::IBUF_DISABLE] = 1.0f;
    calculate();
    EXPECT_THAT(params[Params::VCCINT_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::VCCAUX_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::IBUF_AC_VCCO_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::IBUF_DC_VCCO_POWER], IsBits(42.5f));
    EXPECT_EQ(params[Params::IBUF_OFFCHIP_POWER], 0.0f);
}

TEST_F(NaltTest, AnInputsDirectCurrentReachesNoOutput)
{
    params[Params::IO_DIRECTION] = "INPUT";
    calculate();
    EXPECT_THAT(params[Params::IBUF_LVDS_25_DC_VCCO_CURRENT], IsBits(4.0f));
    EXPECT_THAT(params[Params::IBUF_DC_VCCO_POWER], IsBits(0.0f));
}

// ---- Outputs ----

TEST_F(NaltTest, Outputs)
{
    calculate();
    for (std::size_t i = 0; i < kOutputs.size(); ++i) {
        const std::string prefix = "OBUF_" + kOutputs[i];
        EXPECT_THAT(cell(prefix + "_DC_VCCIO_CURRENT"), IsBits(-0.5f)) << prefix; // not clamped
        EXPECT_THAT(cell(prefix + "_AC_VCCIO_CURRENT"), IsBits(0.25f)) << prefix;
        EXPECT_THAT(cell(prefix + "_DC_VCCAUX_CURRENT"), IsBits(static_cast<float>(i + 1))) << prefix;
        EXPECT_THAT(cell(prefix + "_AC_VCCAUX_CURRENT"), IsBits(5.0f)) << prefix;
        EXPECT_THAT(cell(prefix + "_DC_VCCO_CURRENT"), IsBits(2.0f)) << prefix; // 2 x 4 x 0.25
        EXPECT_THAT(cell(prefix + "_AC_VCCO_CURRENT"), IsBits(4.0f)) << prefix; // (2 + 1.5 + 0.5) x 8 / (6 + 2)
        EXPECT_NEAR(cell(prefix + "_VOL"), 0.8, 1e-6) << prefix;                // 2 x 0.5 - 2 x 4 x 25 / 1000
        EXPECT_NEAR(cell(prefix + "_VOH"), 1.2, 1e-6) << prefix;
        EXPECT_NEAR(cell(prefix + "_ONCHIP_POWER"), 6.4, 1e-5) << prefix; // 2 x 0.8 x 4 x 0.75 + 0.8 x 2
        const bool terminated = kOutputs[i] == "SSTL18_I" || kOutputs[i] == "HSTL_I_18";
        EXPECT_NEAR(cell(prefix + "_OFFCHIP_POWER"), terminated ? 2 * 2 - 6.4 : 0, 1e-5) << prefix;
    }
}

TEST_F(NaltTest, OutputGuards)
{
    params[Params::OUTPUT_IMPEDANCE] = 0.0f;
    calculate();
    EXPECT_NEAR(params[Params::OBUF_LVTTL_4_VOL], 0.8, 1e-6); // Z + R is positive
    EXPECT_THAT(params[Params::OBUF_LVTTL_4_ONCHIP_POWER], IsBits(0.0f));
    params[Params::OUTPUT_IMPEDANCE] = -75.0f; // Z + R is 0
    calculate();
    EXPECT_THAT(params[Params::OBUF_LVTTL_4_VOL], IsBits(0.0f));
    EXPECT_THAT(params[Params::OBUF_LVTTL_4_VOH], IsBits(2.0f));

    std::string entries(kOutputEntries);
    entries.replace(entries.find("OBUF_LOAD = 6.0"), 15, "OBUF_LOAD = -2.0");
    load(tables(entries));
    calculate();
    EXPECT_THAT(params[Params::OBUF_LVTTL_4_AC_VCCO_CURRENT], IsBits(0.0f));
}

TEST_F(NaltTest, AnOutputsDirectDriverPowerIsItsCurrent)
{
    calculate();
    EXPECT_THAT(params[Params::OBUF_DC_VCCO_POWER], IsBits(2.0f)); // no voltage, and not the heat on chip of 6.4
    const float vccoPower = params[Params::VCCO_POWER];
    EXPECT_THAT(vccoPower, IsBits(2.0f + 4.0f * (4.0f * 2.0f)));
}

// ---- Multipliers and selection ----

TEST_F(NaltTest, ABidirectionalPinReceivesWhileItDoesntDrive)
{
    params[Params::IBUF_DISABLE] = 0.5f; // in the currents, not here
    params[Params::OUTPUT_ENABLE] = 0.75f;
    for (const char* direction : {"BIDI", "BIDI_INPUT", "INPUT", "OUTPUT", "BIDI_OUTPUT", "SIDEWAYS"}) {
        params[Params::IO_DIRECTION] = direction;
        calculate();
        const std::string_view kind = direction;
        const float x = kind == "BIDI" || kind == "BIDI_INPUT" ? 0.25f : 1.0f;
        EXPECT_THAT(params[Params::IBUF_DC_VCCIO_MULTIPLIER], IsBits(x * 0.75f)) << direction;
        EXPECT_THAT(params[Params::IBUF_AC_VCCIO_MULTIPLIER], IsBits(x * 3.0f)) << direction;
        EXPECT_THAT(params[Params::IBUF_DC_VCCAUX_MULTIPLIER], IsBits(x * 1.25f)) << direction;
        EXPECT_THAT(params[Params::IBUF_AC_VCCAUX_MULTIPLIER], IsBits(x * 5.0f)) << direction;
        EXPECT_THAT(params[Params::IBUF_DC_VCCO_MULTIPLIER], IsBits(x)) << direction;
        EXPECT_THAT(params[Params::IBUF_OFFCHIP_MULTIPLIER], IsBits(x)) << direction;
        EXPECT_THAT(params[Params::IBUF_AC_VCCO_MULTIPLIER], IsBits(x * 4.0f)) << direction;
        EXPECT_THAT(params[Params::OBUF_DC_VCCIO_MULTIPLIER], IsBits(0.5625f)) << direction;
        EXPECT_THAT(params[Params::OBUF_AC_VCCIO_MULTIPLIER], IsBits(2.25f)) << direction;
        EXPECT_THAT(params[Params::OBUF_DC_VCCAUX_MULTIPLIER], IsBits(0.9375f)) << direction;
        EXPECT_THAT(params[Params::OBUF_AC_VCCAUX_MULTIPLIER], IsBits(3.75f)) << direction;
        EXPECT_THAT(params[Params::OBUF_DC_VCCO_MULTIPLIER], IsBits(0.75f)) << direction;
        EXPECT_THAT(params[Params::OBUF_AC_VCCO_MULTIPLIER], IsBits(6.0f)) << direction; // 4 x 0.75 x 2 V
        EXPECT_THAT(params[Params::OBUF_OFFCHIP_MULTIPLIER], IsBits(0.75f)) << direction;
    }
}

TEST_F(NaltTest, APinThatAlwaysDrivesReceivesNothing)
{
    params[Params::IO_DIRECTION] = "BIDI";
    params[Params::OUTPUT_ENABLE] = 1.0f;
    for (const float disable : {0.0f, 0.5f, 1.0f}) {
        params[Params::IBUF_DISABLE] = disable;
        calculate();
        for (const char* rail : {"DC_VCCIO", "AC_VCCIO", "DC_VCCAUX", "AC_VCCAUX", "DC_VCCO", "AC_VCCO", "OFFCHIP"})
            EXPECT_THAT(cell("IBUF_" + std::string(rail) + "_MULTIPLIER"), IsBits(0.0f)) << rail;
    }
}

TEST_F(NaltTest, MipiHasNoPrivilegeHere)
{
    params[Params::INPUT_IO_STANDARD] = "MIPI_DPHY_LP";
    params[Params::IBUF_DISABLE] = 1.0f;
    calculate();
    EXPECT_THAT(params[Params::IBUF_ENABLE_FACTOR], IsBits(0.0f));
}

TEST_F(NaltTest, EveryNameSelectsItsOwnCells)
{
    params[Params::IO_DIRECTION] = "INPUT";
    for (std::size_t i = 0; i < kInputs.size(); ++i) {
        params[Params::INPUT_IO_STANDARD] = kInputs[i];
        calculate();
        EXPECT_THAT(params[Params::IBUF_DC_VCCAUX_POWER], IsBits(static_cast<float>(i + 1) * 1.25f)) << kInputs[i];
        EXPECT_THAT(params[Params::OBUF_DC_VCCAUX_POWER], IsBits(0.0f));
    }
    params[Params::IO_DIRECTION] = "OUTPUT";
    for (std::size_t i = 0; i < kOutputs.size(); ++i) {
        params[Params::OUTPUT_IO_STANDARD] = kOutputs[i];
        calculate();
        EXPECT_THAT(params[Params::OBUF_DC_VCCAUX_POWER], IsBits(static_cast<float>(i + 1) * 1.25f)) << kOutputs[i];
        EXPECT_THAT(params[Params::IBUF_DC_VCCAUX_POWER], IsBits(0.0f));
    }
    params[Params::OUTPUT_IO_STANDARD] = "LVTTL"; // an input's name
    calculate();
    for (const auto total : {Params::VCCINT_POWER, Params::VCCAUX_POWER, Params::VCCO_POWER, Params::OFFCHIP_POWER})
        EXPECT_THAT(params[total], IsBits(0.0f));
}

TEST_F(NaltTest, RailsAddInputAndOutput)
{
    params[Params::IO_DIRECTION] = "BIDI";
    params[Params::OUTPUT_ENABLE] = 0.5f;
    params[Params::INPUT_IO_STANDARD] = "SSTL18_I"; // eighth of its list
    params[Params::OUTPUT_IO_STANDARD] = "SSTL18_I";
    calculate();
    // Half of the time each: core 0.75 V and 4 MHz, auxiliary 1.25 V, driver 2 V.
    EXPECT_THAT(params[Params::VCCINT_POWER], IsBits((0.5f + 1.0f) * 0.375f + (-0.5f + 1.0f) * 0.375f));
    EXPECT_THAT(params[Params::VCCAUX_POWER], IsBits((8.0f + 20.0f) * 0.625f + (1.0f + 20.0f) * 0.625f));
    EXPECT_THAT(params[Params::VCCO_POWER], IsBits(21.25f + 16.0f * 2.0f + (1.0f + 16.0f)));
    EXPECT_NEAR(params[Params::OFFCHIP_POWER], (40 - 42.5) * 0.5 + (4 - 6.4) * 0.5, 1e-5);
}

TEST_F(NaltTest, AMissingRowSpoilsItsOwnCellsAlone)
{
    std::string text = tables(kOutputEntries);
    text.replace(text.find("LVTTL_8 :"), 7, "GONE_08");
    load(text);
    calculate();
    EXPECT_THAT(params[Params::OBUF_LVTTL_8_DC_VCCAUX_CURRENT], IsBits(zelm::unsetFloat));
    EXPECT_TRUE(std::isinf(params[Params::OBUF_LVTTL_8_AC_VCCO_CURRENT]));
    EXPECT_THAT(params[Params::OBUF_DC_VCCAUX_POWER], IsBits(1.25f));
}

// ---- The shipped data ----

TEST(Nalt, ShippedDataGivesBelievablePower)
{
    const DataDirVariable variable(shippedDataDirectory());
    Data::getMutableGlobal().reset();
    Params params;
    params[Params::OUTPUT_IO_STANDARD] = "LVCMOS33_12"; // charge alone: 31.25 MHz into some picofarads at 3.3 V
    Model::getGlobal().calculate(params);
    EXPECT_GT(params[Params::VCCO_POWER], 1.0f);
    EXPECT_LT(params[Params::VCCO_POWER], 5.0f);
    EXPECT_GT(params[Params::VCCAUX_POWER], 0.05f);
    EXPECT_LT(params[Params::VCCAUX_POWER], 1.0f);

    params[Params::OUTPUT_IO_STANDARD] = "SSTL18_I";
    params[Params::VCCO] = 1.8f; // some milliamperes into the termination
    Model::getGlobal().calculate(params);
    EXPECT_NEAR(params[Params::OBUF_SSTL18_I_VOL], 0.44, 0.1);
    EXPECT_GT(params[Params::OBUF_SSTL18_I_ONCHIP_POWER], 1.0f);
    EXPECT_LT(params[Params::OBUF_SSTL18_I_ONCHIP_POWER], 8.0f);
    EXPECT_GT(params[Params::OFFCHIP_POWER], 1.0f);
    EXPECT_LT(params[Params::OFFCHIP_POWER], 8.0f);
}

TEST(Nalt, ShippedDataHasEveryKeyOfEveryStandard)
{
    const DataDirVariable variable(shippedDataDirectory());
    Data::getMutableGlobal().reset();
    Params params;
    Model::getGlobal().calculate(params);
    std::vector<std::string> names;
    Params::getFloatIntermediateCalculationNames(names);
    for (const std::string& name : names)
        EXPECT_LT(std::fabs(params[Params::string_to_float_enum(name)]), 1e3f) << name;
    for (const std::string& standard : kInputs)
        EXPECT_NE(Data::getGlobal().getIoList("INPUT", standard), zelm::unsetString) << standard;
    for (const std::string& standard : kOutputs)
        EXPECT_NE(Data::getGlobal().getIoList("OUTPUT", standard), zelm::unsetString) << standard;
}

} // namespace zelm::test::naltTest
