// No output of power or current is below 0 on a grid: each block with each legal word, and with that word each number
// at either end of its domain. Formulas that give less on purpose are listed with their reason.

#include "AnyBlock.h"

#include "io/ZelmOrvaneNaltData.h"
#include "io/ZelmOrvaneSelvData.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <map>

namespace zelm::test::negativePowerTest {

namespace {

using Words = std::vector<std::string>;
using Kinds = ZelmCellInfo::Kind;
using Types = ZelmCellInfo::Type;

struct Exception {
    std::string_view block;
    std::string_view output; ///< or the end of its name
    const char* reason;
};

// clang-format off
constexpr Exception kExceptions[] = {
    {"Selv", "OFFCHIP_POWER", "heat that a standard's formulas put on the chip though another supply delivers it comes in through the pins"},
    {"Sarn", "COMMON_MSARNAVTT_POWER", "bias over the channels that share it: infinite for none, while the totals of no channel are 0"},
    {"Yond", "LPD_LOW_PER_IO_DYNAMIC_VCCINT_POWER", "the low-speed pads' share is that of all pads less both Ethernet ports': below 0 with fewer pads than those"},
    {"Yond", "LPD_LOW_PER_IOS_POWER", "the same with its bank's power"},
    {"Harl", "HARL_IO_BANK0_VCCINTHARL_POWER", "bank 0's share is that of its pads less USB's and SD's: below 0 if those are fast or many"},
};
// clang-format on

bool isExcepted(std::string_view block, std::string_view output)
{
    for (const Exception& each : kExceptions) {
        if (each.block == block && output.ends_with(each.output))
            return true;
    }
    return false;
}

const Words kYesNo{"YES", "NO"};
const Words kOnOff{"ON", "OFF"};
const Words kEnabled{"ENABLED", "DISABLED"};
const Words kDevices{"ZQ2210", "ZQ4410", "ZQ5620", "ZR1810", "ZR3320", "ZW4630", "ZB2810", "ZC7540"};
const Words kGenerations{"GEN1", "GEN2", "GEN3", "GEN4"};
const Words kWriteModes{"READ_FIRST", "WRITE_FIRST", "NO_CHANGE"};

const std::map<std::string_view, Words> kWordsOfAnyBlock{
    {"IO_DIRECTION", {"INPUT", "OUTPUT", "BIDI", "BIDI_INPUT", "BIDI_OUTPUT"}},
    {"DATA_RATE", {"SDR", "DDR", "Clock", "Async"}},
    {"OPMODE_USAGE", {"CONST", "DYNAMIC"}},
    {"OPERATIONAL_MODE", {"TRANSCEIVER", "TRANSMITTER", "RECEIVER"}},
    {"TX_CLOCK_SOURCE", {"LCPLL", "RPLL"}},
    {"RX_CLOCK_SOURCE", {"LCPLL", "RPLL"}},
    {"TX_DATA_MODE", {"8b/10b", "64b/66b"}},
    {"RX_DATA_MODE", {"8b/10b", "64b/66b"}},
    {"SPREAD_SPECTRUM", kOnOff},
    {"ACJTAG", kOnOff},
    {"EYESCAN", kOnOff},
    {"OOB", kOnOff},
    {"MODULATION", {"PAM4", "NRZ"}},
    {"DDR_STANDARD", {"DDR4", "LP4"}},
    {"COMMAND_BUS_OPTION", {"HIGHEST_DATA_RATE", "FEWEST_PINS"}},
    {"DEVICE", kDevices},
    {"DEVICE_NAME", kDevices},
    {"PROCESS", {"TYP", "MAX"}},
    {"POWER_SCREEN", {"STANDARD", "LOW"}},
    {"VOLTAGE_GRADE", {"LP", "MP", "HP"}},
    {"SPEED_GRADE", {"1", "2", "3"}},
    {"TEMP_GRADE", {"EXTENDED", "INDUSTRIAL", "MILITARY"}},
    {"OVER_DRIVE", {"OD_NO", "OD_YES"}},
    {"INTERNAL_DEVICE_NAME", {"ZQ10T40", "ZQ20T60", "ZQ30T80"}},
    {"KERNEL_TYPE", {"Int16", "Int8", "Floating", "Complex", "FFT"}},
    {"DRIVER_TYPE", {"BRAM", "CLOCK", "DSP", "FF", "IO", "LOOKAHEAD", "LUT", "LUTRAM", "OTHER", "PLAM"}},
    {"INSTANCE_TYPE",
     {"LUT_LOGIC", "LUT_DRAM", "LUT_SRL", "REG_FF", "REG_IMUX", "REG_LATCH", "OFMUX", "BYP", "LOOKAHEAD"}},
    {"A5_PIN_TYPE", {"A5_PIN", "A5_CAS", "A5_A6"}},
    {"BUF_TYPE", {"NO_BUFFER", "GLOBAL", "GLOBAL_CE", "GLOBAL_DIV", "GLOBAL_MUX", "HARD_IP"}},
    {"PORT_A_WRITE_MODE", kWriteModes},
    {"PORT_B_WRITE_MODE", kWriteModes},
    {"MODES", {"LDPC_5G", "LDPC_Custom", "LDPC_DOCSIS", "LDPC_WiFi", "Turbo_LTE"}},
    {"LINK_WIDTH", {"x1", "x2", "x4", "x8", "x16"}},
    {"LINK_SPEED", {"GEN1", "GEN2", "GEN3", "GEN4"}},
    {"LINK_SPEED_A0", kGenerations},
    {"LINK_SPEED_A1", kGenerations},
    {"WIST_MODE_A0", {"WIST_CCIX", "WIST_PS", "WIST_STREAM_W_DMA", "NONE"}},
    {"WIST_MODE_A1", {"WIST_CCIX", "WIST_PS", "WIST_STREAM_W_DMA", "NONE"}},
    {"A0_MODES", {"WIST5_CCIX", "WIST5_DMA", "WIST5_PCISTREAM", "NONE"}},
    {"A1_MODES", {"WIST5_CCIX", "WIST5_DMA", "WIST5_PCISTREAM", "NONE"}},
    {"A0_LINK_SPEED", {"GEN2", "GEN3", "GEN4", "GEN5", "ESM20G", "ESM25G"}},
    {"A1_LINK_SPEED", {"GEN2", "GEN3", "GEN4", "GEN5", "ESM20G", "ESM25G"}},
    {"A0_LINK_WIDTH", {"x8", "X8", "x16"}},
    {"A1_LINK_WIDTH", {"x8", "X8", "x16"}},
    {"MULM_MODE", {"PCIE_A0", "PCIE_A1"}},
    {"PORT_DATA_RATE", {"10GE", "25GE", "40GE", "50GE", "100GE"}},
    {"ACTIVITY", {"IDLE", "TYPICAL", "MAXIMUM"}},
    {"HARL_BANK0_IOSTD", {"LVCMOS18", "LVCMOS25", "LVCMOS33"}},
    {"HARL_BANK1_IOSTD", {"LVCMOS18", "LVCMOS25", "LVCMOS33"}},
    {"HARL_PLL_USAGE", {"ON", "POWERDOWN"}},
    {"NOC_PLL_USAGE", {"ON", "POWERDOWN"}},
    {"CLOCK_GATING", kEnabled},
    {"DATA_PATH",
     {"NEMT_TO_DDRC", "NEMT_TO_PL", "PL_TO_DDRC", "PL_TO_NEMT", "PL_TO_PL", "PL_TO_PS", "PS_TO_DDRC", "PS_TO_NEMT",
      "PS_TO_PL", "WIST_TO_DDRC", "WIST_TO_NEMT", "WIST_TO_PL"}},
};

const std::map<std::pair<std::string_view, std::string_view>, Words>& wordsOfOneBlock()
{
    static const std::map<std::pair<std::string_view, std::string_view>, Words> all{
        {{"Selv", "INPUT_IO_STANDARD"}, ZelmOrvaneSelvData::getGlobal().getCfgKeys({"IBUF"}, false)},
        {{"Selv", "OUTPUT_IO_STANDARD"}, ZelmOrvaneSelvData::getGlobal().getCfgKeys({"OBUF"}, false)},
        {{"Nalt", "INPUT_IO_STANDARD"}, ZelmOrvaneNaltData::getGlobal().getCfgKeys({"IBUF"}, false)},
        {{"Nalt", "OUTPUT_IO_STANDARD"}, ZelmOrvaneNaltData::getGlobal().getCfgKeys({"OBUF"}, false)},
        {{"Bram", "MODE"},
         {"BLKM18", "BLKM36", "BLKM18SDP", "BLKM36SDP", "BLKM36SDP_ECC", "BLKM36SDP_ECC_ENCODE_ONLY",
          "BLKM36SDP_ECC_DECODE_ONLY"}},
        {{"Plam", "MODE"}, {"PLAM288", "ECC"}},
        {{"IriImux", "MODE"}, {"BYPASS", "LATCH", "REGISTER"}},
        {{"Iologic", "MODE"}, {"IREG", "OREG", "TREG", "IDDR", "ODDR", "ISERDES", "OSERDES"}},
        {{"Lorv", "POWER_MODE"}, {"LOW_POWER", "DFE"}},
        {{"Lorvp", "POWER_MODE"}, {"LOW_POWER", "DFE"}},
        {{"Sarn", "POWER_MODE"}, {"LR", "VSR", "XSR"}},
        {{"Jorl", "MODE"},
         {"1x400GE", "2x200GE", "4x100GE", "6x100GE", "1x400GE_1x200GE", "1x400GE_2x100GE", "2x200GE_2x100GE",
          "3x200GE"}},
        {{"Jorl", "FEC"}, {"Enabled", "Disabled"}},
        {{"Ilkn", "MODE"}, {"150G_ILKN", "300G_ILKN", "450G_ILKN", "600G_ILKN"}},
        {{"Ilkn", "FEC"}, {"ENABLED", "Disabled"}},
        {{"Hsc", "MODE"}, {"Normal", "Slow"}},
        {{"Mulm", "LINK_SPEED"}, {"GEN1", "GEN2", "GEN3", "GEN4", "GEN5"}},
        {{"Pcieb5", "LINK_SPEED"}, {"GEN1", "GEN2", "GEN3", "GEN4", "GEN5"}},
    };
    return all;
}

Words wordsOf(std::string_view block, const ZelmCellInfo& cell)
{
    if (const auto own = wordsOfOneBlock().find({block, cell.name}); own != wordsOfOneBlock().end())
        return own->second;
    if (const auto any = kWordsOfAnyBlock.find(cell.name); any != kWordsOfAnyBlock.end())
        return any->second;
    if (cell.name.ends_with("_USAGE") || (block == "Yond" && cell.name.ends_with("_MODE")))
        return kEnabled;
    if (cell.name.find("_USED") != std::string_view::npos || cell.name.find("_ENABLE") != std::string_view::npos ||
        cell.name.find("USE_") == 0 || cell.name == "ECC_USAGE" || cell.name == "TRANSCODE_BYPASS" ||
        cell.name == "HAS_HARL_IO")
        return kYesNo;
    return {};
}

std::vector<double> endsOfWhole(const ZelmCellInfo& cell)
{
    const std::string_view name = cell.name;
    if (name == "CASCADE_GROUP_SIZE" || name == "NUM_PLAMS")
        return {1.0, 16.0};
    if (name.ends_with("_DIVIDE") || name.ends_with("_COUNTER"))
        return {1.0, 128.0};
    if (name == "CLKOUT_DIVIDE_EXP")
        return {0.0, 3.0};
    if (name.ends_with("_GATED") || name.ends_with("ON_OFF") || name.ends_with("_MODES"))
        return {0.0, 1.0};
    if (name == "TX_DIFFERENTIAL_SWING")
        return {200.0, 1200.0};
    if (name == "SPEEDGRADE")
        return {-3.0, -1.0};
    if (name.ends_with("_WIDTH") || name.find("_DATA_PATH") != std::string_view::npos ||
        name.find("_WIDTH_") != std::string_view::npos)
        return {16.0, 64.0};
    if (name.ends_with("_IOS"))
        return {0.0, 6.0};
    return {0.0, 100.0};
}

std::vector<double> endsOfReal(const ZelmCellInfo& cell)
{
    static const std::map<std::string_view, std::vector<double>> byUnit{
        {"MHz", {0.0, 2000.0}}, {"Gb/s", {2.5, 32.0}}, {"MB/s", {0.0, 12000.0}}, {"Mb/s", {0.0, 3200.0}},
        {"ohm", {20.0, 240.0}}, {"pF", {0.0, 50.0}},   {"C", {-40.0, 125.0}},    {"", {0.0, 1.0}}};
    if (cell.unit == "V") {
        double volts = 0.0;
        try {
            volts = std::stod(std::string(cell.defaultText));
        } catch (const std::invalid_argument&) {
            return {}; // derived from the device's grades
        }
        return {0.9 * volts, 1.1 * volts};
    }
    return byUnit.at(cell.unit);
}

// The outputs below 0, each with the first inputs that gave it.
class Grid {
public:
    explicit Grid(const Kind& kind) : m_kind(kind) {}

