#include "host/design/Template.h"

#include "host/base/Error.h"
#include "host/base/Text.h"
#include "host/design/Format.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace zelm::host {

namespace {

// Which templates have a row.
enum Kinds : unsigned { blank = 1, controller = 2, network = 4, radio = 8, vision = 16, some = 30, all = 31 };

struct Kind {
    const char* name;
    unsigned flag;
    const char* title;
    const char* watts; ///< a budget to begin with
};

constexpr Kind kTemplates[] = {
    {"blank", blank, "New design", "100 W"},           {"controller", controller, "New controller", "100 W"},
    {"network", network, "New network card", "200 W"}, {"radio", radio, "New radio unit", "200 W"},
    {"vision", vision, "New vision system", "200 W"},
};

struct Parameter {
    unsigned kinds;
    const char* name;
    const char* value;
    const char* comment;
};

constexpr Parameter kParameters[] = {
    {all, "fclk", "\"250 MHz\"", "fill in: the clock of the logic"},
    {all, "luts", "20000", "fill in: from a synthesis, or by experience"},
    {all, "registers", "30000", "fill in"},
    {all, "memories", "32", "fill in: block memories of 36 kbit"},
    {all, "toggles", "\"12.5 %\"", "fill in: a share of 12.5 % is usual, data paths have up to 30 %"},
    {controller | radio | vision, "dsps", "64", "fill in: DSP slices"},
    {network | radio | vision, "lanes", "4", "fill in: lanes of the serial link, whole quads of 4"},
    {network | radio | vision, "traffic", "\"4 GB/s\"", "fill in: to memory, each way"},
};

// A group that stands in the templates of some kinds, if the device has so many of a resource.
struct Row {
    unsigned kinds;
    int needed;
    const char* resource;
    const char* comment; ///< of the group, empty for none
    const char* group;   ///< JSON, in which @ is the device's name
};

// clang-format off
constexpr Row kRows[] = {
    {all, 0, "", "fill in: a group of Clock for each clock; what names it in \"clock\" is its load",
     R"("block": "Clock", "name": "system clock", "in": "clocks", "inputs": {"CLOCK_FREQ": "= fclk", "BUF_TYPE": "GLOBAL"})"},
    {all, 0, "", "the logic's wires, LUTs and registers",
     R"-("block": "Signal", "name": "logic wires", "in": "logic", "clock": "system clock", "inputs": {"SIGNAL_COUNT": "= rint(0.9 * luts)", "ROUTING_COMPLEXITY": 9, "TOGGLE_RATE": "= toggles"})-"},
    {all, 0, "", "",
     R"("block": "CleLogic", "name": "logic LUTs", "in": "logic", "clock": "system clock", "inputs": {"INSTANCE_COUNT": "= luts", "INSTANCE_TYPE": "LUT_LOGIC", "TOGGLE_RATE": "= toggles"})"},
    {all, 0, "", "",
     R"("block": "CleLogic", "name": "logic registers", "in": "logic", "clock": "system clock", "inputs": {"INSTANCE_COUNT": "= registers", "INSTANCE_TYPE": "REG_FF", "TOGGLE_RATE": "= toggles"})"},
    {all, 32, "BRAM", "fill in: how often the ports are enabled and written",
     R"("block": "Bram", "name": "buffers", "in": "logic", "clock": "system clock", "inputs": {"NUM_BRAMS": "= memories", "CASCADE_GROUP_SIZE": 1, "MODE": "BLKM36", "PORT_A_BIT_WIDTH": 36, "PORT_B_BIT_WIDTH": 36, "PORT_A_ENABLE_RATE": "25 %", "PORT_B_ENABLE_RATE": "25 %", "PORT_A_WRITE_ENABLE": "12.5 %", "PORT_B_WRITE_ENABLE": 0})"},
    {controller, 64, "DSP", "the control loops' arithmetic",
     R"("block": "DspInt24", "name": "control arithmetic", "in": "control", "clock": "system clock", "inputs": {"NUM_DSP": "= dsps", "MULT_USED": "YES", "MREG_USED": "YES", "P_OUTPUT_TR": "30 %"})"},
    {controller, 24, "NALT_IO", "fill in: the pins, their standards and loads (zelm standards)",
     R"("block": "Nalt", "name": "drives", "in": "pins", "count": 12, "inputs": {"IO_DIRECTION": "OUTPUT", "OUTPUT_IO_STANDARD": "LVCMOS33_8", "CLOCK_FREQ": "100 MHz", "DATA_RATE": "SDR", "OUTPUT_ENABLE": 1, "TOGGLE_RATE": "1 %", "OUTPUT_LOAD": "10 pF", "VCCO": "3.3 V"})"},
    {controller, 24, "NALT_IO", "",
     R"("block": "Nalt", "name": "sensors", "in": "pins", "count": 12, "inputs": {"IO_DIRECTION": "INPUT", "INPUT_IO_STANDARD": "LVCMOS33", "CLOCK_FREQ": "100 MHz", "DATA_RATE": "SDR", "TOGGLE_RATE": "1 %", "VCCO": "3.3 V"})"},
    {radio, 64, "DSP", "the channel filters",
     R"("block": "DspInt24", "name": "channel filters", "in": "signal path", "clock": "system clock", "inputs": {"NUM_DSP": "= dsps", "MULT_USED": "YES", "PREADD_USED": "YES", "MREG_USED": "YES", "ADREG_USED": "YES", "A_TR": "25 %", "P_OUTPUT_TR": "45 %"})"},
    {radio, 128, "DSP", "fill in: a complex multiplier takes two DSP slices",
     R"-("block": "DspCplx", "name": "mixers", "in": "signal path", "clock": "system clock", "inputs": {"NUM_DSP": "= rint(dsps / 4)", "MREG_USED": "YES", "ADREG_USED": "YES", "A_TR": "25 %", "B_TR": "25 %", "P_OUTPUT_TR": "45 %"})-"},
    {radio, 1, "SDFEC", "fill in: error correction, its code and rate",
     R"("block": "Sdfec", "name": "decoder", "in": "signal path", "inputs": {"MODES": "LDPC_5G", "DATARATE": "1.6 Gb/s"})"},
    {vision, 64, "DSP", "fill in: the image pipeline's arithmetic",
     R"("block": "DspInt8", "name": "image filters", "in": "image path", "clock": "system clock", "inputs": {"NUM_DSP": "= dsps", "MULT_USED": "YES", "MREG_USED": "YES", "A_TR": "25 %", "B_TR": "25 %", "P_OUTPUT_TR": "38 %"})"},
    {vision, 10, "SELV_IO", "fill in: a camera of four lanes; count is pairs",
     R"("block": "Selv", "name": "camera data lanes", "in": "image path", "count": 4, "inputs": {"IO_DIRECTION": "INPUT", "INPUT_IO_STANDARD": "MIPI_DPHY_DCI_HS", "CLOCK_FREQ": "750 MHz", "DATA_RATE": "DDR", "TOGGLE_RATE": "50 %", "OUTPUT_ENABLE": 0, "TERM_DISABLE": "10 %"})"},
    {vision, 10, "SELV_IO", "",
     R"("block": "Selv", "name": "camera clock lane", "in": "image path", "count": 1, "inputs": {"IO_DIRECTION": "INPUT", "INPUT_IO_STANDARD": "MIPI_DPHY_DCI_HS", "CLOCK_FREQ": "750 MHz", "DATA_RATE": "Clock", "OUTPUT_ENABLE": 0, "TERM_DISABLE": "10 %"})"},
    {vision, 32, "PLAM", "frames and weights on the chip",
     R"("block": "Plam", "name": "line and tile buffers", "in": "image path", "clock": "system clock", "inputs": {"NUM_PLAMS": 32, "CASCADE_GROUP_SIZE": 4, "ENABLE_RATE_A": "40 %", "ENABLE_RATE_B": "40 %", "WRITE_ENABLE_A": "30 %", "WRITE_ENABLE_B": 0})"},
    {network | radio | vision, 1, "LORV_QUAD", "fill in: the serial link; its lanes, rate and coding",
     R"("block": "Lorv", "name": "link", "in": "link", "inputs": {"NUM_LORVQUAD_CHANNELS": "= lanes", "TX_DATA_RATE": "25.78125 Gb/s", "RX_DATA_RATE": "25.78125 Gb/s", "TX_DATA_MODE": "64b/66b", "RX_DATA_MODE": "64b/66b", "POWER_MODE": "DFE", "TX_DIFFERENTIAL_SWING": "600 mV", "TX_DATA_PATH": "64 bit", "RX_DATA_PATH": "64 bit", "LCPLL_SHARING": 4})"},
    {network | radio | vision, 1, "LORVP_QUAD", "fill in: the serial link; its lanes, rate and coding",
     R"("block": "Lorvp", "name": "link", "in": "link", "inputs": {"NUM_LORVP_QUAD_CHANNELS": "= lanes", "TX_DATA_RATE": "25.78125 Gb/s", "RX_DATA_RATE": "25.78125 Gb/s", "TX_DATA_MODE": "64b/66b", "RX_DATA_MODE": "64b/66b", "POWER_MODE": "DFE", "TX_DIFFERENTIAL_SWING": "600 mV", "TX_DATA_PATH": "64 bit", "RX_DATA_PATH": "64 bit", "LCPLL_SHARING": 4})"},
    {network, 1, "JORL", "fill in: Ethernet MACs",
     R"("block": "Jorl", "name": "MAC", "in": "link", "inputs": {"NUM_JORL": 1, "MODE": "1x400GE", "FEC": "Enabled"})"},
    {network, 1, "TUVO", "fill in: Ethernet MACs",
     R"("block": "Tuvo", "name": "MAC", "in": "link", "inputs": {"PORT_DATA_RATE": "100GE", "FEC_USED": "YES", "TRANSCODE_BYPASS": "NO", "ACTIVITY": "TYPICAL"})"},
    {network | radio | vision, 1, "DDRMC", "the memory: its path through the network on chip, controller and pins",
     R"("block": "Noc", "name": "logic to memory", "in": "memory", "inputs": {"DEVICE": "@", "DATA_PATH": "PL_TO_DDRC", "BANDWITH_READ": "= traffic", "BANDWITH_WRITE": "= traffic", "TRANSACTION_READ_SIZE": "256 B", "TRANSACTION_WRITE_SIZE": "256 B", "NOC_CLK": "960 MHz", "NUM_PL_PATHS": 4})"},
    {network | radio | vision, 1, "DDRMC", "fill in: standard, width and rate; the traffic stays below four fifths of their product",
     R"("block": "Ddrmc", "name": "memory controller", "in": "memory", "inputs": {"DDR_STANDARD": "DDR4", "NUM_CHANNELS": 1, "DATA_WIDTH": "64 bit", "ECC_USAGE": "NO", "DATA_RATE": "3200 Mb/s", "READ_BAND_WIDTH": "= traffic", "WRITE_BAND_WIDTH": "= traffic", "NOC_NSU_CLK": "960 MHz"})"},
    {network | radio | vision, 1, "DDRMC", "",
     R"("block": "Selv", "name": "memory data", "in": "memory", "count": 64, "inputs": {"IO_DIRECTION": "BIDI", "OUTPUT_IO_STANDARD": "POD12", "INPUT_IO_STANDARD": "POD12", "CLOCK_FREQ": "1600 MHz", "DATA_RATE": "DDR", "OUTPUT_ENABLE": "40 %", "TERM_DISABLE": "60 %", "IBUF_DISABLE": "60 %", "TOGGLE_RATE": "40 %", "OUTPUT_LOAD": "3 pF"})"},
    {network | radio | vision, 1, "DDRMC", "",
     R"("block": "Selv", "name": "memory strobes", "in": "memory", "count": 8, "inputs": {"IO_DIRECTION": "BIDI", "OUTPUT_IO_STANDARD": "DIFF_POD12", "INPUT_IO_STANDARD": "DIFF_POD12", "CLOCK_FREQ": "1600 MHz", "DATA_RATE": "Clock", "OUTPUT_ENABLE": "40 %", "TERM_DISABLE": "60 %", "IBUF_DISABLE": "60 %", "OUTPUT_LOAD": "3 pF"})"},
    {network | radio | vision, 1, "DDRMC", "",
     R"("block": "Selv", "name": "memory command and address", "in": "memory", "count": 28, "inputs": {"IO_DIRECTION": "OUTPUT", "OUTPUT_IO_STANDARD": "SSTL12", "CLOCK_FREQ": "800 MHz", "DATA_RATE": "SDR", "OUTPUT_ENABLE": 1, "TOGGLE_RATE": "25 %", "OUTPUT_LOAD": "4 pF"})"},
    {network | radio | vision, 1, "DDRMC", "",
     R"("block": "Selv", "name": "memory clock", "in": "memory", "count": 1, "inputs": {"IO_DIRECTION": "OUTPUT", "OUTPUT_IO_STANDARD": "DIFF_SSTL12", "CLOCK_FREQ": "1600 MHz", "DATA_RATE": "Clock", "OUTPUT_ENABLE": 1, "OUTPUT_LOAD": "4 pF"})"},
    {network | radio | vision, 1, "DDRMC", "",
     R"("block": "Kelp", "name": "memory nibbles", "in": "memory", "count": 21, "inputs": {"NUM_RXTX_IOS": 6, "RX_DATA_WIDTH": 8, "TX_DATA_WIDTH": 8, "CLOCK_FREQ": "3200 MHz"})"},
    {some, 1, "HARL", "boot and management, with the peripherals that are unused off",
     R"("block": "Harl", "name": "boot and management", "in": "processing", "inputs": {"HARL_GEM0_USAGE": "DISABLED", "HARL_GEM1_USAGE": "DISABLED", "HARL_OSPI_USAGE": "DISABLED", "HARL_SD_USAGE": "DISABLED", "HARL_USB0_USAGE": "DISABLED"})"},
    {all, 0, "", "the device's own voltage and temperature monitor",
     R"("block": "Sysmon", "name": "monitor", "in": "processing", "inputs": {"DEVICE": "@"})"},
};
// clang-format on

std::string forDevice(std::string_view group, const TemplateDevice& device)
{
    std::string text;
    for (const char c : group)
        text += c == '@' ? device.name : std::string(1, c);
    return text;
}

std::string comment(const std::string& words)
{
    return words.empty() ? "" : fmt::format("\n// {}\n", words);
}

std::string parametersText(const Kind& kind)
{
    std::string text;
    std::string behind; // the comma stands before the comment
    for (const Parameter& parameter : kParameters) {
        if ((parameter.kinds & kind.flag) == 0)
            continue;
        text += fmt::format("{}{}\n\"{}\": {}", text.empty() ? "" : ",", behind, parameter.name, parameter.value);
        behind = fmt::format(" // {}", parameter.comment);
    }
    return text + behind;
}

std::string railsText(const TemplateDevice& device)
{
    std::string text;
    for (const auto& [rail, volts] : device.rails)
        text += fmt::format("{}\"{}\": \"{:.6g} mV\"", text.empty() ? "" : ",\n", rail, volts * 1000.0);
    return text;
}

std::string suppliesText(const std::vector<TemplateSupply>& supplies)
{
    if (supplies.empty())
        return {};
    std::string text;
    for (const TemplateSupply& supply : supplies)
        text += fmt::format(
            R"({}"supply of {:g} V": {{"rails": ["{}"], "maxCurrent": "{:g} A", "efficiency": 0.9, "from": "12V"}})",
            text.empty() ? "" : ",\n", supply.volts, fmt::join(supply.rails, R"(", ")"), supply.maxAmperes);
    return fmt::format(R"(
// fill in: what feeds the rails, its largest current and its efficiency
"supplies": {{
{}
}},
)",
                       text);
}

