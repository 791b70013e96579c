#include "framework/ZelmHelperUtils.h"

#include "framework/LibconfigAutoConvert.h"
#include "framework/ZelmArithmetic.h"
#include "framework/ZelmCLocale.h"
#include "framework/ZelmTable.h"
#include "framework/ZelmText.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <stdexcept>
#include <unordered_set>

namespace {

constexpr std::size_t kTablePathLength = 2; // block group and table group, which the flattened keys leave out

// The one joining rule, over strings or views of them. Sized once: look-ups spend most of their time here.
template <class Parts>
void join(std::string& joined, const Parts& parts, std::size_t first, std::string_view separator)
{
    const auto* part = std::data(parts);
    const std::size_t size = std::size(parts);
    std::size_t most = 0;
    for (std::size_t i = first; i < size; ++i)
        most += part[i].size() + separator.size();
    joined.resize(most);
    char* end = joined.data();
    for (std::size_t i = first; i < size; ++i) {
        if (part[i].empty())
            continue;
        end = std::copy_n(part[i].data(), part[i].size(), end);
        if (i + 1 < size && !part[i + 1].empty())
            end = std::copy_n(separator.data(), separator.size(), end);
    }
    joined.resize(static_cast<std::size_t>(end - joined.data()));
}

float powerOfTen(unsigned int digits)
{
    return static_cast<float>(std::pow(10.0, digits));
}

constexpr bool isBlankValue(int value)
{
    return value == zelm::notANumberInt;
}

constexpr bool isBlankValue(float value)
{
    return zelm::isUnset(value);
}

bool isBlankValue(const std::string& value)
{
    return value.empty();
}

template <class T>
bool convert(const libconfig::Setting& setting, T& value)
{
    try {
        if constexpr (std::is_same_v<T, std::string>)
            value = setting.operator std::string();
        else
            value = setting;
        return true;
    } catch (const libconfig::SettingTypeException&) {
        return false;
    }
}

// The settings at and below one, without a search from the root for each: files hold thousands. key joins
// the names so far; the next unnamedLevels stay out of it; a name goes behind a separator if separated.
template <class T, class Table>
void loadSetting(const libconfig::Setting& setting, std::string& key, std::size_t unnamedLevels, bool separated,
                 Table& table)
{
    if (setting.isGroup()) {
        const std::size_t length = key.size();
        for (int i = 0; i < setting.getLength(); ++i) {
            const libconfig::Setting& child = setting[i];
            if (unnamedLevels == 0) {
                if (separated)
                    key += '.';
                key += child.getName();
            }
            loadSetting<T>(child, key, unnamedLevels == 0 ? 0 : unnamedLevels - 1, unnamedLevels == 0, table);
            key.resize(length);
        }
    } else if (setting.isScalar()) {
        T value{};
        if (convert(setting, value))
            table.insert_or_assign(key, std::move(value));
    } else {
        std::cout << "Unsupported cfg file format error: to use loadCfgDataToVar function, cfg has to be a nested "
                     "dictionary that does not contain any array or list."
                  << std::endl;
    }
}

// The children of the group at a path that ends in an empty part. The gap takes the separator away, so a child is
// sought under the group's name with its own stuck to it.
template <class T, class Table>
bool loadBehindGap(libconfig::Config& cfg, const libconfig::Setting& group, std::vector<std::string>& path,
                   Table& table)
{
    for (int i = 0; i < group.getLength(); ++i) {
        path.emplace_back(group[i].getName());
        const bool loaded = ZelmHelperUtils::loadCfgDataToVar(&cfg, path, table, false);
        path.pop_back();
        if (!loaded)
            return false;
    }
    return true;
}

bool isSpace(char c)
{
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}

} // namespace

// ---- Table store ----

namespace {

template <class T, class Table>
bool load(libconfig::Config* cfg, std::vector<std::string>& path, Table& table, bool topLevel)
{
    const std::string joined = ZelmHelperUtils::mergeStrVect(path, 0, ".");
    if (!cfg->exists(joined))
        return false;
    const bool convertedBefore = zelm::autoConvert(*cfg);
    if (topLevel)
        zelm::setAutoConvert(*cfg, true);
    const libconfig::Setting& setting = cfg->lookup(joined);
    if (setting.isGroup() && !joined.empty() && path.back().empty()) {
        if (!loadBehindGap<T>(*cfg, setting, path, table))
            return false; // with the option left on
    } else {
        std::string key = ZelmHelperUtils::mergeStrVect(path, kTablePathLength, ".");
        loadSetting<T>(setting, key, kTablePathLength - std::min(kTablePathLength, path.size()),
                       path.size() > kTablePathLength, table);
    }
    if (topLevel)
        zelm::setAutoConvert(*cfg, convertedBefore);
    return true;
}

} // namespace

template <class T>
bool ZelmHelperUtils::loadCfgDataToVar(libconfig::Config* cfg, std::vector<std::string>& path, Table<T>& table,
                                       bool topLevel)
{
    return load<T>(cfg, path, table, topLevel);
}

