#include "host/blocks/LegalWords.h"

#include "host/blocks/Legal.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace zelm::host {

namespace {

// Whole numbers of a range that choose rows, as widths and grades do. Rows tell the ends of the range; a number between
// two of these takes the row of one of them.
struct Probes {
    std::string_view block;
    std::string_view cell;
    std::vector<int> numbers;
};

const std::vector<Probes>& probes()
{
    static const std::vector<Probes> all{
        {"Bram", "PORT_A_BIT_WIDTH", {1, 18, 36, 72}},
        {"Bram", "PORT_B_BIT_WIDTH", {1, 18, 36, 72}},
        {"Wist", "PCI_CHANNELS", {1, 2}},
        {"Sarn", "SPEEDGRADE", {-1, -2, -3}},
        {"Ddrmc", "NUM_CHANNELS", {1, 2}},
    };
    return all;
}

// Words that no probing runs over: grades choose rows together, and a SKU that is missing would show as all the rows
// that it names. host/SharedKeys.cpp compares those tables.
bool isProbed(const ZelmCellInfo& cell)
{
    return !cell.legal.text.starts_with("SKU_LIST/");
}

// Look-ups that are meant to miss. An empty key stands for any.
struct MeantToMiss {
    std::string_view block;
    std::string_view table;
    std::string_view keyPart;
    bool inGoodDesigns; ///< else the inputs ask for hardware that isn't there
};

constexpr MeantToMiss kMeantToMiss[] = {
    {"Parts", "DEVICE_DATA", "", true},              // a part stands in one series only, and all are asked
    {"CleLogic", "REG_CAP", "LUT_", true},           // no register
    {"CleLogic", "REG_CAP", "OFMUX", true},          // no register
    {"CleLogic", "REG_CAP", "BYP", true},            // no register
    {"CleLogic", "REG_CAP", "LOOKAHEAD", true},      // no register
    {"Wist", "CONFIG_POWER_DATA", "_x16_A2", false}, // sixteen lanes are one controller's
    {"Ddrmc", "DDRMC_DATA", "_2CH_X16_", false},     // a channel has at least 16 bits
    {"Ddrmc", "DDRMC_DATA", "_LP4_1CH_X64_", false}, // and with LP4 at most 32, or
    {"Ddrmc", "DDRMC_DATA", "_LP4_1CH_X80_", false}, // 40 with error correction
};

template <class Also>
bool standsInMisses(const Block& block, const MissingRow& row, Also also)
{
    return std::any_of(std::begin(kMeantToMiss), std::end(kMeantToMiss), [&](const MeantToMiss& rule) {
        return rule.block == block.name && rule.table == row.table && row.key.find(rule.keyPart) != std::string::npos &&
               also(rule);
    });
}

} // namespace

std::vector<Value> legalValues(const Block& block, const ZelmCellInfo& cell)
{
    std::vector<Value> values;
    if (!isProbed(cell))
        return values;
    for (std::string& word : legalWords(block, cell))
        values.emplace_back(std::move(word));
    for (const int number : legalNumbers(cell))
        values.emplace_back(number);
    for (const Probes& rule : probes()) {
        if (rule.block == block.name && rule.cell == cell.name)
            values.insert(values.end(), rule.numbers.begin(), rule.numbers.end());
    }
    return values;
}

bool isMeantToMiss(const Block& block, const MissingRow& row)
{
    return standsInMisses(block, row, [](const MeantToMiss&) { return true; });
}

bool missesInGoodDesigns(const Block& block, const MissingRow& row)
{
    return standsInMisses(block, row, [](const MeantToMiss& rule) { return rule.inGoodDesigns; });
}

} // namespace zelm::host
