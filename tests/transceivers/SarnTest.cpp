#include "transceivers/ZelmOrvaneSarnModel.h"

#include "support/BlockFixture.h"

#include <cfloat>

namespace zelm::test::sarnTest {

using Params = ZelmOrvaneSarnParams;

class SarnTest : public BlockFixture<ZelmOrvaneSarnModel> {
protected:
    SarnTest()
    {
        write("MARGIN_FACTOR_1 = 1.0; MARGIN_FACTOR_2 = 1.0;");
        params[Params::VCCINT] = 0.88f;
        params[Params::RX_DATA_RATE] = 40.0f;
        params[Params::TX_DATA_RATE] = 96.0f;
    }

    // Whole numbers, so that every step is exact while the supplies scale by 1.
    void write(const std::string& margins)
    {
        load(R"(
            PAM4_DATARATES : { SPEED_1 : { MAX = 58.0; }; SPEED_2 : { MAX = 100.0; }; SPEED_3 : { MAX = 112.0; }; };
            NRZ_DATARATES : { SPEED_1 : { MAX = 25.0; }; SPEED_2 : { MAX = 28.0; }; SPEED_3 : { MAX = 32.0; }; };
            PAM4_DATARATE_RANGES : { RANGE_1 : { MIN = 10.0; }; };
            NRZ_DATARATE_RANGES : { RANGE_1 : { MIN = 5.0; }; };
            CHTX_DATA : { SER_AVCC : { SLOPE = 1.0; OFFSET = 2.0; }; PREDRV_AVCC : { SLOPE = 3.0; OFFSET = 4.0; };
                          COEFF_MUL_AVCC : { SLOPE = 5.0; OFFSET = 6.0; }; CLKBUF_AVTT : { SLOPE = 7.0; OFFSET = 8.0; };
                          DRIVER_VCCAUX : { SLOPE = 0.5; OFFSET = 9.0; }; };
            CHRX_FIXED_POWER_DATA : {
                VCM_AVTT : { CHRX_LR = 1.0; CHRX_VSR = 2.0; CHRX_XSR = 3.0; };
                ACJTAG_AVTT : { CHRX_LR = 100.0; CHRX_VSR = 200.0; CHRX_XSR = 300.0; };
                LS_OSDAC_AVTT : { CHRX_LR = 4.0; CHRX_VSR = 5.0; CHRX_XSR = 6.0; };
                ADC_VREF_AVTT : { CHRX_LR = 7.0; CHRX_VSR = 8.0; CHRX_XSR = 9.0; };
                RXREG_AVTT : { CHRX_LR = 10.0; CHRX_VSR = 11.0; CHRX_XSR = 12.0; };
                ADC_VREF_VCCAUX : { CHRX_LR = 13.0; CHRX_VSR = 14.0; CHRX_XSR = 15.0; }; };
            CHRX_FIXED_POWER_DATA_LTE_15GBAUD : {
                CTLE_HF_MF_AVTT : { CHRX_LR = 20.0; }; CTLE_AGC_AVTT : { CHRX_LR = 30.0; }; };
            CHRX_FIXED_POWER_DATA_LTE_30GBAUD : {
                CTLE_HF_MF_AVTT : { CHRX_LR = 40.0; CHRX_VSR = 41.0; CHRX_XSR = 42.0; };
                CTLE_AGC_AVTT : { CHRX_LR = 50.0; CHRX_VSR = 51.0; CHRX_XSR = 52.0; }; };
            CHRX_FIXED_POWER_DATA_GT_30GBAUD : {
                CTLE_HF_MF_AVTT : { CHRX_LR = 60.0; CHRX_VSR = 61.0; CHRX_XSR = 62.0; };
                CTLE_AGC_AVTT : { CHRX_LR = 70.0; CHRX_VSR = 71.0; CHRX_XSR = 72.0; }; };
            CHRX_LR_DATA : {
                ADC_SAR_AVCC : { SLOPE = 1.0; OFFSET = 2.0; }; ADC_RETIMER_AVCC : { SLOPE = 3.0; OFFSET = 4.0; };
                ADC_CLKGEN_AVTT : { SLOPE = 5.0; OFFSET = 6.0; }; ADC_SAR_AVTT : { SLOPE = 7.0; OFFSET = 8.0; };
                CDR_VCCINTGT : { SLOPE = 9.0; OFFSET = 10.0; }; };
            CHRX_LR_DATA_GT_30GBAUD : { DSP_VCCINTGT : { SLOPE = 11.0; OFFSET = 12.0; };
                                        ADAPT_VCCINTGT : { SLOPE = 13.0; OFFSET = 14.0; }; };
            CHRX_LR_DATA_LTE_30GBAUD : { DSP_VCCINTGT : { SLOPE = 15.0; OFFSET = 16.0; };
                                         ADAPT_VCCINTGT : { SLOPE = 17.0; OFFSET = 18.0; }; };
            CHRX_VSR_DATA : {
                ADC_SAR_AVCC : { SLOPE = 2.0; OFFSET = 1.0; }; ADC_RETIMER_AVCC : { SLOPE = 4.0; OFFSET = 3.0; };
                ADC_CLKGEN_AVTT : { SLOPE = 6.0; OFFSET = 5.0; }; ADC_SAR_AVTT : { SLOPE = 8.0; OFFSET = 7.0; };
                CDR_VCCINTGT : { SLOPE = 10.0; OFFSET = 9.0; }; DSP_VCCINTGT : { SLOPE = 12.0; OFFSET = 11.0; };
                ADAPT_VCCINTGT : { SLOPE = 14.0; OFFSET = 13.0; }; };
            CHRX_XSR_DATA : {
                ADC_SAR_AVCC : { SLOPE = 3.0; OFFSET = 1.0; }; ADC_RETIMER_AVCC : { SLOPE = 5.0; OFFSET = 2.0; };
                ADC_CLKGEN_AVTT : { SLOPE = 7.0; OFFSET = 3.0; }; ADC_SAR_AVTT : { SLOPE = 9.0; OFFSET = 4.0; };
                CDR_VCCINTGT : { SLOPE = 11.0; OFFSET = 5.0; }; DSP_VCCINTGT : { SLOPE = 13.0; OFFSET = 6.0; };
                ADAPT_VCCINTGT : { SLOPE = 15.0; OFFSET = 7.0; }; };
            CH_CLK_DATA : { PREPI_AVTT : { SLOPE = 1.0; OFFSET = 10.0; }; RXPI_AVTT : { SLOPE = 2.0; OFFSET = 20.0; };
                            RXCLKGEN_AVTT : { SLOPE = 3.0; OFFSET = 30.0; }; };
            PCS_DATA : { PCS_VCCINT : { SLOPE = 2.0; OFFSET = 5.0; }; };
            LCPLL_DATA : { QPLL_AVCC = 40.0; QPLL_VCCAUX = 60.0; IQGEN_AVTT = 10.0;
                           HS_CLKDIST_AVTT_SLOPE = 2.0; HS_CLKDIST_AVTT_OFFSET = 3.0; };
            COMMON_DATA : { LCPLL_VCO_MIN = 8.0; LCPLL_VCO_MAX = 20.0; REFCLK_AVCC = 20.0; BIAS_AVTT = 30.0; };
            PVT_SCALING_DATA : { )" +
             margins + " };");
    }

