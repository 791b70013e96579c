#pragma once

#include "support/Bits.h"
#include "support/DataDirectory.h"

#include "framework/ZelmInfo.h"

#include <cctype>
#include <cmath>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::test {

/// The function name that a cell's name gives: words in camel case, a letter behind a digit starting a word of its own.
inline std::string functionNameOf(std::string_view cell)
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

struct CellCounts {
    std::size_t intInputs = 0, floatInputs = 0, stringInputs = 0;
    std::size_t intOutputs = 0, floatOutputs = 0, stringOutputs = 0;
    std::size_t intIntermediates = 0, floatIntermediates = 0, stringIntermediates = 0;

    bool operator==(const CellCounts&) const = default;
    friend void PrintTo(const CellCounts& c, std::ostream* out)
    {
        *out << "inputs " << c.intInputs << "/" << c.floatInputs << "/" << c.stringInputs << ", outputs "
             << c.intOutputs << "/" << c.floatOutputs << "/" << c.stringOutputs << ", intermediates "
             << c.intIntermediates << "/" << c.floatIntermediates << "/" << c.stringIntermediates
             << " (int/float/string)";
    }
};

/// What holds for every block: the cells stand in the order and number that hosts know, names and ordinals convert both
/// ways, functions are named after cells (but for publishedNames, cell -> function), and the shipped data is whole
/// enough for the defaults to give finite outputs.
template <class Model>
void expectBlockContract(const CellCounts& counts,
                         const std::map<std::string_view, std::string_view>& publishedNames = {})
{
    using Params = typename Model::Params;
    using Data = typename Model::Data;
    using Type = ZelmCellInfo::Type;

    std::vector<std::string> lists[9];
    Params::getIntUserInputNames(lists[0]);
    Params::getFloatUserInputNames(lists[1]);
    Params::getStringUserInputNames(lists[2]);
    Params::getIntModelOutputNames(lists[3]);
    Params::getFloatModelOutputNames(lists[4]);
    Params::getStringModelOutputNames(lists[5]);
    Params::getIntIntermediateCalculationNames(lists[6]);
    Params::getFloatIntermediateCalculationNames(lists[7]);
    Params::getStringIntermediateCalculationNames(lists[8]);
    EXPECT_EQ(counts, (CellCounts{lists[0].size(), lists[1].size(), lists[2].size(), lists[3].size(), lists[4].size(),
                                  lists[5].size(), lists[6].size(), lists[7].size(), lists[8].size()}));
    std::vector<std::string> listed;
    for (const auto& list : lists) {
        EXPECT_TRUE(std::is_sorted(list.begin(), list.end())) << testing::PrintToString(list);
        listed.insert(listed.end(), list.begin(), list.end());
    }

    std::vector<std::string> described;
    for (const ZelmCellInfo& cell : Params::cells()) {
        const std::string name(cell.name);
        described.push_back(name);
        if (cell.type == Type::integer)
            EXPECT_EQ(Params::enum_to_string(Params::string_to_int_enum(name)), name);
        else if (cell.type == Type::real)
            EXPECT_EQ(Params::enum_to_string(Params::string_to_float_enum(name)), name);
        else
            EXPECT_EQ(Params::enum_to_string(Params::string_to_string_enum(name)), name);
        const auto published = publishedNames.find(cell.name);
        EXPECT_EQ(std::string(cell.function),
                  published == publishedNames.end() ? functionNameOf(name) : std::string(published->second));
        EXPECT_FALSE(cell.meaning.empty()) << name;
    }
    EXPECT_EQ(described, listed);

    const DataDirVariable variable(shippedDataDirectory());
    ASSERT_TRUE(Data::getMutableGlobal().reset()) << "a table is missing from the shipped " << Data::name;
    for (const ZelmTableInfo& table : Data::tables())
        EXPECT_FALSE(Data::getGlobal().getCfgKeys({std::string(table.group)}, true).empty()) << table.group;
    Params params;
    EXPECT_EQ(params.className() + "|" + Data::getGlobal().className() + "|" + Model::getGlobal().className(),
              std::string(Params::name) + "|" + std::string(Data::name) + "|" + std::string(Model::name));
    Model::getGlobal().calculate(params);
    for (const std::string& name : lists[4]) {
        const float value = params[Params::string_to_float_enum(name)];
        EXPECT_TRUE(std::isfinite(value) && std::fabs(value) < 1e30f) << name << " = " << show(value);
    }
}

} // namespace zelm::test