std::string groupsText(const Kind& kind, const TemplateDevice& device)
{
    std::string text;
    for (const Row& row : kRows) {
        const auto there = device.resources.find(row.resource);
        const bool has = row.needed == 0 || (there != device.resources.end() && there->second >= row.needed);
        if ((row.kinds & kind.flag) != 0 && has)
            text += fmt::format("{}\n{}{{{}}}", text.empty() ? "" : ",", comment(row.comment),
                                forDevice(row.group, device));
    }
    return text;
}

} // namespace

std::vector<std::string> templateNames()
{
    std::vector<std::string> names;
    for (const Kind& kind : kTemplates)
        names.emplace_back(kind.name);
    return names;
}

std::string templateDesign(const std::string& name, const TemplateDevice& device,
                           const std::vector<TemplateSupply>& supplies)
{
    const auto* const kind =
        std::find_if(std::begin(kTemplates), std::end(kTemplates), [&](const Kind& k) { return k.name == name; });
    if (kind == std::end(kTemplates))
        throw Error(fmt::format("there is no template {}{}; there are {}", abbreviated(name),
                                suggestion(name, templateNames()), orList(templateNames())));
    const std::string text = fmt::format(
        R"(// A design to begin with. What is marked "fill in" is a guess that only you can better; what a group leaves
// unset takes the default that `zelm cells BLOCK --inputs` lists. `zelm estimate` reads this file as it stands.
{{
"name": "{title}", // fill in
"description": "", // fill in: what the design stands for

// Values that several groups share, for expressions such as "= lanes / 4"; `zelm sweep --vary parameters.fclk=...` varies them.
"parameters": {{{parameters}
}},

"device": {{"part": "{part}", "process": "TYP"}}, // fill in: the part (zelm parts)

// fill in: the air, and the thermal resistance from the junction to it
"environment": {{"ambientTemperature": "40 C", "thetaJA": "0.5 C/W", "junctionLimit": "100 C"}},

// The part's rails at their nominal volts.
"rails": {{ // fill in: where yours differ
{rails}
}},
{supplies}
// fill in: what may be drawn; `zelm estimate --check` ends with 1 if a budget is broken
"budgets": {{"totalPower": "{watts}", "junctionTemperature": "100 C"}},

"groups": [{groups}
]
}}
)",
        fmt::arg("title", kind->title), fmt::arg("parameters", parametersText(*kind)), fmt::arg("part", device.part),
        fmt::arg("rails", railsText(device)), fmt::arg("supplies", suppliesText(supplies)),
        fmt::arg("watts", kind->watts), fmt::arg("groups", groupsText(*kind, device)));
    return formattedDesign(text, "template");
}

} // namespace zelm::host
