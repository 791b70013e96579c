#include "processing/ZelmOrvaneHarlModel.h"

#include "processing/ProcessingTables.h"
#include "support/BlockFixture.h"

#include <cmath>
#include <set>

namespace zelm::test::harlTest {

using Params = ZelmOrvaneHarlParams;
using Data = ZelmOrvaneHarlData;
using Model = ZelmOrvaneHarlModel;

// The peripherals with pads of their own, by the names that their cells are made of.
struct Peripheral {
    std::string inputs;   // HARL_QSPI of HARL_QSPI_INPUTS
    std::string internal; // HARL_QSPI_BANK0 of HARL_QSPI_BANK0_VCCINTHARL_POWER
    std::string rail;     // VCCHARLIO0 of HARL_QSPI_BANK0_VCCHARLIO0_POWER
    std::string voltage;  // QSPI_MIO of QSPI_MIO_18_POWER
};
const Peripheral kPeripherals[] = {{"HARL_USB0", "HARL_USB0_BANK0", "VCCHARLIO0", "USB0_MIO"},
                                   {"HARL_QSPI", "HARL_QSPI_BANK0", "VCCHARLIO0", "QSPI_MIO"},
                                   {"HARL_OSPI", "HARL_OSPI_BANK0", "VCCHARLIO0", "OSPI_MIO"},
                                   {"HARL_I2C", "HARL_I2C_BANK0", "VCCHARLIO0", "I2C_MIO"},
                                   {"HARL_SD", "HARL_SD_BANK0", "VCCHARLIO0", "SD_MIO"},
                                   {"HARL_GEM0", "GEM0_BANK1", "VCCHARLIO1", "GEM0_MIO"},
                                   {"HARL_GEM1", "GEM1_BANK1", "VCCHARLIO1", "GEM1_MIO"},
                                   {"HARL_DED_IO", "DED_IO", "VCCFIO", "DED_IO_FIO"}};

// The core rail at the characterisation voltage, and tables of small numbers: what comes out is exact.
class HarlTest : public BlockFixture<Model> {
protected:
    HarlTest()
    {
        params[Params::VCCINTHARL] = 1.0f;
    }

    void calculate()
    {
        load(tableText("HARL_DATA", harl) + tableText("SIM_CONDITIONS", conditions));
        model.calculate(params);
    }

    float calculated(Params::FloatEnum cell)
    {
        calculate();
        return params[cell];
    }

    static Params::FloatEnum cell(const std::string& name)
    {
        const auto found = Params::string_to_float_enum(name);
        EXPECT_NE(found, Params::LastFloat) << name;
        return found;
    }

    float value(const std::string& name)
    {
        return params[cell(name)];
    }

    // 3 inputs, 5 outputs, 2 bidirectional pads that toggle at 4 MHz.
    void setPads(const std::string& peripheral)
    {
        params[Params::string_to_int_enum(peripheral + "_INPUTS")] = 3;
        params[Params::string_to_int_enum(peripheral + "_OUTPUTS")] = 5;
        params[Params::string_to_int_enum(peripheral + "_BIDIS")] = 2;
        params[cell(peripheral + "_FREQ")] = 4.0f;
        params[cell(peripheral + "_LOAD")] = 0.5f;
    }

    void setUsage(const std::string& peripheral, const char* usage)
    {
        params[Params::string_to_string_enum(peripheral + "_USAGE")] = usage;
    }

