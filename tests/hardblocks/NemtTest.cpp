#include "hardblocks/ZelmOrvaneNemtModel.h"

#include "hardblocks/Supply.h"
#include "support/BlockFixture.h"

#include <algorithm>

namespace zelm::test::nemtTest {

using Params = ZelmOrvaneNemtParams;
using Nemt = ZelmOrvaneNemtModel;
using NemtShippedData = ShippedBlockFixture<Nemt>;

// The default supply is twice the reference.
constexpr std::string_view kGroups = R"(
    NEMT_DATA : { DYNAMIC : {
        NEMT_TILE_IDLE_POWER = 0.25; NEMT_TILE_SCALAR_POWER = 0.5;
        NEMT_INT_CORE_POWER_16BIT = 2.0; NEMT_INT_CORE_POWER_8BIT = 4.0; NEMT_FP_CORE_POWER = 8.0;
        NEMT_FFT_CORE_POWER = 16.0; NEMT_MEMORY_POWER = 0.75; STREAM_INTERCONNECT_POWER = 1.5;
        PLL_POWER_VCCINT = 3.0; PLL_POWER_VCCAUX = 5.0;
        NEMT_PL_INTERFACE_POWER = 0.125; NEMT_NOC_INTERFACE_POWER = 0.375;
        NEMT_SHIM_C_POWER = 10.0; NEMT_SHIM_TOP_POWER_C = 20.0; NEMT_SHIM_TOP_POWER_B = 7.0; }; };
    SIM_CONDITIONS : { PSIM_VOLTAGE = 0.4; };
    SHIM_DATA : { ZQ20T60 : { SHIM_B = 5; }; OTHER : { SHIM_B = 50; }; };
    NEMT_STREAMS : { ZQ20T60 : { PL_STREAMS = 30; NOC_STREAMS = 12; }; };)";

class NemtTest : public BlockFixture<Nemt> {
protected:
    NemtTest() : BlockFixture(kGroups) {}

    // At the reference supply, where the voltage factor is 1, with round numbers.
    void workAtReference(const char* kernel = "Int16")
    {
        params[Params::VCCINT] = 0.4f;
        params[Params::CLK_FREQ] = 100.0f;
        params[Params::CORE_LOAD] = 0.5f;
        params[Params::NEMT_CORES] = 3;
        params[Params::KERNEL_TYPE] = kernel;
        calculate();
    }

    // The kernels' cells in the order in which they are added: Int16, Int8, Floating, FFT, Complex.
    std::vector<float> kernels()
    {
        return {params[Params::NEMT_TILE_16_BIT], params[Params::NEMT_TILE_8_BIT], params[Params::NEMT_TILE_FLOAT],
                params[Params::NEMT_TILE_FFT], params[Params::NEMT_TILE_CPLX_BIT]};
    }
};

TEST_F(NemtTest, EachKernelFillsItsOwnCell)
{
    // (0.5 x core + (0.25 + 0.5)) x (3 x 100); FFT: 3 x 100 x 0.5 x 16 without idle and scalar parts
    struct {
        const char* kernel;
        std::vector<float> cells;
    } const rows[] = {{"Int16", {525.0f, 0.0f, 0.0f, 0.0f, 0.0f}},     {"Int8", {0.0f, 825.0f, 0.0f, 0.0f, 0.0f}},
                      {"Floating", {0.0f, 0.0f, 1425.0f, 0.0f, 0.0f}}, {"FFT", {0.0f, 0.0f, 0.0f, 2400.0f, 0.0f}},
                      {"Complex", {0.0f, 0.0f, 0.0f, 0.0f, 525.0f}}, // as Int16
                      {"int16", {0.0f, 0.0f, 0.0f, 0.0f, 0.0f}},       {"", {0.0f, 0.0f, 0.0f, 0.0f, 0.0f}}};
    for (const auto& row : rows) {
        workAtReference(row.kernel);
        EXPECT_EQ(kernels(), row.cells) << row.kernel;
        EXPECT_THAT(params[Params::NEMT_TILE_POWER], IsBits(*std::max_element(row.cells.begin(), row.cells.end())))
            << row.kernel;
    }
}

