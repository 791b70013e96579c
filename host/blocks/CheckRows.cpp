#include "host/blocks/CheckRows.h"

#include "host/base/Text.h"
#include "host/blocks/Catalogue.h"
#include "host/blocks/Domains.h"
#include "host/blocks/LegalWords.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <map>
#include <set>

namespace zelm::host {

namespace {

// Rows that no formula is meant to ask for: hosts read them, or they complete a family. An empty name stands for any
// last key.
struct HostRow {
    std::string_view block;
    std::string_view table;
    std::string_view name;
};

constexpr HostRow kHostRows[] = {
    {"Sarn", "PAM4_DATARATES", "MIN"},
    {"Sarn", "NRZ_DATARATES", "MIN"},
    {"Sarn", "PAM4_DATARATE_RANGES", ""},
    {"Sarn", "NRZ_DATARATE_RANGES", ""},
    {"Sarn", "CHRX_FIXED_POWER_DATA_LTE_15GBAUD", "CHRX_VSR"},
    {"Sarn", "CHRX_FIXED_POWER_DATA_LTE_15GBAUD", "CHRX_XSR"},
    {"Static", "PART_STATUS", ""},
};

std::string lastName(const std::string& key)
{
    return key.substr(key.rfind('.') + 1); // all of it without a dot
}

bool isForHosts(const Block& block, const DataRow& row)
{
    return std::any_of(std::begin(kHostRows), std::end(kHostRows), [&](const HostRow& known) {
        return known.block == block.name && known.table == row.table &&
               (known.name.empty() || known.name == lastName(row.key));
    });
}

// The names that the keys of a table have at each level.
using Levels = std::vector<std::set<std::string>>;

Levels levelsOf(const RowSet& asked, const std::string& table)
{
    Levels levels;
    for (auto row = asked.lower_bound({table, ""}); row != asked.end() && row->first == table; ++row) {
        const std::vector<std::string> names = split(row->second, '.');
        levels.resize(std::max(levels.size(), names.size()));
        for (std::size_t i = 0; i < names.size(); ++i)
            levels[i].insert(names[i]);
    }
    return levels;
}

// What is wrong with a row's name if nothing asks for the row: a name that no other key of the table has either.
std::string unknownName(const Levels& levels, const DataRow& row)
{
    const std::vector<std::string> names = split(row.key, '.');
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i >= levels.size())
            return fmt::format("is deeper than the keys of its table{}", row.key.empty() ? ", which is no group" : "");
        if (!levels[i].contains(names[i]))
            return fmt::format("is asked for by nothing{}",
                               suggestion(names[i], std::vector<std::string>(levels[i].begin(), levels[i].end())));
    }
    return "";
}

// Whether a name has the fields of an orderable part, as zq4410_ktba3310_1_MP_i_S or one with a sample's number behind.
bool isPartName(const std::string& name)
{
    const std::vector<std::string> fields = split(name, '_');
    const auto isAll = [](const std::string& text, std::size_t size, int (*kind)(int)) {
        return text.size() == size && std::all_of(text.begin(), text.end(),
                                                  [kind](char c) { return kind(static_cast<unsigned char>(c)) != 0; });
    };
    const bool sample = fields.size() == gradedFields + 1;
    return (fields.size() == gradedFields || sample) && !fields[deviceField].empty() && !fields[packageField].empty() &&
           isAll(fields[speedField], 1, std::isdigit) && isAll(fields[voltageField], 2, std::isupper) &&
           isAll(fields[temperatureField], 1, std::islower) && isAll(fields[screenField], 1, std::isupper) &&
           (!sample || (fields.back().starts_with("es") && isAll(fields.back().substr(2), 1, std::isdigit)));
}

// Leakage is a polynomial of the temperature, highest power first: its terms may be negative, their sum may not.
struct Leakage {
    static constexpr std::array<std::string_view, 6> kTerms{"A", "B", "C", "D", "E", "CONST"};

    std::array<double, kTerms.size()> terms{};
    const DataRow* last = nullptr;

    double at(double degrees) const
    {
        double sum = 0.0;
        for (const double term : terms)
            sum = sum * degrees + term;
        return sum;
    }
};

void checkLeakage(const DataLines& lines, const std::vector<DataRow>& rows, RowCheck& check)
{
    std::map<std::string, Leakage> leakages;
    for (const DataRow& row : rows) {
        const double* value = std::get_if<double>(&row.value);
        const auto* term = std::find(Leakage::kTerms.begin(), Leakage::kTerms.end(), lastName(row.key));
        if (row.table != "VT_COEFFICIENT" || !value || term == Leakage::kTerms.end())
            continue;
        Leakage& leakage = leakages[row.key.substr(0, row.key.rfind('.'))];
        leakage.terms[static_cast<std::size_t>(term - Leakage::kTerms.begin())] = *value;
        leakage.last = &row;
    }
    constexpr int coldest = -40;
    constexpr int hottest = 125;
    constexpr int step = 5;
    for (const auto& [key, leakage] : leakages) {
        for (int degrees = coldest; degrees <= hottest; degrees += step) {
            if (leakage.at(degrees) >= 0.0)
                continue;
            check.faults.push_back(fmt::format("{}: VT_COEFFICIENT.{} gives a leakage of {} A at {} degrees",
                                               lines.where(*leakage.last), key, leakage.at(degrees), degrees));
            break;
        }
    }
}

} // namespace

RowCheck checkRows(const Block& block, const DataLines& lines, const RowSet* asked)
{
    RowCheck check;
    std::map<std::string, Levels> levels;
    std::vector<std::string> tables;
    for (const ZelmTableInfo& table : block.tables) {
        tables.emplace_back(table.group);
        if (asked)
            levels[tables.back()] = levelsOf(*asked, tables.back());
    }
    const std::vector<DataRow> rows = lines.rows();
    for (const DataRow& row : rows) {
        const auto table = std::find(tables.begin(), tables.end(), row.table);
        std::string fault;
        bool unread = false;
        if (table == tables.end()) {
            fault = row.table.empty() ? "is not read, as it is beside the group of the block"
                                      : "is in no table of the block" + suggestion(row.table, tables);
        } else {
            fault = faultOf(block, block.tables[static_cast<std::size_t>(table - tables.begin())], row);
            if (!fault.empty())
                check.faulty.emplace(row.table, row.key);
            unread = asked && !asked->contains({row.table, row.key}) && !hasSharedWord(block.name, row.table, row.key);
        }
        if (unread && fault.empty() && !isForHosts(block, row))
            fault = unknownName(levels[row.table], row);
        if (fault.empty() && row.table == "DEVICE_DATA" && block.name == "Parts" && !isPartName(lastName(row.key)))
            fault = "is no part: device_package_speed_voltage_temperature_screen";
        if (!fault.empty())
            check.faults.push_back(fmt::format("{}: {}{}{} {}", lines.where(row), row.table,
                                               row.table.empty() || row.key.empty() ? "" : ".", row.key, fault));
        else if (unread || isMeantToMiss(block, {row.table, row.key}))
            check.untold.push_back(row);
    }
    if (block.name == "Static")
        checkLeakage(lines, rows, check);
    return check;
}

} // namespace zelm::host