    std::map<std::string, std::string> below()
    {
        run({});
        for (const ZelmCellInfo& cell : m_kind.cells) {
            if (cell.kind != Kinds::userInput || cell.type != Types::text)
                continue;
            for (const std::string& word : wordsOf(m_kind.name, cell))
                runWith({cell.name.data(), word.c_str()});
        }
        for (const Setting& base : bases())
            runWith(base);
        return m_below;
    }

private:
    // Inputs without which much of a block stands still.
    std::vector<Setting> bases() const
    {
        if (m_kind.name == "Kelp")
            return {{"NUM_RX_IOS", 1.0}, {"NUM_TX_IOS", 1.0}, {"NUM_RXTX_IOS", 1.0}};
        if (m_kind.name == "Nemt")
            return {{"NEMT_CORES", 20.0}};
        if (m_kind.name == "Selv")
            return {{"OUTPUT_ENABLE", 1.0}};
        if (m_kind.name == "DspLegacy")
            return {{"NUM_DSP", 10.0}};
        return {{"VCCINT", 0.8}};
    }

    void runWith(const Setting& first)
    {
        for (const ZelmCellInfo& cell : m_kind.cells) {
            if (cell.kind != Kinds::userInput || cell.type == Types::text || cell.name == first.cell)
                continue;
            for (const double end : cell.type == Types::integer ? endsOfWhole(cell) : endsOfReal(cell))
                run({first, {cell.name.data(), end}});
        }
    }

