#include "support/DataDirectory.h"

#include "host/base/Text.h"
#include "host/blocks/Legal.h"
#include "host/blocks/Rails.h"
#include "host/blocks/Uses.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

namespace zelm::test::rowsTest {

using namespace zelm::host;
using testing::Contains;
using testing::HasSubstr;
using zelm::Destination;
using zelm::Legal;

namespace {

const std::set<std::string_view> kPowersAndCurrents{"W", "mW", "uW", "A", "mA", "uA"};

std::string placeOf(const Block& block, const ZelmCellInfo& cell)
{
    return std::string(block.name) + " " + std::string(cell.name);
}

bool isRail(std::string_view name)
{
    const std::vector<std::string> rails = railNames();
    return name == "VCCO" || std::find(rails.begin(), rails.end(), name) != rails.end();
}

// Calls check(block, cell) for every cell of every block.
template <class Check>
void forEachCell(Check check)
{
    for (const Block& block : blocks()) {
        for (const ZelmCellInfo& cell : block.cells)
            check(block, cell);
    }
}

TEST(Rows, EveryPowerAndCurrentGoesSomewhere)
{
    forEachCell([](const Block& block, const ZelmCellInfo& cell) {
        const bool amounts = cell.kind == ZelmCellInfo::Kind::modelOutput && kPowersAndCurrents.contains(cell.unit);
        EXPECT_EQ(amounts, cell.goes.kind != Destination::Kind::none)
            << placeOf(block, cell) << " in \"" << cell.unit << "\" goes to \"" << goesText(cell) << "\"";
    });
}

TEST(Rows, DestinationsExist)
{
    forEachCell([](const Block& block, const ZelmCellInfo& cell) {
        if (cell.goes.kind == Destination::Kind::rail) {
            EXPECT_TRUE(isRail(cell.goes.name)) << placeOf(block, cell) << ": " << cell.goes.name;
        }
        if (cell.goes.kind == Destination::Kind::part) {
            const ZelmCellInfo* whole = block.findCell(cell.goes.name);
            ASSERT_NE(whole, nullptr) << placeOf(block, cell) << ": " << cell.goes.name;
            EXPECT_EQ(whole->kind, ZelmCellInfo::Kind::modelOutput) << placeOf(block, cell) << ": " << cell.goes.name;
            EXPECT_NE(whole, &cell) << placeOf(block, cell);
        }
        if (!cell.goes.scaling.empty()) {
            const ZelmCellInfo* scaling = block.findCell(cell.goes.scaling);
            ASSERT_NE(scaling, nullptr) << placeOf(block, cell) << ": " << cell.goes.scaling;
            EXPECT_EQ(scaling->type, ZelmCellInfo::Type::real) << placeOf(block, cell);
        }
    });
}

TEST(Rows, RailsOfInputsExist)
{
    forEachCell([](const Block& block, const ZelmCellInfo& cell) {
        if (!cell.legal.rail.empty()) {
            EXPECT_TRUE(isRail(cell.legal.rail)) << placeOf(block, cell) << ": " << cell.legal.rail;
            EXPECT_EQ(cell.unit, "V") << placeOf(block, cell);
        }
    });
}

// A misspelt table, or a level that a table doesn't have, would leave nothing legal but the words that the row knows.
TEST(Rows, KeysNameTablesOfTheBlockAndFindWords)
{
    const zelm::test::DataDirVariable variable(zelm::test::shippedDataDirectory());
    forEachCell([](const Block& block, const ZelmCellInfo& cell) {
        if (cell.legal.kind != Legal::Kind::keys)
            return;
        for (const std::string& chain : split(std::string(cell.legal.text), '|')) {
            const std::string table = split(chain, '/').front();
            EXPECT_TRUE(std::any_of(block.tables.begin(), block.tables.end(),
                                    [&](const ZelmTableInfo& info) { return info.group == table; }))
                << placeOf(block, cell) << ": " << table;
            ZelmCellInfo alone = cell;
            alone.legal.text = chain;
            alone.legal.known = {};
            EXPECT_FALSE(legalWords(block, alone).empty()) << placeOf(block, cell) << ": " << chain;
        }
    });
}

TEST(Rows, TypesFitWhatIsLegal)
{
    forEachCell([](const Block& block, const ZelmCellInfo& cell) {
        if (cell.kind != ZelmCellInfo::Kind::userInput)
            return;
        EXPECT_EQ(cell.type == ZelmCellInfo::Type::text, cell.legal.kind != Legal::Kind::number)
            << placeOf(block, cell);
        EXPECT_LE(cell.legal.lowest, cell.legal.highest) << placeOf(block, cell);
        const std::vector<int> numbers = legalNumbers(cell);
        EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end())) << placeOf(block, cell);
    });
}

