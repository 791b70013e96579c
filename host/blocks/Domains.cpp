#include "host/blocks/Domains.h"

#include "host/base/Numerals.h"
#include "host/base/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace zelm::host {

namespace {

struct Domain {
    double lowest;
    double highest;
    std::string_view unit;
};

constexpr Domain kVolts{0.3, 5.0, "V"}; // 0 would be divided by
constexpr Domain kFactor{0.0, 100.0, ""};
constexpr Domain kExponent{0.0, 10.0, ""};
constexpr Domain kShare{0.0, 1.0, ""};

// What one resource can have at all: a few powers of ten above the largest that is known. Beyond is a slip of the unit
// or the keyboard.
constexpr Domain kUnits[] = {
    {0.0, 1e2, "A"},    {0.0, 1e5, "mA"},     {0.0, 1e3, "uA/MHz"}, {0.0, 1e2, "mA/MHz"}, {0.0, 1e6, "nA"},
    {0.0, 1e5, "mW"},   {0.0, 1e3, "mW/MHz"}, {0.0, 1e3, "W/MHz"},  {0.0, 1e5, "fF"},     {0.0, 1e3, "pF"},
    {1e-3, 1e2, "GHz"}, {1e-3, 1e5, "MHz"},   {1e-3, 1e3, "Gb/s"},  {1e-3, 1e5, "Mb/s"},  kVolts,
    {0.0, 1e5, ""},
};

// Rows whose domain isn't that of their table's unit, the first that fits counts. An empty block, table or list of
// names stands for any; a name may begin or end with '*'. It is the key's last one.
struct Exception {
    std::string_view block;
    std::string_view table;
    std::string_view names;
    Domain domain;
};

constexpr Exception kExceptions[] = {
    {"", "", "*_SIM|*SIM_VOLTAGE|VCCINT_NORMALIZED", kVolts},
    {"Dpll", "COMMON_DATA", "VCCAUX|VCCINT|VCCRAM", kVolts},
    {"Plam", "SCALE_FACTORS", "VCCINT|VCCRAM", kVolts},
    {"Selv", "", "VCCO", kVolts},
    {"Nalt", "", "VCCO", kVolts},
    {"", "", "POWER_FACTOR|CURRENT_VOLTAGE_EXPONENTIAL_FACTOR", kExponent},
    {"", "SCALE_FACTORS", "SIMULATED_TR", {0.01, 1.0, ""}}, // toggle rates are divided by it
    {"Clock", "VAR_DATA", "VAR1", kShare},
    {"", "", "FUDGE_FACTOR*|MARGIN_FACTOR*|*_SCALE_FACTOR|*_SCALE|*_SCALE1|*_SCALE2", kFactor},
    {"Harl", "HARL_DATA", "CAP_LOAD", {0.0, 1e3, "pF"}},
    {"Ddrmc", "DDRMC_DATA", "DATARATE", {100.0, 1e5, "Mb/s"}},
    {"Static", "BINNING_FACTORS", "", kFactor},
    {"Static", "TOTAL_POWER_FACTORS", "", kFactor},
    {"Static", "VOLTAGE_SCALING", "", kFactor},
    {"Static", "VT_COEFFICIENT", "", {-1e2, 1e2, "A"}}, // one of a polynomial, which is never negative as a whole
    {"Parts", "RESOURCE_DATA", "", {0.0, 1e9, ""}},
    // text that hosts and formulas read numbers from
    {"DspActivity", "DSP_CONFIG_DATA", "OUTPUT_TOGGLE", kShare},
    {"Selv", "IO_LIST", "", kVolts},
    {"Nalt", "IO_LIST", "", kVolts},
};

// Texts that are one of a few words.
struct Spelling {
    std::string_view block;
    std::string_view table;
    std::vector<std::string> words;
};

const std::vector<Spelling>& spellings()
{
    static const std::vector<Spelling> all{{"Static", "SUPPLY_LIST", {"YES", "NO"}}, {"Parts", "DEVICE_DATA", {"Yes"}}};
    return all;
}

bool fits(std::string_view name, std::string_view pattern)
{
    if (pattern.starts_with('*'))
        return name.ends_with(pattern.substr(1));
    if (pattern.ends_with('*'))
        return name.starts_with(pattern.substr(0, pattern.size() - 1));
    return name == pattern;
}

const Domain* exceptionOf(const Block& block, const ZelmTableInfo& table, const std::string& key)
{
    const std::string_view name = std::string_view(key).substr(key.rfind('.') + 1); // all of it without a dot
    for (const Exception& row : kExceptions) {
        const std::vector<std::string> names = split(std::string(row.names), '|');
        if ((row.block.empty() || row.block == block.name) && (row.table.empty() || row.table == table.group) &&
            (row.names.empty() ||
             std::any_of(names.begin(), names.end(), [&](const std::string& pattern) { return fits(name, pattern); })))
            return &row.domain;
    }
    return nullptr;
}

const Domain& domainOf(const Block& block, const ZelmTableInfo& table, const std::string& key)
{
    if (const Domain* exception = exceptionOf(block, table, key))
        return *exception;
    const auto* unit = std::find_if(std::begin(kUnits), std::end(kUnits),
                                    [&](const Domain& domain) { return domain.unit == table.unit; });
    return unit == std::end(kUnits) ? kUnits[std::size(kUnits) - 1] : *unit;
}

// What is wrong with a number; shown as it is written in the file.
std::string outside(const Domain& domain, double value, const std::string& shown)
{
    if (value >= domain.lowest && value <= domain.highest)
        return "";
    return fmt::format("is {}, expected a number from {} to {}{}{}", shown, domain.lowest, domain.highest,
                       domain.unit.empty() ? "" : " ", domain.unit);
}

std::string faultOfText(const Block& block, const ZelmTableInfo& table, const DataRow& row)
{
    const std::string* text = std::get_if<std::string>(&row.value);
    if (!text)
        return "is no text, expected one in quotes";
    for (const Spelling& spelling : spellings()) {
        if (spelling.block == block.name && spelling.table == table.group &&
            std::find(spelling.words.begin(), spelling.words.end(), *text) == spelling.words.end())
            return fmt::format("is \"{}\", expected {}", *text, orList(spelling.words));
    }
    const bool volts = table.unit == "V"; // one or more
    const Domain* domain = volts ? &kVolts : exceptionOf(block, table, row.key);
    if (!domain)
        return "";
    for (const std::string& part : volts ? split(*text, ' ') : std::vector{*text}) {
        const std::optional<double> number = realIn<double>(part);
        if (!number)
            return fmt::format("is \"{}\", expected a number in quotes", *text);
        if (std::string fault = outside(*domain, *number, fmt::format("\"{}\"", *text)); !fault.empty())
            return fault;
    }
    return "";
}

} // namespace

std::string faultOf(const Block& block, const ZelmTableInfo& table, const DataRow& row)
{
    if (std::holds_alternative<NoScalar>(row.value))
        return "is an array or a list, expected a value";
    if (table.type == "std::string")
        return faultOfText(block, table, row);
    const Domain& domain = domainOf(block, table, row.key);
    if (const auto* whole = std::get_if<std::int64_t>(&row.value)) {
        if (table.type == "int" && *whole > std::numeric_limits<int>::max())
            return fmt::format("is {}, expected a whole number of 32 bits", *whole);
        return outside(domain, static_cast<double>(*whole), std::to_string(*whole));
    }
    if (const double* real = std::get_if<double>(&row.value)) {
        if (table.type == "int")
            return fmt::format("is {}, expected a whole number", *real);
        return outside(domain, *real, fmt::format("{}", *real));
    }
    return table.type == "int" ? "is no whole number" : "is no number";
}

} // namespace zelm::host
