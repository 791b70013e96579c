#include "host/blocks/LegalWords.h"

#include "host/base/Text.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace zelm::host {

namespace {

// Words that the formulas themselves know. An empty block stands for any.
struct Words {
    std::string_view block;
    std::string_view cell;
    std::vector<std::string_view> words;
};

const std::vector<Words>& formulaWords()
{
    static const std::vector<std::string_view> yesNo{"YES", "NO"};
    static const std::vector<std::string_view> onOff{"ON", "OFF"};
    static const std::vector<std::string_view> enabled{"ENABLED", "DISABLED"};
    static const std::vector<std::string_view> direction{"INPUT", "OUTPUT", "BIDI", "BIDI_INPUT", "BIDI_OUTPUT"};
    static const std::vector<std::string_view> writeMode{"READ_FIRST", "WRITE_FIRST", "NO_CHANGE"};
    static const std::vector<std::string_view> clockSource{"LCPLL", "RPLL"};
    static const std::vector<std::string_view> generations{"GEN1", "GEN2", "GEN3", "GEN4"};
    static const std::vector<std::string_view> coherentSpeed{"GEN1", "GEN2", "GEN3", "GEN4", "ESM20G", "ESM25G"};
    static const std::vector<std::string_view> lanes{"x1", "x2", "x4", "x8", "x16"};
    static const std::vector<std::string_view> coherentMode{"WIST_CCIX", "WIST_PS", "WIST_STREAM_W_DMA", "NONE"};
    static const std::vector<std::string_view> newerMode{"WIST5_CCIX", "WIST5_DMA", "WIST5_PCISTREAM", "NONE"};
    static const std::vector<std::string_view> newerSpeed{"GEN2", "GEN3", "GEN4", "GEN5", "ESM20G", "ESM25G"};
    static const std::vector<Words> all{
        {"CleLogic", "A5_PIN_TYPE", {"A5_PIN", "A5_CAS", "A5_A6"}},
        {"Bram",
         "MODE",
         {"BLKM18", "BLKM36", "BLKM18SDP", "BLKM36SDP", "BLKM36SDP_ECC", "BLKM36SDP_ECC_ENCODE_ONLY",
          "BLKM36SDP_ECC_DECODE_ONLY"}},
        {"Bram", "PORT_A_WRITE_MODE", writeMode},
        {"Bram", "PORT_B_WRITE_MODE", writeMode},
        {"", "OPMODE_USAGE", {"CONST", "DYNAMIC"}},
        {"DspActivity",
         "DSP_MODE",
         {"MACB_INT24", "MACA_INT24", "MACB_12X12_INT24", "MACB_18X18_INT24", "MACB_INT8", "MACB_CPLX", "MACB_FP32"}},
        {"", "SPREAD_SPECTRUM", onOff},
        {"", "IO_DIRECTION", direction},
        {"", "DATA_RATE", {"SDR", "DDR", "Clock", "Async"}},
        {"Lorv", "POWER_MODE", {"LOW_POWER", "DFE"}},
        {"Lorvp", "POWER_MODE", {"LOW_POWER", "DFE"}},
        {"Sarn", "POWER_MODE", {"LR", "VSR", "XSR"}},
        {"Sarn", "MODULATION", {"PAM4", "NRZ"}},
        {"", "OPERATIONAL_MODE", {"TRANSCEIVER", "TRANSMITTER", "RECEIVER"}},
        {"", "RX_CLOCK_SOURCE", clockSource},
        {"", "TX_CLOCK_SOURCE", clockSource},
        {"", "OOB", onOff},
        {"", "ACJTAG", onOff},
        {"", "EYESCAN", onOff},
        {"Ddrmc", "ECC_USAGE", yesNo},
        {"Ddrmc", "DDR_STANDARD", {"DDR4", "LP4"}},
        {"Ddrmc", "COMMAND_BUS_OPTION", {"HIGHEST_DATA_RATE", "FEWEST_PINS"}},
        {"Nemt", "KERNEL_TYPE", {"Int16", "Int8", "Floating", "Complex", "FFT"}},
        {"Jorl", "FEC", {"Enabled", "Disabled"}},
        {"Ilkn", "FEC", {"ENABLED", "Disabled"}},
        {"Hsc", "MODE", {"Normal", "Slow"}},
        {"Tuvo", "TRANSCODE_BYPASS", yesNo},
        {"Tuvo", "PORT_DATA_RATE", {"10GE", "25GE", "40GE", "50GE", "100GE"}},
        {"Pcieb", "LINK_SPEED", generations},
        {"Pcieb", "LINK_WIDTH", lanes},
        {"Pcieb5", "LINK_SPEED", {"GEN1", "GEN2", "GEN3", "GEN4", "GEN5"}},
        {"Pcieb5", "LINK_WIDTH", lanes},
        {"Mulm", "MULM_MODE", {"PCIE_A0", "PCIE_A1"}},
        {"Mulm", "LINK_SPEED", {"GEN1", "GEN2", "GEN3", "GEN4", "GEN5"}},
        {"Plam", "AUTO_SLEEP_ENABLED", yesNo},
        {"Wist", "LINK_SPEED_A0", coherentSpeed},
        {"Wist", "LINK_SPEED_A1", coherentSpeed},
        {"Wist", "WIST_MODE_A0", coherentMode},
        {"Wist", "WIST_MODE_A1", coherentMode},
        {"Wist5", "A0_MODES", newerMode},
        {"Wist5", "A1_MODES", newerMode},
        {"Wist5", "A0_LINK_SPEED", newerSpeed},
        {"Wist5", "A1_LINK_SPEED", newerSpeed},
        {"Wist5", "A0_LINK_WIDTH", lanes},
        {"Wist5", "A1_LINK_WIDTH", lanes},
        {"", "LPD_GEM0_MODE", enabled},
        {"", "LPD_GEM1_MODE", enabled},
        {"", "LPD_LOW_PER_IO_MODE", enabled},
        {"Harl", "CLOCK_GATING", enabled},
        {"Harl", "HARL_PLL_USAGE", {"ON", "POWERDOWN"}},
        {"Harl", "NOC_PLL_USAGE", {"ON", "POWERDOWN"}},
        {"Harl", "HARL_BANK0_IOSTD", {"LVCMOS18", "LVCMOS25", "LVCMOS33"}},
        {"Harl", "HARL_BANK1_IOSTD", {"LVCMOS18", "LVCMOS25", "LVCMOS33"}},
        {"Static", "HAS_HARL_IO", yesNo},
    };
    return all;
}

// Words that are keys of data tables: those below any of the chains ("*" stands for all keys), less what the formulas
// put around them. `known` are words that are legal whatever the file holds: a file that lacks the row of one is not
// whole.
struct Keys {
    std::string_view block;
    std::string_view cell;
    std::vector<std::vector<std::string>> chains;
    std::string_view prefix{};
    std::string_view suffix{};
    std::vector<std::string> known{};
    // Whether check-data runs the formulas over the words; grades choose rows together, and a SKU that is missing would
    // show as all the rows that it names. host/SharedKeys.cpp compares those tables.
    bool probed = true;
};

const std::vector<Keys>& tableWords()
{
    static const std::vector<Keys> all{
        {"Signal",
         "DRIVER_TYPE",
         {{"PER_NODE_CAP"}},
         "",
         "",
         {"BRAM", "CLOCK", "DSP", "FF", "IO", "LOOKAHEAD", "LUT", "LUTRAM", "OTHER", "PLAM"}},
        {"CleLogic",
         "INSTANCE_TYPE",
         {{"REG_CAP"}},
         "",
         "",
         {"REG_FF", "REG_IMUX", "REG_LATCH", "LUT_LOGIC", "LUT_DRAM", "LUT_SRL", "OFMUX", "BYP", "LOOKAHEAD"}},
        {"IriImux", "MODE", {{"CURRENT"}}},
        {"Selv", "INPUT_IO_STANDARD", {{"IBUF"}}},
        {"Selv", "OUTPUT_IO_STANDARD", {{"OBUF"}}},
        {"Nalt", "INPUT_IO_STANDARD", {{"IBUF"}}},
        {"Nalt", "OUTPUT_IO_STANDARD", {{"OBUF"}}},
        {"Noc", "DEVICE", {{"DEVICE_INT_NAMES"}}},
        {"Nemt", "INTERNAL_DEVICE_NAME", {{"SHIM_DATA"}, {"NEMT_STREAMS"}}},
        {"Jorl", "MODE", {{"MODE_TABLE"}}, "KEY_"},
        {"Ilkn", "MODE", {{"MODE_TABLE"}}, "KEY_"},
        {"Tuvo", "ACTIVITY", {{"CONFIG_PWR_DATA", "*"}}},
        {"Noc", "DATA_PATH", {{"DEVICE_DATA", "*"}}},
        {"ClkDist", "BUF_TYPE", {{"CURRENT"}}},
        {"Sdfec",
         "MODES",
         {{"DYNAMIC_CURRENTS"}},
         "",
         "",
         {"LDPC_5G", "LDPC_Custom", "LDPC_DOCSIS", "LDPC_WiFi", "Turbo_LTE"}},
        {"Sysmon", "DEVICE", {{"DEVICE_DATA"}}},
        {"Static", "DEVICE_NAME", {{"TOTAL_POWER_FACTORS"}}},
        {"Static", "PROCESS", {{"VT_COEFFICIENT", "BRAM_CORE_ACTIVE"}}},
        {"Static", "SPEED_GRADE", {{"SKU_LIST"}}, "SPEED_", "", {}, false},
        {"Static", "VOLTAGE_GRADE", {{"SKU_LIST", "*"}}, "", "", {}, false},
        {"Static", "POWER_SCREEN", {{"SKU_LIST", "*", "*"}}, "", "", {}, false},
        {"Static", "TEMP_GRADE", {{"SKU_LIST", "*", "*", "*"}}, "", "", {}, false},
        {"Static", "OVER_DRIVE", {{"SKU_LIST", "*", "*", "*", "*"}}, "", "", {}, false},
        {"Iologic",
         "MODE",
         {{"FINAL_DATA"}},
         "",
         "_CURR",
         {"IDDR", "IREG", "ISERDES", "ODDR", "OREG", "OSERDES", "TREG"}},
    };
    return all;
}

// Ints that choose rows: widths of ports and links, grades.
struct Sizes {
    std::string_view block;
    std::string_view cell;
    std::vector<int> sizes;
};

const std::vector<Sizes>& sizes()
{
    static const std::vector<Sizes> all{
        {"Bram", "PORT_A_BIT_WIDTH", {1, 18, 36, 72}},
        {"Bram", "PORT_B_BIT_WIDTH", {1, 18, 36, 72}},
        {"Mulm", "LINK_WIDTH", {1, 2, 4, 8, 16}},
        {"Wist", "LINK_WIDTH_A0", {1, 2, 4, 8, 16}},
        {"Wist", "LINK_WIDTH_A1", {1, 2, 4, 8, 16}},
        {"Wist", "PCI_CHANNELS", {1, 2}},
        {"Sarn", "SPEEDGRADE", {-1, -2, -3}},
        {"Ddrmc", "DATA_WIDTH", {16, 32, 64}},
        {"Ddrmc", "NUM_CHANNELS", {1, 2}},
    };
    return all;
}

// The next keys below a chain.
std::vector<std::string> keysBelow(const Block& block, const std::vector<std::string>& chain)
{
    const auto any = std::find(chain.begin(), chain.end(), "*");
    if (any == chain.end())
        return block.keys(chain, false);
    std::vector<std::string> all;
    for (const std::string& key : keysBelow(block, {chain.begin(), any})) {
        std::vector<std::string> narrowed = chain;
        narrowed[static_cast<std::size_t>(any - chain.begin())] = key;
        const std::vector<std::string> found = keysBelow(block, narrowed);
        all.insert(all.end(), found.begin(), found.end());
    }
    return all;
}

std::vector<std::string> keysOf(const Block& block, const Keys& rule)
{
    std::set<std::string> words(rule.known.begin(), rule.known.end());
    for (const std::vector<std::string>& chain : rule.chains) {
        for (const std::string& key : keysBelow(block, chain)) {
            if (key.starts_with(rule.prefix) && key.ends_with(rule.suffix))
                words.insert(key.substr(rule.prefix.size(), key.size() - rule.prefix.size() - rule.suffix.size()));
        }
    }
    return {words.begin(), words.end()};
}

// Look-ups that are meant to miss. An empty key stands for any.
struct MeantToMiss {
    std::string_view block;
    std::string_view table;
    std::string_view keyPart;
};

constexpr MeantToMiss kMeantToMiss[] = {
    {"Parts", "DEVICE_DATA", ""},             // a part stands in one series only, and all are asked
    {"CleLogic", "REG_CAP", "LUT_"},          // no register
    {"CleLogic", "REG_CAP", "OFMUX"},         // no register
    {"CleLogic", "REG_CAP", "BYP"},           // no register
    {"CleLogic", "REG_CAP", "LOOKAHEAD"},     // no register
    {"Wist", "CONFIG_POWER_DATA", "_x16_A2"}, // sixteen lanes are one controller's
    {"Ddrmc", "DDRMC_DATA", "_2CH_X16_"},     // a channel has at least 16 bits
    {"Ddrmc", "DDRMC_DATA", "_LP4_1CH_X64_"}, // and with LP4 at most 32, or
    {"Ddrmc", "DDRMC_DATA", "_LP4_1CH_X80_"}, // 40 with error correction
};

} // namespace