TEST_F(NemtTest, AnIdleFftTileDrawsNothing)
{
    workAtReference("FFT");
    params[Params::CORE_LOAD] = 0.0f;
    calculate();
    EXPECT_THAT(params[Params::NEMT_TILE_POWER], IsBits(0.0f));
    workAtReference("Int8");
    params[Params::CORE_LOAD] = 0.0f;
    calculate();
    EXPECT_THAT(params[Params::NEMT_TILE_POWER], IsBits(225.0f)); // 0.75 x 300
}

TEST_F(NemtTest, SumsAndRails)
{
    params[Params::NUM_MEMORY_BANKS] = 32;
    params[Params::MEMORY_READ_WRITE_RATE] = 0.5f;
    params[Params::INTERCONNECT_LOAD] = 0.25f;
    params[Params::PL_INTERFACE_STREAMS] = 4;
    params[Params::NOC_AXIMMS_INTERFACE_STREAMS] = 2;
    workAtReference();
    EXPECT_EQ(params[Params::NEMT_TILES], 4); // 32 banks need a fourth tile
    EXPECT_THAT(params[Params::VOLTAGE_SCALING], IsBits(1.0f));
    EXPECT_THAT(params[Params::NEMT_IDLE_POWER], IsBits(25.0f));                 // 1 x 100 x 0.25
    EXPECT_THAT(params[Params::NEMT_MEMORY_POWER], IsBits(1200.0f));             // 100 x 32 x 0.5 x 0.75
    EXPECT_THAT(params[Params::NEMT_INTERCONNECT_STREAM_POWER], IsBits(150.0f)); // 100 x 4 x 0.25 x 1.5
    EXPECT_THAT(params[Params::NEMT_PLL_VCCINT_POWER], IsBits(3.0f));
    EXPECT_THAT(params[Params::NEMT_PLL_VCCAUX_POWER], IsBits(5.0f));
    EXPECT_THAT(params[Params::NEMT_PL_SHIM_POWER], IsBits(50.0f));  // 4 x 100 x 0.125
    EXPECT_THAT(params[Params::NEMT_NOC_SHIM_POWER], IsBits(75.0f)); // 2 x 100 x 0.375
    EXPECT_THAT(params[Params::NEMT_SHIM_POWER], IsBits(125.0f));
    EXPECT_EQ(params[Params::B_COLUMN_FACTOR], 5);
    EXPECT_THAT(params[Params::NEMT_SHIM_POWER_TOP], IsBits(5.0f)); // 100 x (5 x 7 + (10 + 20)) / 1300

    EXPECT_THAT(params[Params::NEMT_CORE_POWER], IsBits(553.0f)); // 25 + 525 + 3
    EXPECT_THAT(params[Params::NEMT_MEM_POWER], IsBits(1485.0f)); // 125 + 1200 + 150 + 5 + 5
    EXPECT_THAT(params[Params::NEMT_CORE_MEM_POWER], IsBits(2038.0f));
    EXPECT_THAT(params[Params::TOTAL_POWER], IsBits(2038.0f));
    EXPECT_THAT(params[Params::NEMT_VCCAUX_POWER], IsBits(5.0f));
    EXPECT_THAT(params[Params::NEMT_VCCINT_POWER], IsBits(2033.0f));
}

