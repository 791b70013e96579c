#include "contract/AllBlocks.h"
#include "contract/Vectors.h"
#include "support/DataDirectory.h"

#include <malloc.h>

#include <array>
#include <random>

namespace zelm::test::recalculationTest {

namespace {

using Type = ZelmCellInfo::Type;

void assign(const Block& block, ZelmParams& params, const std::string& cell, const CellValue& value)
{
    if (const int* whole = std::get_if<int>(&value))
        block.intCell(params, cell) = *whole;
    else if (const float* real = std::get_if<float>(&value))
        block.floatCell(params, cell) = *real;
    else
        block.stringCell(params, cell) = std::get<std::string>(value);
}

void unset(const Block& block, ZelmParams& params, const ZelmCellInfo& cell)
{
    const std::string name(cell.name);
    if (cell.type == Type::integer)
        block.intCell(params, name) = 0x7fffffff;
    else if (cell.type == Type::real)
        block.floatCell(params, name) = 3.4028235e38f;
    else
        block.stringCell(params, name) = "UninitializedString";
}

// Random edits, values drawn from those that the vectors' cases set, and every now and then an input given back to its
// default. After each the block is compared with a fresh one.
class RandomEdits {
public:
    RandomEdits(const Block& block, const VectorSet& set, unsigned seed) : m_block(block), m_random(seed)
    {
        for (const ZelmCellInfo& cell : block.cells()) {
            if (cell.kind == ZelmCellInfo::Kind::modelOutput)
                m_outputs.push_back(&cell);
            if (cell.kind != ZelmCellInfo::Kind::userInput)
                continue;
            m_inputs.push_back(&cell);
            std::vector<CellValue>& values = m_values.emplace_back();
            for (const VectorCase& vectorCase : set.cases) {
                for (const auto& [name, value] : vectorCase.in) {
                    if (name == cell.name)
                        values.push_back(value);
                }
            }
        }
    }

    // The first that goes wrong, in words; empty if none does.
    std::string run(int edits)
    {
        const auto inputs = m_block.makeParams(); // what the host has set, and nothing else
        const auto edited = m_block.makeParams();
        const auto recalculation = m_block.recalculation(*edited);
        recalculation->recalculate();
        std::string log;
        for (int i = 0; i < edits; ++i) {
            const ZelmCellInfo& cell = edit(*inputs);
            log += " " + std::string(cell.name);
            recalculation->set(cell, *inputs);
            if (m_random() % 4 == 0)
                continue; // several edits before one recalculation
            const auto fresh = m_block.makeParams();
            for (const ZelmCellInfo* input : m_inputs)
                m_block.copyCell(*input, *inputs, *fresh);
            m_block.calculate(*fresh);
            std::string difference;
            if (m_random() % 4 == 0) { // just one cell
                const ZelmCellInfo& wanted = *m_outputs[m_random() % m_outputs.size()];
                recalculation->recalculate(wanted);
                difference = m_block.difference(wanted, *edited, *fresh);
            } else {
                recalculation->recalculate();
                difference = m_block.firstDifference(*edited, *fresh);
            }
            if (!difference.empty())
                return "after the edits of" + log + ": " + difference + " (edited, fresh)";
        }
        return {};
    }

    // The bytes that are in use after so many, and after ten times as many.
    std::array<std::size_t, 2> memoryAfter(int edits)
    {
        const auto inputs = m_block.makeParams();
        const auto edited = m_block.makeParams();
        const auto recalculation = m_block.recalculation(*edited);
        const auto recalculate = [&](int times) {
            for (int i = 0; i < times; ++i) {
                recalculation->set(edit(*inputs), *inputs);
                recalculation->recalculate();
            }
            return mallinfo2().uordblks;
        };
        return {recalculate(edits), recalculate(edits * 9)};
    }

private:
    const ZelmCellInfo& edit(ZelmParams& inputs)
    {
        const std::size_t index = m_random() % m_inputs.size();
        const ZelmCellInfo& cell = *m_inputs[index];
        const std::vector<CellValue>& values = m_values[index];
        if (values.empty() || m_random() % 8 == 0)
            unset(m_block, inputs, cell);
        else
            assign(m_block, inputs, std::string(cell.name), values[m_random() % values.size()]);
        return cell;
    }

    const Block& m_block;
    std::mt19937 m_random;
    std::vector<const ZelmCellInfo*> m_inputs;
    std::vector<const ZelmCellInfo*> m_outputs;
    std::vector<std::vector<CellValue>> m_values;
};

class Recalculates : public EachBlock {};

TEST_P(Recalculates, ToWhatAFreshBlockHolds)
{
    if (block.cells().empty() || block.cells()[0].kind != ZelmCellInfo::Kind::userInput)
        GTEST_SKIP() << "no inputs";
    const std::vector<VectorSet> sets = readVectors(GetParam().name);
    ASSERT_FALSE(sets.empty());
    constexpr int editsPerBlock = 2400; // over 100,000 for all
    unsigned seed = 1;
    for (const VectorSet& set : sets) {
        const DataDirVariable variable(set.directory);
        block.reload();
        const int edits = editsPerBlock / static_cast<int>(sets.size());
        EXPECT_EQ(RandomEdits(block, set, seed++).run(edits), "") << set.directory;
    }
}

// Formulas that read other cells than the time before don't fill the memory, however often they do.
TEST_P(Recalculates, InBoundedMemory)
{
    if (block.cells().empty() || block.cells()[0].kind != ZelmCellInfo::Kind::userInput)
        GTEST_SKIP() << "no inputs";
    const std::vector<VectorSet> sets = readVectors(GetParam().name);
    ASSERT_FALSE(sets.empty());
    const DataDirVariable variable(sets.front().directory);
    block.reload();
    const auto [few, many] = RandomEdits(block, sets.front(), 1).memoryAfter(1000);
    EXPECT_LT(many, few + 10'000);
}

TEST_P(Recalculates, AnewWhenTheDataIsLoadedAgain)
{
    const std::vector<VectorSet> sets = readVectors(GetParam().name);
    ASSERT_FALSE(sets.empty());
    const auto edited = block.makeParams();
    {
        const DataDirVariable variable(sets.front().directory);
        block.reload();
    }
    const auto recalculation = block.recalculation(*edited);
    recalculation->recalculate();
    const DataDirVariable variable(sets.back().directory);
    block.reload();
    recalculation->recalculate();
    const auto fresh = block.makeParams();
    block.calculate(*fresh);
    EXPECT_EQ(block.firstDifference(*edited, *fresh), "");
}

INSTANTIATE_TEST_SUITE_P(All, Recalculates, testing::ValuesIn(allBlocks()), nameOfBlock);

} // namespace

} // namespace zelm::test::recalculationTest