    // The cells of the receiver's families that aren't 0, by name.
    std::vector<std::string> live() const
    {
        std::vector<std::string> names, kept;
        Params::getFloatIntermediateCalculationNames(names);
        for (const std::string& name : names)
            if (name.find("_RX_POWER_") != std::string::npos && params[Params::string_to_float_enum(name)] != 0.0f)
                kept.push_back(name);
        return kept;
    }
};

TEST(Sarn, HasNineteenTables)
{
    EXPECT_EQ(ZelmOrvaneSarnData::tables().size(), 19u);
}

TEST(Sarn, FamiliesAreReachesTimesRailsAndBins)
{
    std::vector<std::string> expected, names, listed;
    for (const char* reach : {"LR", "VSR", "XSR"}) {
        expected.push_back(std::string("MSARNAVCCAUX_RX_POWER_") + reach);
        expected.push_back(std::string("MSARNAVCC_RX_POWER_") + reach);
        for (const char* bin : {"_LTE_30GBAUD", "_GT_30GBAUD"})
            expected.push_back(std::string("MSARNAVTT_RX_POWER_") + reach + bin);
    }
    expected.emplace_back("MSARNAVTT_RX_POWER_LR_LTE_15GBAUD"); // the only bin below 15 GBd
    for (const char* processor : {"LR_LTE_30GBAUD", "LR_GT_30GBAUD", "VSR", "XSR"})
        expected.push_back(std::string("VCCINT_GT_RX_POWER_") + processor);
    Params::getFloatIntermediateCalculationNames(names);
    for (const std::string& name : names)
        if (name.find("_RX_POWER_") != std::string::npos)
            listed.push_back(name);
    EXPECT_THAT(listed, testing::UnorderedElementsAreArray(expected));
}

TEST(Sarn, ShippedDataGivesBelievablePower)
{
    const DataDirVariable variable(shippedDataDirectory());
    ASSERT_TRUE(ZelmOrvaneSarnData::getMutableGlobal().reset());
    float before = 1e30f;
    for (const char* reach : {"LR", "VSR", "XSR"}) {
        Params params;
        params[Params::POWER_MODE] = reach;
        ZelmOrvaneSarnModel::getGlobal().calculate(params);
        EXPECT_GT(params[Params::TOTAL_POWER], 400.0f) << reach;
        EXPECT_LT(params[Params::TOTAL_POWER], 700.0f) << reach;
        EXPECT_LT(params[Params::TOTAL_POWER], before) << reach; // a shorter reach takes less
        before = params[Params::TOTAL_POWER];
    }
    before = 0.0f;
    for (const float rate : {20.0f, 53.125f, 106.25f}) {
        Params params;
        params[Params::RX_DATA_RATE] = params[Params::TX_DATA_RATE] = rate;
        ZelmOrvaneSarnModel::getGlobal().calculate(params);
        EXPECT_GT(params[Params::TOTAL_POWER], before + 50.0f) << rate;
        EXPECT_GE(params[Params::QPLL_RX], 8.0f) << rate;
        EXPECT_LE(params[Params::QPLL_RX], 16.375f) << rate;
        before = params[Params::TOTAL_POWER];
    }
}

TEST_F(SarnTest, AddsTheRails)
{
    calculate();
    EXPECT_THAT(params[Params::CHCLK_OUTPUT_FREQUENCY], IsBits(5.0f)); // 40 / 8
    EXPECT_THAT(params[Params::DSP_CLK_RATE], IsBits(40.0f));
    EXPECT_THAT(params[Params::RX_VCO_LCPLL], IsBits(10.0f));
    EXPECT_THAT(params[Params::LCPLL_FREQUENCY], IsBits(12.0f)); // the transmitter's 96 / 8
    EXPECT_THAT(params[Params::HSCLK_OUTPUT_FREQUENCY], IsBits(6.0f));
    EXPECT_THAT(params[Params::RX_MSARNAVCC_POWER], IsBits(166.0f)); // 40 + 2 + 3 x 40 + 4
    // 1 + 4 + 7 + 10 + 40 + 50 + 5 x 40 + 6 + 7 x 40 + 8
    EXPECT_THAT(params[Params::RX_MSARNAVTT_POWER], IsBits(606.0f));
    EXPECT_THAT(params[Params::RX_MSARNAVCCAUX_POWER], IsBits(13.0f));
    EXPECT_THAT(params[Params::RX_VCCINT_GT_POWER], IsBits(1684.0f));   // (15 + 9 + 17) x 40 + 16 + 10 + 18
    EXPECT_THAT(params[Params::TX_MSARNAVCC_POWER], IsBits(876.0f));    // (1 + 3 + 5) x 96 + 2 + 6 + 4
    EXPECT_THAT(params[Params::TX_MSARNAVTT_POWER], IsBits(680.0f));    // 7 x 96 + 8
    EXPECT_THAT(params[Params::TX_MSARNAVCCAUX_POWER], IsBits(509.0f)); // 1000 x 0.5 + 9
    EXPECT_THAT(params[Params::VCCINT_CH_PWR], IsBits(197.0f));         // 96 x 2 + 5
    EXPECT_THAT(params[Params::PLL_MSARNAVCC_POWER], IsBits(20.0f));    // 40 / 2
    EXPECT_THAT(params[Params::PLL_MSARNAVTT_POWER], IsBits(18.5f));    // (12 x 2 + 10 + 3) / 2
    EXPECT_THAT(params[Params::PLL_MSARNVCCAUX_POWER], IsBits(30.0f));  // 60 / 2
    EXPECT_THAT(params[Params::COMMON_MSARNAVCC_POWER], IsBits(20.0f));
    EXPECT_THAT(params[Params::COMMON_MSARNAVTT_POWER], IsBits(126.0f)); // 30 + 6 x (1 + 2 + 3) + 10 + 20 + 30
    EXPECT_THAT(params[Params::MSARNAVCC_POWER], IsBits(1082.0f));       // 166 + 876 + 20 + 20
    EXPECT_THAT(params[Params::MSARNAVTT_POWER], IsBits(1430.5f));       // 606 + 680 + 18.5 + 126
    EXPECT_THAT(params[Params::VCCINT_GT_POWER], IsBits(1684.0f));
    EXPECT_THAT(params[Params::VCCINT_POWER], IsBits(197.0f));
    // The receiver's 13 and the transmitter's 509 on the auxiliary supply are in no total.
    EXPECT_THAT(params[Params::MSARNVCCAUX_POWER], IsBits(30.0f));
    EXPECT_THAT(params[Params::TOTAL_POWER], IsBits(4423.5f)); // 197 + 1082 + 1430.5 + 30 + 1684
}

TEST_F(SarnTest, ScalesWithSuppliesAndMargins)
{
    write("MARGIN_FACTOR_1 = 2.0; MARGIN_FACTOR_2 = 3.0;");
    params[Params::MSARNAVCC] = 0.44f;
    params[Params::MSARNAVTT] = 0.3f;
    params[Params::MSARNVCCAUX] = 3.0f;
    params[Params::VCCINT] = 0.44f;
    params[Params::VCCINT_GT] = 7.0f; // moves nothing
    calculate();
    EXPECT_THAT(params[Params::SCALE_AVCC_CML], IsBits(1.0f));       // 1/2 x 2
    EXPECT_THAT(params[Params::SCALE_AVCC_CMOS], IsBits(0.5f));      // 1/4 x 2
    EXPECT_THAT(params[Params::SCALE_AVTT_CML], IsBits(0.5f));       // 1/4 x 2
    EXPECT_THAT(params[Params::SCALE_VCCAUX_CML], IsBits(4.0f));     // 2 x 2
    EXPECT_THAT(params[Params::SCALE_VCCINT_CMOS], IsBits(0.75f));   // 1/4 x 3
    EXPECT_THAT(params[Params::RX_MSARNAVCC_POWER], IsBits(104.0f)); // 42 + 124 x 0.5
    EXPECT_THAT(params[Params::RX_MSARNAVTT_POWER], IsBits(303.0f));
    // The receiver's auxiliary and VCCINT_GT powers go with the termination supply.
    EXPECT_THAT(params[Params::RX_MSARNAVCCAUX_POWER], IsBits(6.5f));
    EXPECT_THAT(params[Params::RX_VCCINT_GT_POWER], IsBits(842.0f));
    EXPECT_THAT(params[Params::TX_MSARNAVCC_POWER], IsBits(438.0f));
    EXPECT_THAT(params[Params::TX_MSARNAVTT_POWER], IsBits(340.0f));
    EXPECT_THAT(params[Params::TX_MSARNAVCCAUX_POWER], IsBits(2036.0f));
    EXPECT_THAT(params[Params::MSARNAVCC_LCPLL_PWR], IsBits(10.0f));
    EXPECT_THAT(params[Params::MSARNVCCAUX_LCPLL_PWR], IsBits(120.0f));
    EXPECT_THAT(params[Params::MSARNAVCC_COMMON_PWR], IsBits(20.0f));
    EXPECT_THAT(params[Params::VCCINT_POWER], IsBits(147.75f)); // 197 x 0.75

    EXPECT_THAT(params[Params::SCALE_AVTT_CMOS], IsBits(zelm::unsetFloat)); // copies that nothing reads
    EXPECT_THAT(params[Params::SCALE_VCCAUX_CMOS], IsBits(zelm::unsetFloat));
    EXPECT_THAT(model.calculateScaleAvttCmos(params, data), IsBits(0.5f));
    EXPECT_THAT(model.calculateScaleVccauxCmos(params, data), IsBits(4.0f));
}

TEST_F(SarnTest, BaudBinsIncludeTheirUpperLimit)
{
    struct Row {
        const char* modulation;
        float rate;
        const char* avttBin;
        const char* processor;
    };
    const float above30 = std::nextafter(30.0f, 31.0f);
    const float above60 = std::nextafter(60.0f, 61.0f);
    for (const Row row :
         {Row{"PAM4", 10.0f, "LTE_15GBAUD", "LTE_30GBAUD"}, Row{"PAM4", 30.0f, "LTE_15GBAUD", "LTE_30GBAUD"},
          Row{"PAM4", above30, "LTE_30GBAUD", "LTE_30GBAUD"}, Row{"PAM4", 60.0f, "LTE_30GBAUD", "LTE_30GBAUD"},
          Row{"PAM4", above60, "GT_30GBAUD", "GT_30GBAUD"}, Row{"NRZ", 15.0f, "LTE_15GBAUD", "LTE_30GBAUD"},
          Row{"NRZ", 15.5f, "LTE_30GBAUD", "LTE_30GBAUD"}, Row{"NRZ", 30.0f, "LTE_30GBAUD", "LTE_30GBAUD"},
          Row{"NRZ", above30, "GT_30GBAUD", "GT_30GBAUD"}}) {
        params[Params::MODULATION] = row.modulation;
        params[Params::RX_DATA_RATE] = row.rate;
        params[Params::POWER_MODE] = "LR";
        calculate();
        EXPECT_THAT(live(), testing::ElementsAre("MSARNAVCCAUX_RX_POWER_LR", "MSARNAVCC_RX_POWER_LR",
                                                 std::string("MSARNAVTT_RX_POWER_LR_") + row.avttBin,
                                                 std::string("VCCINT_GT_RX_POWER_LR_") + row.processor))
            << row.modulation << " " << row.rate;
        for (const std::string reach : {"VSR", "XSR"}) { // no bin of their own up to 15 GBd
            params[Params::POWER_MODE] = reach;
            calculate();
            EXPECT_THAT(live(), testing::ElementsAre("MSARNAVCCAUX_RX_POWER_" + reach, "MSARNAVCC_RX_POWER_" + reach,
                                                     "MSARNAVTT_RX_POWER_" + reach + "_" + row.processor,
                                                     "VCCINT_GT_RX_POWER_" + reach))
                << row.modulation << " " << row.rate;
        }
    }
}

TEST_F(SarnTest, EachBinHasItsEqualiser)
{
    params[Params::MODULATION] = "NRZ";
    params[Params::RX_DATA_RATE] = 10.0f;
    calculate();
    EXPECT_THAT(params[Params::RX_MSARNAVTT_POWER], IsBits(206.0f)); // 22 + 20 + 30 + (5 + 7) x 10 + 6 + 8
    params[Params::RX_DATA_RATE] = 40.0f;
    calculate();
    EXPECT_THAT(params[Params::RX_MSARNAVTT_POWER], IsBits(646.0f));  // 22 + 60 + 70 + 494
    EXPECT_THAT(params[Params::RX_VCCINT_GT_POWER], IsBits(2676.0f)); // (11 + 9 + 13) x 80 + 12 + 10 + 14
}

TEST_F(SarnTest, AThirdModulationKeepsAllBins)
{
    params[Params::MODULATION] = "PAM6";
    calculate();
    EXPECT_THAT(params[Params::RX_MSARNAVTT_POWER], IsBits(1818.0f));       // 566 + 606 + 646
    EXPECT_THAT(params[Params::DSP_CLK_RATE], IsBits(80.0f));               // 40 / 4 x 8: all but PAM4 is like NRZ here
    EXPECT_THAT(params[Params::RX_VCCINT_GT_POWER], IsBits(6000.0f));       // 41 x 80 + 44 and 33 x 80 + 36
    EXPECT_THAT(params[Params::TX_MSARN_POWER_MODE_SCALING], IsBits(1.0f)); // and like PAM4 there
}

TEST_F(SarnTest, AThirdPowerModeKeepsAllReaches)
{
    params[Params::POWER_MODE] = "AUTO";
    calculate();
    EXPECT_THAT(params[Params::MSARNAVTT_RX_POWER_VSR_LTE_30GBAUD], IsBits(690.0f)); // 118 + 14 x 40 + 12
    EXPECT_THAT(params[Params::MSARNAVTT_RX_POWER_XSR_LTE_30GBAUD], IsBits(771.0f)); // 124 + 16 x 40 + 7
    EXPECT_THAT(params[Params::RX_MSARNAVTT_POWER], IsBits(2067.0f));
    EXPECT_THAT(params[Params::RX_MSARNAVCC_POWER], IsBits(733.0f));   // 166 + 244 + 323
    EXPECT_THAT(params[Params::RX_VCCINT_GT_POWER], IsBits(4735.0f));  // 1684 + 1473 + 1578
    EXPECT_THAT(params[Params::RX_MSARNAVCCAUX_POWER], IsBits(41.0f)); // 13 + 14 + 14
}

TEST_F(SarnTest, TheXsrReferenceReadsTheVsrRow)
{
    params[Params::POWER_MODE] = "XSR";
    calculate();
    EXPECT_THAT(params[Params::MSARNAVCCAUX_RX_POWER_XSR], IsBits(14.0f)); // not 15
    EXPECT_THAT(params[Params::RX_MSARNAVCCAUX_POWER], IsBits(14.0f));
}

TEST_F(SarnTest, BoundaryScanAddsAtTheReach)
{
    params[Params::ACJTAG] = "ON";
    calculate();
    EXPECT_THAT(params[Params::RX_MSARNAVTT_POWER], IsBits(706.0f)); // 606 + 100
    params[Params::POWER_MODE] = "XSR";
    calculate();
    EXPECT_THAT(params[Params::RX_MSARNAVTT_POWER], IsBits(1071.0f)); // 771 + 300
    params[Params::ACJTAG] = "on";
    calculate();
    EXPECT_THAT(params[Params::RX_MSARNAVTT_POWER], IsBits(771.0f));
}

TEST_F(SarnTest, DividersOfTheReceiverBringTheVcoIntoItsRange)
{
    struct Row {
        const char* modulation;
        float rate;
        int channel, highSpeed;
        float qpll;
    };
    for (const Row row :
         {Row{"PAM4", 64.0f, 1, 1, 8.0f}, Row{"PAM4", 63.0f, 1, 2, 15.75f}, Row{"PAM4", 32.0f, 1, 2, 8.0f},
          Row{"PAM4", 31.0f, 2, 2, 15.5f}, Row{"PAM4", 16.0f, 2, 2, 8.0f}, Row{"PAM4", 15.0f, 4, 2, 15.0f},
          Row{"NRZ", 32.0f, 1, 1, 8.0f}, Row{"NRZ", 15.0f, 2, 2, 15.0f}}) {
        params[Params::MODULATION] = row.modulation;
        params[Params::RX_DATA_RATE] = row.rate;
        calculate();
        EXPECT_EQ(params[Params::CHCLK_DIVIDE_MODE], row.channel) << row.modulation << " " << row.rate;
        EXPECT_EQ(params[Params::HSCLK_DIVIDE_MODE], row.highSpeed) << row.modulation << " " << row.rate;
        EXPECT_THAT(params[Params::QPLL_RX], IsBits(row.qpll)) << row.modulation << " " << row.rate;
        EXPECT_THAT(params[Params::RX_VCO_LCPLL], IsBits(row.qpll)) << row.modulation << " " << row.rate;
    }
    params[Params::RX_DATA_RATE] = -4.0f; // no frequency at all: the least of the range
    calculate();
    EXPECT_THAT(params[Params::RX_VCO_LCPLL], IsBits(8.0f));
}

TEST_F(SarnTest, DividerOfTheTransmitterCountsTwiceInTheVco)
{
    struct Row {
        const char* modulation;
        float rate;
        int divider;
        float clock, qpll, vco;
    };
    // At 64 Gb/s the VCO is at its least frequency, which is out of range; at 40 at its greatest, which is in.
    for (const Row row : {Row{"PAM4", 64.0f, 1, 8.0f, -1.0f, 8.0f}, Row{"PAM4", 72.0f, 1, 9.0f, 9.0f, 9.0f},
                          Row{"PAM4", 40.0f, 2, 10.0f, 20.0f, 20.0f}, Row{"PAM4", 63.0f, 2, 15.75f, -1.0f, 8.0f},
                          Row{"PAM4", 32.0f, 2, 8.0f, 16.0f, 16.0f}, Row{"PAM4", 31.0f, 4, 15.5f, -1.0f, 8.0f},
                          Row{"NRZ", 40.0f, 1, 10.0f, 10.0f, 10.0f}, Row{"NRZ", 16.0f, 1, 4.0f, -1.0f, 8.0f},
                          Row{"NRZ", 15.0f, 2, 7.5f, 15.0f, 15.0f}}) {
        params[Params::MODULATION] = row.modulation;
        params[Params::TX_DATA_RATE] = row.rate;
        calculate();
        EXPECT_EQ(params[Params::TXCLK_DIVIDE_MODE], row.divider) << row.modulation << " " << row.rate;
        EXPECT_THAT(params[Params::TXCLK_CLK_FREQ], IsBits(row.clock)) << row.modulation << " " << row.rate;
        EXPECT_THAT(params[Params::QPLL_TX], IsBits(row.qpll)) << row.modulation << " " << row.rate;
        EXPECT_THAT(params[Params::TX_VCO_LCPLL], IsBits(row.vco)) << row.modulation << " " << row.rate;
    }
}

TEST_F(SarnTest, NrzDoublesTheTransmittersPowerPerRate)
{
    params[Params::MODULATION] = "NRZ";
    params[Params::TX_DATA_RATE] = 20.0f;
    calculate();
    EXPECT_THAT(params[Params::TX_MSARNAVCC_POWER], IsBits(372.0f)); // 9 x 2 x 20 + 2 + 6 + 4
    EXPECT_THAT(params[Params::TX_MSARNAVTT_POWER], IsBits(288.0f)); // 2 x 20 x 7 + 8
}

TEST_F(SarnTest, ATransmitterHasNoReceiver)
{
    params[Params::OPERATIONAL_MODE] = "TRANSMITTER";
    params[Params::MODULATION] = "PAM6";
    params[Params::POWER_MODE] = "AUTO";
    params[Params::RX_DATA_RATE] = 200.0f;
    calculate();
    EXPECT_THAT(live(), testing::IsEmpty());
    for (const auto cell :
         {Params::RX_MSARNAVCC_POWER, Params::RX_MSARNAVTT_POWER, Params::RX_MSARNAVCCAUX_POWER,
          Params::RX_VCCINT_GT_POWER, Params::CHCLK_OUTPUT_FREQUENCY, Params::DSP_CLK_RATE, Params::RX_VCO_LCPLL})
        EXPECT_THAT(params[cell], IsBits(0.0f)) << Params::enum_to_string(cell);
    EXPECT_THAT(params[Params::VCCINT_CH_PWR], IsBits(197.0f));      // at the transmitter's 96 Gb/s
    EXPECT_THAT(params[Params::PLL_MSARNAVCC_POWER], IsBits(20.0f)); // every channel runs on the LCPLL
}

TEST_F(SarnTest, AReceiverHasNoTransmitter)
{
    params[Params::OPERATIONAL_MODE] = "RECEIVER";
    params[Params::MODULATION] = "NRZ";
    calculate();
    for (const auto cell :
         {Params::TX_MSARNAVCC_POWER, Params::TX_MSARNAVTT_POWER, Params::TX_MSARNAVCCAUX_POWER, Params::TX_VCO_LCPLL})
        EXPECT_THAT(params[cell], IsBits(0.0f)) << Params::enum_to_string(cell);
    EXPECT_THAT(params[Params::TX_MSARN_POWER_MODE_SCALING], IsBits(2.0f)); // looks at the modulation alone
    EXPECT_THAT(params[Params::LCPLL_FREQUENCY], IsBits(10.0f));
    EXPECT_THAT(params[Params::VCCINT_CH_PWR], IsBits(85.0f)); // 40 x 2 + 5
    params[Params::RX_DATA_RATE] = 0.0f;
    calculate();
    EXPECT_THAT(params[Params::LCPLL_FREQUENCY], IsBits(FLT_MIN)); // the floor of MAX
}

TEST_F(SarnTest, WithoutSharersTheLcpllCostsNothing)
{
    for (const int sharing : {0, -2}) {
        params[Params::LCPLL_SHARING] = sharing;
        calculate();
        EXPECT_THAT(params[Params::PLL_MSARNAVCC_POWER], IsBits(0.0f)) << sharing;
        EXPECT_THAT(params[Params::PLL_MSARNAVTT_POWER], IsBits(0.0f)) << sharing;
        EXPECT_THAT(params[Params::PLL_MSARNVCCAUX_POWER], IsBits(0.0f)) << sharing;
    }
}

TEST_F(SarnTest, WithoutChannelsNoRailHasPower)
{
    params[Params::NUM_SARNQUAD_CHANNELS] = 0;
    calculate();
    for (const auto cell :
         {Params::VCCINT_POWER, Params::MSARNAVCC_POWER, Params::MSARNAVTT_POWER, Params::MSARNVCCAUX_POWER,
          Params::VCCINT_GT_POWER, Params::TOTAL_POWER, Params::MSARNAVCC_COMMON_PWR})
        EXPECT_THAT(params[cell], IsBits(0.0f)) << Params::enum_to_string(cell);
    EXPECT_TRUE(std::isinf(params[Params::MSARNAVTT_COMMON_PWR])); // 30 / 0: this share has no guard
    params[Params::NUM_SARNQUAD_CHANNELS] = 4;
    calculate();
    EXPECT_THAT(params[Params::MSARNAVCC_COMMON_PWR], IsBits(5.0f)); // 20 / 4
    EXPECT_THAT(params[Params::MSARNAVTT_COMMON_PWR], IsBits(7.5f)); // 30 / 4
}

TEST_F(SarnTest, CountsAndLimitsAreForTheHostToPull)
{
    params[Params::NUM_SARNQUAD_CHANNELS] = 9;
    params[Params::LCPLL_SHARING] = 4;
    calculate();
    for (const auto cell : {Params::NUM_DUAL, Params::NUM_OCTALS, Params::NUM_OF_LCPLL_USED})
        EXPECT_EQ(params[cell], zelm::unsetInt) << Params::enum_to_string(cell);
    for (const auto cell : {Params::MAX_NRZ_DATARATE, Params::MAX_PAM4_DATARATE, Params::RX_INPUT_FREQUENCY,
                            Params::TX_INPUT_FREQUENCY, Params::VCCINT_GT})
        EXPECT_THAT(params[cell], IsBits(zelm::unsetFloat)) << Params::enum_to_string(cell);
    for (const auto cell : {Params::SPEEDGRADE, Params::RX_DATA_PATH, Params::TX_DATA_PATH})
        EXPECT_EQ(params[cell], zelm::unsetInt) << Params::enum_to_string(cell);
    EXPECT_EQ(model.calculateNumDual(params, data), 5);
    EXPECT_EQ(model.calculateNumOctals(params, data), 2);
    EXPECT_EQ(model.calculateNumOfLcpllUsed(params, data), 3); // 9 / 4, rounded up
    EXPECT_THAT(model.calculateRxInputFrequency(params, data), IsBits(10.0f));
    EXPECT_THAT(model.calculateTxInputFrequency(params, data), IsBits(12.0f));

    struct Row {
        int speedgrade;
        float nrz, pam4;
    };
    for (const Row row :
         {Row{-3, 32.0f, 112.0f}, Row{-2, 28.0f, 100.0f}, Row{-1, 25.0f, 58.0f}, Row{0, 25.0f, 58.0f}}) {
        params[Params::SPEEDGRADE] = row.speedgrade;
        calculate();
        EXPECT_THAT(model.calculateMaxNrzDatarate(params, data), IsBits(row.nrz)) << row.speedgrade;
        EXPECT_THAT(model.calculateMaxPam4Datarate(params, data), IsBits(row.pam4)) << row.speedgrade;
    }
}

} // namespace zelm::test::sarnTest