TEST_F(NemtTest, WithoutACoreOnlyTheShimsShowPower)
{
    params[Params::NUM_MEMORY_BANKS] = 32;
    params[Params::MEMORY_READ_WRITE_RATE] = 0.5f;
    params[Params::PL_INTERFACE_STREAMS] = 4;
    calculate();
    EXPECT_EQ(params[Params::NEMT_TILES], 4);
    EXPECT_GT(params[Params::NEMT_IDLE_POWER], 0.0f);
    EXPECT_GT(params[Params::NEMT_MEMORY_POWER], 0.0f);
    EXPECT_GT(params[Params::NEMT_PLL_VCCINT_POWER], 0.0f);
    EXPECT_THAT(params[Params::NEMT_PLL_VCCAUX_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::NEMT_CORE_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::NEMT_MEM_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::TOTAL_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::NEMT_VCCAUX_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::NEMT_VCCINT_POWER], IsBits(0.0f));
    EXPECT_GT(params[Params::NEMT_SHIM_POWER], 0.0f);
    EXPECT_THAT(params[Params::NEMT_SHIM_POWER], IsBits(params[Params::NEMT_PL_SHIM_POWER]));
}

TEST_F(NemtTest, TilesServeForCoresOrForMemory)
{
    const auto tiles = [this](int cores, int banks) {
        params.resetUserInputs();
        params[Params::NEMT_CORES] = cores;
        params[Params::NUM_MEMORY_BANKS] = banks;
        calculate();
        return params[Params::NEMT_TILES];
    };
    EXPECT_EQ(tiles(1, 16), 2);
    EXPECT_THAT(params[Params::NEMT_IDLE_POWER], IsBits(975.0f * 0.25f * params[Params::VOLTAGE_SCALING])); // one idle
    EXPECT_EQ(tiles(5, 16), 5);
    EXPECT_EQ(tiles(1, 23), 2); // the last seven banks make no tile
    EXPECT_EQ(tiles(0, 7), 0);
    EXPECT_EQ(tiles(0, 0), 0);   // the greatest of nothing is the smallest positive float
    EXPECT_EQ(tiles(-3, -8), 0); // and beats what is negative
}

TEST_F(NemtTest, StatedTilesBelowTheCoresLeaveNoneIdle)
{
    params[Params::NEMT_TILES] = 2;
    workAtReference();
    EXPECT_EQ(params[Params::NEMT_TILES], 2);
    EXPECT_THAT(params[Params::NEMT_IDLE_POWER], IsBits(0.0f));
    params[Params::NEMT_TILES] = 3; // as many as cores
    calculate();
    EXPECT_THAT(params[Params::NEMT_IDLE_POWER], IsBits(0.0f));
    params[Params::NEMT_TILES] = 7;
    calculate();
    EXPECT_THAT(params[Params::NEMT_IDLE_POWER], IsBits(100.0f)); // 4 x 100 x 0.25
}

TEST_F(NemtTest, IdleTilesAreCountedInInts)
{
    workAtReference();
    params[Params::NEMT_CORES] = 2;
    params[Params::NEMT_TILES] = 16777219; // a float would round it up to 16777220
    params[Params::CLK_FREQ] = 1.0f;
    calculate();
    EXPECT_THAT(params[Params::NEMT_IDLE_POWER], IsBits(16777216.0f * 0.25f)); // the difference rounds once, down
    params[Params::NEMT_CORES] = -2147483647;
    calculate();
    EXPECT_THAT(params[Params::NEMT_IDLE_POWER], IsBits(-2130706432.0f * 0.25f)); // the difference wraps
}

TEST_F(NemtTest, PowerFollowsTheSupplyButTheAuxiliaryPllDoesNot)
{
    params[Params::NEMT_CORES] = 1;
    calculate();
    const float scaling = static_cast<float>(kDoubledSupply);
    EXPECT_THAT(params[Params::VOLTAGE_SCALING], IsBits(scaling));
    EXPECT_THAT(params[Params::NEMT_PLL_VCCINT_POWER], IsBits(3.0f * scaling));
    EXPECT_THAT(params[Params::NEMT_TILE_16_BIT], IsBits(731.25f)); // 0.75 x 975, before the supply
    EXPECT_THAT(params[Params::NEMT_TILE_POWER], IsBits(731.25f * scaling));
    EXPECT_THAT(params[Params::NEMT_SHIM_POWER_TOP], IsBits(975.0f * 65.0f * scaling / 1300.0f));
    EXPECT_THAT(params[Params::NEMT_PLL_VCCAUX_POWER], IsBits(5.0f));
}

