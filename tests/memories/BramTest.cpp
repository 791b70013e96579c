#include "memories/ZelmOrvaneBramModel.h"

#include "support/BlockFixture.h"

#include <array>

namespace zelm::test::bramTest {

using Params = ZelmOrvaneBramParams;
using Data = ZelmOrvaneBramData;

constexpr std::array<std::string_view, 11> kKeys{"BLKM18",
                                                 "BLKM36",
                                                 "BLKM18SDP_36_36",
                                                 "BLKM18SDP_36_18",
                                                 "BLKM18SDP_18_36",
                                                 "BLKM36SDP_72_72",
                                                 "BLKM36SDP_72_36",
                                                 "BLKM36SDP_36_72",
                                                 "BLKM36SDP_ECC",
                                                 "BLKM36SDP_ECC_ENCODE_ONLY",
                                                 "BLKM36SDP_ECC_DECODE_ONLY"};

// Whole numbers that tell from which row they come: the key's number, 1 to 11, is added to each.
// Toggle current R 0, W 20; standby 0; dynamic RF_R 100, WF_R 200, NC_R 300, RF_W 400, WF_W 500, NC_W 600, on VCCRAM
// 1000 more. keys leaves out those from keyCount on.
std::string tables(int keyCount = 11, std::string_view simVoltage = "VCCINT = 0.5; VCCRAM = 0.25;")
{
    std::string toggle, standby, vccint, vccram;
    for (int i = 0; i < keyCount; ++i) {
        const std::string key(kKeys[static_cast<std::size_t>(i)]);
        const auto plus = [&](int base) { return std::to_string(base + i + 1) + "; "; };
        const auto rows = [&](int base) {
            return key + " : { RF_R = " + plus(base + 100) + "WF_R = " + plus(base + 200) +
                   "NC_R = " + plus(base + 300) + "RF_W = " + plus(base + 400) + "WF_W = " + plus(base + 500) +
                   "NC_W = " + plus(base + 600) + "}; ";
        };
        toggle += key + " : { R = " + plus(0) + "W = " + plus(20) + "}; ";
        standby += key + " = " + plus(0);
        vccint += rows(0);
        vccram += rows(1000);
    }
    return "PER_TR_CURRENT : { " + toggle + "}; STANDBY_CURRENT : { " + standby + "}; DYNAMIC_CURRENT_VCCINT : { " +
           vccint + "}; DYNAMIC_CURRENT_VCCRAM : { " + vccram + "}; SIM_VOLTAGE : { " + std::string(simVoltage) + " };";
}

class BramTest : public BlockFixture<ZelmOrvaneBramModel> {
protected:
    BramTest() : BlockFixture(tables()) {}

