#include "Tool.h"

#include <gmock/gmock.h>

#include <algorithm>

using namespace zelm::test;
using testing::HasSubstr;
using testing::Not;

namespace {

struct Row {
    const char* block;
    const char* text;  ///< the row as it stands in the file
    const char* table; ///< the group that it is in
    const char* key;
};

void PrintTo(const Row& row, std::ostream* out)
{
    *out << row.block << ": " << row.text;
}

class MissingRow : public testing::TestWithParam<Row> {};

TEST_P(MissingRow, IsNamedWithFileAndLine)
{
    const Row& row = GetParam();
    const Scratch scratch;
    const std::string data = scratch.copyData();
    const std::string file = Scratch::dataFile(data, row.block);
    std::string text = Scratch::read(file);
    const std::size_t at = text.find(row.text);
    ASSERT_NE(at, std::string::npos) << file << " has no " << row.text;
    const std::size_t group = text.find(std::string(row.table) + " :");
    ASSERT_LT(group, at) << file << " has no " << row.table;
    text.erase(at, std::string(row.text).size());
    std::ofstream(file) << text;
    // libconfig counts a group from the line of its name or that of its brace.
    const auto line = std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(group), '\n') + 1;

    const ToolRun result = scratch.run("check-data " + data);
    EXPECT_EQ(result.code, 2);
    EXPECT_THAT(result.out, HasSubstr(std::string(row.table) + " has no row " + row.key));
    EXPECT_THAT(result.out, testing::AnyOf(HasSubstr(file + ":" + std::to_string(line) + ": " + row.table),
                                           HasSubstr(file + ":" + std::to_string(line + 1) + ": " + row.table)));
}

constexpr Row kRows[] = {
    {"Harl", "HARL_IOU_DYNAMIC = 0.260;", "HARL_DATA", "HARL_IOU_DYNAMIC"},
    {"Yond", "APU_DYNAMIC = 0.065;", "YOND_DATA", "APU_DYNAMIC"},
    {"Mulm", "PCIE_A0_CH8_GEN4 = 142.6;", "POWER_DATA", "PCIE_A0_CH8_GEN4"},
    {"CleClk", "PROG_DELAY = 9.0;", "CLK_CAP", "PROG_DELAY"},
    {"Bram", "BLKM36 = 0.00096;", "STANDBY_CURRENT", "BLKM36"},
};
constexpr std::string_view kOnlyRowOfItsTable = "PSIM_VOLTAGE = 0.88;\n";

INSTANTIATE_TEST_SUITE_P(All, MissingRow, testing::ValuesIn(kRows), [](const auto& one) { return one.param.block; });

TEST(CheckData, ShippedDataIsWhole)
{
    const Scratch scratch;
    const ToolRun result = scratch.run("check-data " + shippedDataDirectory());
    EXPECT_EQ(result.code, 0) << result.out;
    EXPECT_THAT(result.out, Not(HasSubstr(" wrong")));
    EXPECT_THAT(result.out, Not(HasSubstr("has no row")));
}

TEST(CheckData, ATableWithoutRowsIsNamed)
{
    const Scratch scratch;
    const std::string data = scratch.copyData();
    const std::string file = Scratch::dataFile(data, "Gorb");
    std::string text = Scratch::read(file);
    const std::size_t at = text.find(kOnlyRowOfItsTable);
    ASSERT_NE(at, std::string::npos) << file;
    text.erase(at, kOnlyRowOfItsTable.size());
    std::ofstream(file) << text;
    const ToolRun result = scratch.run("check-data " + data);
    EXPECT_EQ(result.code, 2);
    EXPECT_THAT(result.out, HasSubstr(file + ": expected a group ZelmOrvaneGorbData.SIM_CONDITIONS"));
}

} // namespace