template <class T>
bool ZelmHelperUtils::loadCfgDataToVar(libconfig::Config* cfg, std::vector<std::string>& path, zelm::Table<T>& table,
                                       bool topLevel)
{
    return load<T>(cfg, path, table, topLevel);
}

template <class T>
T ZelmHelperUtils::getCfgDataFromVar(const Table<T>& table, std::vector<std::string>& keys)
{
    const std::string key = mergeStrVect(keys, 0, ".");
    const auto entry = table.find(key);
    return entry != table.end() ? entry->second : T(zelm::detail::missed<T>(&table, key));
}

template <class T>
T ZelmHelperUtils::getCfgDataFromVar(const Table<T>& table, std::string k1, std::string k2, std::string k3,
                                     std::string k4, std::string k5, std::string k6, std::string k7, std::string k8,
                                     std::string k9, std::string k10)
{
    std::vector<std::string> keys{k1, k2, k3, k4, k5, k6, k7, k8, k9, k10};
    return getCfgDataFromVar(table, keys);
}

namespace {

// The keys below a prefix. A table calls its argument for each of its keys.
template <class ForEachKey>
std::vector<std::string> keysBelow(const std::vector<std::string>& keys, bool whole, ForEachKey forEachKey)
{
    std::string prefix = ZelmHelperUtils::mergeStrVect(keys, 0, ".");
    if (!prefix.empty())
        prefix += '.';
    std::unordered_set<std::string_view> found;
    forEachKey([&](std::string_view key) {
        if (!key.starts_with(prefix))
            return;
        const std::string_view rest = key.substr(prefix.size());
        found.insert(whole ? rest : rest.substr(0, rest.find('.')));
    });
    return {found.begin(), found.end()};
}

} // namespace

template <class T>
std::vector<std::string> ZelmHelperUtils::getCfgKeyVectorFromVar(const Table<T>& table, std::vector<std::string>& keys,
                                                                 bool whole)
{
    return keysBelow(keys, whole, [&](auto visit) {
        for (const auto& [key, value] : table)
            visit(key);
    });
}

template <class T>
std::vector<std::string> ZelmHelperUtils::getCfgKeyVectorFromVar(const zelm::Table<T>& table,
                                                                 std::vector<std::string>& keys, bool whole)
{
    return keysBelow(keys, whole,
                     [&](auto visit) { table.forEach([&](std::string_view key, const T&) { visit(key); }); });
}

std::string ZelmHelperUtils::mergeStrVect(const std::vector<std::string>& parts, unsigned int first,
                                          std::string separator)
{
    std::string joined;
    join(joined, parts, first, separator);
    return joined;
}

#define INSTANTIATE_TABLE_STORE(T)                                                                                     \
    template bool ZelmHelperUtils::loadCfgDataToVar<T>(libconfig::Config*, std::vector<std::string>&, Table<T>&,       \
                                                       bool);                                                          \
    template T ZelmHelperUtils::getCfgDataFromVar<T>(const Table<T>&, std::vector<std::string>&);                      \
    template T ZelmHelperUtils::getCfgDataFromVar<T>(const Table<T>&, std::string, std::string, std::string,           \
                                                     std::string, std::string, std::string, std::string, std::string,  \
                                                     std::string, std::string);                                        \
    template std::vector<std::string> ZelmHelperUtils::getCfgKeyVectorFromVar<T>(const Table<T>&,                      \
                                                                                 std::vector<std::string>&, bool);     \
    template bool ZelmHelperUtils::loadCfgDataToVar<T>(libconfig::Config*, std::vector<std::string>&, zelm::Table<T>&, \
                                                       bool);                                                          \
    template std::vector<std::string> ZelmHelperUtils::getCfgKeyVectorFromVar<T>(const zelm::Table<T>&,                \
                                                                                 std::vector<std::string>&, bool);

INSTANTIATE_TABLE_STORE(bool)
INSTANTIATE_TABLE_STORE(int)
INSTANTIATE_TABLE_STORE(float)
INSTANTIATE_TABLE_STORE(std::string)
#undef INSTANTIATE_TABLE_STORE

// ---- Spreadsheet functions ----

float ZelmHelperUtils::SUM(const std::vector<float>& values)
{
    float sum = 0.0f;
    for (const float value : values) {
        if (!zelm::isUnset(value))
            sum += value;
    }
    return sum;
}

int ZelmHelperUtils::SUM(const std::vector<int>& values)
{
    int sum = 0;
    for (const int value : values) {
        if (value != zelm::notANumberInt)
            sum = zelm::wrapAdd(sum, value);
    }
    return sum;
}

std::string ZelmHelperUtils::SUM(const std::vector<std::string>& values)
{
    std::string sum;
    for (const std::string& value : values)
        sum += value;
    return sum;
}

int ZelmHelperUtils::LEN(std::string text)
{
    return zelm::length(text);
}

int ZelmHelperUtils::FIND(std::string needle, std::string text, int start)
{
    return zelm::find(needle, text, start);
}

std::string ZelmHelperUtils::LEFT(std::string text, int count)
{
    return std::string(zelm::left(text, count));
}

std::string ZelmHelperUtils::RIGHT(std::string text, int count)
{
    return std::string(zelm::right(text, count));
}

