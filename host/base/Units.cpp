#include "host/base/Units.h"

#include "host/base/Error.h"
#include "host/base/Numerals.h"
#include "host/base/Text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

namespace zelm::host {

namespace {

struct NamedDimension {
    Dimension dimension;
    const char* words;
};

// Seconds, bits, volts, amperes, degrees.
constexpr Dimension kTime{1, 0, 0, 0, 0};
constexpr Dimension kFrequency{-1, 0, 0, 0, 0};
constexpr Dimension kData{0, 1, 0, 0, 0};
constexpr Dimension kDataRate{-1, 1, 0, 0, 0};
constexpr Dimension kVoltage{0, 0, 1, 0, 0};
constexpr Dimension kCurrent{0, 0, 0, 1, 0};
constexpr Dimension kCharge{1, 0, 0, 1, 0};
constexpr Dimension kPower{0, 0, 1, 1, 0};
constexpr Dimension kEnergy{1, 0, 1, 1, 0};
constexpr Dimension kResistance{0, 0, 1, -1, 0};
constexpr Dimension kCapacitance{1, 0, -1, 1, 0};
constexpr Dimension kTemperature{0, 0, 0, 0, 1};
constexpr Dimension kThermalResistance{0, 0, -1, -1, 1};

constexpr NamedDimension kNamed[] = {
    {kPlain, "a plain number"},
    {kTime, "a time"},
    {kFrequency, "a frequency"},
    {kData, "an amount of data"},
    {kDataRate, "a data rate"},
    {kVoltage, "a voltage"},
    {kCurrent, "a current"},
    {kCharge, "a charge"},
    {kPower, "a power"},
    {kEnergy, "an energy"},
    {kResistance, "a resistance"},
    {kCapacitance, "a capacitance"},
    {kTemperature, "a temperature"},
    {kThermalResistance, "a thermal resistance"},
};

constexpr double kBits = 8.0;
constexpr double kSeconds = 3600.0;

constexpr Unit kUnits[] = {
    // clang-format off
    {"%", kPlain, -2}, {"ppm", kPlain, -6},
    {"Hz", kFrequency, 0}, {"kHz", kFrequency, 3}, {"MHz", kFrequency, 6}, {"GHz", kFrequency, 9},
    {"s", kTime, 0}, {"ms", kTime, -3}, {"us", kTime, -6}, {"ns", kTime, -9}, {"ps", kTime, -12},
    {"h", kTime, 0, kSeconds},
    {"V", kVoltage, 0}, {"mV", kVoltage, -3}, {"uV", kVoltage, -6}, {"kV", kVoltage, 3},
    {"A", kCurrent, 0}, {"mA", kCurrent, -3}, {"uA", kCurrent, -6}, {"nA", kCurrent, -9},
    {"Ah", kCharge, 0, kSeconds}, {"mAh", kCharge, -3, kSeconds},
    {"W", kPower, 0}, {"mW", kPower, -3}, {"uW", kPower, -6}, {"nW", kPower, -9}, {"kW", kPower, 3},
    {"J", kEnergy, 0}, {"kJ", kEnergy, 3}, {"mJ", kEnergy, -3}, {"uJ", kEnergy, -6}, {"nJ", kEnergy, -9}, {"pJ", kEnergy, -12},
    {"Wh", kEnergy, 0, kSeconds}, {"mWh", kEnergy, -3, kSeconds}, {"kWh", kEnergy, 3, kSeconds},
    {"ohm", kResistance, 0}, {"mohm", kResistance, -3}, {"kohm", kResistance, 3},
    {"F", kCapacitance, 0}, {"uF", kCapacitance, -6}, {"nF", kCapacitance, -9}, {"pF", kCapacitance, -12}, {"fF", kCapacitance, -15},
    {"C", kTemperature, 0}, {"C/W", kThermalResistance, 0}, {"K/W", kThermalResistance, 0},
    {"bit", kData, 0}, {"kb", kData, 3}, {"Mb", kData, 6}, {"Gb", kData, 9},
    {"B", kData, 0, kBits}, {"kB", kData, 3, kBits}, {"MB", kData, 6, kBits}, {"GB", kData, 9, kBits},
    {"b/s", kDataRate, 0}, {"kb/s", kDataRate, 3}, {"Mb/s", kDataRate, 6}, {"Gb/s", kDataRate, 9}, {"Tb/s", kDataRate, 12},
    {"B/s", kDataRate, 0, kBits}, {"kB/s", kDataRate, 3, kBits}, {"MB/s", kDataRate, 6, kBits}, {"GB/s", kDataRate, 9, kBits},
    {"TB/s", kDataRate, 12, kBits},
    {"", kPlain, 0}, // last: no suffix of a number
    // clang-format on
};
static_assert(std::size(kUnits) == kUnitCount);

// The other ways to write a unit's letters, in UTF-8.
constexpr std::pair<std::string_view, std::string_view> kOtherLetters[] = {
    {"\xc2\xb5", "u"}, {"\xce\xbc", "u"}, {"\xc2\xb0", ""}, {"\xce\xa9", "ohm"}, {"\xe2\x84\xa6", "ohm"}, {"deg", ""},
};

std::string plainLetters(std::string_view symbol)
{
    std::string plain(symbol);
    for (const auto& [letters, instead] : kOtherLetters) {
        if (const std::size_t at = plain.find(letters); at != std::string::npos)
            plain.replace(at, letters.size(), instead);
    }
    return plain;
}

double powerOfTen(int exponent)
{
    double power = 1.0; // exact up to 10^22
    for (int i = 0; i < exponent; ++i)
        power *= 10.0;
    return power;
}

double scaled(double value, int exponent)
{
    return exponent < 0 ? value / powerOfTen(-exponent) : value * powerOfTen(exponent);
}

// Decimal text times a power of ten, rounded once.
double decimal(std::string_view number, int exponent)
{
    const std::size_t e = std::min(number.find_first_of("eE"), number.size());
    int own = 0;
    if (e < number.size()) {
        const std::size_t sign = number[e + 1] == '+' ? 1 : 0;
        std::from_chars(number.data() + e + 1 + sign, number.data() + number.size(), own);
    }
    const std::size_t plus = number.starts_with('+') ? 1 : 0;
    const std::string text = fmt::format("{}e{}", number.substr(plus, e - plus), own + exponent);
    const std::optional<double> value = realIn<double>(text);
    if (!value)
        throw Error(fmt::format("the number {} is too large or too small", abbreviated(number)));
    return *value;
}

// How many characters of a text are a decimal number.
std::size_t numberLength(std::string_view text)
{
    const std::size_t sign = text.starts_with('-') || text.starts_with('+') ? 1 : 0;
    const auto isDigit = [&](std::size_t i) { return i < text.size() && text[i] >= '0' && text[i] <= '9'; };
    std::size_t end = sign;
    bool digits = false;
    for (bool point = false; isDigit(end) || (end < text.size() && text[end] == '.' && !point); ++end) {
        point = point || text[end] == '.';
        digits = digits || isDigit(end);
    }
    if (!digits)
        return 0;
    std::size_t exponent = end + 1;
    if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
        if (exponent < text.size() && (text[exponent] == '-' || text[exponent] == '+'))
            ++exponent;
        if (!isDigit(exponent))
            return end;
        // More digits than any number has are left to stand as a unit that there is none of.
        for (end = exponent; isDigit(end) && end < exponent + 6; ++end)
            ;
    }
    return end;
}

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = std::min(text.find_first_not_of(" \t"), text.size());
    const std::size_t last = text.find_last_not_of(" \t");
    return text.substr(first, last == std::string_view::npos ? 0 : last + 1 - first);
}

