// Each cell's formula as it stands in the sources, and what a run of formulas was computed from.
#include "support/Bits.h"
#include "support/DataDirectory.h"

#include "host/blocks/Formulas.h"
#include "host/blocks/Legal.h"
#include "host/blocks/LegalWords.h"
#include "host/blocks/Trace.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <set>

namespace zelm::test::formulasTest {

using namespace zelm::host;
using testing::HasSubstr;
using testing::StartsWith;
using Kind = ZelmCellInfo::Kind;
using Type = ZelmCellInfo::Type;

namespace {

std::string placeOf(const Block& block, const ZelmCellInfo& cell)
{
    return std::string(block.name) + " " + std::string(cell.name);
}

// A file of the source folder from a line on.
std::string linesFrom(const std::string& file, std::size_t line)
{
    static std::map<std::string, std::string> known;
    std::string& text = known[file];
    if (text.empty()) {
        std::ifstream in(std::string(ZELM_SOURCE_DIR) + "/" + file);
        text.assign(std::istreambuf_iterator<char>(in), {});
    }
    std::size_t begin = 0;
    for (; line > 1; --line)
        begin = text.find('\n', begin) + 1;
    return text.substr(begin);
}

const SourceText& sourceOf(const char* ofBlock, const char* cell)
{
    return formulaOf(block(ofBlock), block(ofBlock).cell(cell)).own;
}

TEST(Formulas, StandAtTheirLinesOfTheSourcesForEveryCell)
{
    std::size_t cells = 0;
    for (const Block& block : blocks()) {
        for (const ZelmCellInfo& cell : block.cells) {
            ++cells;
            const Formula& formula = formulaOf(block, cell);
            ASSERT_FALSE(formula.own.text.empty()) << placeOf(block, cell) << " has no source";
            std::vector<SourceText> pieces = formula.member;
            pieces.push_back(formula.own);
            for (const SourceText& piece : pieces) {
                const std::string file(piece.file);
                EXPECT_EQ(linesFrom(file, piece.line).substr(0, piece.text.size()), std::string(piece.text))
                    << placeOf(block, cell) << ", " << file << ":" << piece.line;
            }
        }
    }
    EXPECT_GT(cells, 5000u);
}

// A function's whole definition, by its first line and the brace that ends it.
TEST(Formulas, AreWholeFunctionsOfTheirNames)
{
    for (const Block& block : blocks()) {
        for (const ZelmCellInfo& cell : block.cells) {
            const Formula& formula = formulaOf(block, cell);
            const std::string text(formula.own.text);
            if (cell.kind == Kind::userInput) {
                // The row, or what makes several: its first word is the cell's name or a part of that.
                const std::size_t begin = text.find('(') + 1;
                const std::string word = text.substr(begin, text.find_first_of(" ,)", begin) - begin);
                EXPECT_TRUE(!word.empty() && cell.name.find(word) != std::string_view::npos)
                    << placeOf(block, cell) << ": " << text;
                continue;
            }
            const std::string name(formula.call.substr(0, formula.call.find('<')));
            EXPECT_THAT(text, HasSubstr(" " + name + "(")) << placeOf(block, cell);
            EXPECT_EQ(std::count(text.begin(), text.end(), '{'), std::count(text.begin(), text.end(), '}'))
                << placeOf(block, cell) << ": " << text;
            EXPECT_TRUE(text.ends_with("    }")) << placeOf(block, cell) << ": " << text;
        }
    }
}

// Read off the sources by eye.
TEST(Formulas, AreThoseOfTheLowestSheetAndTheMembersType)
{
    EXPECT_EQ(sourceOf("Signal", "WIRE_CAPACITANCE").file, "framework/ZelmOrvaneSignalModel.cpp");
    EXPECT_THAT(std::string(sourceOf("Signal", "WIRE_CAPACITANCE").text), HasSubstr("float computeWireCapacitance()"));
    // Of the sheet that it is derived from.
    EXPECT_EQ(sourceOf("Ilkn", "VCCINT_POWER_CALC").file, "hardblocks/ZelmHardBlockSheet.h");
    EXPECT_THAT(std::string(sourceOf("Ilkn", "VCCINT_POWER_CALC").text), HasSubstr("corrects"));
    // Two functions of one name, told apart by the row that they take.
    EXPECT_THAT(std::string(sourceOf("Selv", "OBUF_POD12_VOL").text), HasSubstr("vol(const Output& standard)"));
    EXPECT_THAT(std::string(sourceOf("Selv", "IBUF_POD12_VOL").text), HasSubstr("vol(const Input& standard)"));
}

TEST(Formulas, OfFamiliesComeWithTheMembersRow)
{
    const Block& statics = block("Static");
    const Formula& rail = formulaOf(statics, statics.cell("VCCINT_STATIC_CURRENT"));
    EXPECT_EQ(rail.call, "railCurrent");
    EXPECT_EQ(rail.argument, "kVccint");
    ASSERT_EQ(rail.member.size(), 1u);
    EXPECT_THAT(std::string(rail.member[0].text), StartsWith("RAIL(kVccint, "));
    EXPECT_THAT(std::string(rail.member[0].text), HasSubstr("VCCME_STATIC_CURRENT))"));
    const Block& selv = block("Selv");
    const Formula& standard = formulaOf(selv, selv.cell("OBUF_POD12_VOL"));
    ASSERT_EQ(standard.member.size(), 1u);
    EXPECT_THAT(std::string(standard.member[0].text), HasSubstr("{OUTPUT(POD12), "));
}

TEST(Formulas, NameWhatTheyTakeAndWhatThatTakes)
{
    const Block& statics = block("Static");
    const Formula& formula = formulaOf(statics, statics.cell("VCCINT_STATIC_CURRENT"));
    std::set<std::string> lines;
    for (const SourceText& helper : helpersOf(statics, {formula.own}))
        lines.insert(std::string(helper.text.substr(0, helper.text.find('\n'))));
    EXPECT_EQ(lines, std::set<std::string>{"    float sumOf(const Addends& addends, float start) const"});
}

// ---- Traces ----

std::uint32_t bitsOf(float value)
{
    return std::bit_cast<std::uint32_t>(value);
}

bool sameBits(const Value& a, const Value& b)
{
    const float* x = std::get_if<float>(&a);
    const float* y = std::get_if<float>(&b);
    return x && y ? bitsOf(*x) == bitsOf(*y) : a == b;
}

// Of a block, numbers and words that inputs may hold, and some that they may not.
class RandomInputs {
public:
    RandomInputs(const Block& block, unsigned seed) : m_block(&block), m_random(seed)
    {
        for (const ZelmCellInfo& cell : block.cells) {
            if (cell.kind == Kind::userInput && cell.type == Type::text)
                m_words[&cell] = legalWords(block, cell);
        }
    }