    TableRows harl{{"PMU_IOU_CLOCK", 2.0f},
                   {"HARL_IOU_DYNAMIC", 3.0f},
                   {"HARL_INTERCONNECT_CLK", 5.0f},
                   {"HARL_INTERCONNECT_DYNAMIC", 7.0f},
                   {"PLL_DYNAMIC_POWER_2160MHZ_VCCINT", 10.0f},
                   {"PLL_DYNAMIC_POWER_4320MHZ_VCCINT", 30.0f},
                   {"PLL_DYNAMIC_POWER_2160MHZ_VCCAUX", 100.0f},
                   {"PLL_DYNAMIC_POWER_4320MHZ_VCCAUX", 140.0f},
                   {"MIO_IOB_VCCINT_RX_DYNAMIC", 0.25f},
                   {"MIO_IOB_VCCINT_TX_DYNAMIC", 0.5f},
                   {"MIO_IOB_VCCAUX_RX_DYNAMIC", 1.0f},
                   {"MIO_IOB_VCCAUX_TX_DYNAMIC", 2.0f},
                   {"CAP_LOAD", 15.0f},
                   {"BIAS", 7.0f},
                   {"POR", 3.0f},
                   {"MIO_IOB_VCCO_HARLIO_1V8_RX_DYNAMIC", 0.125f},
                   {"MIO_IOB_VCCO_HARLIO_2V5_RX_DYNAMIC", 0.25f},
                   {"MIO_IOB_VCCO_HARLIO_3V3_RX_DYNAMIC", 0.5f},
                   {"MIO_IOB_VCCO_HARLIO_1V8_TX_4MA_F_DYNAMIC", 4.0f},
                   {"MIO_IOB_VCCO_HARLIO_2V5_TX_4MA_F_DYNAMIC", 6.0f},
                   {"MIO_IOB_VCCO_HARLIO_3V3_TX_4MA_F_DYNAMIC", 8.0f},
                   {"MIO_IOB_VCCO_HARLIO_2V5_TX_12MA_F_DYNAMIC", 10.0f},
                   {"MIO_IOB_VCCO_HARLIO_3V3_TX_12MA_F_DYNAMIC", 12.0f},
                   {"MIO_IOB_1V8_TX_12MA_CLOAD_SCALE_FACTOR", 0.25f},
                   {"MIO_IOB_2V5_TX_12MA_CLOAD_SCALE_FACTOR", 0.5f},
                   {"MIO_IOB_3V3_TX_12MA_CLOAD_SCALE_FACTOR", 0.75f},
                   {"MIO_BIAS_VCCO_HARLIO_1V8_STATIC", 1.0f},
                   {"MIO_BIAS_VCCO_HARLIO_2V5_STATIC", 2.0f},
                   {"MIO_BIAS_VCCO_HARLIO_3V3_STATIC", 3.0f},
                   {"MIO_POR_RCVR_VCCO_HARLIO_1V8_DYNAMIC", 0.5f},
                   {"MIO_POR_RCVR_VCCO_HARLIO_2V5_DYNAMIC", 0.25f},
                   {"MIO_POR_RCVR_VCCO_HARLIO_3V3_DYNAMIC", 0.125f},
                   {"CFG_BBR_TOP_DYNAMIC_VCCAUX_HARL", 1.0f},
                   {"CFG_HARL_POR_TOP_DYNAMIC_VCCAUX_HARL", 2.0f},
                   {"CFG_RTC_SPLYSW_DYNAMIC_VCCAUX_HARL", 4.0f},
                   {"CFG_VGG_TOP_DYNAMIC_VCCAUX_HARL", 8.0f},
                   {"CFG_GLITCH_DET_TOP_DYNAMIC_VCCAUX_HARL", 16.0f},
                   {"CFG_HARL_POR_TOP_DYNAMIC_VCCAUX", 32.0f},
                   {"CFG_PROBE_TOP_DYNAMIC_VCCAUX", 64.0f},
                   {"CFG_VGG_TOP_DYNAMIC_VCCAUX", 128.0f},
                   {"CFG_HARL_POR_TOP_DYNAMIC_VCCINT_SOC", 256.0f},
                   {"CFG_HARL_POR_TOP_DYNAMIC_VCCINT", 1.0f},
                   {"CFG_PROBE_TOP_DYNAMIC_VCCINT", 10.0f},
                   {"CFG_GLITCH_DET_TOP_DYNAMIC_VCCINT", 100.0f},
                   {"CFG_RTC_LVLSH_DYNAMIC_VCCINT", 1000.0f},
                   {"CFG_RTC_SPLYSW_DYNAMIC_VCCINT", 10000.0f},
                   {"CFG_VGG_TOP_DYNAMIC_VCCINT", 100000.0f},
                   {"TRNG_ANALOG_DYNAMIC_VCCINT", 1000000.0f},
                   {"AMS_SATELLITE_PS_CORE_DYNAMIC_VCCINT_HARL", 512.0f}};
    TableRows conditions{{"PSIM_VOLTAGE", 1.0f}};
};

TEST(Harl, FamiliesAreMembersTimesMetrics)
{
    std::set<std::string> intermediates{"HARL_BANK0_VCCINTHARL_POWER", "HARL_BANK0_VCCAUXHARL_POWER"};
    std::set<std::string> outputs;
    std::set<std::string> counts;
    for (const char* count : {"_INPUTS", "_OUTPUTS", "_BIDIS"})
        counts.insert(std::string("HARL_IO_BANK0") + count);
    for (const Peripheral& peripheral : kPeripherals) {
        for (const char* count : {"_INPUTS", "_OUTPUTS", "_BIDIS"})
            counts.insert(peripheral.inputs + count);
        for (const char* voltage : {"_18_POWER", "_25_POWER", "_33_POWER"})
            intermediates.insert(peripheral.voltage + voltage);
        outputs.insert(peripheral.internal + "_VCCINTHARL_POWER");
        outputs.insert(peripheral.internal + "_VCCAUXHARL_POWER");
        outputs.insert(peripheral.internal + "_" + peripheral.rail + "_POWER");
    }
    outputs.insert({"HARL_IO_BANK0_VCCINTHARL_POWER",
                    "HARL_IO_BANK0_VCCAUX_POWER",
                    "HARL_IOU_VCCINTHARL_POWER",
                    "HARL_INTERCONNECT_VCCINTHARL_POWER",
                    "HARL_PLL_VCCINTHARL_POWER",
                    "NOC_PLL_VCCINTHARL_POWER",
                    "HARL_PLL_VCCAUXHARL_POWER",
                    "NOC_PLL_VCCAUXHARL_POWER",
                    "VCCINT_HARL_POWER",
                    "VCCAUX_HARL_POWER",
                    "VCCHARLIO0_POWER",
                    "VCCHARLIO1_POWER",
                    "VCC_FIO_POWER",
                    "HARL_DYNAMIC_POWER",
                    "HARL_AMS_SYSMON_DYNAMIC_POWER",
                    "TOTAL_DYNAMIC_POWER",
                    "VCCINTHARL_VOLTAGE_SCALING",
                    "HARL_AUXHARLSYSMON_POWER",
                    "HARL_AMSAUXPOWER",
                    "HARL_AMSVCCSOCPOWER",
                    "HARL_AMSINTPOWER",
                    "HARL_AMSHARLPOWER"});

    std::map<ZelmCellInfo::Kind, std::set<std::string>> listed;
    std::set<std::string> ints;
    for (const ZelmCellInfo& info : Params::cells()) {
        listed[info.kind].emplace(info.name);
        if (info.type == ZelmCellInfo::Type::integer)
            ints.emplace(info.name);
    }
    EXPECT_EQ(listed[ZelmCellInfo::Kind::intermediate], intermediates);
    EXPECT_EQ(listed[ZelmCellInfo::Kind::modelOutput], outputs);
    EXPECT_EQ(ints, counts);
}

TEST_F(HarlTest, ScalingIsTheRatioToThePower23)
{
    conditions["PSIM_VOLTAGE"] = 0.85f;
    params[Params::VCCINTHARL] = 0.88f;
    const double ratio = static_cast<double>(0.88f / 0.85f); // a float, its power a double
    EXPECT_THAT(calculated(Params::VCCINTHARL_VOLTAGE_SCALING), IsBits(static_cast<float>(std::pow(ratio, 2.3))));
    EXPECT_NEAR(params[Params::VCCINTHARL_VOLTAGE_SCALING], 1.083045, 2e-6); // exp(2.3 x 0.0346855)
    for (const float simulated : {0.0f, -1.0f}) {
        conditions["PSIM_VOLTAGE"] = simulated;
        EXPECT_THAT(calculated(Params::VCCINTHARL_VOLTAGE_SCALING), IsBits(0.0f)) << simulated;
        EXPECT_THAT(params[Params::HARL_IOU_VCCINTHARL_POWER], IsBits(0.0f)) << simulated;
    }
}

TEST_F(HarlTest, ClockGatingHasThreeStates)
{
    params[Params::IOU_CLOCK_FREQ] = 4.0f;
    params[Params::IOU_LOAD] = 0.5f;
    params[Params::INTERCONNECT_CLOCK_FREQ] = 8.0f;
    params[Params::INTERCONNECT_LOAD] = 0.25f;
    const struct {
        const char* gating;
        float iou, interconnect, aux, auxHarl;
    } states[] = {
        // 2 x 4 + 3 x 4 x 0.5; 5 x 8 + 7 x 8 x 0.25; 32 + 64 + 128; 1 + 2 + 4 + 8 + 16
        {"DISABLED", 14.0f, 54.0f, 224.0f, 31.0f},
        {"ENABLED", 0.0f, 0.0f, 0.0f, 3.0f},
        {"PARTIAL", 14.0f, 54.0f, 0.0f, 3.0f}, // neither: the logic runs, the analog cells don't
        {"enabled", 14.0f, 54.0f, 0.0f, 3.0f},
    };
    for (const auto& state : states) {
        SCOPED_TRACE(state.gating);
        params[Params::CLOCK_GATING] = state.gating;
        calculate();
        EXPECT_THAT(params[Params::HARL_IOU_VCCINTHARL_POWER], IsBits(state.iou));
        EXPECT_THAT(params[Params::HARL_INTERCONNECT_VCCINTHARL_POWER], IsBits(state.interconnect));
        EXPECT_THAT(params[Params::HARL_AMSAUXPOWER], IsBits(state.aux));
        EXPECT_THAT(params[Params::HARL_AUXHARLSYSMON_POWER], IsBits(state.auxHarl));
    }
}

TEST_F(HarlTest, AnalogCells)
{
    calculate();
    EXPECT_THAT(params[Params::HARL_AMSVCCSOCPOWER], IsBits(256.0f));
    EXPECT_THAT(params[Params::HARL_AMSINTPOWER], IsBits(1111111.0f));
    EXPECT_THAT(params[Params::HARL_AMSHARLPOWER], IsBits(1024.0f));                // 2 x 512
    EXPECT_THAT(params[Params::HARL_AMS_SYSMON_DYNAMIC_POWER], IsBits(1112646.0f)); // 31 + 224 + 256 + 1111111 + 1024
    for (const float voltage : {0.0f, -1.5f}) {
        params[Params::VCCAUXHARL] = voltage;
        EXPECT_THAT(calculated(Params::HARL_AUXHARLSYSMON_POWER), IsBits(0.0f)) << voltage;
        EXPECT_THAT(params[Params::HARL_AMSAUXPOWER], IsBits(224.0f)) << voltage;
    }
}

TEST_F(HarlTest, GatedAnalogTermsAreAddedOneByOne)
{
    // Each 1 vanishes beside 2^24; 3 in one would not.
    harl["CFG_BBR_TOP_DYNAMIC_VCCAUX_HARL"] = 16777216.0f;
    harl["CFG_HARL_POR_TOP_DYNAMIC_VCCAUX_HARL"] = 0.0f;
    for (const char* key : {"CFG_RTC_SPLYSW_DYNAMIC_VCCAUX_HARL", "CFG_VGG_TOP_DYNAMIC_VCCAUX_HARL",
                            "CFG_GLITCH_DET_TOP_DYNAMIC_VCCAUX_HARL"})
        harl[key] = 1.0f;
    EXPECT_THAT(calculated(Params::HARL_AUXHARLSYSMON_POWER), IsBits(16777216.0f));
}

TEST_F(HarlTest, PllLineHasNoEnds)
{
    // VCCAUX: 100 at 2160, 140 at 4320, so 10 per 540 MHz
    const std::pair<float, float> points[] = {{540.0f, 70.0f}, {2160.0f, 100.0f}, {2700.0f, 110.0f}, {6480.0f, 180.0f}};
    for (const auto& [frequency, power] : points) {
        params[Params::HARL_PLL_CLOCK] = frequency;
        params[Params::NOC_PLL_CLOCK] = frequency + 540.0f;
        calculate();
        EXPECT_NEAR(params[Params::HARL_PLL_VCCAUXHARL_POWER], power, 1e-4) << frequency;
        EXPECT_NEAR(params[Params::NOC_PLL_VCCAUXHARL_POWER], power + 10.0f, 1e-4) << frequency;
    }
    params[Params::HARL_PLL_CLOCK] = 540.0f;
    EXPECT_LT(calculated(Params::HARL_PLL_VCCINTHARL_POWER), 0.0f); // -5 before the voltage
}

TEST_F(HarlTest, PllsCountAgainstAFixedVoltage)
{
    params[Params::HARL_PLL_CLOCK] = 2160.0f;
    params[Params::NOC_PLL_CLOCK] = 2160.0f;
    params[Params::VCCINTHARL] = 0.9f;
    for (const float simulated : {0.0f, 0.8f}) { // at 0 the scaling cell is 0
        conditions["PSIM_VOLTAGE"] = simulated;
        calculate();
        const double power = 10.0 * std::pow(static_cast<double>(0.9f) / 0.85, 2.3);
        EXPECT_THAT(params[Params::HARL_PLL_VCCINTHARL_POWER], IsBits(static_cast<float>(power)));
        EXPECT_THAT(params[Params::NOC_PLL_VCCINTHARL_POWER], IsBits(static_cast<float>(power)));
        EXPECT_NEAR(params[Params::HARL_PLL_VCCINTHARL_POWER], 11.40493, 1e-4); // 10 exp(2.3 x 0.0571584)
        EXPECT_THAT(params[Params::HARL_PLL_VCCAUXHARL_POWER], IsBits(100.0f));
    }
}

TEST_F(HarlTest, AnythingButPowerdownKeepsAPllOn)
{
    params[Params::HARL_PLL_CLOCK] = 2160.0f;
    params[Params::NOC_PLL_CLOCK] = 2160.0f;
    for (const char* usage : {"ON", "OFF", "powerdown", ""}) {
        params[Params::HARL_PLL_USAGE] = usage;
        EXPECT_THAT(calculated(Params::HARL_PLL_VCCAUXHARL_POWER), IsBits(100.0f)) << usage;
    }
    params[Params::HARL_PLL_USAGE] = "POWERDOWN";
    calculate();
    EXPECT_THAT(params[Params::HARL_PLL_VCCINTHARL_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::HARL_PLL_VCCAUXHARL_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::NOC_PLL_VCCAUXHARL_POWER], IsBits(100.0f)); // has its own usage
}

TEST_F(HarlTest, PadsOnTheInternalRails)
{
    for (const Peripheral& peripheral : kPeripherals) {
        SCOPED_TRACE(peripheral.inputs);
        params.reset();
        params[Params::VCCINTHARL] = 2.0f; // pads carry no scaling
        setPads(peripheral.inputs);
        calculate();
        // 3 x 0.25 x 4 + 5 x 0.5 x 4 + 0.75 x 4 x 2 and 3 x 1 x 4 + 5 x 2 x 4 + 3 x 4 x 2
        EXPECT_THAT(value(peripheral.internal + "_VCCINTHARL_POWER"), IsBits(19.0f));
        EXPECT_THAT(value(peripheral.internal + "_VCCAUXHARL_POWER"), IsBits(76.0f));

        // Out of use it keeps its share of the auxiliary rail.
        for (const char* usage : {"DISABLED", "enabled", "ON"}) {
            setUsage(peripheral.inputs, usage);
            calculate();
            EXPECT_THAT(value(peripheral.internal + "_VCCINTHARL_POWER"), IsBits(0.0f)) << usage;
            EXPECT_THAT(value(peripheral.internal + "_VCCAUXHARL_POWER"), IsBits(76.0f)) << usage;
        }
    }
}

TEST_F(HarlTest, PadsOnTheirOwnRail)
{
    struct Powers {
        float at18, at25, at33;
    };
    // Load factors 0.25, 0.5, 0.75 x (15/5 - 1) + 1 = 1.5, 2, 2.5, and transmitters of 4 mA at every voltage:
    // 3 x 0.125 x 4 + 5 x 4 x 1.5 x 4 + (1.5 x 4 + 0.125) x 2 x 4 = 1.5 + 120 + 49
    // 3 x 0.25 x 4 + 5 x 6 x 2 x 4 + (2 x 6 + 0.25) x 2 x 4 = 3 + 240 + 98
    // 3 x 0.5 x 4 + 5 x 8 x 2.5 x 4 + (2.5 x 8 + 0.5) x 2 x 4 = 6 + 400 + 164
    const Powers usual{170.5f, 341.0f, 570.0f};
    // USB: 1 input, 1 output, 4 bidirectional pads at 60 MHz, whatever its cells say
    // 0.125 x 60 + 4 x 1.5 x 60 + 6.125 x 4 x 60, 0.25 x 60 + 6 x 2 x 60 + 12.25 x 240, 0.5 x 60 + 20 x 60 + 20.5 x 240
    const Powers usb{1837.5f, 3675.0f, 6150.0f};
    // Dedicated pins: 12 mA at 2.5 and 3.3 V, 7 bias cells, 3 reset receivers at 4 MHz
    // 170.5 + 7 x 1 + 0.5 x 3 x 4
    // 3 + 5 x 10 x 2 x 4 + (2 x 10 + 0.25) x 8 + 7 x 2 + 0.25 x 3 x 4 = 3 + 400 + 162 + 14 + 3
    // 6 + 5 x 12 x 2.5 x 4 + (2.5 x 12 + 0.5) x 8 + 7 x 3 + 0.125 x 3 x 4 = 6 + 600 + 244 + 21 + 1.5
    const Powers dedicated{183.5f, 582.0f, 872.5f};

    for (const Peripheral& peripheral : kPeripherals) {
        SCOPED_TRACE(peripheral.inputs);
        const Powers& expected = peripheral.inputs == "HARL_USB0"     ? usb
                                 : peripheral.inputs == "HARL_DED_IO" ? dedicated
                                                                      : usual;
        params.reset();
        setPads(peripheral.inputs);
        calculate();
        EXPECT_THAT(value(peripheral.voltage + "_18_POWER"), IsBits(expected.at18));
        EXPECT_THAT(value(peripheral.voltage + "_25_POWER"), IsBits(expected.at25));
        EXPECT_THAT(value(peripheral.voltage + "_33_POWER"), IsBits(expected.at33));

        // GEM0 and GEM1 follow bank 1's standard, all others bank 0's, the dedicated pins too. Load 0.5.
        const bool onBank1 = peripheral.rail == "VCCHARLIO1";
        const auto own = onBank1 ? Params::HARL_BANK1_IOSTD : Params::HARL_BANK0_IOSTD;
        const auto other = onBank1 ? Params::HARL_BANK0_IOSTD : Params::HARL_BANK1_IOSTD;
        const std::string rail = peripheral.internal + "_" + peripheral.rail + "_POWER";
        const std::pair<const char*, float> standards[] = {{"LVCMOS18", expected.at18},  {"LVCMOS25", expected.at25},
                                                           {"LVCMOS33", expected.at33},  {"lvcmos18", expected.at33},
                                                           {"LVCMOS18 ", expected.at33}, {"", expected.at33}};
        for (const auto& [standard, power] : standards) {
            params[own] = standard;
            params[other] = "LVCMOS25";
            calculate();
            EXPECT_THAT(value(rail), IsBits(power * 0.5f)) << standard;
        }

        // Out of use it is 0 times the load: a negative load shows.
        setUsage(peripheral.inputs, "DISABLED");
        calculate();
        EXPECT_THAT(value(rail), IsBits(0.0f));
        params[cell(peripheral.inputs + "_LOAD")] = -0.5f;
        calculate();
        EXPECT_THAT(value(rail), IsBits(-0.0f));
        EXPECT_THAT(value(peripheral.voltage + "_33_POWER"), IsBits(expected.at33));
    }
}

TEST_F(HarlTest, UsbCellsServeTheInternalRailsOnly)
{
    calculate();
    const float before = params[Params::HARL_USB0_BANK0_VCCHARLIO0_POWER];
    EXPECT_THAT(params[Params::HARL_USB0_BANK0_VCCINTHARL_POWER], IsBits(225.0f)); // 60 x (0.25 + 0.5 + 0.75 x 4)
    EXPECT_THAT(params[Params::HARL_USB0_BANK0_VCCAUXHARL_POWER], IsBits(900.0f)); // 60 x (1 + 2 + 3 x 4)
    params[Params::HARL_USB0_FREQ] = 120.0f;
    calculate();
    EXPECT_THAT(params[Params::HARL_USB0_BANK0_VCCINTHARL_POWER], IsBits(450.0f));
    EXPECT_THAT(params[Params::HARL_USB0_BANK0_VCCAUXHARL_POWER], IsBits(1800.0f));
    EXPECT_THAT(params[Params::HARL_USB0_BANK0_VCCHARLIO0_POWER], IsBits(before));
}

TEST_F(HarlTest, BankZeroSubtractsUsbAndSdOnTheCoreRailOnly)
{
    setPads("HARL_USB0");
    setPads("HARL_SD");
    params[Params::HARL_IO_BANK0_INPUTS] = 2;
    params[Params::HARL_IO_BANK0_OUTPUTS] = 4;
    params[Params::HARL_IO_BANK0_BIDIS] = 6;
    params[Params::IOU_CLOCK_FREQ] = 8.0f;
    calculate();
    EXPECT_THAT(params[Params::HARL_BANK0_VCCINTHARL_POWER], IsBits(56.0f));    // 2 x 0.25 x 8 + 4 x 0.5 x 8 + 36
    EXPECT_THAT(params[Params::HARL_BANK0_VCCAUXHARL_POWER], IsBits(224.0f));   // 2 x 8 + 4 x 2 x 8 + 3 x 8 x 6
    EXPECT_THAT(params[Params::HARL_IO_BANK0_VCCINTHARL_POWER], IsBits(18.0f)); // 56 - 19 - 19
    EXPECT_THAT(params[Params::HARL_IO_BANK0_VCCAUX_POWER], IsBits(224.0f));

    // SD out of use: it is no longer subtracted, and keeps its auxiliary share.
    setUsage("HARL_SD", "DISABLED");
    calculate();
    EXPECT_THAT(params[Params::HARL_SD_BANK0_VCCINTHARL_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::HARL_IO_BANK0_VCCINTHARL_POWER], IsBits(37.0f)); // 56 - 19 - 0
    EXPECT_THAT(params[Params::HARL_SD_BANK0_VCCAUXHARL_POWER], IsBits(76.0f));
    setUsage("HARL_SD", "ENABLED");

    // Out of use, bank 0 has neither share, and its peripherals keep theirs.
    setUsage("HARL_IO_BANK0", "DISABLED");
    calculate();
    for (const auto zero : {Params::HARL_BANK0_VCCINTHARL_POWER, Params::HARL_BANK0_VCCAUXHARL_POWER,
                            Params::HARL_IO_BANK0_VCCINTHARL_POWER, Params::HARL_IO_BANK0_VCCAUX_POWER})
        EXPECT_THAT(params[zero], IsBits(0.0f)) << Params::enum_to_string(zero);
    EXPECT_THAT(params[Params::HARL_SD_BANK0_VCCINTHARL_POWER], IsBits(19.0f));
    setUsage("HARL_IO_BANK0", "ENABLED");

    // A fast SD card takes more than the bank has: no clamp.
    params[Params::HARL_SD_FREQ] = 400.0f;
    calculate();
    EXPECT_THAT(params[Params::HARL_IO_BANK0_VCCINTHARL_POWER], IsBits(-1863.0f)); // 56 - 19 - 1900
}

TEST_F(HarlTest, TotalsAddUpFromLeftToRight)
{
    calculate();
    const auto sum = [&](const std::vector<std::string>& cells) {
        float total = value(cells[0]);
        for (std::size_t i = 1; i < cells.size(); ++i)
            total += value(cells[i]);
        return total;
    };
    std::vector<std::string> core{"HARL_IOU_VCCINTHARL_POWER", "HARL_INTERCONNECT_VCCINTHARL_POWER",
                                  "HARL_PLL_VCCINTHARL_POWER", "NOC_PLL_VCCINTHARL_POWER",
                                  "HARL_IO_BANK0_VCCINTHARL_POWER"};
    std::vector<std::string> aux{"HARL_PLL_VCCAUXHARL_POWER", "NOC_PLL_VCCAUXHARL_POWER", "HARL_IO_BANK0_VCCAUX_POWER"};
    std::map<std::string, std::vector<std::string>> rails;
    for (const Peripheral& peripheral : kPeripherals) {
        core.push_back(peripheral.internal + "_VCCINTHARL_POWER");
        aux.push_back(peripheral.internal + "_VCCAUXHARL_POWER");
        rails[peripheral.rail].push_back(peripheral.internal + "_" + peripheral.rail + "_POWER");
    }
    EXPECT_THAT(params[Params::VCCINT_HARL_POWER], IsBits(sum(core)));
    EXPECT_THAT(params[Params::VCCAUX_HARL_POWER], IsBits(sum(aux)));
    EXPECT_THAT(params[Params::VCCHARLIO0_POWER], IsBits(sum(rails["VCCHARLIO0"])));
    EXPECT_THAT(params[Params::VCCHARLIO1_POWER], IsBits(sum(rails["VCCHARLIO1"])));
    EXPECT_THAT(params[Params::VCC_FIO_POWER], IsBits(sum(rails["VCCFIO"])));
    EXPECT_THAT(params[Params::HARL_DYNAMIC_POWER],
                IsBits(sum({"VCCINT_HARL_POWER", "VCCAUX_HARL_POWER", "VCCHARLIO0_POWER", "VCCHARLIO1_POWER",
                            "VCC_FIO_POWER"})));
    EXPECT_THAT(params[Params::TOTAL_DYNAMIC_POWER],
                IsBits(sum({"HARL_DYNAMIC_POWER", "HARL_AMS_SYSMON_DYNAMIC_POWER"})));
}

TEST_F(HarlTest, AMissingKeyLetsTheSentinelFlowOn)
{
    harl.erase("CFG_HARL_POR_TOP_DYNAMIC_VCCINT_SOC");
    harl.erase("BIAS");
    harl["MIO_BIAS_VCCO_HARLIO_1V8_STATIC"] = 0.5f;
    setPads("HARL_DED_IO");
    calculate();
    EXPECT_THAT(params[Params::HARL_AMSVCCSOCPOWER], IsBits(zelm::unsetFloat));
    EXPECT_THAT(params[Params::DED_IO_VCCFIO_POWER], IsBits(zelm::unsetFloat * 0.25f)); // 0.5, and the load of 0.5
    // All else vanishes beside them, and their sum is beyond a float.
    EXPECT_THAT(params[Params::HARL_DYNAMIC_POWER], IsBits(zelm::unsetFloat * 0.25f));
    EXPECT_THAT(params[Params::HARL_AMS_SYSMON_DYNAMIC_POWER], IsBits(zelm::unsetFloat));
    EXPECT_TRUE(std::isinf(params[Params::TOTAL_DYNAMIC_POWER]));
}

TEST(Harl, ShippedDataIsBelievable)
{
    const DataDirVariable variable(shippedDataDirectory());
    Data::getMutableGlobal().reset();
    const auto expectBetween = [](float value, float least, float most, const char* what) {
        EXPECT_TRUE(value > least && value < most) << what << " = " << value << " mW";
    };
    Params params;
    Model::getGlobal().calculate(params);
    expectBetween(params[Params::TOTAL_DYNAMIC_POWER], 150.0f, 500.0f, "platform management");
    expectBetween(params[Params::HARL_PLL_VCCINTHARL_POWER] + params[Params::HARL_PLL_VCCAUXHARL_POWER], 5.0f, 30.0f,
                  "a PLL");
    expectBetween(params[Params::HARL_IO_BANK0_VCCINTHARL_POWER], 0.0f, 20.0f, "bank 0 inside");
    expectBetween(params[Params::VCCHARLIO0_POWER], 2.0f, 60.0f, "bank 0 at 1.8 V and small loads");
    expectBetween(params[Params::HARL_AMS_SYSMON_DYNAMIC_POWER], 5.0f, 50.0f, "analog cells");
    for (const std::string peripheral : {"USB0", "QSPI", "OSPI", "I2C", "SD", "GEM0", "GEM1"}) {
        const auto at = [&](const char* voltage) {
            return params[Params::string_to_float_enum(peripheral + "_MIO_" + voltage + "_POWER")];
        };
        EXPECT_TRUE(0.0f < at("18") && at("18") < at("25") && at("25") < at("33")) << peripheral;
    }
}

} // namespace zelm::test::harlTest