// Names both.
[[noreturn]] void failOther(const std::string& what, const Dimension& dimension, std::string_view symbol)
{
    throw Error(fmt::format("{} is {}, expected {}", what, dimensionWords(dimension), expectedWords(symbol)));
}

} // namespace

std::span<const Unit, kUnitCount> units()
{
    return kUnits;
}

const Unit* findUnit(std::string_view symbol)
{
    const std::string plain = plainLetters(symbol);
    if (plain.empty() && !symbol.empty())
        return nullptr;
    const auto* const found =
        std::find_if(std::begin(kUnits), std::end(kUnits), [&](const Unit& unit) { return unit.symbol == plain; });
    return found == std::end(kUnits) ? nullptr : found;
}

const Unit& unit(std::string_view symbol)
{
    if (const Unit* found = findUnit(symbol))
        return *found;
    std::vector<std::string> known;
    for (const Unit& unit : kUnits)
        known.emplace_back(unit.symbol);
    known.pop_back(); // the empty one
    const std::string nearest = suggestion(symbol, known);
    throw Error(fmt::format("there is no unit {}{}", abbreviated(symbol),
                            nearest.empty() ? fmt::format("; units: {}", fmt::join(known, ", ")) : nearest));
}

std::vector<std::string> unitsLike(std::string_view symbol)
{
    std::vector<std::string> like;
    for (const Unit& other : kUnits) {
        if (other.dimension == unit(symbol).dimension && !other.symbol.empty())
            like.emplace_back(other.symbol);
    }
    return like;
}

