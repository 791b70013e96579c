#include "dsp/ZelmOrvaneDspActivityModel.h"
#include "dsp/ZelmOrvaneDspCplxData.h"
#include "dsp/ZelmOrvaneDspFp32Data.h"
#include "dsp/ZelmOrvaneDspInt24Data.h"
#include "dsp/ZelmOrvaneDspInt8Data.h"
#include "dsp/ZelmOrvaneDspLegacyData.h"

#include "support/BlockFixture.h"

#include <set>
#include <stdexcept>

namespace zelm::test::dspActivityTest {

using Params = ZelmOrvaneDspActivityParams;
using Data = ZelmOrvaneDspActivityData;

class DspActivityTest : public BlockFixture<ZelmOrvaneDspActivityModel> {
protected:
    DspActivityTest()
    {
        load(R"(MACB_INT24_MULT_NO_PREADD_NO_CONST = "ALU_ONLY"; MACB_CPLX_MULT_YES_CONST = "MULT_ALU";)",
             R"(ALU_ONLY : { DISPLAY_STR = "adder"; OUTPUT_TOGGLE = "0.25"; };
                INVALID_STATE : { OUTPUT_TOGGLE = "0"; };)");
    }

    void load(const std::string& modes, const std::string& config)
    {
        BlockFixture::load("OPERATIONAL_MODE_MAP : { " + modes + " }; DSP_CONFIG_DATA : { " + config + " };");
    }

    void loadToggle(const std::string& text)
    {
        load(R"(MACB_INT24_MULT_NO_PREADD_NO_CONST = "ALU_ONLY";)",
             "ALU_ONLY : { OUTPUT_TOGGLE = \"" + text + "\"; };");
    }

    std::string usage()
    {
        params.resetModelOutputs();
        return model.calculateDspUsage(params, Data::getGlobal());
    }

