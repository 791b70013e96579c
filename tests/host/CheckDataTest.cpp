#include "Tool.h"

#include <gmock/gmock.h>
#include <libconfig.h++>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace zelm::test::checkDataTest {

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

// Replaces what stands between "NAME =" and ";", from a group on.
struct Spoilt {
    const char* block;
    const char* group;
    const char* name;
    const char* row; ///< what becomes of the whole row
    const char* message;
};

constexpr Spoilt kSpoilt[] = {
    // values that the table doesn't take: they would be left out, cut, or be an array
    {"Signal", "PER_NODE_CAP", "BRAM", "BRAM = \"text\"", "PER_NODE_CAP.BRAM is no number"},
    {"Signal", "PER_NODE_CAP", "FF", "FF = true", "PER_NODE_CAP.FF is no number"},
    {"Signal", "PER_NODE_CAP", "DSP", "DSP = [0.04, 0.05]", "PER_NODE_CAP.DSP is an array or a list"},
    {"Noc", "CLOCK_BUFFER_MAX", "ZQ20T60", "ZQ20T60 = 64.5",
     "CLOCK_BUFFER_MAX.ZQ20T60 is 64.5, expected a whole number"},
    {"Noc", "CLOCK_BUFFER_DDR", "ZQ20T60", "ZQ20T60 = 5000000000L",
     "CLOCK_BUFFER_DDR.ZQ20T60 is 5000000000, expected a whole number of 32 bits"},
    {"Noc", "DEVICE_INT_NAMES", "ZQ4410", "ZQ4410 = 60", "DEVICE_INT_NAMES.ZQ4410 is no text"},
    // numbers that the unit, or the row's own meaning, rules out
    {"Hsc", "NORMAL_MODE_POWER", "VALUE", "VALUE = -1.0",
     "NORMAL_MODE_POWER.VALUE is -1, expected a number from 0 to 100000 mW"},
    {"Bram", "STANDBY_CURRENT", "BLKM36", "BLKM36 = 1e30", "STANDBY_CURRENT.BLKM36 is 1e+30, expected"},
    {"Bram", "SIM_VOLTAGE", "VCCINT", "VCCINT = 0.0", "SIM_VOLTAGE.VCCINT is 0, expected a number from 0.3 to 5 V"},
    {"Veko", "COMMON_DATA", "VCCRAM_SIM", "VCCRAM_SIM = 850.0", "COMMON_DATA.VCCRAM_SIM is 850, expected"},
    {"Clock", "VAR_DATA", "VAR1", "VAR1 = 50.0", "VAR_DATA.VAR1 is 50, expected a number from 0 to 1\n"},
    {"DspFp32", "SCALE_FACTORS", "SIMULATED_TR", "SIMULATED_TR = 0.0", "SCALE_FACTORS.SIMULATED_TR is 0, expected"},
    // text that is read as a number, or as one of two words
    {"DspActivity", "DSP_CONFIG_DATA.MULT_ALU", "OUTPUT_TOGGLE", "OUTPUT_TOGGLE = \"about 0.45\"",
     "DSP_CONFIG_DATA.MULT_ALU.OUTPUT_TOGGLE is \"about 0.45\", expected a number in quotes"},
    {"DspActivity", "DSP_CONFIG_DATA.ADD_ONLY", "OUTPUT_TOGGLE", "OUTPUT_TOGGLE = \"35\"",
     "DSP_CONFIG_DATA.ADD_ONLY.OUTPUT_TOGGLE is \"35\", expected a number from 0 to 1\n"},
    {"Selv", "IO_LIST.INPUT", "LVCMOS12", "LVCMOS12 = \"1.2 V\"", "IO_LIST.INPUT.LVCMOS12 is \"1.2 V\", expected"},
    {"Static", "SUPPLY_LIST.ZW4630", "ADCAVCC", "ADCAVCC = \"Yes\"",
     "SUPPLY_LIST.ZW4630.ADCAVCC is \"Yes\", expected YES or NO"},
    // leakage whose sum is negative somewhere
    {"Static", "VT_COEFFICIENT.ZQ2210.TYP.VCCRAM", "CONST", "CONST = -0.02",
     "VT_COEFFICIENT.ZQ2210.TYP.VCCRAM gives a leakage of "},
    // names that nothing asks for
    {"Harl", "HARL_DATA", "PMU_IOU_CLOCK", "PMU_IOU_CLOCK = 0.115; PMU_IOU_CLOK = 0.115",
     "HARL_DATA.PMU_IOU_CLOK is asked for by nothing; did you mean PMU_IOU_CLOCK"},
    {"Selv", "OBUF.LVCMOS12_2", "VCCO", "VCCO_ = 1.2",
     "OBUF.LVCMOS12_2.VCCO_ is asked for by nothing; did you mean VCCO"},
    {"Gorb", "SIM_CONDITIONS", "PSIM_VOLTAGE", "PSIM_VOLTAGE = 0.88; MORE : { PSIM_VOLTAGE = 0.88; }",
     "SIM_CONDITIONS.MORE.PSIM_VOLTAGE is asked for by nothing"},
    {"Kelp", "BITSLICE_DATA", "SIM_VOLTAGE", "SIM_VOLTAGE = 0.85; }; BITSLICE_DATE : { ROW = 1.0",
     "BITSLICE_DATE.ROW is in no table of the block; did you mean BITSLICE_DATA"},
};

