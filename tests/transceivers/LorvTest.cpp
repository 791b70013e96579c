#include "LorvFixture.h"

#include <cfloat>

// The formulas that both transceivers share are tested on both; what sets the enhanced one apart, in LorvpTest.

namespace zelm::test::lorvTest {

template <class Block>
class LorvTest : public LorvFixture<Block> {
};
using Blocks = testing::Types<Lorv, Lorvp>;
TYPED_TEST_SUITE(LorvTest, Blocks);

TYPED_TEST(LorvTest, ShippedDataGivesBelievablePower)
{
    using P = typename TypeParam::Params;
    const DataDirVariable variable(shippedDataDirectory());
    ASSERT_TRUE(TypeParam::Model::Data::getMutableGlobal().reset());
    for (const char* powerMode : {"LOW_POWER", "DFE"}) {
        float before = 0.0f;
        for (const float rate : {5.0f, 10.3125f, 16.0f, 25.78125f}) {
            P cells;
            cells[P::POWER_MODE] = powerMode;
            cells[P::RX_DATA_RATE] = cells[P::TX_DATA_RATE] = rate;
            TypeParam::Model::getGlobal().calculate(cells);
            EXPECT_GT(cells[P::TOTAL_POWER], before) << rate;
            EXPECT_GT(cells[P::QPLL0_RX], 0.0f) << rate;
            before = cells[P::TOTAL_POWER];
        }
        EXPECT_GT(before, 150.0f) << powerMode; // at 25.78125 Gb/s
        EXPECT_LT(before, 250.0f) << powerMode;
    }
}

TYPED_TEST(LorvTest, AddsTheRails)
{
    using P = typename TypeParam::Params;
    auto& cells = this->params;
    this->calculate();
    EXPECT_THAT(cells[P::QPLL0_RX], IsBits(5.0f)); // 10 and 12 Gb/s are in the VCO's range as they are
    EXPECT_THAT(cells[P::QPLL1_TX], IsBits(6.0f));
    EXPECT_THAT(cells[P::LCPLL_FREQUENCY], IsBits(6.0f));
    EXPECT_THAT(cells[P::RX_MLORVAVCC_POWER], IsBits(157.0f)); // (5 + 7) x 10 + 6 + 8 + 1 x 10 + 11 + 2
    EXPECT_THAT(cells[P::RX_MLORVAVTT_POWER], IsBits(98.0f));  // 13 + 15 + 17 + 19 + 3 x 10 + 4
    EXPECT_THAT(cells[P::TX_MLORVAVCC_POWER], IsBits(80.0f));  // (2 + 4) x 12 + 3 + 5
    EXPECT_THAT(cells[P::TX_MLORVAVTT_POWER], IsBits(238.0f)); // 250 x 0.5 + 7 + 1 + 12 x 8 + 9
    EXPECT_THAT(cells[P::VCCINT_CH_PWR], IsBits(29.0f));       // 12 x 2 + 5
    EXPECT_THAT(cells[P::MLORVAVCC_LCPLL_PWR], IsBits(20.0f)); // 40 / 2
    EXPECT_THAT(cells[P::MLORVAVTT_LCPLL_PWR], IsBits(12.5f)); // (6 x 2 + 10 + 3) / 2
    EXPECT_THAT(cells[P::PLL_MLORVAVCC_POWER], IsBits(27.0f)); // and the idle RPLL's 7
    EXPECT_THAT(cells[P::PLL_MLORVAVTT_POWER], IsBits(23.5f)); // and its 11
    EXPECT_THAT(cells[P::PLL_MLORVVCCAUX_POWER], IsBits(30.0f));
    EXPECT_THAT(cells[P::COMMON_MLORVAVCC_POWER], IsBits(20.0f));
    // 6 x (1 + 2) + 5 x (3 + 4 + 5) + 10 + 20 + 30 + 40 + 50
    EXPECT_THAT(cells[P::MLORVAVTT_CH_CLK_POWER], IsBits(228.0f));
    EXPECT_THAT(cells[P::COMMON_MLORVAVTT_POWER], IsBits(258.0f));
    EXPECT_THAT(cells[P::MLORVAVCC_POWER], IsBits(284.0f)); // 157 + 80 + 27 + 20
    EXPECT_THAT(cells[P::MLORVAVTT_POWER], IsBits(617.5f)); // 98 + 238 + 23.5 + 258
    EXPECT_THAT(cells[P::MLORVVCCAUX_POWER], IsBits(30.0f));
    EXPECT_THAT(cells[P::VCCINT_POWER], IsBits(29.0f));
    EXPECT_THAT(cells[P::TOTAL_POWER], IsBits(960.5f));
}

TYPED_TEST(LorvTest, ScalesWithSuppliesAndMargins)
{
    using P = typename TypeParam::Params;
    auto& cells = this->params;
    this->write("LCPLL_VCO_MIN = 8.0; LCPLL_VCO_MAX = 16.0;", "MARGIN_FACTOR_1 = 2.0; MARGIN_FACTOR_2 = 3.0;");
    cells[P::MLORVAVCC] = 0.44f;
    cells[P::MLORVAVTT] = 0.3f;
    cells[P::MLORVVCCAUX] = 3.0f;
    cells[P::VCCINT] = 0.44f;
    this->calculate();
    EXPECT_THAT(cells[P::SCALE_AVCC_CML], IsBits(1.0f));      // 1/2 x 2
    EXPECT_THAT(cells[P::SCALE_AVCC_CMOS], IsBits(0.5f));     // 1/4 x 2
    EXPECT_THAT(cells[P::SCALE_AVTT_CML], IsBits(0.5f));      // 1/4 x 2
    EXPECT_THAT(cells[P::SCALE_VCCAUX_CML], IsBits(4.0f));    // 2 x 2
    EXPECT_THAT(cells[P::SCALE_VCCINT_CMOS], IsBits(0.75f));  // 1/4 x 3: against 0.88 V, not the default of 0.7 V
    EXPECT_THAT(cells[P::RX_MLORVAVCC_POWER], IsBits(90.0f)); // 134 x 0.5 + 23
    EXPECT_THAT(cells[P::TX_MLORVAVCC_POWER], IsBits(40.0f));
    EXPECT_THAT(cells[P::TX_MLORVAVTT_POWER], IsBits(119.0f));
    EXPECT_THAT(cells[P::MLORVAVCC_LCPLL_PWR], IsBits(10.0f));
    EXPECT_THAT(cells[P::MLORVVCCAUX_LCPLL_PWR], IsBits(120.0f));
    EXPECT_THAT(cells[P::MLORVAVCC_COMMON_PWR], IsBits(20.0f)); // linear in the supply
    EXPECT_THAT(cells[P::VCCINT_POWER], IsBits(21.75f));

    // Copies of the linear scales that nothing reads: these two rails are never squared.
    EXPECT_THAT(cells[P::SCALE_AVTT_CMOS], IsBits(zelm::unsetFloat));
    EXPECT_THAT(cells[P::SCALE_VCCAUX_CMOS], IsBits(zelm::unsetFloat));
    EXPECT_THAT(this->model.calculateScaleAvttCmos(cells, this->data), IsBits(0.5f));
    EXPECT_THAT(this->model.calculateScaleVccauxCmos(cells, this->data), IsBits(4.0f));
}

TYPED_TEST(LorvTest, VcoSearchTakesTheSmallestMultipleInRange)
{
    using P = typename TypeParam::Params;
    auto& cells = this->params;
    const auto expectQpll = [&](float rate, float expected) {
        this->setRates(rate);
        this->calculate();
        for (const auto cell : {P::QPLL0_RX, P::QPLL1_RX, P::QPLL0_TX, P::QPLL1_TX})
            EXPECT_THAT(cells[cell], IsBits(expected)) << rate << " " << P::enum_to_string(cell);
    };
    expectQpll(0.25f, -0.5f); // even 16 x 0.25 falls short
    expectQpll(0.5f, 4.0f);   // 16 x 0.5 is the least of the range
    expectQpll(2.0f, 4.0f);   // 4 x 2 = 8 over 8 x 2 = 16
    expectQpll(3.0f, 6.0f);   // 4 x 3 = 12
    expectQpll(8.0f, 4.0f);
    expectQpll(15.5f, 7.75f);
    expectQpll(16.0f, 8.0f); // at the range's end the rate is halved
    expectQpll(20.0f, 10.0f);
    expectQpll(32.0f, 16.0f);
    expectQpll(33.0f, -0.5f);

    this->write("LCPLL_VCO_MIN = 10.0; LCPLL_VCO_MAX = 16.0;", "MARGIN_FACTOR_1 = 1.0; MARGIN_FACTOR_2 = 1.0;");
    expectQpll(2.0f, 8.0f); // 8 x 2 is just in range, 4 x 2 is not
    expectQpll(2.25f, -0.5f);
    expectQpll(16.0f, -0.5f);
    EXPECT_THAT(cells[P::RX_VCO_LCPLL], IsBits(10.0f)); // falls back on the least of the range
    EXPECT_THAT(cells[P::TX_VCO_LCPLL], IsBits(10.0f));
    EXPECT_THAT(cells[P::LCPLL_FREQUENCY], IsBits(10.0f));
}

TYPED_TEST(LorvTest, RpllStaysAboveItsLeastFrequency)
{
    using P = typename TypeParam::Params;
    auto& cells = this->params;
    this->setSources("RPLL");
    struct Row {
        float rate, vco;
    };
    for (const Row row : {Row{10.0f, 5.0f}, Row{8.0f, 4.0f}, Row{7.0f, 7.0f}, Row{4.0f, 4.0f}, Row{3.0f, 6.0f},
                          Row{1.5f, 6.0f}, Row{0.5f, 2.0f}}) {
        this->setRates(row.rate);
        this->calculate();
        EXPECT_THAT(cells[P::RX_VCO_RPLL], IsBits(row.vco)) << row.rate;
        EXPECT_THAT(cells[P::TX_VCO_RPLL], IsBits(row.vco)) << row.rate;
        EXPECT_THAT(cells[P::RPLL_FREQUENCY], IsBits(row.vco)) << row.rate;
        EXPECT_THAT(cells[P::MLORVAVCC_RPLL_PWR], IsBits(3.0f * row.vco + 7.0f)) << row.rate;
        EXPECT_THAT(cells[P::MLORVAVTT_RPLL_PWR], IsBits(5.0f * row.vco + 11.0f)) << row.rate;
    }
}

TYPED_TEST(LorvTest, OnRpllsTheLcpllRests)
{
    using P = typename TypeParam::Params;
    auto& cells = this->params;
    this->setSources("RPLL");
    this->calculate();
    EXPECT_THAT(cells[P::RX_VCO_LCPLL], IsBits(0.0f));
    EXPECT_THAT(cells[P::LCPLL_FREQUENCY], IsBits(FLT_MIN)); // 1.1754944e-38, the floor of MAX
    EXPECT_THAT(cells[P::MLORVAVCC_LCPLL_PWR], IsBits(0.0f));
    EXPECT_THAT(cells[P::MLORVAVTT_LCPLL_PWR], IsBits(0.0f));
    EXPECT_THAT(cells[P::MLORVVCCAUX_LCPLL_PWR], IsBits(0.0f));
    EXPECT_THAT(cells[P::RX_INPUT_FREQUENCY], IsBits(5.0f));
    EXPECT_THAT(cells[P::PLL_MLORVAVCC_POWER], IsBits(25.0f)); // 3 x 6 + 7

    cells[P::TX_CLOCK_SOURCE] = "LCPLL"; // one direction is enough
    this->calculate();
    EXPECT_THAT(cells[P::LCPLL_FREQUENCY], IsBits(6.0f));
    EXPECT_THAT(cells[P::RPLL_FREQUENCY], IsBits(5.0f));
    EXPECT_THAT(cells[P::MLORVAVCC_LCPLL_PWR], IsBits(20.0f));
    EXPECT_THAT(cells[P::MLORVVCCAUX_LCPLL_PWR], IsBits(30.0f));
}

TYPED_TEST(LorvTest, AThirdClockSourceIsTheLcpllForTheAuxiliaryRailOnly)
{
    using P = typename TypeParam::Params;
    auto& cells = this->params;
    this->setSources("XPLL");
    this->calculate();
    EXPECT_THAT(cells[P::RX_VCO_LCPLL], IsBits(5.0f));
    EXPECT_THAT(cells[P::RX_INPUT_FREQUENCY], IsBits(5.0f));
    EXPECT_THAT(cells[P::LCPLL_FREQUENCY], IsBits(FLT_MIN));
    EXPECT_THAT(cells[P::RPLL_FREQUENCY], IsBits(FLT_MIN));
    EXPECT_THAT(cells[P::MLORVAVCC_LCPLL_PWR], IsBits(0.0f));
    EXPECT_THAT(cells[P::MLORVAVTT_LCPLL_PWR], IsBits(0.0f));
    EXPECT_THAT(cells[P::MLORVVCCAUX_LCPLL_PWR], IsBits(30.0f));
    for (const auto cell : {P::RX_CLOCK_SOURCE, P::TX_CLOCK_SOURCE}) { // of either direction alone
        this->setSources("RPLL");
        cells[cell] = "XPLL";
        this->calculate();
        EXPECT_THAT(cells[P::MLORVVCCAUX_LCPLL_PWR], IsBits(30.0f)) << P::enum_to_string(cell);
    }
    this->setSources("XPLL");
    this->setRates(7.0f); // half the VCO for the LCPLL, the rate itself for the RPLL
    this->calculate();
    EXPECT_THAT(cells[P::RX_VCO_LCPLL], IsBits(7.0f));
    this->setRates(3.0f);
    this->calculate();
    EXPECT_THAT(cells[P::TX_VCO_LCPLL], IsBits(6.0f));
}

TYPED_TEST(LorvTest, ATransmitterHasNoReceiver)
{
    using P = typename TypeParam::Params;
    auto& cells = this->params;
    cells[P::OPERATIONAL_MODE] = "TRANSMITTER";
    cells[P::POWER_MODE] = "BOTH";
    this->calculate();
    for (const auto cell : {P::MLORVAVCC_RX_POWER_DFE, P::MLORVAVCC_RX_POWER_LPM, P::MLORVAVTT_RX_POWER_DFE,
                            P::MLORVAVTT_RX_POWER_LPM, P::RX_MLORVAVCC_POWER, P::RX_MLORVAVTT_POWER, P::RX_VCO_LCPLL,
                            P::RX_VCO_RPLL, P::RX_INPUT_FREQUENCY, P::RX_MULT_FACTOR_PCSADAPT})
        EXPECT_THAT(cells[cell], IsBits(0.0f)) << P::enum_to_string(cell);
    EXPECT_THAT(cells[P::QPLL0_RX], IsBits(5.0f)); // searched in every mode
    EXPECT_THAT(cells[P::RPLL_FREQUENCY], IsBits(FLT_MIN));
    EXPECT_THAT(cells[P::MLORVAVCC_RPLL_PWR], IsBits(7.0f)); // the idle RPLL's offset stays
    EXPECT_THAT(cells[P::MLORVAVTT_RPLL_PWR], IsBits(11.0f));
    EXPECT_THAT(cells[P::LCPLL_FREQUENCY], IsBits(6.0f));
    EXPECT_THAT(cells[P::PCSADAPT_VCCINT_40_RAW], IsBits(29.0f)); // 12 x 2 + 5
    cells[P::TX_DATA_RATE] = 9.0f;
    cells[P::EYESCAN] = "ON";
    this->calculate();
    EXPECT_THAT(cells[P::PCSADAPT_VCCINT_40_RAW], IsBits(23.0f));   // 9 x 2 + 5, though the idle receiver is faster
    EXPECT_THAT(cells[P::MLORVAVCC_EYESCAN_POWER], IsBits(155.0f)); // asks for no mode
    EXPECT_THAT(cells[P::MLORVAVTT_EYESCAN_POWER], IsBits(68.0f));
    cells[P::TX_CLOCK_SOURCE] = "RPLL";
    this->calculate();
    EXPECT_THAT(cells[P::MLORVAVCC_LCPLL_PWR], IsBits(0.0f)); // the receiver's source doesn't count
    EXPECT_THAT(cells[P::MLORVVCCAUX_LCPLL_PWR], IsBits(0.0f));
}

TYPED_TEST(LorvTest, AReceiverHasNoTransmitter)
{
    using P = typename TypeParam::Params;
    auto& cells = this->params;
    cells[P::OPERATIONAL_MODE] = "RECEIVER";
    this->calculate();
    for (const auto cell : {P::TX_MLORVAVCC_POWER, P::TX_MLORVAVTT_POWER, P::TX_VCO_LCPLL, P::TX_VCO_RPLL,
                            P::TX_INPUT_FREQUENCY, P::TX_MULT_FACTOR_PCSADAPT})
        EXPECT_THAT(cells[cell], IsBits(0.0f)) << P::enum_to_string(cell);
    EXPECT_THAT(cells[P::LCPLL_FREQUENCY], IsBits(5.0f));
    EXPECT_THAT(cells[P::PCSADAPT_VCCINT_40_RAW], IsBits(25.0f)); // 10 x 2 + 5
    cells[P::RX_CLOCK_SOURCE] = "RPLL";
    this->calculate();
    EXPECT_THAT(cells[P::MLORVVCCAUX_LCPLL_PWR], IsBits(0.0f));
}

TYPED_TEST(LorvTest, PathFactorIsOneForTheEncodedWidthsOfTheAdapter)
{
    using P = typename TypeParam::Params;
    auto& cells = this->params;
    struct Row {
        int path;
        const char* dataMode;
        float factor;
    };
    for (const Row row :
         {Row{32, "8b/10b", 1.0f}, Row{64, "8b/10b", 1.0f}, Row{40, "64b/66b", 1.0f}, Row{80, "64b/66b", 1.0f},
          Row{16, "8b/10b", 2.5f * 0.8f}, Row{33, "8b/10b", 40.0f / 33.0f * 1.6f}, Row{41, "RAW", 40.0f / 41.0f * 2.0f},
          Row{0, "RAW", 0.0f}, Row{-8, "8b/10b", 0.0f}}) {
        cells[P::RX_DATA_PATH] = cells[P::TX_DATA_PATH] = row.path;
        cells[P::RX_DATA_MODE] = cells[P::TX_DATA_MODE] = row.dataMode;
        this->calculate();
        EXPECT_THAT(cells[P::RX_MULT_FACTOR_PCSADAPT], IsBits(row.factor)) << row.path << " " << row.dataMode;
        EXPECT_THAT(cells[P::TX_MULT_FACTOR_PCSADAPT], IsBits(row.factor)) << row.path << " " << row.dataMode;
    }
    cells[P::RX_DATA_PATH] = 20; // the greater factor counts
    cells[P::RX_DATA_MODE] = "RAW";
    this->calculate();
    EXPECT_THAT(cells[P::VCCINT_CH_PWR], IsBits(58.0f)); // 29 x 40 / 20
}

TYPED_TEST(LorvTest, PowerModeChoosesTheEqualiserAndAThirdTextKeepsBoth)
{
    using P = typename TypeParam::Params;
    auto& cells = this->params;
    cells[P::POWER_MODE] = "DFE";
    this->calculate();
    EXPECT_THAT(cells[P::MLORVAVCC_RX_POWER_DFE], IsBits(420.0f)); // (13 + 15) x 10 + 14 + 16 + 9 x 10 + 10 + 10
    EXPECT_THAT(cells[P::MLORVAVCC_RX_POWER_LPM], IsBits(0.0f));
    EXPECT_THAT(cells[P::MLORVAVTT_RX_POWER_DFE], IsBits(182.0f)); // 12 + 14 + 16 + 18 + 11 x 10 + 12
    EXPECT_THAT(cells[P::MLORVAVTT_RX_POWER_LPM], IsBits(0.0f));
    cells[P::POWER_MODE] = "AUTO";
    this->calculate();
    EXPECT_THAT(cells[P::RX_MLORVAVCC_POWER], IsBits(577.0f)); // 420 + 157
    EXPECT_THAT(cells[P::RX_MLORVAVTT_POWER], IsBits(280.0f)); // 182 + 98
}

TYPED_TEST(LorvTest, OutOfBandAndBoundaryScanAreOnForOnOnly)
{
    using P = typename TypeParam::Params;
    auto& cells = this->params;
    cells[P::OOB] = "ON";
    this->calculate();
    EXPECT_THAT(cells[P::MLORVAVTT_RX_POWER_LPM], IsBits(298.0f)); // 98 + 200
    cells[P::ACJTAG] = "ON";
    cells[P::OOB] = "on";
    this->calculate();
    EXPECT_THAT(cells[P::MLORVAVTT_RX_POWER_LPM], IsBits(2098.0f));
    cells[P::POWER_MODE] = "DFE";
    cells[P::OOB] = "ON";
    this->calculate();
    EXPECT_THAT(cells[P::MLORVAVTT_RX_POWER_DFE], IsBits(1282.0f)); // 182 + 100 + 1000
}

TYPED_TEST(LorvTest, EyeScanAddsHalfADecisionFeedbackPathInEveryMode)
{
    using P = typename TypeParam::Params;
    auto& cells = this->params;
    this->calculate();
    EXPECT_THAT(cells[P::MLORVAVCC_EYESCAN_POWER], IsBits(0.0f));
    EXPECT_THAT(cells[P::MLORVAVTT_EYESCAN_POWER], IsBits(0.0f));
    for (const char* eyescan : {"ON", "on", ""}) { // on for anything but OFF
        cells[P::EYESCAN] = eyescan;
        this->calculate();
        EXPECT_THAT(cells[P::MLORVAVCC_RX_POWER_DFE], IsBits(0.0f));
        EXPECT_THAT(cells[P::MLORVAVCC_EYESCAN_POWER], IsBits(155.0f)); // ((13 + 15) x 10 + 14 + 16) / 2
        EXPECT_THAT(cells[P::MLORVAVTT_EYESCAN_POWER], IsBits(68.0f));  // (10 x 11 + 14 + 12) / 2
        EXPECT_THAT(cells[P::COMMON_MLORVAVCC_POWER], IsBits(175.0f));  // 20 + 155
        EXPECT_THAT(cells[P::COMMON_MLORVAVTT_POWER], IsBits(326.0f));  // 258 + 68
    }
}

TYPED_TEST(LorvTest, WithoutSharersTheLcpllCostsNothing)
{
    using P = typename TypeParam::Params;
    auto& cells = this->params;
    for (const int sharing : {0, -1}) {
        cells[P::LCPLL_SHARING] = sharing;
        this->calculate();
        EXPECT_THAT(cells[P::MLORVAVCC_LCPLL_PWR], IsBits(0.0f)) << sharing;
        EXPECT_THAT(cells[P::MLORVAVTT_LCPLL_PWR], IsBits(0.0f)) << sharing;
        EXPECT_THAT(cells[P::MLORVVCCAUX_LCPLL_PWR], IsBits(0.0f)) << sharing;
        EXPECT_THAT(cells[P::MLORVAVCC_RPLL_PWR], IsBits(7.0f)) << sharing; // nobody shares the RPLL
    }
    cells[P::LCPLL_SHARING] = 4;
    this->calculate();
    EXPECT_THAT(cells[P::MLORVAVCC_LCPLL_PWR], IsBits(10.0f));
}

TYPED_TEST(LorvTest, WithoutChannelsNoRailHasPower)
{
    using P = typename TypeParam::Params;
    auto& cells = this->params;
    cells[TypeParam::channels] = 0;
    this->calculate();
    for (const auto cell : {P::VCCINT_POWER, P::MLORVAVCC_POWER, P::MLORVAVTT_POWER, P::MLORVVCCAUX_POWER,
                            P::TOTAL_POWER, P::MLORVAVCC_COMMON_PWR, P::MLORVAVTT_COMMON_PWR})
        EXPECT_THAT(cells[cell], IsBits(0.0f)) << P::enum_to_string(cell);
    EXPECT_THAT(cells[P::VCCINT_CH_PWR], IsBits(29.0f)); // the channel's own cells stay
    EXPECT_THAT(cells[P::RX_MLORVAVCC_POWER], IsBits(157.0f));
}

TYPED_TEST(LorvTest, TheDriverFollowsTheSwing)
{
    using P = typename TypeParam::Params;
    auto& cells = this->params;
    cells[P::TX_DIFFERENTIAL_SWING] = 100;
    cells[P::TX_DATA_RATE] = 0.0f;
    this->calculate();
    EXPECT_THAT(cells[P::TX_MLORVAVTT_POWER], IsBits(67.0f)); // 100 x 0.5 + 7 + 1 + 9
}

class LorvOnlyTest : public LorvFixture<Lorv> {};

TEST_F(LorvOnlyTest, AChannelBearsItsPartOfAllQuads)
{
    struct Row {
        int channels, quads;
        float avcc;
    };
    for (const Row row :
         {Row{0, 0, 0.0f}, Row{1, 1, 20.0f}, Row{4, 1, 5.0f}, Row{5, 2, 8.0f}, Row{8, 2, 5.0f}, Row{10, 3, 6.0f}}) {
        params[Params::NUM_LORVQUAD_CHANNELS] = row.channels;
        calculate();
        EXPECT_EQ(params[Params::NUM_LORVQUADS], row.quads) << row.channels;
        EXPECT_THAT(params[Params::MLORVAVCC_COMMON_PWR], IsBits(row.avcc)) << row.channels; // quads x 20 / channels
        EXPECT_THAT(params[Params::MLORVAVTT_COMMON_PWR], IsBits(row.avcc * 1.5f)) << row.channels; // of 30
    }
}

} // namespace zelm::test::lorvTest
