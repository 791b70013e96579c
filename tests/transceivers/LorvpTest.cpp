#include "LorvFixture.h"

namespace zelm::test::lorvpTest {

class LorvpTest : public LorvFixture<Lorvp> {};

TEST(Lorvp, HasTheTablesAndFloatsOfTheTransceiver)
{
    std::vector<std::string> tables, ownTables, floats, ownFloats;
    for (const ZelmTableInfo& table : ZelmOrvaneLorvData::tables())
        tables.emplace_back(table.group);
    for (const ZelmTableInfo& table : ZelmOrvaneLorvpData::tables())
        ownTables.emplace_back(table.group);
    ZelmOrvaneLorvParams::getFloatIntermediateCalculationNames(floats);
    ZelmOrvaneLorvpParams::getFloatIntermediateCalculationNames(ownFloats);
    EXPECT_EQ(tables.size(), 11u);
    EXPECT_EQ(ownTables, tables);
    EXPECT_EQ(ownFloats, floats);
}

TEST_F(LorvpTest, AChannelBearsItsPartOfOneQuadHoweverManyThereAre)
{
    params[Params::NUM_LORVP_QUAD_CHANNELS] = 5;
    calculate();
    EXPECT_THAT(params[Params::MLORVAVCC_COMMON_PWR], IsBits(4.0f)); // 20 / 5
    EXPECT_THAT(params[Params::MLORVAVTT_COMMON_PWR], IsBits(6.0f)); // 30 / 5
}

TEST_F(LorvpTest, CountsAreForTheHostToPull)
{
    struct Row {
        int channels, sharing, duals, octals, lcplls;
    };
    for (const Row row : {Row{5, 2, 3, 1, 3}, Row{2, 4, 1, 1, 1}, Row{1, 2, 1, 1, 1}, Row{0, 2, 0, 0, 0},
                          Row{9, 4, 5, 2, 3}, // 9 / 4, rounded up
                          Row{4, 4, 2, 1, 2}, // as many sharers as channels: pairs
                          Row{3, 0, 2, 1, 3}, Row{3, -5, 2, 1, 3}}) {
        params[Params::NUM_LORVP_QUAD_CHANNELS] = row.channels;
        params[Params::LCPLL_SHARING] = row.sharing;
        calculate();
        EXPECT_EQ(params[Params::NUM_DUAL], zelm::unsetInt);
        EXPECT_EQ(params[Params::NUM_OCTALS], zelm::unsetInt);
        EXPECT_EQ(params[Params::NUM_OF_LCPLL_USED], zelm::unsetInt);
        EXPECT_EQ(model.calculateNumDual(params, data), row.duals) << row.channels;
        EXPECT_EQ(model.calculateNumOctals(params, data), row.octals) << row.channels;
        EXPECT_EQ(model.calculateNumOfLcpllUsed(params, data), row.lcplls) << row.channels << " " << row.sharing;
    }
}

} // namespace zelm::test::lorvpTest
