#include "dsp/ZelmOrvaneDspFp32Model.h"

#include "DspTables.h"

namespace zelm::test::dspFp32Test {

using Model = ZelmOrvaneDspFp32Model;
using Params = ZelmOrvaneDspFp32Params;
using Data = ZelmOrvaneDspFp32Data;

const std::vector<std::string> kModes{
    "MULT_ADD",     "MULT_ADD_NOFPMPIPEREG",     "MULT_ONLY", "MULT_ONLY_NOFPMPIPEREG", "ADD_ONLY",
    "B16_MULT_ADD", "B16_MULT_ADD_NOFPMPIPEREG", "B16_MULT",  "B16_MULT_NOFPMPIPEREG"};

const std::vector<DspFamilyRow> kRows{
#define IC_FLOAT_FAMILY(cell, function, unit, meaning, member, metric) {#cell, #member, #metric},
#include "dsp/ZelmOrvaneDspFp32Cells.def"
};

class DspFp32Test : public DspSliceTest<Model> {
protected:
    DspFp32Test()
        : DspSliceTest({.family = "FP32",
                        .usage = "B16_NO_MULT_YES_ADD_NO_FPMPIPEREG_NO",
                        .mode = "MULT_ONLY",
                        .opmodeUsages = {}})
    {
    }

    /// Sign, exponent and mantissa of A 1/64, 2/64, 3/64, of B 4/64, 5/64, 6/64, of D 7/64, 8/64, 1/64.
    void setFields()
    {
        const char* const cells[] = {"A_SIGN_TR", "A_EXP_TR", "A_MAN_TR",  "B_SIGN_TR",
                                     "B_EXP_TR",  "B_MAN_TR", "D_SIGN_TR", "D_EXP_TR"};
        float rate = 0.0f;
        for (const char* name : cells)
            set(name, rate += 0.015625f);
        set("D_MAN_TR", 0.015625f);
    }

