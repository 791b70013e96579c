#include "Designs.h"
#include "Tool.h"

#include "host/blocks/Legal.h"
#include "host/estimate/Running.h"

#include "io/ZelmOrvaneSelvData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <random>
#include <regex>

namespace zelm::test::runningTest {

using namespace zelm::host;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

Running calculated(const Group& group)
{
    Running running(*group.block, group, "g");
    running.calculate();
    return running;
}

// The same inputs in a parameter block that nothing was computed in before.
std::unique_ptr<Instance> calculatedAlone(const Group& group)
{
    std::unique_ptr<Instance> instance = group.block->create();
    for (const auto& [cell, value] : group.inputs)
        instance->set(group.block->cell(cell), value);
    instance->calculate();
    return instance;
}

std::string bits(const Value& value)
{
    const float* real = std::get_if<float>(&value);
    return real ? fmt::format("{:a}", *real) : valueText(value);
}

// Some of the inputs, with words and numbers in turn.
Group randomGroup(const Block& block, std::mt19937& random)
{
    Group group;
    group.block = &block;
    for (const ZelmCellInfo* input : block.inputs) {
        if (random() % 2 == 0)
            continue;
        const std::vector<std::string> words = legalWords(block, *input);
        Value value;
        if (!words.empty())
            value = words[random() % words.size()];
        else if (input->type == ZelmCellInfo::Type::integer)
            value = static_cast<int>(random() % 40);
        else if (input->type == ZelmCellInfo::Type::real)
            value = static_cast<float>(random() % 1000) / 8.0f;
        if (value.index() != 0)
            group.inputs.emplace_back(input->name, value);
    }
    return group;
}

Group outputPin()
{
    Group group;
    group.block = &block("Selv");
    group.inputs = {{"IO_DIRECTION", std::string("OUTPUT")},
                    {"OUTPUT_IO_STANDARD", std::string("LVCMOS12_4")},
                    {"CLOCK_FREQ", 100.0f},
                    {"TOGGLE_RATE", 0.5f},
                    {"OUTPUT_ENABLE", 1.0f},
                    {"OUTPUT_LOAD", 15.0f}};
    return group;
}

// Selv's data with a text replaced, loaded in place of the shipped ones for as long as this lives.
class ChangedData {
public:
    ChangedData(const std::string& before, const std::string& after)
    {
        const std::string directory = m_scratch.copyData();
        const std::string file = Scratch::dataFile(directory, "Selv");
        const std::string shipped = Scratch::read(file);
        const std::string changed = std::regex_replace(shipped, std::regex(before), after);
        EXPECT_NE(changed, shipped) << before;
        std::ofstream(file) << changed;
        load(directory);
    }
    ~ChangedData()
    {
        load(shippedDataDirectory());
    }
    ChangedData(const ChangedData&) = delete;
    ChangedData& operator=(const ChangedData&) = delete;

private:
    static void load(const std::string& directory)
    {
        const DataDirVariable variable(directory);
        EXPECT_TRUE(ZelmOrvaneSelvData::getMutableGlobal().reset()) << directory;
    }

    Scratch m_scratch;
};

TEST(Running, AGroupHoldsWhatItWouldAlone)
{
    std::mt19937 random(7);
    for (int i = 0; i < 400; ++i) {
        const Block& kind = block(i % 3 == 0 ? "Nalt" : "Selv");
        const Group group = randomGroup(kind, random);
        const Running running = calculated(group);
        const std::unique_ptr<Instance> alone = calculatedAlone(group);
        for (const ZelmCellInfo& cell : kind.cells)
            ASSERT_EQ(bits(running.instance->get(cell)), bits(alone->get(cell)))
                << kind.name << " " << cell.name << ", group " << i;
        EXPECT_THAT(running.missingRows, IsEmpty()) << i;
    }
}

// Each group of a kind tells of the row, though the first of them has looked at it.
TEST(Running, EveryGroupTellsOfARowThatIsMissing)
{
    const std::string before = bits(calculated(outputPin()).get("VCCO_POWER"));
    {
        const ChangedData without("MIPI_LP_DATARATE", "MIPI_LP_RATE");
        const MissingRow missing{"MIPI_DATA", "MIPI_LP_DATARATE"};
        for (int i = 0; i < 3; ++i)
            EXPECT_THAT(calculated(outputPin()).missingRows, ElementsAre(missing)) << i;
    }
    for (int i = 0; i < 3; ++i) {
        const Running running = calculated(outputPin());
        EXPECT_THAT(running.missingRows, IsEmpty()) << i;
        EXPECT_EQ(bits(running.get("VCCO_POWER")), before) << i;
    }
}

// What was calculated from other data doesn't count, whichever rows they change.
TEST(Running, GroupsGoByTheDataThatAreLoaded)
{
    const std::string before = bits(calculated(outputPin()).get("VCCO_POWER"));
    {
        const ChangedData grown("VCCO_AC = 0\\.", "VCCO_AC = 1.");
        const Running running = calculated(outputPin());
        EXPECT_NE(bits(running.get("VCCO_POWER")), before);
        EXPECT_EQ(bits(running.get("VCCO_POWER")),
                  bits(calculatedAlone(outputPin())->get(block("Selv").cell("VCCO_POWER"))));
    }
    EXPECT_EQ(bits(calculated(outputPin()).get("VCCO_POWER")), before);
}

} // namespace

} // namespace zelm::test::runningTest