    std::string failure()
    {
        try {
            model.calculate(params);
            return "none";
        } catch (const std::invalid_argument& error) {
            return std::string("invalid argument: ") + error.what();
        } catch (const std::out_of_range& error) {
            return std::string("out of range: ") + error.what();
        }
    }
};

TEST_F(DspActivityTest, DefaultsAreAnAdder)
{
    model.calculate(params);
    EXPECT_EQ(params[Params::DSP_USAGE], "MACB_INT24_MULT_NO_PREADD_NO_CONST");
    EXPECT_EQ(params[Params::OPERATIONAL_MODE], "ALU_ONLY");
    EXPECT_EQ(params[Params::DISPLAY_CONFIG_STR], "adder");
    EXPECT_THAT(params[Params::OUTPUT_TOGGLE_RATE], IsBits(0.25f));
}

TEST_F(DspActivityTest, TheRatesAreForTheHostAlone)
{
    model.calculate(params);
    for (const auto cell : {Params::A_TR, Params::B_TR, Params::C_TR, Params::GLOBAL_TR})
        EXPECT_THAT(params[cell], IsBits(zelm::unsetFloat));
    EXPECT_EQ(params[Params::USE_GLOBAL_TR], zelm::unsetString);
    EXPECT_THAT(model.getATr(params, Data::getGlobal()), IsBits(0.125f));
    EXPECT_THAT(model.getGlobalTr(params, Data::getGlobal()), IsBits(0.5f));
    EXPECT_EQ(model.getUseGlobalTr(params, Data::getGlobal()), "NO");
}

TEST_F(DspActivityTest, EachFamilyComposesItsKey)
{
    struct {
        const char *mode, *mult, *preadd, *c, *b16, *adder, *opmode, *key;
    } const cases[] = {
        {"MACB_12X12_INT24", "YES", "NO", "NO", "NO", "NO", "CONST", "MACB_12X12_INT24_MULT_YES_CINPUT_NO"},
        // with input C it falls through to the general key, which doesn't mention the input
        {"MACB_12X12_INT24", "YES", "YES", "YES", "NO", "NO", "DYNAMIC",
         "MACB_12X12_INT24_MULT_YES_PREADD_YES_DYNAMIC"},
        {"MACB_12X12_INT24", "NO", "NO", "NO", "NO", "NO", "CONST", "MACB_12X12_INT24_MULT_NO_PREADD_NO_CONST"},
        {"MACB_18X18_INT24", "YES", "YES", "NO", "NO", "NO", "DYNAMIC", "MACB_18X18_INT24_MULT_YES_DYNAMIC"},
        {"MACB_18X18_INT24", "NO", "YES", "NO", "NO", "NO", "CONST", "MACB_18X18_INT24_MULT_NO_PREADD_YES_CONST"},
        {"MACA_INT24", "YES", "NO", "NO", "NO", "NO", "CONST", "MACA_INT24_MULT_YES_PREADD_NO_CONST"},
        // these two always multiply, whatever MULT_USED says
        {"MACB_CPLX", "NO", "NO", "NO", "NO", "NO", "DYNAMIC", "MACB_CPLX_MULT_YES_DYNAMIC"},
        {"MACB_INT8", "NO", "YES", "NO", "NO", "NO", "CONST", "MACB_INT8_MULT_YES_PREADD_YES_CONST"},
        {"MACB_FP32", "NO", "YES", "NO", "YES", "NO", "CONST", "MACB_FP32_MULT_NO_B16_YES_ADDER_NO"},
        {"MACB_FP32", "YES", "NO", "NO", "NO", "YES", "DYNAMIC", "MACB_FP32_MULT_YES_B16_NO_ADDER_YES"},
        {"anything", "perhaps", "NO", "NO", "NO", "NO", "CONST", "anything_MULT_perhaps_PREADD_NO_CONST"},
    };
    for (const auto& row : cases) {
        params[Params::DSP_MODE] = row.mode;
        params[Params::MULT_USED] = row.mult;
        params[Params::PREADD_USED] = row.preadd;
        params[Params::C_INPUT_USED] = row.c;
        params[Params::FPB16_USED] = row.b16;
        params[Params::FPADDER_USED] = row.adder;
        params[Params::OPMODE_USAGE] = row.opmode;
        EXPECT_EQ(usage(), row.key);
    }
}

TEST_F(DspActivityTest, AnUnknownUsageIsInvalid)
{
    params[Params::DSP_MODE] = "MACB_INT8";
    model.calculate(params);
    EXPECT_EQ(params[Params::OPERATIONAL_MODE], "INVALID_STATE");
    EXPECT_EQ(params[Params::DISPLAY_CONFIG_STR], "INVALID_STATE"); // its row has no text
    EXPECT_THAT(params[Params::OUTPUT_TOGGLE_RATE], IsBits(0.0f));
}

TEST_F(DspActivityTest, AModePulledAlonePullsTheUsageAndStays)
{
    EXPECT_EQ(model.calculateOperationalMode(params, Data::getGlobal()), "ALU_ONLY");
    EXPECT_EQ(params[Params::DSP_USAGE], "MACB_INT24_MULT_NO_PREADD_NO_CONST");
    params[Params::DSP_MODE] = "MACB_CPLX";
    EXPECT_EQ(model.calculateOperationalMode(params, Data::getGlobal()), "ALU_ONLY");
    model.calculateOperationalMode(params, Data::getGlobal());
    params.resetModelOutputs();
    EXPECT_EQ(model.calculateOperationalMode(params, Data::getGlobal()), "MULT_ALU");
}

TEST_F(DspActivityTest, ARateThatIsNoNumberThrows)
{
    loadToggle("often");
    EXPECT_EQ(failure(), "invalid argument: stof");
    loadToggle("1e99");
    EXPECT_EQ(failure(), "out of range: stof");
    EXPECT_THAT(params[Params::OUTPUT_TOGGLE_RATE], IsBits(zelm::unsetFloat));
    load(R"(MACB_INT24_MULT_NO_PREADD_NO_CONST = "ALU_ONLY";)", R"(ALU_ONLY : { DISPLAY_STR = "adder"; };)");
    EXPECT_EQ(failure(), "invalid argument: stof"); // a missing row too
    EXPECT_EQ(params[Params::DISPLAY_CONFIG_STR], "adder");
}

TEST_F(DspActivityTest, TheRateIsTheNumberThatTheTextStartsWith)
{
    loadToggle(" 0.375 per cycle");
    EXPECT_EQ(failure(), "none");
    EXPECT_THAT(params[Params::OUTPUT_TOGGLE_RATE], IsBits(0.375f));
    loadToggle("3.4028234663852886e38"); // the sentinel itself counts as missing
    EXPECT_EQ(failure(), "none");
    EXPECT_THAT(params[Params::OUTPUT_TOGGLE_RATE], IsBits(0.0f));
}

// Every usage that the flags can form has a mode that its family's model knows, a text and a sensible rate.
TEST(DspActivity, ShippedTablesServeEveryUsage)
{
    const DataDirVariable variable(shippedDataDirectory());
    Data::getMutableGlobal().reset();
    ZelmOrvaneDspCplxData::getMutableGlobal().reset();
    ZelmOrvaneDspFp32Data::getMutableGlobal().reset();
    ZelmOrvaneDspInt24Data::getMutableGlobal().reset();
    ZelmOrvaneDspInt8Data::getMutableGlobal().reset();
    ZelmOrvaneDspLegacyData::getMutableGlobal().reset();
    const auto modesOf = [](const auto& data, const std::string& family) {
        const std::vector<std::string> keys = data.getCfgKeys({"DYNAMIC_DATA", family}, false);
        return std::set<std::string>(keys.begin(), keys.end());
    };
    const std::set<std::string> int24 = modesOf(ZelmOrvaneDspInt24Data::getGlobal(), "INT24");
    const std::map<std::string, std::set<std::string>> modes{
        {"MACA_INT24", modesOf(ZelmOrvaneDspLegacyData::getGlobal(), "LEGACY_INT24")},
        {"MACB_12X12_INT24", int24},
        {"MACB_18X18_INT24", int24},
        {"MACB_CPLX", modesOf(ZelmOrvaneDspCplxData::getGlobal(), "CPLX")},
        {"MACB_FP32", modesOf(ZelmOrvaneDspFp32Data::getGlobal(), "FP32")},
        {"MACB_INT24", int24},
        {"MACB_INT8", modesOf(ZelmOrvaneDspInt8Data::getGlobal(), "INT8")},
    };
    std::set<std::string> usages;
    for (const auto& [family, known] : modes) {
        for (int flags = 0; flags < 64; ++flags) {
            const auto flag = [flags](int bit) { return flags >> bit & 1 ? "YES" : "NO"; };
            Params params;
            params[Params::DSP_MODE] = family;
            params[Params::MULT_USED] = flag(0);
            params[Params::PREADD_USED] = flag(1);
            params[Params::C_INPUT_USED] = flag(2);
            params[Params::FPB16_USED] = flag(3);
            params[Params::FPADDER_USED] = flag(4);
            params[Params::OPMODE_USAGE] = flags >> 5 & 1 ? "DYNAMIC" : "CONST";
            ZelmOrvaneDspActivityModel::getGlobal().calculate(params);
            const std::string usage = params[Params::DSP_USAGE];
            usages.insert(usage);
            EXPECT_TRUE(known.contains(params[Params::OPERATIONAL_MODE])) << usage;
            EXPECT_NE(params[Params::DISPLAY_CONFIG_STR], "INVALID_STATE") << usage;
            EXPECT_GT(params[Params::OUTPUT_TOGGLE_RATE], 0.1f) << usage;
            EXPECT_LE(params[Params::OUTPUT_TOGGLE_RATE], 0.5f) << usage;
        }
        for (const std::string& mode : known)
            EXPECT_FALSE(Data::getGlobal().getCfgKeys({"DSP_CONFIG_DATA", mode}, true).empty()) << mode;
    }
    EXPECT_EQ(usages.size(), 45u); // 8 + 9 + 6 + 2 + 8 + 8 + 4, in the order of modes
    EXPECT_EQ(Data::getGlobal().getCfgKeys({"OPERATIONAL_MODE_MAP"}, true).size(), 45u);
}

} // namespace zelm::test::dspActivityTest
