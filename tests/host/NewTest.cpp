// zelm new: designs to begin with.

#include "Designs.h"
#include "Tool.h"

#include "host/base/Text.h"
#include "host/design/Template.h"

namespace zelm::test::newTest {

using namespace zelm::host;
using testing::HasSubstr;

namespace {

class New : public testing::TestWithParam<const char*> {};

// Small and large parts, with either kind of transceiver and with none of what some templates would use.
TEST_P(New, EstimatesAsItStands)
{
    const Scratch scratch;
    const std::string part = GetParam();
    for (const std::string& name : templateNames()) {
        const std::string file = scratch.path(name + ".json");
        const ToolRun made = scratch.run("new --part " + part + " --template " + name + " -o " + file);
        ASSERT_EQ(made.code, 0) << made.err;
        EXPECT_THAT(Scratch::read(file), HasSubstr("// fill in")) << name;
        EXPECT_THAT(Scratch::read(file), HasSubstr("\"part\": \"" + part + "\"")) << name;
        const ToolRun estimated = scratch.run("estimate --check --strict " + file);
        EXPECT_EQ(estimated.code, 0) << part << " " << name << "\n" << estimated.err << estimated.out;
        EXPECT_THAT(estimated.out, HasSubstr("Hierarchy")) << name;
        EXPECT_THAT(estimated.out, HasSubstr("Supplies")) << name;
        EXPECT_EQ(scratch.run("format --check " + file).code, 0) << name;
    }
}

INSTANTIATE_TEST_SUITE_P(Parts, New,
                         testing::Values("zr1810_kfba0784_1_LP_e_S", "zq4410_ktba3310_3_HP_e_S", "ZC7540", "zq5620"),
                         [](const auto& one) { return upper(one.param); });

TEST(NewDesign, HasTheRailsOfThePart)
{
    const Scratch scratch;
    const std::string small = scratch.run("new --part zr1810_kfba0784_1_LP_e_S").out;
    EXPECT_THAT(small, HasSubstr("\"VCCINT\": \"700 mV\"")); // its voltage grade's
    EXPECT_THAT(scratch.run("new --part zq4410_ktba3310_3_HP_e_S").out, HasSubstr("\"VCCINT\": \"880 mV\""));
    EXPECT_THAT(scratch.run("new").out, HasSubstr("\"VCCAUX\": \"1500 mV\""));
}

TEST(NewDesign, TellsMistakesAndSparesFiles)
{
    const Scratch scratch;
    EXPECT_THAT(
        scratch.run("new --template vison").err,
        HasSubstr(
            "there is no template vison; did you mean vision?; there are blank, controller, network, radio or vision"));
    EXPECT_THAT(scratch.run("new --part zq4411").err, HasSubstr("there is no part or device zq4411"));
    const std::string file = scratch.write("d.json", "{}");
    const ToolRun run = scratch.run("new -o " + file);
    EXPECT_EQ(run.code, 2);
    EXPECT_THAT(run.err, HasSubstr(file + ": is there already"));
    EXPECT_EQ(Scratch::read(file), "{}");
}

} // namespace

} // namespace zelm::test::newTest
