#include "framework/ZelmOrvaneGauge.h"
#include "framework/ZelmRecalculation.h"
#include "framework/ZelmUnset.h"

#include "support/BlockFixture.h"

namespace zelm::test::gaugeTest {

using Params = ZelmOrvaneGaugeParams;
using Data = ZelmOrvaneGaugeData;
using Model = ZelmOrvaneGaugeModel;

constexpr std::string_view kTables = R"(
  ENABLED : { PLAIN = true; FANCY = false; };
  LONG_KEY : { A : { B : { C : { D : { E = 0.5; }; }; }; }; };
  GAIN : { PLAIN : { A = 2.0; B = 3; }; };
  LIMITS : { PLAIN : { A : { LOW = -1; HIGH = 7; }; }; };
  GRADES : { PLAIN = "a grade longer than any small string"; };
)";

class GaugeTest : public BlockFixture<ZelmOrvaneGaugeModel> {
protected:
    GaugeTest() : BlockFixture(kTables) {}
};

TEST_F(GaugeTest, EveryKindAndTypeOfCellIsFilled)
{
    model.calculate(params);
    EXPECT_THAT(params[Params::SPAN], IsBits(3.0f)); // derived: 2 x 1.5
    EXPECT_THAT(params[Params::PROBE_A_GAIN], IsBits(2.0f));
    EXPECT_THAT(params[Params::PROBE_B_READING], IsBits(9.0f)); // 3 x 3
    EXPECT_THAT(params[Params::TOTAL], IsBits(63.0f));          // 2 x 3 x 3 + 3 x 3 x 5
    EXPECT_EQ(params[Params::STEPS], 63);
    EXPECT_EQ(params[Params::TOTAL_STEPS], 126);
    EXPECT_EQ(params[Params::GRADE], "a grade longer than any small string");
    EXPECT_EQ(params[Params::VERDICT], "HIGH");
}

TEST_F(GaugeTest, ASetInputWinsOverItsDerivedDefault)
{
    params[Params::SPAN] = 1.0f;
    model.calculate(params);
    EXPECT_THAT(params[Params::TOTAL], IsBits(21.0f));            // 2 x 3 + 3 x 5
    EXPECT_THAT(params[Params::LEVEL], IsBits(zelm::unsetFloat)); // read by the default alone
}

// As on a fresh block, where nothing would have asked for them.
TEST_F(GaugeTest, RecalculatingUnsetsWhatIsReadNoMore)
{
    zelm::Recalculation<Model> recalculation(model, params, data);
    recalculation.recalculate();
    EXPECT_THAT(params[Params::LEVEL], IsBits(1.5f));
    EXPECT_EQ(params[Params::GRADE], "a grade longer than any small string");
    recalculation.set(Params::SPAN, 0.25f); // a default that is needed no more, and a branch that asks for no grade
    recalculation.recalculate();
    EXPECT_THAT(params[Params::TOTAL], IsBits(5.25f)); // 2 x 0.25 x 3 + 3 x 0.25 x 5
    EXPECT_EQ(params[Params::VERDICT], "LOW");
    EXPECT_THAT(params[Params::LEVEL], IsBits(zelm::unsetFloat));
    EXPECT_EQ(params[Params::GRADE], zelm::unsetString);
    recalculation.set(Params::SPAN, zelm::unsetFloat); // and back
    recalculation.recalculate();
    EXPECT_THAT(params[Params::LEVEL], IsBits(1.5f));
    EXPECT_THAT(params[Params::TOTAL], IsBits(63.0f));
    EXPECT_EQ(params[Params::GRADE], "a grade longer than any small string");
    EXPECT_EQ(params[Params::VERDICT], "HIGH");
}

// A cell that somebody wants stays set though no output asks for it any more.
TEST_F(GaugeTest, RecalculatingKeepsWhatIsWanted)
{
    zelm::Recalculation<Model> recalculation(model, params, data);
    recalculation.recalculate();
    recalculation.set(Params::SPAN, 0.25f);
    const zelm::CellRef wanted[] = {{ZelmCellInfo::Type::text, Params::VERDICT},
                                    {ZelmCellInfo::Type::text, Params::GRADE}};
    recalculation.recalculate(wanted);
    EXPECT_EQ(params[Params::VERDICT], "LOW");
    EXPECT_EQ(params[Params::GRADE], "a grade longer than any small string");
    EXPECT_THAT(params[Params::LEVEL], IsBits(zelm::unsetFloat));
}

TEST_F(GaugeTest, AMissFallsBackOrFlowsOn)
{
    params[Params::KIND] = "FANCY";
    model.calculate(params);
    EXPECT_THAT(params[Params::PROBE_A_GAIN], IsBits(1.0f));
    EXPECT_EQ(model.calculateGrade(params, data), "NONE");
    EXPECT_EQ(params[Params::VERDICT], "LOW");
}