// All in one copy too, each with the line of its row.
TEST(CheckData, EverySpoiltRowIsNamedWithFileAndLine)
{
    const Scratch scratch;
    const std::string data = scratch.copyData();
    std::vector<long> lines;
    for (const Spoilt& spoilt : kSpoilt) {
        const std::string file = Scratch::dataFile(data, spoilt.block);
        std::string text = Scratch::read(file);
        std::size_t at = 0;
        std::istringstream path(spoilt.group);
        for (std::string name; std::getline(path, name, '.');)
            at = find(text, name, ':', at);
        at = find(text, spoilt.name, '=', at);
        lines.push_back(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), '\n') + 1);
        text.replace(at, text.find(';', at) - at, spoilt.row);
        std::ofstream(file) << text;
    }
    const ToolRun result = scratch.run("check-data " + data);
    EXPECT_EQ(result.code, 2);
    for (std::size_t i = 0; i < std::size(kSpoilt); ++i) {
        const std::string place = Scratch::dataFile(data, kSpoilt[i].block) + ":" + std::to_string(lines[i]) + ": ";
        EXPECT_THAT(result.out, HasSubstr(place + kSpoilt[i].message)) << kSpoilt[i].row;
    }
    EXPECT_THAT(result.out, Not(HasSubstr("has no row BRAM"))) << "a row of the wrong type isn't missing";
}

TEST(CheckData, NamesOfPartsHaveAllFields)
{
    const Scratch scratch;
    const std::string data = scratch.copyData();
    const std::string file = Scratch::dataFile(data, "Parts");
    const std::string text = Scratch::read(file);
    const std::string part = "zq4410_ktba3310_1_MP_i_S";
    const std::size_t at = text.find(part + " = ");
    ASSERT_NE(at, std::string::npos);
    const auto line =
        std::to_string(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), '\n') + 1);
    for (const std::string odd : {"zq4410_ktba3310_1_MP_i_", "zq4410_ktba3310_1_MP_i", "zq4410_ktba3310_1_MP_i_SQ",
                                  "zq4410_ktba3310_1_MP_i_S_es1x", "zq4410_ktba3310_a_MP_i_S"}) {
        std::ofstream(file) << std::string(text).replace(at, part.size(), odd);
        const ToolRun result = scratch.run("check-data " + data);
        EXPECT_EQ(result.code, 2) << odd;
        EXPECT_THAT(result.out, HasSubstr(file + ":" + line + ": DEVICE_DATA.")) << odd;
        EXPECT_THAT(result.out, HasSubstr(odd + " is no part: device_package_speed_voltage_")) << odd;
    }
}