    void run(const Settings& inputs)
    {
        AnyBlock instance = m_kind.create();
        for (const Setting& input : inputs) {
            if (has(input.cell))
                instance.set(input);
        }
        instance.calculate();
        for (const ZelmCellInfo& cell : m_kind.cells) {
            if (cell.kind != Kinds::modelOutput || cell.type != Types::real || baseUnits(cell.unit) == 0.0)
                continue;
            const double value = instance.inBaseUnit(cell);
            const bool fine = std::isfinite(value) && value >= 0.0 && value < 1e6;
            if (!fine)
                m_below.try_emplace(std::string(cell.name), show(inputs) + " gives " + std::to_string(value));
        }
    }

    bool has(std::string_view name) const
    {
        for (const ZelmCellInfo& cell : m_kind.cells) {
            if (cell.name == name)
                return true;
        }
        return false;
    }

    const Kind& m_kind;
    std::map<std::string, std::string> m_below;
};

class Negative : public testing::TestWithParam<std::string_view> {};

TEST_P(Negative, PowerIsNowhere)
{
    const auto below = Grid(kind(GetParam())).below();
    for (const auto& [output, how] : below) {
        if (!isExcepted(GetParam(), output))
            ADD_FAILURE() << GetParam() << ' ' << output << how;
    }
    for (const Exception& each : kExceptions) {
        if (each.block != GetParam())
            continue;
        EXPECT_TRUE(
            std::any_of(below.begin(), below.end(),
                        [&](const auto& entry) { return std::string_view(entry.first).ends_with(each.output); }))
            << each.block << ' ' << each.output << " is nowhere below 0: no exception any more";
    }
}

TEST(Defaults, GiveNoNegativePower)
{
    for (const Kind& each : kinds()) {
        AnyBlock instance = each.create();
        instance.calculate();
        for (const ZelmCellInfo& cell : each.cells) {
            if (cell.kind == Kinds::modelOutput && cell.type == Types::real && baseUnits(cell.unit) > 0.0) {
                EXPECT_GE(instance.inBaseUnit(cell), 0.0) << each.name << ' ' << cell.name;
            }
        }
    }
}

std::vector<std::string_view> names()
{
    std::vector<std::string_view> all;
    for (const Kind& each : kinds())
        all.push_back(each.name);
    return all;
}

INSTANTIATE_TEST_SUITE_P(All, Negative, testing::ValuesIn(names()),
                         [](const auto& test) { return std::string(test.param); });

} // namespace

} // namespace zelm::test::negativePowerTest
