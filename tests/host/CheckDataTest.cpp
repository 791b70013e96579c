#include "Tool.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <vector>

using namespace zelm::test;
using testing::HasSubstr;
using testing::Not;

namespace {

struct Row {
    const char* block;
    const char* group; ///< the path of the group that holds it, from the table on
    const char* name;
    const char* key = nullptr; ///< what the message calls it, if not the names below the table
};

constexpr Row kRows[] = {
    // rows that every calculation asks for
    {"Harl", "HARL_DATA", "HARL_IOU_DYNAMIC"},
    {"Yond", "YOND_DATA", "APU_DYNAMIC"},
    {"Mulm", "POWER_DATA", "PCIE_A0_CH8_GEN4"},
    {"CleClk", "CLK_CAP", "PROG_DELAY"},
    {"Bram", "STANDBY_CURRENT", "BLKM36"},
    // rows that make a word legal and that no other table names
    {"Signal", "PER_NODE_CAP", "LUTRAM"},
    {"CleLogic", "REG_CAP", "REG_LATCH"},
    {"Iologic", "FINAL_DATA", "ODDR_CURR"},
    {"Sdfec", "DYNAMIC_CURRENTS", "LDPC_WiFi"},
    // rows of the group that words were once read from
    {"Tuvo", "CONFIG_PWR_DATA.FEC_100GE", "TYPICAL"},
    {"Noc", "DEVICE_DATA.ZQ20T60.PL_TO_PS", "AVG_SW"},
    // rows of widths and grades
    {"Wist", "CONFIG_POWER_DATA.ESM25G_x8_A1", "DMA"},
    {"Sarn", "NRZ_DATARATES.SPEED_2", "MAX"},
    // rows behind cells that a calculation leaves out
    {"Nemt", "SHIM_DATA.ZQ30T80", "SHIM_B"},
    {"Nemt", "NEMT_STREAMS.ZQ10T40", "PL_STREAMS"},
    {"Yond", "MIO_BANK_DISTRIBUTION.LPD_IOU_BANK1", "BIDI"},
    // a row behind such a cell that takes two words
    {"DspInt8", "DYNAMIC_DATA.INT8.MULT_NOMREG.DYNAMIC.COMPONENT_SUM", "OFF_CURRENT_MA"},
    // rows without which a formula throws
    {"DspActivity", "DSP_CONFIG_DATA.MULT_ALU", "OUTPUT_TOGGLE"},
    {"DspActivity", "DSP_CONFIG_DATA.INVALID_STATE", "OUTPUT_TOGGLE"},
    // rows that hosts alone ask for: tables that share their words
    {"DspConfig", "DSP_CONFIG_MAP", "MACB_CPLX"},
    {"DspConfig", "DSP_CONFIG_DATA.MACA_INT24", "BLOCK"},
    {"Selv", "IO_LIST.INPUT", "LVCMOS12"},
    {"Nalt", "IO_LIST.OUTPUT", "LVTTL_8"},
    {"Noc", "DEVICE_INT_NAMES", "ZQ4410"},
    {"Parts", "DEVICE_TO_FAMILY_MAP", "zq2210"},
    {"Parts", "DEVICE_CORE_VOLTAGE_MAP", "zb2810"},
    {"Parts", "FAMILY_TO_DEFAULT_DEVICE", "Halden_Rim_Series"},
    {"Parts", "RESOURCE_DATA.zq221_", "DSP"},
    {"Static", "INT_TO_EXT_DEV_MAP", "T60", "of ZQ4410"},
    {"Static", "SUPPLY_LIST.ZW4630", "ADCAVCC"},
    {"Static", "GT_INFO.ZC7540_KJBO4900", "SARN_56G"},
    {"Static", "UNBONDED_GT_INFO.ZR1810", "LORVP"},
    {"Static", "PART_STATUS.ZR1810", "KFBA1024"},
    // rows of other grades than the default ones
    {"Static", "SKU_LIST.SPEED_2.HP.LOW.MILITARY", "OD_YES"},
    {"Static", "BINNING_FACTORS.ZQ2210.TYP.VCCINT", "LP_STD"},
    {"Static", "VOLTAGE_RANGE.MIN.VCCAUX", "HP_LOW"},
};

// Where a group's name (before ":") or a row's (before "=") stands, from a place on.
std::size_t find(const std::string& text, const std::string& name, char sign, std::size_t from)
{
    for (std::size_t at = text.find(name, from); at != std::string::npos; at = text.find(name, at + 1)) {
        const bool begins = std::strchr(" \n", text[at - 1]) != nullptr;
        if (begins && text[text.find_first_not_of(' ', at + name.size())] == sign)
            return at;
    }
    throw std::runtime_error("the data have no " + name + " " + sign);
}

// All rows are taken out of one copy of the data, so that it is checked once.
TEST(CheckData, EveryMissingRowIsNamedWithFileAndLineAndNothingElse)
{
    const Scratch scratch;
    const std::string data = scratch.copyData();
    std::vector<long> lines; // of the rows' groups
    for (const Row& row : kRows) {
        const std::string file = Scratch::dataFile(data, row.block);
        std::string text = Scratch::read(file);
        std::size_t at = 0;
        std::istringstream path(row.group);
        for (std::string name; std::getline(path, name, '.');)
            at = find(text, name, ':', at);
        lines.push_back(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), '\n') + 1);
        at = find(text, row.name, '=', at);
        text.erase(at, text.find(';', at) + 1 - at);
        std::ofstream(file) << text;
    }
    const ToolRun result = scratch.run("check-data " + data);
    EXPECT_EQ(result.code, 2);

    for (std::size_t i = 0; i < std::size(kRows); ++i) {
        const Row& row = kRows[i];
        const std::string group = row.group;
        const std::size_t dot = std::min(group.find('.'), group.size());
        const std::string above = dot < group.size() ? group.substr(dot + 1) + "." : "";
        const std::string key = row.key ? row.key : above + row.name;
        const std::string file = Scratch::dataFile(data, row.block);
        const std::string message = ": " + group.substr(0, dot) + " has no row " + key + "\n";
        // libconfig counts a group from the line of its name or that of its brace.
        EXPECT_THAT(result.out, testing::AnyOf(HasSubstr(file + ":" + std::to_string(lines[i]) + message),
                                               HasSubstr(file + ":" + std::to_string(lines[i] + 1) + message)));
    }

    std::istringstream out(result.out);
    std::size_t named = 0;
    for (std::string line; std::getline(out, line) && !line.empty();)
        ++named;
    EXPECT_EQ(named, std::size(kRows)) << result.out;
}

constexpr std::string_view kOnlyRowOfItsTable = "PSIM_VOLTAGE = 0.88;\n";

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
    const std::string before = text.substr(0, text.find("SIM_CONDITIONS"));
    const auto line = 1 + std::count(before.begin(), before.end(), '\n');
    EXPECT_THAT(result.out,
                HasSubstr(file + ":" + std::to_string(line) + ": expected a group ZelmOrvaneGorbData.SIM_CONDITIONS"))
        << text;
}

TEST(CheckData, ATextThatFormulasWantANumberFromIsToldWithItsFile)
{
    const Scratch scratch;
    const std::string data = scratch.copyData();
    const std::string file = Scratch::dataFile(data, "DspActivity");
    std::string text = Scratch::read(file);
    const std::string before = "OUTPUT_TOGGLE = \"";
    text.insert(text.find(before, text.find("MULT_ALU ")) + before.size(), "about ");
    std::ofstream(file) << text;
    const ToolRun result = scratch.run("check-data " + data);
    EXPECT_EQ(result.code, 2);
    EXPECT_THAT(result.out, HasSubstr(file + ": a formula fails on its rows: a text that is no number"));
}

} // namespace