TEST(CheckData, AFormulaThatFindsNoNumberInATextSaysWhichFileToCheck)
{
    const Scratch scratch;
    const std::string data = scratch.copyData();
    const std::string file = Scratch::dataFile(data, "DspActivity");
    std::string text = Scratch::read(file);
    const std::string before = "OUTPUT_TOGGLE = \"";
    for (std::size_t at = text.find(before); at != std::string::npos; at = text.find(before, at + 1))
        text.insert(at + before.size(), "about ");
    std::ofstream(file) << text;
    const ToolRun result = scratch.run("--datadir " + data + " calc DspActivity");
    EXPECT_EQ(result.code, 2);
    EXPECT_THAT(result.err, HasSubstr(file + ": a formula fails on its rows: a text that is no number"));
}

// ---- Rows of every table of every file ----

using libconfig::Setting;

struct Sample {
    std::string file;
    std::string path; ///< of the setting, from the table on
};

void gather(const Setting& setting, const std::string& path, std::vector<std::string>& rows)
{
    if (!setting.isGroup()) {
        rows.push_back(path);
        return;
    }
    for (const Setting& child : setting)
        gather(child, path + "." + child.getName(), rows);
}

Setting& at(libconfig::Config& cfg, const std::string& path)
{
    Setting* here = &cfg.getRoot()[0];
    std::istringstream names(path);
    for (std::string name; std::getline(names, name, '.');)
        here = &(*here)[name.c_str()];
    return *here;
}

// Does something to a row of every table of every file, the same ones each time, and tells which. The row is the one at
// `share` of the way through its table.
template <class Change>
std::vector<Sample> spoil(const std::string& data, double share, Change change)
{
    std::vector<Sample> samples;
    for (const auto& entry : std::filesystem::directory_iterator(data + "/powercfg/orvane")) {
        libconfig::Config cfg;
        cfg.readFile(entry.path().c_str());
        for (const Setting& table : cfg.getRoot()[0]) {
            std::vector<std::string> rows;
            gather(table, table.getName(), rows);
            const std::string& row = rows[static_cast<std::size_t>(share * static_cast<double>(rows.size()))];
            if (change(table, at(cfg, row.substr(0, row.rfind('.'))), row.substr(row.rfind('.') + 1)))
                samples.push_back({entry.path().string(), row});
        }
        cfg.writeFile(entry.path().c_str());
    }
    return samples;
}

void replace(Setting& parent, const std::string& name, double value)
{
    parent.remove(name);
    parent.add(name, Setting::TypeFloat) = value;
}

constexpr double kShares[] = {0.0, 0.37, 0.99};

// Whether a line of what the tool says begins with the file and names the row.
bool isTold(const std::string& out, const Sample& sample)
{
    const std::size_t dot = sample.path.find('.');
    const std::string missing = ": " + sample.path.substr(0, dot) + " has no row " + sample.path.substr(dot + 1);
    const std::string ofWord = ": " + sample.path.substr(0, dot) + " has no row of "; // a value that others have as key
    const std::string spoilt = ": " + sample.path + " is ";
    const std::string leakage = ": " + sample.path.substr(0, sample.path.rfind('.')) + " gives a leakage of ";
    std::istringstream lines(out);
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with(sample.file + ":"))
            continue;
        if (line.ends_with(missing) || line.find(ofWord) != std::string::npos ||
            line.find(spoilt) != std::string::npos || line.find(leakage) != std::string::npos)
            return true;
    }
    return false;
}

struct Spoiling {
    const char* name;
    bool (*change)(Setting& parent, const std::string& name); ///< false if it isn't for such a row
};

class CheckDataSpoiling : public testing::TestWithParam<Spoiling> {};