TEST(Rows, DefaultsAreLegalAndUsual)
{
    const zelm::test::DataDirVariable variable(zelm::test::shippedDataDirectory());
    forEachCell([](const Block& block, const ZelmCellInfo& cell) {
        const std::string text = constantDefault(cell);
        if (cell.kind != ZelmCellInfo::Kind::userInput || text.empty())
            return;
        const Value value = parseValue(cell, text);
        EXPECT_EQ(whyIllegal(block, cell, value).value_or("legal"), "legal") << placeOf(block, cell);
        EXPECT_EQ(whyUnlikely(cell, value).value_or("usual"), "usual") << placeOf(block, cell);
    });
}

// ---- What is legal, on rows made here ----

ZelmCellInfo inputOf(ZelmCellInfo::Type type, const Legal& legal, std::string_view unit = "")
{
    return {.name = "CELL",
            .function = "Cell",
            .kind = ZelmCellInfo::Kind::userInput,
            .type = type,
            .ordinal = 1,
            .defaultText = "",
            .unit = unit,
            .legal = legal,
            .goes = {},
            .meaning = ""};
}

TEST(Legal, WordsAreTheListOrTheKeysLessTheBarred)
{
    const zelm::test::DataDirVariable variable(zelm::test::shippedDataDirectory());
    const auto words = [](std::string_view block_, const Legal& legal) {
        return legalWords(block(block_), inputOf(ZelmCellInfo::Type::text, legal));
    };
    using zelm::legal::keysOf;
    EXPECT_THAT(words("Bram", zelm::legal::words("b|a")), testing::ElementsAre("b", "a"));
    EXPECT_THAT(words("Bram", zelm::legal::freeText), testing::IsEmpty());
    EXPECT_THAT(words("Iologic", keysOf("FINAL_DATA/{}_CURR")),
                testing::UnorderedElementsAre("IDDR", "IREG", "ISERDES", "ODDR", "OREG", "OSERDES", "TREG"));
    EXPECT_THAT(words("Iologic", keysOf("FINAL_DATA/{}_CURR", "NEW", "TREG|IREG")),
                testing::UnorderedElementsAre("IDDR", "ISERDES", "NEW", "ODDR", "OREG", "OSERDES"));
    EXPECT_THAT(words("Static", keysOf("SKU_LIST/*/*/{}")), testing::UnorderedElementsAre("LOW", "STANDARD"));
    EXPECT_THAT(words("Static", keysOf("SKU_LIST/SPEED_{}")), testing::UnorderedElementsAre("1", "2", "3"));
}

struct Judged {
    const char* name;
    Legal legal;
    const char* unit;
    float value;
    const char* illegal;  ///< in the message; null if it is legal
    const char* unlikely; ///< in the warning; null if it is usual
};

constexpr Judged kJudged[] = {
    {"AnythingGoes", zelm::legal::any, "", -1e9f, nullptr, nullptr},
    {"Negative", zelm::legal::fromZero, "MHz", -1.0f, "CELL takes from 0 MHz, not -1", nullptr},
    {"Zero", zelm::legal::fromZero, "", 0.0f, nullptr, nullptr},
    {"ZeroOfOne", zelm::legal::fromOne, "", 0.0f, "takes from 1, not 0", nullptr},
    {"ZeroAboveZero", zelm::legal::aboveZero, "", 0.0f, "takes above 0, not 0", nullptr},
    {"SmallAboveZero", zelm::legal::aboveZero, "", 1e-30f, nullptr, nullptr},
    {"Percent", zelm::legal::share, "", 12.5f, nullptr, "CELL is 12.5, usually at most 1; percent?"},
    {"WholeShare", zelm::legal::share, "", 1.0f, nullptr, nullptr},
    {"Hertz", zelm::legal::megahertz, "MHz", 3e8f, nullptr, "hertz?"},
    {"TenGigahertz", zelm::legal::megahertz, "MHz", 10000.0f, nullptr, nullptr},
    {"Millivolts", zelm::legal::volts("VCCINT"), "V", 800.0f, nullptr, "millivolts?"},
    {"BelowTheRange", zelm::legal::between(0, 40), "", -0.5f, "takes 0 to 40, not -0.5", nullptr},
    {"BeyondTheRange", zelm::legal::between(0, 40), "", 41.0f, "takes 0 to 40, not 41", nullptr},
    {"BetweenTheNumbers", zelm::legal::oneOf("16|32|64"), "bit", 48.0f, "takes 16, 32 or 64 bit, not 48", nullptr},
    {"OneOfTheNumbers", zelm::legal::oneOf("16|32|64"), "bit", 64.0f, nullptr, nullptr},
};