    void calculate(std::string_view mode, int widthA = 18, int widthB = 18)
    {
        params[Params::MODE] = mode;
        params[Params::PORT_A_BIT_WIDTH] = widthA;
        params[Params::PORT_B_BIT_WIDTH] = widthB;
        BlockFixture::calculate();
    }
    using BlockFixture::calculate;
};

TEST(Bram, FamiliesAreMembersTimesMetrics)
{
    EXPECT_EQ(floatIntermediatesEndingIn<Params>("_PWR"),
              familyNames({"BLKM18", "BLKM18SDP", "BLKM36", "BLKM36SDP", "BLKM36SDP_ECC", "BLKM36SDP_ECC_ENCODE_ONLY",
                           "BLKM36SDP_ECC_DECODE_ONLY"},
                          {"_A_VCCINT_PWR", "_A_VCCRAM_PWR", "_B_VCCINT_PWR", "_B_VCCRAM_PWR"}));
    std::vector<std::string> others = familyNames({"ACTIVITY", "READ_CURRENT", "WRITE_CURRENT"},
                                                  {"_A_VCCINT", "_A_VCCRAM", "_B_VCCINT", "_B_VCCRAM"});
    for (const std::string& name :
         familyNames({"READ_RATE", "WRITE_RATE", "STDBY_CALC", "UNUSED_BRAM_CALC", "TR_CALC_READ", "TR_CALC_WRITE"},
                     {"_A", "_B"}))
        others.push_back(name);
    others.emplace_back("MOD_STDBY_CURRENT");
    for (const std::string& name : others)
        EXPECT_NE(Params::string_to_float_enum(name), Params::LastFloat) << name;
    EXPECT_EQ(others.size(), 53u - 28u);
}

TEST_F(BramTest, TablesStandInLoadOrder)
{
    EXPECT_EQ(Data::getGlobal().getCfgKeys({}, true),
              (std::vector<std::string>{"PER_TR_CURRENT", "STANDBY_CURRENT", "DYNAMIC_CURRENT_VCCINT",
                                        "DYNAMIC_CURRENT_VCCRAM", "SIM_VOLTAGE"}));
}

TEST_F(BramTest, DefaultsByHand)
{
    calculate();
    EXPECT_EQ(params[Params::MOD], 0);
    EXPECT_EQ(params[Params::BRAM_MOD], 100);
    EXPECT_EQ(params[Params::BRAM_IN_CASC], 25);
    EXPECT_EQ(params[Params::UNUSED_BRAM_STDBY], 75);
    EXPECT_THAT(params[Params::ACTIVITY_A_VCCINT], IsBits(3.75f));   // 300 x 0.5 x 0.001 x 25
    EXPECT_THAT(params[Params::ACTIVITY_B_VCCRAM], IsBits(1.875f));  // 300 x 0.25 x 0.001 x 25
    EXPECT_THAT(params[Params::STDBY_CALC_A], IsBits(0.75f));        // 1 x (1 - 0.25)
    EXPECT_THAT(params[Params::UNUSED_BRAM_CALC_B], IsBits(11.25f)); // 300 x 0.5 x 0.001 x 75 x 1
    // 3.75 x (0.125 x (201 + 25 x 1) + 0.125 x (501 + 25 x 21) + 0.75) + 11.25 = 3.75 x 157.25 + 11.25
    EXPECT_THAT(params[Params::BLKM18_A_VCCINT_PWR], IsBits(600.9375f));
    // 1.875 x (0.125 x 1201 + 0.125 x 1501): neither toggling nor standby on the memory array
    EXPECT_THAT(params[Params::BLKM18_B_VCCRAM_PWR], IsBits(633.28125f));
}

TEST_F(BramTest, AnIncompleteGroupStandsBy)
{
    params[Params::NUM_BRAMS] = 10;
    calculate();
    EXPECT_EQ(params[Params::MOD], 2);
    EXPECT_EQ(params[Params::BRAM_MOD], 8);
    EXPECT_EQ(params[Params::BRAM_IN_CASC], 2);
    EXPECT_EQ(params[Params::UNUSED_BRAM_STDBY], 8);
}

TEST_F(BramTest, GroupsOfOneHaveNoIdleMembers)
{
    params[Params::CASCADE_GROUP_SIZE] = 1;
    calculate();
    EXPECT_EQ(params[Params::BRAM_IN_CASC], 100);
    EXPECT_EQ(params[Params::UNUSED_BRAM_STDBY], 0);
    EXPECT_THAT(params[Params::UNUSED_BRAM_CALC_A], IsBits(0.0f));
    EXPECT_THAT(params[Params::UNUSED_BRAM_CALC_B], IsBits(0.0f));
}

TEST_F(BramTest, AGroupSizeOfZeroGivesNoActiveMemory)
{
    params[Params::CASCADE_GROUP_SIZE] = 0;
    calculate();
    EXPECT_EQ(params[Params::BRAM_IN_CASC], 0);
    EXPECT_EQ(params[Params::UNUSED_BRAM_STDBY], 100);
    EXPECT_THAT(params[Params::ACTIVITY_A_VCCINT], IsBits(0.0f));
}

struct Choice {
    std::string_view mode;
    int widthA, widthB;
    int number; // of the key, 0 for none
};

TEST_F(BramTest, ModeAndWidthsChooseTheKey)
{
    for (const Choice& choice : {
             Choice{"BLKM18", 72, 36, 1},
             Choice{"BLKM36", 36, 36, 2},
             Choice{"BLKM18SDP", 36, 36, 3},
             Choice{"BLKM18SDP", 36, 18, 4},
             Choice{"BLKM18SDP", 36, 19, 0},
             Choice{"BLKM18SDP", 18, 36, 5},
             Choice{"BLKM18SDP", 19, 36, 0},
             Choice{"BLKM18SDP", 18, 18, 0}, // the default widths
             Choice{"BLKM36SDP", 72, 72, 6},
             Choice{"BLKM36SDP", 72, 36, 7},
             Choice{"BLKM36SDP", 72, 37, 0},
             Choice{"BLKM36SDP", 36, 72, 8},
             Choice{"BLKM36SDP", 37, 72, 0},
             Choice{"BLKM36SDP", 36, 36, 0},
             Choice{"BLKM36SDP_ECC", 18, 18, 9},
             Choice{"BLKM36SDP_ECC_ENCODE_ONLY", 18, 18, 10},
             Choice{"BLKM36SDP_ECC_DECODE_ONLY", 72, 72, 11},
             Choice{"BLKM18SDP_36_36", 36, 36, 0}, // a key is no mode
             Choice{"blkm18", 18, 18, 0},
         }) {
        SCOPED_TRACE(std::string(choice.mode) + " " + std::to_string(choice.widthA) + "/" +
                     std::to_string(choice.widthB));
        calculate(choice.mode, choice.widthA, choice.widthB);
        const auto row = [](int base, int number) { return number == 0 ? 0.0f : static_cast<float>(base + number); };
        // Port A reads and port B writes with all keys, the other way round with the true dual-port ones alone.
        const int dualPort = choice.number <= 2 ? choice.number : 0;
        EXPECT_THAT(params[Params::MOD_STDBY_CURRENT], IsBits(row(0, choice.number)));
        EXPECT_THAT(params[Params::READ_CURRENT_A_VCCINT], IsBits(row(200, choice.number)));
        EXPECT_THAT(params[Params::READ_CURRENT_A_VCCRAM], IsBits(row(1200, choice.number)));
        EXPECT_THAT(params[Params::WRITE_CURRENT_B_VCCINT], IsBits(row(500, choice.number)));
        EXPECT_THAT(params[Params::WRITE_CURRENT_B_VCCRAM], IsBits(row(1500, choice.number)));
        EXPECT_THAT(params[Params::WRITE_CURRENT_A_VCCINT], IsBits(row(500, dualPort)));
        EXPECT_THAT(params[Params::WRITE_CURRENT_A_VCCRAM], IsBits(row(1500, dualPort)));
        EXPECT_THAT(params[Params::READ_CURRENT_B_VCCINT], IsBits(row(200, dualPort)));
        EXPECT_THAT(params[Params::READ_CURRENT_B_VCCRAM], IsBits(row(1200, dualPort)));
        // The default toggle rate of 0.5 stands 25 percent above the tables'.
        EXPECT_THAT(params[Params::TR_CALC_READ_A], IsBits(25.0f * row(0, choice.number)));
        EXPECT_THAT(params[Params::TR_CALC_WRITE_B], IsBits(25.0f * row(20, choice.number)));
        EXPECT_THAT(params[Params::TR_CALC_WRITE_A], IsBits(25.0f * row(20, dualPort)));
        EXPECT_THAT(params[Params::TR_CALC_READ_B], IsBits(25.0f * row(0, dualPort)));
    }
}

TEST_F(BramTest, ASimpleDualPortMemoryReadsOnAAndWritesOnB)
{
    params[Params::PORT_B_ENABLE_RATE] = 0.5f;
    params[Params::PORT_B_WRITE_ENABLE] = 0.375f;
    calculate("BLKM18SDP");
    EXPECT_THAT(params[Params::READ_RATE_A], IsBits(0.25f)); // all of it, also where no key is selected
    EXPECT_THAT(params[Params::WRITE_RATE_A], IsBits(0.0f));
    EXPECT_THAT(params[Params::READ_RATE_B], IsBits(0.0f));
    EXPECT_THAT(params[Params::WRITE_RATE_B], IsBits(0.375f));
    params[Params::PORT_B_WRITE_ENABLE] = 0.75f;
    calculate("BLKM18SDP");
    EXPECT_THAT(params[Params::WRITE_RATE_B], IsBits(0.5f)); // not above the enable rate
}

TEST_F(BramTest, ATrueDualPortMemoryReadsWhenItIsEnabledAndDoesNotWrite)
{
    params[Params::PORT_A_ENABLE_RATE] = 0.5f;
    params[Params::PORT_A_WRITE_ENABLE] = 0.125f;
    params[Params::PORT_B_WRITE_ENABLE] = 0.0625f;
    calculate("BLKM36");
    EXPECT_THAT(params[Params::READ_RATE_A], IsBits(0.375f));
    EXPECT_THAT(params[Params::WRITE_RATE_A], IsBits(0.125f));
    EXPECT_THAT(params[Params::READ_RATE_B], IsBits(0.1875f));
    EXPECT_THAT(params[Params::WRITE_RATE_B], IsBits(0.0625f));
}

TEST_F(BramTest, AWriteEnableAboveTheEnableRateWritesAlways)
{
    params[Params::PORT_A_WRITE_ENABLE] = 0.75f;
    calculate();
    EXPECT_THAT(params[Params::WRITE_RATE_A], IsBits(0.25f));
    EXPECT_THAT(params[Params::READ_RATE_A], IsBits(0.0f));
}

TEST_F(BramTest, PortBWritesWithoutATestOfMode)
{
    params[Params::MODE] = "NO_SUCH_MODE";
    calculate();
    EXPECT_THAT(params[Params::READ_RATE_A], IsBits(0.25f));
    EXPECT_THAT(params[Params::WRITE_RATE_A], IsBits(0.0f));
    EXPECT_THAT(params[Params::READ_RATE_B], IsBits(0.0f));
    EXPECT_THAT(params[Params::WRITE_RATE_B], IsBits(0.125f));
    Params fresh;
    model.calculateWriteRateB(fresh, Data::getGlobal());
    EXPECT_EQ(fresh[Params::MODE], zelm::unsetString);
}

TEST_F(BramTest, AnUnknownModeGivesNoPower)
{
    params[Params::MODE] = "NO_SUCH_MODE";
    calculate();
    EXPECT_THAT(params[Params::VCCINT_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::VCCRAM_POWER], IsBits(0.0f));
}

TEST_F(BramTest, ToggleTermsAreRelativeTo25PercentAndUnclamped)
{
    params[Params::TOGGLE_RATE_A] = 0.25f;
    calculate();
    EXPECT_THAT(params[Params::TR_CALC_READ_A], IsBits(0.0f));
    EXPECT_THAT(params[Params::TR_CALC_WRITE_A], IsBits(0.0f));
    EXPECT_THAT(params[Params::TR_CALC_READ_B], IsBits(25.0f)); // port B has its own rate
    params[Params::TOGGLE_RATE_A] = 0.0f;
    calculate();
    EXPECT_THAT(params[Params::TR_CALC_READ_A], IsBits(-25.0f));
    EXPECT_THAT(params[Params::TR_CALC_WRITE_A], IsBits(-525.0f)); // -25 x 21
    // 3.75 x (0.125 x (201 - 25) + 0.125 x (501 - 525) + 0.75) + 11.25 = 3.75 x 19.75 + 11.25
    EXPECT_THAT(params[Params::BLKM18_A_VCCINT_PWR], IsBits(85.3125f));
    calculate("BLKM18SDP");
    EXPECT_THAT(params[Params::TR_CALC_READ_A], IsBits(0.0f)) << "no key: not -25 x 0";
    EXPECT_THAT(params[Params::TR_CALC_WRITE_A], IsBits(0.0f));
}

TEST_F(BramTest, TheMemoryArrayKnowsNoTogglingAndNoStandby)
{
    calculate();
    const float before = params[Params::VCCRAM_POWER];
    params[Params::TOGGLE_RATE_A] = 0.0f;
    params[Params::TOGGLE_RATE_B] = 1.0f;
    calculate();
    EXPECT_THAT(params[Params::VCCRAM_POWER], IsBits(before));
    params[Params::PORT_A_ENABLE_RATE] = params[Params::PORT_B_ENABLE_RATE] = 0.0f;
    calculate();
    EXPECT_THAT(params[Params::VCCRAM_POWER], IsBits(0.0f));
    EXPECT_GT(params[Params::VCCINT_POWER], 0.0f);
}

TEST_F(BramTest, WriteModesPickTheRows)
{
    params[Params::PORT_A_WRITE_MODE] = "NO_CHANGE";
    params[Params::PORT_B_WRITE_MODE] = "READ_FIRST";
    calculate();
    EXPECT_THAT(params[Params::READ_CURRENT_A_VCCINT], IsBits(301.0f)); // reading goes with the write mode too
    EXPECT_THAT(params[Params::WRITE_CURRENT_A_VCCRAM], IsBits(1601.0f));
    EXPECT_THAT(params[Params::READ_CURRENT_B_VCCRAM], IsBits(1101.0f));
    EXPECT_THAT(params[Params::WRITE_CURRENT_B_VCCINT], IsBits(401.0f));
}

TEST_F(BramTest, AnUnknownWriteModeLeavesStandbyAlone)
{
    params[Params::PORT_A_WRITE_MODE] = "WRITE_LAST";
    params[Params::TOGGLE_RATE_A] = 0.25f;
    calculate();
    for (const auto cell : {Params::READ_CURRENT_A_VCCINT, Params::READ_CURRENT_A_VCCRAM,
                            Params::WRITE_CURRENT_A_VCCINT, Params::WRITE_CURRENT_A_VCCRAM})
        EXPECT_THAT(params[cell], IsBits(0.0f)) << Params::enum_to_string(cell);
    EXPECT_THAT(params[Params::BLKM18_A_VCCINT_PWR], IsBits(14.0625f)); // 3.75 x 0.75 + 11.25
}

TEST_F(BramTest, IdleMembersIgnoreTheEnableRate)
{
    params[Params::PORT_A_ENABLE_RATE] = 1.0f;
    calculate();
    EXPECT_THAT(params[Params::STDBY_CALC_A], IsBits(0.0f));
    EXPECT_THAT(params[Params::UNUSED_BRAM_CALC_A], IsBits(11.25f));
}

TEST_F(BramTest, AllConfigurationsAreFilledAndOneIsChosen)
{
    calculate("BLKM18SDP", 36, 18);
    for (const std::string& name : floatIntermediatesEndingIn<Params>("_PWR")) {
        const std::string like = "BLKM18SDP" + name.substr(name.size() - std::string_view("_A_VCCINT_PWR").size());
        EXPECT_THAT(params[Params::string_to_float_enum(name)], IsBits(params[Params::string_to_float_enum(like)]))
            << name;
    }
    params[Params::VCCINT] = 0.5f;
    params[Params::VCCRAM] = 0.25f;
    calculate();
    // Port A: 3.75 x (0.25 x (204 + 25 x 4) + 4 x 0.75) + 45 = 341.25; B: 3.75 x (0.125 x (504 + 25 x 24) + 3) + 45.
    EXPECT_THAT(params[Params::VCCINT_POWER], IsBits(341.25f + 573.75f));
    // Port A: 1.875 x 0.25 x 1204; B: 1.875 x 0.125 x 1504.
    EXPECT_THAT(params[Params::VCCRAM_POWER], IsBits(564.375f + 352.5f));
}

TEST_F(BramTest, VoltageActsToThePower2Point3)
{
    params[Params::VCCINT] = 0.5f;
    params[Params::VCCRAM] = 0.25f;
    calculate();
    EXPECT_THAT(params[Params::VCCINT_POWER], IsBits(2.0f * 600.9375f)); // both ports alike
    EXPECT_THAT(params[Params::VCCRAM_POWER], IsBits(2.0f * 633.28125f));
    params[Params::VCCINT] = 1.0f;
    params[Params::VCCRAM] = 0.125f;
    calculate();
    constexpr double twoTo2Point3 = 4.924577653379664; // 4 x the tenth root of 8
    EXPECT_THAT(params[Params::VCCINT_POWER], IsBits(static_cast<float>(1201.875 * twoTo2Point3)));
    EXPECT_THAT(params[Params::VCCRAM_POWER], IsBits(static_cast<float>(1266.5625 / twoTo2Point3)));
}

TEST_F(BramTest, ASimulationVoltageOfZeroGivesZero)
{
    load(tables(11, "VCCINT = 0.0; VCCRAM = 0.25;"));
    calculate();
    EXPECT_THAT(params[Params::VCCINT_POWER], IsBits(0.0f));
    EXPECT_GT(params[Params::VCCRAM_POWER], 0.0f);
}

TEST_F(BramTest, ActivityGoesOnInDoubleBehindTheFirstProduct)
{
    params[Params::PORT_A_CLOCK] = 333.3f;
    params[Params::PORT_B_CLOCK] = 712.7f;
    load(tables(11, "VCCINT = 0.85; VCCRAM = 0.8;"));
    calculate();
    const double product = 333.3f * 0.85f;
    EXPECT_THAT(params[Params::ACTIVITY_A_VCCINT], IsBits(static_cast<float>(product * 0.001 * 25.0)));
    EXPECT_THAT(params[Params::UNUSED_BRAM_CALC_A], IsBits(static_cast<float>(product * 0.001 * 75.0)));
    const float single = 712.7f * 0.85f * 0.001f * 25.0f;
    EXPECT_FALSE(sameBits(params[Params::ACTIVITY_B_VCCINT], single));
    EXPECT_NEAR(params[Params::ACTIVITY_B_VCCINT], single, 1e-5);
}

TEST_F(BramTest, AMissingRowHarmsOnlyItsOwnKey)
{
    load(tables(1));
    calculate("BLKM36");
    EXPECT_THAT(params[Params::READ_CURRENT_A_VCCINT], IsBits(zelm::unsetFloat));
    EXPECT_TRUE(std::isinf(params[Params::VCCINT_POWER]));
    calculate("BLKM18");
    EXPECT_THAT(params[Params::BLKM18_A_VCCINT_PWR], IsBits(600.9375f));
}

TEST(Bram, ShippedDataGiveAFewMilliwattsPerMemory)
{
    Params single;
    single[Params::NUM_BRAMS] = single[Params::CASCADE_GROUP_SIZE] = 1;
    for (const std::string_view mode : {"BLKM18", "BLKM36", "BLKM36SDP_ECC", "BLKM36SDP"}) {
        single[Params::MODE] = mode;
        single[Params::PORT_A_BIT_WIDTH] = single[Params::PORT_B_BIT_WIDTH] = 72;
        const Params params = calculateShipped<ZelmOrvaneBramModel>(single);
        EXPECT_GT(params[Params::VCCINT_POWER], 0.001f) << mode;
        EXPECT_LT(params[Params::VCCINT_POWER], 0.010f) << mode;
        EXPECT_GT(params[Params::VCCRAM_POWER], 0.0003f) << mode;
        EXPECT_LT(params[Params::VCCRAM_POWER], 0.003f) << mode;
    }
    const Params cascaded = calculateShipped<ZelmOrvaneBramModel>();
    EXPECT_GT(cascaded[Params::VCCINT_POWER], 0.03f); // 25 active, 75 idle memories
    EXPECT_LT(cascaded[Params::VCCINT_POWER], 0.2f);
}

TEST(Bram, ShippedDataServeEveryKey)
{
    const DataDirVariable variable(shippedDataDirectory());
    Data::getMutableGlobal().reset();
    const Data& data = Data::getGlobal();
    for (const std::string_view key : kKeys) {
        EXPECT_GT(data.findStandbyCurrent(key), 0.0f);
        EXPECT_LT(data.findStandbyCurrent(key), 0.01f);
        for (const std::string_view row : {"RF_R", "WF_R", "NC_R", "RF_W", "WF_W", "NC_W"}) {
            const float vccint = data.findDynamicCurrentVccint(key, row);
            // Data that don't toggle at all leave a current.
            EXPECT_GT(vccint, 25.0f * data.findPerTrCurrent(key, row.substr(3))) << key << row;
            EXPECT_LT(vccint, 0.1f) << key << row;
            EXPECT_LT(data.findDynamicCurrentVccram(key, row), vccint) << key << row;
        }
    }
}

} // namespace zelm::test::bramTest