TEST_P(CheckDataSpoiling, OfAnyTablesRowIsTold)
{
    for (const double share : kShares) {
        const Scratch scratch;
        const std::string data = scratch.copyData();
        const auto change = [](const Setting&, Setting& parent, const std::string& name) {
            return GetParam().change(parent, name);
        };
        const std::vector<Sample> samples = spoil(data, share, change);
        EXPECT_GT(samples.size(), 15u);
        const ToolRun result = scratch.run("check-data " + data);
        EXPECT_EQ(result.code, 2);
        for (const Sample& sample : samples)
            EXPECT_TRUE(isTold(result.out, sample)) << sample.file << ": " << sample.path;
    }
}

bool isText(const Setting& setting)
{
    return setting.getType() == Setting::TypeString;
}

// Puts a number in place of another number.
template <int mantissa, int exponent>
bool putNumber(Setting& parent, const std::string& name)
{
    const bool text = isText(parent[name.c_str()]);
    if (!text)
        replace(parent, name, mantissa * std::pow(10.0, exponent));
    return !text;
}

bool putTextForNumber(Setting& parent, const std::string& name)
{
    const bool text = isText(parent[name.c_str()]);
    if (!text) {
        parent.remove(name);
        parent.add(name, Setting::TypeString) = "1.0";
    }
    return !text;
}

bool putNumberForText(Setting& parent, const std::string& name)
{
    const bool text = isText(parent[name.c_str()]);
    if (text)
        replace(parent, name, 1.0);
    return text;
}

bool putArray(Setting& parent, const std::string& name)
{
    parent.remove(name);
    parent.add(name, Setting::TypeArray);
    return true;
}

INSTANTIATE_TEST_SUITE_P(Kinds, CheckDataSpoiling,
                         testing::Values(Spoiling{"Negative", putNumber<-1, 0>}, Spoiling{"Huge", putNumber<1, 30>},
                                         Spoiling{"TextForNumber", putTextForNumber},
                                         Spoiling{"NumberForText", putNumberForText}, Spoiling{"Array", putArray}),
                         [](const auto& test) { return test.param.name; });

// A row that is listed as one whose absence can't be told.
bool isListed(const std::string& out, const Sample& sample)
{
    const std::string file = std::filesystem::path(sample.file).stem().string(); // ZelmOrvaneBramData
    constexpr std::size_t before = 10;
    constexpr std::size_t behind = 4;
    const std::string block = file.substr(before, file.size() - before - behind);
    const std::string table = sample.path.substr(0, sample.path.find('.'));
    const std::string name = sample.path.substr(sample.path.rfind('.') + 1);
    std::istringstream lines(out.substr(out.find("Rows whose absence can't be told")));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string word;
        if (words >> word && word == block && words >> word && word == table && words >> word) {
            while (words >> word) {
                if (word == name || word == name + "," || word == "many")
                    return true;
            }
        }
    }
    return false;
}

// In three rounds: where a row of one table leads to those of the next, its absence hides theirs.
TEST(CheckData, TheAbsenceOfAnyTablesRowIsToldUnlessThatCannotBeKnown)
{
    constexpr int rounds = 3;
    std::size_t told = 0;
    const std::string before = Scratch().run("check-data " + shippedDataDirectory()).out;
    for (int i = 0; i < rounds * static_cast<int>(std::size(kShares)); ++i) {
        const Scratch scratch;
        const std::string data = scratch.copyData();
        const auto remove = [&](const Setting& table, Setting& parent, const std::string& name) {
            const bool turn = table.getIndex() % rounds == i % rounds && table.getLength() > 1;
            if (turn)
                parent.remove(name);
            return turn;
        };
        const std::vector<Sample> samples = spoil(data, kShares[i / rounds], remove);
        const ToolRun result = scratch.run("check-data " + data);
        for (const Sample& sample : samples) {
            const bool listed = isListed(before, sample);
            EXPECT_TRUE(listed || isTold(result.out, sample)) << sample.file << ": " << sample.path;
            told += listed ? 0 : 1;
        }
    }
    constexpr std::size_t most = 200; // of some 90 tables three times
    EXPECT_GT(told, most);
}

} // namespace

} // namespace zelm::test::checkDataTest