TEST_F(NemtTest, AReferenceThatIsNotPositiveGivesNoScaling)
{
    for (const char* reference : {"0.0", "-0.4"}) {
        std::string groups(kGroups);
        load(groups.replace(groups.find("0.4;"), 3, reference));
        calculate();
        EXPECT_THAT(params[Params::VOLTAGE_SCALING], IsBits(0.0f)) << reference;
    }
}

TEST_F(NemtTest, ProductsGoFromLeftToRight)
{
    params[Params::NEMT_CORES] = 7;
    params[Params::CORE_LOAD] = 0.3f;
    params[Params::CLK_FREQ] = 0.7f;
    params[Params::VCCINT] = 0.4f;
    params[Params::KERNEL_TYPE] = "Int8";
    params[Params::NUM_MEMORY_BANKS] = 9;
    params[Params::MEMORY_READ_WRITE_RATE] = 0.3f;
    calculate();
    EXPECT_THAT(params[Params::NEMT_TILE_8_BIT], IsBits((0.3f * 4.0f + 0.75f) * (7.0f * 0.7f)));
    EXPECT_THAT(params[Params::NEMT_MEMORY_POWER], IsBits(0.7f * 9.0f * 0.3f * 0.75f));
}

TEST_F(NemtTest, AnUnknownDieLetsItsColumnsFlowOn)
{
    params[Params::INTERNAL_DEVICE_NAME] = "NOWHERE";
    workAtReference();
    EXPECT_EQ(params[Params::B_COLUMN_FACTOR], zelm::unsetInt);
    const float columns = 2147483648.0f; // the marker as a float
    EXPECT_THAT(params[Params::NEMT_SHIM_POWER_TOP], IsBits(100.0f * (columns * 7.0f + 30.0f) / 1300.0f));
}

TEST_F(NemtTest, StreamLimitsWaitForAPull)
{
    calculate();
    EXPECT_EQ(params[Params::PL_STREAMS], zelm::unsetInt);
    EXPECT_EQ(params[Params::NOC_STREAMS], zelm::unsetInt);
    EXPECT_EQ(model.calculatePlStreams(params, data), 30);
    EXPECT_EQ(model.calculateNocStreams(params, data), 12);
}

TEST_F(NemtShippedData, TenBusyTilesTakeHundredsOfMilliwatts)
{
    params[Params::NEMT_CORES] = 10;
    params[Params::CORE_LOAD] = 0.8f;
    params[Params::NUM_MEMORY_BANKS] = 80;
    params[Params::MEMORY_READ_WRITE_RATE] = 0.2f;
    params[Params::PL_INTERFACE_STREAMS] = 8;
    params[Params::NOC_AXIMMS_INTERFACE_STREAMS] = 2;
    for (const char* kernel : {"Int16", "Int8", "Floating", "Complex", "FFT"}) {
        params[Params::KERNEL_TYPE] = kernel;
        calculate();
        EXPECT_GT(params[Params::TOTAL_POWER], 300.0f) << kernel;
        EXPECT_LT(params[Params::TOTAL_POWER], 999.0f) << kernel;
        EXPECT_LT(params[Params::NEMT_VCCAUX_POWER], 30.0f) << kernel;
    }
}

TEST_F(NemtShippedData, EveryDieStatesItsShimsAndStreams)
{
    const auto& data = ZelmOrvaneNemtData::getGlobal();
    int smaller = 0;
    for (const char* die : {"ZQ10T40", "ZQ20T60", "ZQ30T80"}) {
        EXPECT_GT(data.getShimData(die, "SHIM_B"), smaller) << die;
        smaller = data.getShimData(die, "SHIM_B");
        EXPECT_LT(data.getNemtStreams(die, "NOC_STREAMS"), data.getNemtStreams(die, "PL_STREAMS")) << die;
        EXPECT_LT(data.getNemtStreams(die, "PL_STREAMS"), 1000) << die;
    }
}

} // namespace zelm::test::nemtTest