    /// The cell in units of 1/64, in a mode.
    double sixtyFourths(const std::string& mode, const std::string& name)
    {
        useMode(mode);
        return 64.0 * static_cast<double>(after(name));
    }
};

// In 64ths, from setFields: what sign, exponent and mantissa weigh.
constexpr double kBitsA = 1 + 8 * 2 + 23 * 3, kBitsB = 4 + 8 * 5 + 23 * 6, kBitsD = 7 + 8 * 8 + 23 * 1;
constexpr double kBitsBWithoutMantissa = 4 + 8 * 5 + 23 * 5;
constexpr double k16BitsA = 1 + 12.8 * 2 + 52.9 * 3, k16BitsB = 4 + 12.8 * 5 + 52.9 * 6,
                 k16BitsD = 7 + 12.8 * 8 + 52.9 * 1;
constexpr double kExponents = (2 + 5 + 8 + 8) / 4.0, kMantissas = (3 + 6 + 1 + 6) / 4.0, kSigns = (1 + 4 + 7 + 7) / 4.0;
constexpr double kInmode = 8;

TEST(DspFp32, FamiliesAreModesTimesComponents)
{
    expectDspFamilies(kRows, "FP32", kModes, kDspParts, {"componentCurrent", "toggleRate"});
    EXPECT_EQ(std::count_if(kRows.begin(), kRows.end(), [](const auto& row) { return row.cell.starts_with("FP32_"); }),
              162);
}

TEST_F(DspFp32Test, DefaultsAreAMultiplier)
{
    calculate();
    EXPECT_EQ(params[Params::DSP_USAGE], "B16_NO_MULT_YES_ADD_NO_FPMPIPEREG_NO");
    EXPECT_EQ(params[Params::OPERATIONAL_MODE], "MULT_ONLY");
}

TEST_F(DspFp32Test, AGlobalRateReplacesAllInEveryMode)
{
    set("GLOBAL_TR", 1.0f);
    expectGlobalRate(kModes, kDspParts, 1.0f);
}

TEST_F(DspFp32Test, ProductsAloneReadBsExponentForItsMantissa)
{
    for (const char* mode : {"MULT_ONLY", "MULT_ADD", "B16_MULT", "B16_MULT_ADD"}) {
        useMode(mode);
        setFields();
        const float ab = after("AB_DATA_TR");
        const float mult = cell("MULT_TR");
        const float cascade = cell("CASC_DELAY_TR");
        set("B_MAN_TR", 0.09f);
        EXPECT_NE(after("MULT_TR"), mult) << mode;
        EXPECT_EQ(cell("AB_DATA_TR") == ab, mode == std::string("MULT_ONLY")) << mode;
        EXPECT_EQ(cell("CASC_DELAY_TR") == cascade, mode == std::string("MULT_ONLY")) << mode;
    }
}

TEST_F(DspFp32Test, InputDataWeighTheirBits)
{
    setFields();
    EXPECT_NEAR(sixtyFourths("MULT_ADD", "AB_DATA_TR"), (2 * kBitsA + kBitsB + kBitsD) / 128, 1e-5);
    EXPECT_NEAR(sixtyFourths("MULT_ONLY", "AB_DATA_TR"), (2 * kBitsA + kBitsBWithoutMantissa + kBitsD) / 128, 1e-5);
    EXPECT_NEAR(sixtyFourths("ADD_ONLY", "AB_DATA_TR"), kBitsD / 32, 1e-5);
    for (const char* mode : {"B16_MULT", "B16_MULT_ADD_NOFPMPIPEREG"})
        EXPECT_NEAR(sixtyFourths(mode, "AB_DATA_TR"), (2 * 1 + 25.6 * 2 + 105.8 * 3 + k16BitsB + k16BitsD) / 128, 1e-5);
}

TEST_F(DspFp32Test, TheAdderAloneReadsOnlyD)
{
    useMode("ADD_ONLY");
    setFields();
    const float ab = after("AB_DATA_TR");
    for (const char* name : {"A_SIGN_TR", "A_EXP_TR", "A_MAN_TR", "B_SIGN_TR", "B_EXP_TR", "B_MAN_TR"}) {
        set(name, 0.4f);
        EXPECT_THAT(after("AB_DATA_TR"), IsBits(ab)) << name;
    }
    for (const char* name : {"D_SIGN_TR", "D_EXP_TR", "D_MAN_TR"}) {
        set(name, 0.14f);
        EXPECT_NE(after("AB_DATA_TR"), ab) << name;
    }
}

TEST_F(DspFp32Test, ExponentsSeeAHalfInPlaceOfAsMantissa)
{
    setFields();
    const double mantissas = (32 + 6 + 1 + 32) / 4.0;
    EXPECT_NEAR(sixtyFourths("MULT_ONLY", "FP_EXP_TR"), (kExponents * 8 + kSigns + mantissas * 23 + kInmode) / 32,
                1e-5);
    const float before = cell("FP_EXP_TR");
    set("A_MAN_TR", 0.4f);
    EXPECT_THAT(after("FP_EXP_TR"), IsBits(before));
    setAll(0.0f);                                        // then the mean is (0.5 + 0 + 0 + 0.5) / 4
    EXPECT_THAT(after("FP_EXP_TR"), IsBits(0.1796875f)); // 0.25 x 23 / 32
    useMode("B16_MULT");
    EXPECT_NEAR(after("FP_EXP_TR"), 0.25 * 52.9 / 32, 1e-7);
}

TEST_F(DspFp32Test, ExponentAndMantissaPathsHaveTheirOwnWeights)
{
    setFields();
    set("FPM_OUT_TR", 0.25f);
    EXPECT_NEAR(sixtyFourths("MULT_ONLY", "PREADD_DATA_TR"), (kExponents * 8 + kInmode) / 9, 1e-5);
    EXPECT_NEAR(cell("PREADD_TR") * 64.0, (kExponents * 8 + kInmode) / 8, 1e-5);
    EXPECT_NEAR(cell("ALUMUX_TR") * 64.0, (kMantissas * 23 + kInmode) / 23, 1e-5);
    EXPECT_NEAR(cell("MULT_TR") * 64.0, ((kMantissas * 23 + kInmode) / 23 + 16) / 2, 1e-5);
    EXPECT_NEAR(sixtyFourths("B16_MULT", "PREADD_DATA_TR"), (kExponents * 12.8 + kInmode) / 9, 1e-5);
    EXPECT_NEAR(cell("PREADD_TR") * 64.0, (kExponents * 12.8 + kInmode) / 8, 1e-5);
    EXPECT_NEAR(cell("ALUMUX_TR") * 64.0, (kMantissas * 52.9 + kInmode) / 23, 1e-5);
    EXPECT_NEAR(cell("MULT_TR") * 64.0, ((kMantissas * 52.9 + kInmode) / 24 + 16) / 2, 1e-5); // 24, not 23
    set("C_TR", 0.25f);
    EXPECT_NEAR(sixtyFourths("MULT_ADD", "PREADD_DATA_TR"), (32 * 16 + kExponents * 8 + kInmode) / 41, 1e-5);
    EXPECT_NEAR(sixtyFourths("B16_MULT_ADD", "PREADD_DATA_TR"), (kExponents * 12.8 + 32 * 16 + kInmode) / 41, 1e-5);
}

TEST_F(DspFp32Test, PathsAreCappedAtAHalf)
{
    setAll(2.0f);
    for (const std::string& mode : kModes) {
        useMode(mode);
        calculate();
        for (const char* part : {"AB_DATA", "PREADD_DATA", "ALUMUX", "PREADD", "MULT", "FP_EXP"})
            EXPECT_THAT(cell(std::string(part) + "_TR"), IsBits(0.5f)) << mode << " " << part;
        EXPECT_THAT(cell("OUTPUT_TR"), IsBits(2.0f)) << mode;
    }
}

TEST_F(DspFp32Test, TheCascadeWeighsOutputAndOperands)
{
    setFields();
    set("FPA_OUT_TR", 0.25f);
    set("FPM_OUT_TR", 0.125f); // mean 12 in 64ths
    EXPECT_NEAR(sixtyFourths("MULT_ADD", "CASC_DELAY_TR"), (12 * 32 + kBitsA + kBitsB) / 96, 1e-5);
    EXPECT_NEAR(sixtyFourths("MULT_ONLY", "CASC_DELAY_TR"), (12 * 32 + kBitsA + kBitsBWithoutMantissa) / 96, 1e-5);
    EXPECT_NEAR(sixtyFourths("B16_MULT_ADD", "CASC_DELAY_TR"), (12 * 32 + k16BitsA + k16BitsB) / 96, 1e-5);
    EXPECT_NEAR(sixtyFourths("B16_MULT", "CASC_DELAY_TR"), (8 * 32 + k16BitsA + k16BitsB) / 96, 1e-5);
    EXPECT_NEAR(sixtyFourths("ADD_ONLY", "CASC_DELAY_TR"), 16, 0);
    set("D_MAN_TR", 0.25f); // now D is the busier
    EXPECT_NEAR(sixtyFourths("MULT_ADD", "CASC_DELAY_TR"), (12 * 32 + kBitsA + 71 + 23 * 16) / 96, 1e-5);
}

TEST_F(DspFp32Test, RatesAreTakenOverFromTheRightNeighbour)
{
    setFields();
    set("C_TR", 0.3f);
    set("FPOPMODE_TR", 0.2f);
    set("FPINMODE_TR", 0.1f);
    set("FPA_OUT_TR", 0.4f);
    set("FPM_OUT_TR", 0.35f);
    const std::map<std::string, std::map<std::string, std::string>> sources{
        {"ADD_ONLY",
         {{"PREADD_DATA", "AB_DATA_TR"},
          {"C_DATA", "C_TR"},
          {"ALUREG", "FPOPMODE_TR"},
          {"OPTINV", "ALUREG_TR"},
          {"ALUADD", "ALUREG_TR"},
          {"PREADD", "AB_DATA_TR"},
          {"MULT", "AB_DATA_TR"},
          {"M_DATA", "MULT_TR"},
          {"PATDET", "OUTPUT_TR"},
          {"FP_EXP", "AB_DATA_TR"},
          {"FP_ADD", "FPA_OUT_TR"},
          {"FP_NORM", "AB_DATA_TR"},
          {"OUTPUT", "FPA_OUT_TR"}}},
        {"MULT_ONLY",
         {{"C_DATA", "PREADD_DATA_TR"},
          {"ALUREG", "AB_DATA_TR"},
          {"OPTINV", "ALUREG_TR"},
          {"ALUADD", "ALUMUX_TR"},
          {"M_DATA", "MULT_TR"},
          {"PATDET", "OUTPUT_TR"},
          {"FP_ADD", "AB_DATA_TR"},
          {"FP_NORM", "FPM_OUT_TR"},
          {"OUTPUT", "FPM_OUT_TR"},
          {"COMPLEX", "PREADD_DATA_TR"}}},
        {"MULT_ADD",
         {{"C_DATA", "C_TR"},
          {"ALUREG", "FPOPMODE_TR"},
          {"ALUADD", "ALUMUX_TR"},
          {"FP_ADD", "FPA_OUT_TR"},
          {"FP_NORM", "FPM_OUT_TR"}}},
        {"B16_MULT",
         {{"C_DATA", "PREADD_DATA_TR"},
          {"ALUREG", "AB_DATA_TR"},
          {"ALUADD", "ALUMUX_TR"},
          {"FP_ADD", "ALUREG_TR"},
          {"FP_NORM", "FPM_OUT_TR"},
          {"OUTPUT", "FPM_OUT_TR"}}},
        {"B16_MULT_ADD",
         {{"C_DATA", "C_TR"}, {"ALUREG", "FPOPMODE_TR"}, {"FP_ADD", "FPA_OUT_TR"}, {"FP_NORM", "FPM_OUT_TR"}}},
    };
    for (const auto& [mode, pairs] : sources) {
        for (const std::string suffix : {"", "_NOFPMPIPEREG"}) {
            if (mode == "ADD_ONLY" && !suffix.empty())
                continue;
            useMode(mode + suffix);
            calculate();
            for (const auto& [component, source] : pairs)
                EXPECT_THAT(cell(component + "_TR"), IsBits(cell(source))) << mode << suffix << " " << component;
            if (mode != "MULT_ONLY") {
                EXPECT_NEAR(cell("COMPLEX_TR"), (cell("AB_DATA_TR") + cell("PREADD_DATA_TR")) / 2.0, 1e-8) << mode;
            }
            if (mode.ends_with("MULT_ADD")) {
                EXPECT_THAT(cell("OUTPUT_TR"), IsBits(0.375f)) << mode; // the mean of both outputs
            }
        }
    }
    useMode("ADD_ONLY");
    EXPECT_NEAR(after("ALUMUX_TR"), 0.35, 1e-7); // the mean of input C and the output
}

TEST_F(DspFp32Test, SixteenBitWeightsAreDoubles)
{
    // The exponent's and the mantissa's share cancel but for what single precision would lose.
    useMode("B16_MULT_ADD");
    setAll(0.0f);
    const float exponent = 41492272.0f;
    const float mantissa = -10039718.0f;
    set("A_EXP_TR", exponent);
    set("A_MAN_TR", mantissa);
    const double bits = 12.8 * double{exponent} + 52.9 * double{mantissa};
    EXPECT_NE(static_cast<float>(bits), 12.8f * exponent + 52.9f * mantissa);
    // MAX of nothing positive is the smallest normal float, which the sum swallows
    EXPECT_THAT(after("CASC_DELAY_TR"), IsBits(static_cast<float>(bits / 96.0)));
}

TEST_F(DspFp32Test, CurrentsAddUpWithoutAUsageLevel)
{
    set("USE_GLOBAL_TR", "YES");
    set("GLOBAL_TR", 1.0f);
    set("VCCINT", 0.4f);
    set("CLOCK_FREQ", 100.0f);
    params[Params::NUM_DSP] = 3;
    calculate();
    EXPECT_THAT(cell("FP_ADD_CURRENT"), IsBits(12.53125f));          // (0.25 / 0.5 x 100 + 0.125) / 4
    EXPECT_THAT(cell("TOTAL_COMPONENT_ADJ_CURRENT"), IsBits(25.0f)); // (5 - 4) x 100 / 4
    EXPECT_THAT(cell("DYNAMIC_VCCINT_CURRENT"), IsBits(714.09375f)); // (17 x 12.53125 + 25) x 3
    EXPECT_THAT(cell("DYNAMIC_VCCINT_POWER"), IsBits(714.09375f * 0.4f));
}

TEST_F(DspFp32Test, AllComponentsWeighInFullInTheMeanRate)
{
    set("USE_GLOBAL_TR", "YES");
    set("GLOBAL_TR", 1.0f);
    EXPECT_THAT(after("AGGREGATED_TR"), IsBits(1.0625f)); // 17 x 0.25 / 4
    tables.componentSum = "0.0";
    load();
    EXPECT_THAT(after("AGGREGATED_TR"), IsBits(0.0f));
}

TEST(DspFp32, ShippedDataIsWholeAndBelievable)
{
    EXPECT_EQ(expectWholeDspData<Data>("FP32", kDspParts, false), 16u);
    Params params;
    params[Params::CLOCK_FREQ] = 500.0f;
    const float product = shippedDspPower<Model>(params);
    EXPECT_TRUE(product > 2.5f && product < 7.0f) << product;
    params[Params::ADD_USED] = "YES";
    const float sum = shippedDspPower<Model>(params);
    EXPECT_TRUE(sum > product && sum < 10.0f) << sum;
    params[Params::MULT_USED] = "NO";
    EXPECT_LT(shippedDspPower<Model>(params), sum);
}

} // namespace zelm::test::dspFp32Test