TEST(Legal, NumbersAreJudgedByTheirDomain)
{
    for (const Judged& row : kJudged) {
        const ZelmCellInfo cell = inputOf(ZelmCellInfo::Type::real, row.legal, row.unit);
        EXPECT_THAT(whyIllegal(block("Bram"), cell, row.value).value_or("legal"),
                    HasSubstr(row.illegal ? row.illegal : "legal"))
            << row.name;
        EXPECT_THAT(whyUnlikely(cell, row.value).value_or("usual"), HasSubstr(row.unlikely ? row.unlikely : "usual"))
            << row.name;
    }
}

TEST(Legal, AWordThatIsNoneNamesTheNearestAndAll)
{
    const ZelmCellInfo cell = inputOf(ZelmCellInfo::Type::text, zelm::legal::words("READ_FIRST|WRITE_FIRST|NO_CHANGE"));
    EXPECT_EQ(whyIllegal(block("Bram"), cell, std::string("NOCHANGE")),
              "\"NOCHANGE\" is no word of CELL; did you mean NO_CHANGE?; legal: READ_FIRST, WRITE_FIRST, NO_CHANGE");
    EXPECT_EQ(whyIllegal(block("Bram"), cell, std::string("NO_CHANGE")), std::nullopt);
}

// ---- A block that is forgotten somewhere ----

std::string textOf(const std::string& path)
{
    std::ifstream in(std::string(ZELM_SOURCE_DIR "/") + path);
    return {std::istreambuf_iterator<char>(in), {}};
}

// The blocks whose cells stand in the source tree.
std::set<std::string> blocksOfTheTree()
{
    const std::set<std::string> elsewhere{"tests", "build", "host", "docs", "data"};
    std::set<std::string> names;
    for (const auto& folder : std::filesystem::directory_iterator(ZELM_SOURCE_DIR)) {
        const std::string room = folder.path().filename().string();
        if (!folder.is_directory() || room.starts_with(".") || elsewhere.contains(room))
            continue;
        for (const auto& file : std::filesystem::directory_iterator(folder.path())) {
            const std::string name = file.path().filename().string();
            if (name.starts_with("ZelmOrvane") && name.ends_with("Cells.def"))
                names.insert(name.substr(10, name.size() - 10 - 9));
        }
    }
    return names;
}

class EveryBlock : public testing::TestWithParam<std::string> {};

TEST_P(EveryBlock, StandsInAllPlaces)
{
    const std::string name = GetParam();
    EXPECT_TRUE(std::any_of(blocks().begin(), blocks().end(), [&](const Block& known) { return known.name == name; }))
        << "host/blocks/BlockList.def";
    const auto expectIn = [&](const std::string& file, const std::string& words) {
        EXPECT_THAT(textOf(file), HasSubstr(words)) << file;
    };
    expectIn("data/powercfg/orvane/ZelmOrvane" + name + "Data.cfg", "ZelmOrvane" + name + "Data");
    expectIn("data/uncertainty.json", "\"" + name + "\": {");
    expectIn("docs/cells/README.md", "[" + name + "](" + name + ".md)");
    expectIn("docs/cells/" + name + ".md", "# " + name + ": ");
    if (name != "Static" && name != "Parts") // a device's, no groups
        expectIn("docs/design.schema.json", "\"const\": \"" + name + "\"");
    EXPECT_THAT(textOf("tests/contract/Blocks.def"), testing::ContainsRegex(" " + name + ", "))
        << "tests/contract/Blocks.def";
}

// Blocks that take none of what the catalogue counts.
const std::set<std::string> kCountedNowhere{"Signal",  "Clock",     "CleClk",      "ClkDist", "IriClk",
                                            "IriImux", "DspConfig", "DspActivity", "Iologic", "Kelp",
                                            "Pspll",   "Noc",       "Parts",       "Static",  "Sysmon"};

TEST_P(EveryBlock, IsCountedAsAResourceOrKnownToTakeNone)
{
    const auto uses = resourceUses();
    const bool counted =
        std::any_of(uses.begin(), uses.end(), [](const ResourceUse& use) { return use.block == GetParam(); });
    EXPECT_NE(counted, kCountedNowhere.contains(GetParam())) << "host/blocks/Uses.cpp: resourceUses";
}

INSTANTIATE_TEST_SUITE_P(All, EveryBlock, testing::ValuesIn(blocksOfTheTree()),
                         [](const auto& one) { return one.param; });

} // namespace

} // namespace zelm::test::rowsTest