std::optional<WrittenQuantity> writtenQuantity(std::string_view text)
{
    const std::string_view whole = trimmed(text);
    const std::size_t length = numberLength(whole);
    const std::string_view symbol = trimmed(whole.substr(length));
    if (length == 0 || symbol.empty())
        return std::nullopt;
    return WrittenQuantity{whole.substr(0, length), &unit(symbol)};
}

std::string writtenUnitIn(std::string_view text)
{
    try {
        const auto written = writtenQuantity(text);
        return written ? std::string(written->unit->symbol) : std::string();
    } catch (const Error&) {
        return {}; // a word that begins with a number
    }
}

double inUnit(const WrittenQuantity& written, std::string_view symbol)
{
    const Unit& wanted = unit(symbol);
    const Unit& own = *written.unit;
    if (own.dimension != wanted.dimension)
        failOther(fmt::format("\"{} {}\"", written.number, own.symbol), own.dimension, symbol);
    const double value = decimal(written.number, own.exponent - wanted.exponent);
    return own.factor == wanted.factor ? value : value * own.factor / wanted.factor;
}

double inUnit(const Quantity& quantity, std::string_view symbol)
{
    const Unit& wanted = unit(symbol);
    if (quantity.dimension != wanted.dimension)
        failOther("the value", quantity.dimension, symbol);
    return scaled(quantity.value / wanted.factor, -wanted.exponent);
}

Quantity quantityOf(const WrittenQuantity& written)
{
    return {decimal(written.number, written.unit->exponent) * written.unit->factor, written.unit->dimension};
}

std::optional<double> plainNumber(std::string_view text)
{
    const std::optional<double> value = realIn<double>(text);
    return value && std::isfinite(*value) ? value : std::nullopt;
}

std::string dimensionWords(const Dimension& dimension)
{
    for (const NamedDimension& named : kNamed) {
        if (named.dimension == dimension)
            return named.words;
    }
    constexpr std::array<const char*, std::tuple_size_v<Dimension>> symbols{"s", "bit", "V", "A", "C"};
    std::vector<std::string> above;
    std::vector<std::string> below;
    for (std::size_t i = 0; i < dimension.size(); ++i) {
        const int power = dimension.at(i);
        if (power != 0)
            (power > 0 ? above : below)
                .push_back(std::abs(power) == 1 ? symbols.at(i) : fmt::format("{}^{}", symbols.at(i), std::abs(power)));
    }
    return fmt::format("in {}{}{}", above.empty() ? "1" : fmt::format("{}", fmt::join(above, " ")),
                       below.empty() ? "" : "/", fmt::join(below, "/"));
}

std::string expectedWords(std::string_view symbol)
{
    const std::string words = dimensionWords(unit(symbol).dimension);
    return symbol.empty() ? words : fmt::format("{} ({})", words, symbol);
}

} // namespace zelm::host