std::vector<std::string> legalWords(const Block& block, const ZelmCellInfo& cell)
{
    for (const Words& rule : formulaWords()) {
        if ((rule.block.empty() || rule.block == block.name) && rule.cell == cell.name &&
            cell.type == ZelmCellInfo::Type::text)
            return {rule.words.begin(), rule.words.end()};
    }
    for (const Keys& rule : tableWords()) {
        if (rule.block == block.name && rule.cell == cell.name) {
            block.load();
            return keysOf(block, rule);
        }
    }
    if (cell.type == ZelmCellInfo::Type::text && (cell.name.ends_with("_USED") || cell.name == "USE_GLOBAL_TR"))
        return {"YES", "NO"};
    return {};
}

std::vector<Value> legalValues(const Block& block, const ZelmCellInfo& cell)
{
    for (const Keys& rule : tableWords()) {
        if (rule.block == block.name && rule.cell == cell.name && !rule.probed)
            return {};
    }
    std::vector<Value> values;
    for (std::string& word : legalWords(block, cell))
        values.emplace_back(std::move(word));
    for (const Sizes& rule : sizes()) {
        if (rule.block == block.name && rule.cell == cell.name)
            values.insert(values.end(), rule.sizes.begin(), rule.sizes.end());
    }
    return values;
}

bool isMeantToMiss(const Block& block, const MissingRow& row)
{
    return std::any_of(std::begin(kMeantToMiss), std::end(kMeantToMiss), [&](const MeantToMiss& rule) {
        return rule.block == block.name && rule.table == row.table && row.key.find(rule.keyPart) != std::string::npos;
    });
}

} // namespace zelm::host
