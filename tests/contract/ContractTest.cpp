// What holds for every block: names, order and number of its cells, its functions' names, and whole shipped data.
#include "contract/AllBlocks.h"

#include "support/Bits.h"
#include "support/DataDirectory.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <filesystem>
#include <map>
#include <set>

namespace zelm::test::contractTest {

namespace fs = std::filesystem;

class Contract : public EachBlock {};

const std::map<std::pair<std::string_view, std::string_view>, std::string_view> kPublished{
#define PUBLISHED(block, cell, function) {{#block, #cell}, #function},
#include "contract/Blocks.def"
};

// The function name that a cell's name gives: words in camel case, a letter behind a digit starting a word of its own.
std::string functionNameOf(std::string_view cell)
{
    std::string name;
    char before = '_';
    for (const char c : cell) {
        const auto letter = static_cast<unsigned char>(c);
        const bool startsWord = before == '_' || std::isdigit(static_cast<unsigned char>(before));
        if (c != '_')
            name += static_cast<char>(startsWord ? letter : std::tolower(letter));
        before = c;
    }
    return name;
}

TEST_P(Contract, CellsStandInTheOrderAndNumberThatHostsKnow)
{
    std::vector<std::size_t> counts;
    std::vector<std::string> listed, described;
    for (const std::vector<std::string>& names : block.nameLists()) {
        counts.push_back(names.size());
        EXPECT_TRUE(std::is_sorted(names.begin(), names.end())) << testing::PrintToString(names);
        listed.insert(listed.end(), names.begin(), names.end());
    }
    EXPECT_THAT(counts, testing::ElementsAreArray(GetParam().counts));
    for (const ZelmCellInfo& cell : block.cells())
        described.emplace_back(cell.name);
    EXPECT_EQ(described, listed);
}

TEST_P(Contract, CellsConvertBothWaysAndNameTheirFunctions)
{
    for (const ZelmCellInfo& cell : block.cells()) {
        const std::string name(cell.name);
        EXPECT_EQ(block.thereAndBack(cell.type, name), name);
        const auto published = kPublished.find({GetParam().name, cell.name});
        EXPECT_EQ(std::string(cell.function),
                  published == kPublished.end() ? functionNameOf(name) : std::string(published->second));
        EXPECT_FALSE(cell.meaning.empty()) << name;
    }
}

TEST_P(Contract, ClassesCarryTheBlocksName)
{
    const DataDirVariable variable(shippedDataDirectory());
    const std::string stem = "ZelmOrvane" + GetParam().name;
    EXPECT_EQ(block.classNames(), stem + "Params " + stem + "Data " + stem + "Model");
    EXPECT_EQ(std::string(block.paramsName) + " " + std::string(block.dataName) + " " + std::string(block.modelName),
              stem + "Params " + stem + "Data " + stem + "Model");
}

TEST_P(Contract, ShippedDataIsWholeAndGivesFiniteOutputs)
{
    const DataDirVariable variable(shippedDataDirectory());
    ASSERT_TRUE(block.reload()) << "a table is missing from the shipped " << block.dataName;
    for (const ZelmTableInfo& table : block.tables())
        EXPECT_FALSE(block.keysOf(table.group).empty()) << table.group;
    const std::unique_ptr<ZelmParams> params = block.makeParams();
    block.calculate(*params);
    for (const ZelmCellInfo& cell : block.cells()) {
        if (cell.kind != ZelmCellInfo::Kind::modelOutput || cell.type != ZelmCellInfo::Type::real)
            continue;
        const float value = block.floatCell(*params, std::string(cell.name));
        EXPECT_TRUE(std::isfinite(value) && std::fabs(value) < 1e30f) << cell.name << " = " << show(value);
    }
}

INSTANTIATE_TEST_SUITE_P(All, Contract, testing::ValuesIn(allBlocks()), nameOfBlock);

TEST(AllBlocks, HaveARowInBlocksDef)
{
    std::set<std::string> rows, files;
    for (const BlockRow& row : allBlocks())
        EXPECT_TRUE(rows.insert(row.name).second) << row.name << " has two rows";
    for (const auto& folder : fs::directory_iterator(ZELM_SOURCE_DIR)) {
        const std::string name = folder.path().filename().string();
        if (!folder.is_directory() || name.starts_with(".") || name == "tests" || name == "build")
            continue;
        for (const auto& file : fs::directory_iterator(folder.path())) {
            const std::string stem = file.path().filename().string();
            if (stem.starts_with("ZelmOrvane") && stem.ends_with("Cells.def"))
                files.insert(stem.substr(10, stem.size() - 10 - 9));
        }
    }
    EXPECT_EQ(rows, files);
}

} // namespace zelm::test::contractTest