std::string ZelmHelperUtils::SUBSTITUTE(std::string text, std::string from, std::string to)
{
    const std::size_t position = text.find(from);
    if (position != std::string::npos)
        text.replace(position, from.size(), to);
    return text;
}

int ZelmHelperUtils::QUOTIENT(int a, int b)
{
    return b < 1 ? 0 : a / b;
}

float ZelmHelperUtils::ROUNDUP(float value, unsigned int digits)
{
    const float scale = powerOfTen(digits);
    return std::ceil(scale * value) / scale;
}

float ZelmHelperUtils::ROUND(float value, unsigned int digits)
{
    const float scale = powerOfTen(digits);
    const double scaled = scale * value;
    return static_cast<float>(std::floor(scaled + 0.5) / static_cast<double>(scale));
}

template <class T>
void ZelmHelperUtils::_UNIQUE(const std::vector<T>& in, std::vector<T>& out, bool keepUnset) // NOLINT: published name
{
    out.clear();
    std::unordered_set<T> seen;
    for (const T& value : in) {
        if (!keepUnset && isBlankValue(value))
            continue;
        if (seen.insert(value).second)
            out.push_back(value);
    }
}

template void ZelmHelperUtils::_UNIQUE<int>(const std::vector<int>&, std::vector<int>&, bool);
template void ZelmHelperUtils::_UNIQUE<float>(const std::vector<float>&, std::vector<float>&, bool);
template void ZelmHelperUtils::_UNIQUE<std::string>(const std::vector<std::string>&, std::vector<std::string>&, bool);

double ZelmHelperUtils::forecast(double x, double* knownY, double* knownX, int count)
{
    if (count < 1)
        return 0.0;
    double sumX = 0.0;
    double sumY = 0.0;
    for (int i = 0; i < count; ++i) {
        sumX += knownX[i];
        sumY += knownY[i];
    }
    const double meanX = sumX / count;
    const double meanY = sumY / count;
    double sxy = 0.0;
    double sxx = 0.0;
    for (int i = 0; i < count; ++i) {
        const double dx = knownX[i] - meanX;
        sxy += (knownY[i] - meanY) * dx;
        sxx += dx * dx;
    }
    const double slope = sxy / sxx;
    return x * slope + (meanY - meanX * slope);
}

bool ZelmHelperUtils::reportBool(bool value)
{
    std::cout << "Boolean error issues";
    return value;
}

// ---- Conversions and text ----

std::string ZelmHelperUtils::ToString(std::string value)
{
    return value;
}

std::string ZelmHelperUtils::ToString(int value)
{
    return value == zelm::notANumberInt ? std::string() : std::to_string(value);
}

std::string ZelmHelperUtils::ToString(float value)
{
    std::string text;
    if (!zelm::isUnset(value))
        numToTightStr(value, text, 0.01f);
    return text;
}

float ZelmHelperUtils::s2f(const std::string& text)
{
    try {
        return text.empty() ? zelm::unsetFloat : zelm::number(text);
    } catch (const std::logic_error&) { // std::invalid_argument and std::out_of_range alike
        return zelm::unsetFloat;
    }
}

int ZelmHelperUtils::s2i(const std::string& text)
{
    const zelm::InCLocale inCLocale;
    try {
        return text.empty() ? zelm::notANumberInt : std::stoi(text);
    } catch (const std::logic_error&) {
        return zelm::notANumberInt;
    }
}

std::string ZelmHelperUtils::i2s(int value, int width, char fill)
{
    std::string text = std::to_string(value);
    const int missing = width - static_cast<int>(text.size());
    return text.insert(0, static_cast<std::size_t>(std::max(missing, 0)), fill);
}

void ZelmHelperUtils::numToTightStr(float value, std::string& out, float tolerancePercent)
{
    if (!(tolerancePercent < 1000.0f))
        return;
    const zelm::InCLocale inCLocale;
    constexpr int maxPrecision = 5;
    std::array<char, 64> text{}; // the longest float has 39 digits before the point
    for (int precision = 0; precision <= maxPrecision; ++precision) {
        std::snprintf(text.data(), text.size(), "%.*f", precision, static_cast<double>(value));
        out = text.data();
        const float parsed = std::stof(out);
        const float error = value != 0.0f ? std::fabs((parsed - value) / value * 100.0f) : 0.0f;
        if (!(error > tolerancePercent))
            break;
    }
}

void ZelmHelperUtils::convertToCamelString(std::string& text)
{
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] == '_')
            text[i++] = ' '; // the next word's first letter keeps its case
        else
            text[i] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[i])));
    }
}

void ZelmHelperUtils::removeWhiteSpaces(std::string& text)
{
    std::erase(text, ' ');
}

void ZelmHelperUtils::ltrim(std::string& text)
{
    text.erase(text.begin(), std::find_if_not(text.begin(), text.end(), isSpace));
}

void ZelmHelperUtils::rtrim(std::string& text)
{
    text.erase(std::find_if_not(text.rbegin(), text.rend(), isSpace).base(), text.end());
}

void ZelmHelperUtils::trim(std::string& text)
{
    ltrim(text);
    rtrim(text);
}