TEST_F(GaugeTest, PullReachesEachCellByItsEnumerator)
{
    for (const ZelmCellInfo& cell : Params::cells()) {
        const std::string name(cell.name);
        if (cell.type == ZelmCellInfo::Type::integer) {
            model.pull(Params::string_to_int_enum(name), params, data);
            EXPECT_NE(params[Params::string_to_int_enum(name)], zelm::unsetInt) << name;
        } else if (cell.type == ZelmCellInfo::Type::real) {
            model.pull(Params::string_to_float_enum(name), params, data);
            EXPECT_NE(params[Params::string_to_float_enum(name)], zelm::unsetFloat) << name;
        } else {
            model.pull(Params::string_to_string_enum(name), params, data);
            EXPECT_NE(params[Params::string_to_string_enum(name)], zelm::unsetString) << name;
        }
    }
    model.pull(Params::FirstUIFloat, params, data);
    EXPECT_THAT(params[Params::FirstUIFloat], IsBits(zelm::unsetFloat)); // a marker stays what it was
}

TEST_F(GaugeTest, ASentinelResultIsComputedAgain)
{
    params[Params::COUNT] = -1;
    params[Params::STEPS] = -zelm::unsetInt;
    EXPECT_EQ(model.calculateTotalSteps(params, data), zelm::unsetInt); // -1 x -2147483647
    params[Params::STEPS] = 5;
    EXPECT_EQ(model.calculateTotalSteps(params, data), -5); // the cell looked as if it had never been computed
    params[Params::STEPS] = 6;
    EXPECT_EQ(model.calculateTotalSteps(params, data), -5); // an ordinary result stays

    params[Params::PROBE_A_POWER] = params[Params::PROBE_B_POWER] = zelm::unsetFloat / 2.0f;
    EXPECT_THAT(model.calculateTotal(params, data), IsBits(zelm::unsetFloat)); // the sum of two halves
    params[Params::PROBE_A_POWER] = params[Params::PROBE_B_POWER] = 1.0f;
    EXPECT_THAT(model.calculateTotal(params, data), IsBits(2.0f));
    params[Params::PROBE_A_POWER] = 3.0f;
    EXPECT_THAT(model.calculateTotal(params, data), IsBits(2.0f));
}

TEST_F(GaugeTest, AnOverflowingFloatTruncatesToTheLowestInt)
{
    params[Params::TOTAL] = 3e9f;
    EXPECT_EQ(model.calculateSteps(params, data), std::numeric_limits<int>::min());
}

TEST_F(GaugeTest, APresetCellPullsNothing)
{
    params[Params::TOTAL] = 5.0f;
    params[Params::VERDICT] = "PRESET";
    params[Params::TOTAL_STEPS] = 7;
    params[Params::SPAN] = 1.0f; // whose default would pull LEVEL
    const std::string before = params.reflect();
    EXPECT_THAT(model.calculateTotal(params, data), IsBits(5.0f));
    EXPECT_EQ(model.calculateVerdict(params, data), "PRESET");
    EXPECT_EQ(model.calculateTotalSteps(params, data), 7);
    EXPECT_THAT(model.getSpan(params, data), IsBits(1.0f));
    model.pull(Params::TOTAL, params, data);
    model.pull(Params::VERDICT, params, data);
    model.pull(Params::TOTAL_STEPS, params, data);
    model.pull(Params::SPAN, params, data);
    EXPECT_EQ(params.reflect(), before);
}

TEST_F(GaugeTest, GettersServeEveryTypeAndKeyCount)
{
    EXPECT_TRUE(data.getEnabled("PLAIN"));
    EXPECT_FALSE(data.getEnabled("FANCY"));
    EXPECT_THAT(data.getLongKey("A", "B", "C", "D", "E"), IsBits(0.5f));
    EXPECT_THAT(data.getGain("PLAIN", "B"), IsBits(3.0f)); // an int in a float table
    EXPECT_EQ(data.getLimits("PLAIN", "A", "LOW"), -1);
    EXPECT_EQ(data.getLimits("PLAIN", "A", "MIDDLE"), zelm::unsetInt);
    EXPECT_EQ(data.getGrades("FANCY"), zelm::unsetString);
    EXPECT_EQ(Data::tables().size(), 5u);
    EXPECT_EQ(Data::tables()[3].keys, "kind, probe, limit");
}

TEST_F(GaugeTest, CountsAndNamesFollowTheRows)
{
    std::vector<std::string> names{"left over"};
    Params::getFloatIntermediateCalculationNames(names);
    EXPECT_EQ(names, (std::vector<std::string>{"PROBE_A_GAIN", "PROBE_A_POWER", "PROBE_A_READING", "PROBE_B_GAIN",
                                               "PROBE_B_POWER", "PROBE_B_READING"}));
    std::string functions;
    for (const ZelmCellInfo& cell : Params::cells())
        functions.append(cell.function).append(" ");
    EXPECT_EQ(functions, "Count Level Span Kind TotalSteps Total Verdict Steps ProbeAGain ProbeAPower ProbeAReading "
                         "ProbeBGain ProbeBPower ProbeBReading Grade ");
}

TEST(Void, EmptyGroupsHaveMarkersAlone)
{
    using Void = ZelmOrvaneVoidParams;
    EXPECT_EQ(Void::LastInt, 6);
    EXPECT_EQ(Void::LastFloat, 6);
    EXPECT_EQ(Void::LastString, 6);
    EXPECT_EQ(Void::enum_to_string(Void::LastICString), "LastICString");
    EXPECT_EQ(Void::enum_to_string(Void::LastString), "StringError");
    EXPECT_EQ(Void::string_to_enum("COUNT"), 0xffffffffu);
    EXPECT_EQ(Void().reflect(), "");
}

} // namespace zelm::test::gaugeTest