    Value other(const ZelmCellInfo& cell)
    {
        if (cell.type == Type::text) {
            const auto known = m_words.find(&cell);
            if (known == m_words.end() || known->second.empty() || below(12) == 0)
                return std::string("word") + std::to_string(below(1000));
            return known->second[below(known->second.size())];
        }
        const double lowest = std::max(cell.legal.lowest, -1000.0);
        const double highest = std::min({cell.legal.highest, cell.legal.usualHighest, 1000.0});
        const double value = lowest + (highest - lowest) * static_cast<double>(below(10001)) / 10000.0;
        if (cell.type == Type::integer)
            return static_cast<int>(value);
        return static_cast<float>(value);
    }

    // Some of the inputs; the others take their defaults.
    std::vector<std::pair<const ZelmCellInfo*, Value>> some()
    {
        std::vector<std::pair<const ZelmCellInfo*, Value>> given;
        for (const ZelmCellInfo& cell : m_block->cells) {
            if (cell.kind == Kind::userInput && below(3) > 0)
                given.emplace_back(&cell, other(cell));
        }
        return given;
    }

private:
    std::size_t below(std::size_t end)
    {
        return m_random() % end;
    }

    const Block* m_block;
    std::mt19937 m_random;
    std::map<const ZelmCellInfo*, std::vector<std::string>> m_words;
};

// Sets what a cell was computed from. What has no value, its formula having given none, is computed again from its own
// operands.
void setOperands(Instance& instance, Trace& trace, const ZelmCellInfo& cell, std::set<const ZelmCellInfo*>& set)
{
    for (const ZelmCellInfo* operand : trace.of(cell)->operands) {
        const Value value = trace.value(*operand);
        if (!set.insert(operand).second)
            continue;
        if (value.index() != 0)
            instance.set(*operand, value);
        else
            setOperands(instance, trace, *operand, set);
    }
}

// Why what was recorded isn't all that a cell depends on; empty if it is.
std::string whyIncomplete(const Block& block, Trace& trace, const ZelmCellInfo& cell, RandomInputs& random)
{
    if (!trace.of(cell))
        return "";
    const Value expected = trace.value(cell);
    const auto fresh = block.create();
    std::set<const ZelmCellInfo*> set;
    setOperands(*fresh, trace, cell, set);
    fresh->pull(cell);
    if (const Value actual = fresh->get(cell); !sameBits(actual, expected))
        return "from its operands alone " + valueText(actual) + ", in the whole " + valueText(expected);
    const auto changed = block.create();
    for (const ZelmCellInfo& other : block.cells) {
        if (&other != &cell && !set.contains(&other))
            changed->set(other, random.other(other));
    }
    set.clear();
    setOperands(*changed, trace, cell, set);
    changed->pull(cell);
    if (const Value actual = changed->get(cell); !sameBits(actual, expected))
        return "with all other cells changed " + valueText(actual) + ", in the whole " + valueText(expected);
    return "";
}

TEST(Traces, AreCompleteAndTrueForEveryCellOfEveryBlock)
{
    const DataDirVariable variable(shippedDataDirectory());
    std::size_t computed = 0;
    for (const Block& block : blocks()) {
        block.load();
        RandomInputs random(block, 20);
        constexpr int runs = 3;
        for (int run = 0; run < runs; ++run) {
            Trace trace(block, random.some());
            for (const ZelmCellInfo& cell : block.cells) {
                computed += trace.of(cell) ? 1u : 0u;
                ASSERT_EQ(whyIncomplete(block, trace, cell, random), "") << placeOf(block, cell) << ", run " << run;
            }
        }
    }
    EXPECT_GT(computed, 3u * 4000u);
}

TEST(Traces, HoldOperandsAndLookUpsInTheOrderOfAsking)
{
    const DataDirVariable variable(shippedDataDirectory());
    const Block& signal = block("Signal");
    signal.load();
    Trace trace(signal, {{&signal.cell("DRIVER_TYPE"), std::string("OTHER")}});
    const CellTrace* capacitance = trace.of(signal.cell("WIRE_CAPACITANCE"));
    ASSERT_NE(capacitance, nullptr);
    std::vector<std::string> operands;
    for (const ZelmCellInfo* operand : capacitance->operands)
        operands.emplace_back(operand->name);
    EXPECT_THAT(operands, testing::ElementsAre("NUM_NODES_PER_SIGNAL", "SIGNAL_COUNT", "DRIVER_TYPE"));
    ASSERT_EQ(capacitance->lookUps.size(), 1u);
    EXPECT_EQ(capacitance->lookUps[0].table->group, "PER_NODE_CAP");
    EXPECT_EQ(capacitance->lookUps[0].row(), "OTHER");
    EXPECT_EQ(trace.of(signal.cell("DRIVER_TYPE")), nullptr) << "it was given";
    EXPECT_NE(trace.of(signal.cell("SIGNAL_COUNT")), nullptr) << "its default is a formula too";
}

TEST(Traces, TellOfMissesAsSuch)
{
    const DataDirVariable variable(shippedDataDirectory());
    const Block& signal = block("Signal");
    signal.load();
    Trace trace(signal, {{&signal.cell("DRIVER_TYPE"), std::string("NO_SUCH_DRIVER")}});
    const CellTrace* capacitance = trace.of(signal.cell("WIRE_CAPACITANCE"));
    ASSERT_NE(capacitance, nullptr);
    ASSERT_FALSE(capacitance->lookUps.empty());
    EXPECT_EQ(capacitance->lookUps[0].row(), "NO_SUCH_DRIVER");
    EXPECT_EQ(capacitance->lookUps[0].value.index(), 0u);
}

} // namespace

} // namespace zelm::test::formulasTest
