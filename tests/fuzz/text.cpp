// The library's text and number functions. Beside not breaking, what they give has to agree with each other.

#include "Fuzz.h"

#include "framework/ZelmHelperUtils.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

using Bytes = FuzzedDataProvider;
using Utils = ZelmHelperUtils;

constexpr std::size_t kLongest = 300;

std::string text(Bytes& bytes)
{
    return bytes.ConsumeRandomLengthString(kLongest);
}

int whole(Bytes& bytes)
{
    return bytes.ConsumeIntegral<int>();
}

// Any bits: infinities, NaNs and the sentinel of unset cells too.
float real(Bytes& bytes)
{
    float value = 0.0f;
    bytes.ConsumeData(&value, sizeof value);
    return value;
}

void expect(bool holds, const char* what)
{
    if (!holds)
        throw std::logic_error(what);
}

void wholeNumbers(Bytes& bytes)
{
    const int value = whole(bytes);
    if (value != zelm::notANumberInt)
        expect(Utils::s2i(Utils::ToString(value)) == value, "s2i reads what ToString writes");
    constexpr int widest = 1000;
    const int width = bytes.ConsumeIntegralInRange(-1, widest);
    expect(Utils::i2s(value, width, '0').size() >= std::to_string(value).size(), "i2s cuts nothing off");
    const int divisor = whole(bytes);
    const int quotient = Utils::QUOTIENT(value, divisor);
    expect(divisor >= 1 || quotient == 0, "QUOTIENT by less than 1 is 0");
    Utils::SUM(std::vector<int>{value, divisor, quotient});
    Utils::s2i(text(bytes));
}

void realNumbers(Bytes& bytes)
{
    const float value = real(bytes);
    const float read = Utils::s2f(Utils::ToString(value));
    constexpr float least = 0.1f; // below, five decimals don't reach a hundredth of a percent
    if (std::isfinite(value) && std::fabs(value) >= least && !zelm::isUnset(value))
        expect(std::fabs(read - value) <= std::fabs(value) * 2e-4f, "s2f reads what ToString writes");
    std::string tight;
    Utils::numToTightStr(value, tight, real(bytes));
    const unsigned int digits = bytes.ConsumeIntegral<std::uint8_t>();
    Utils::ROUND(value, digits);
    Utils::ROUNDUP(value, digits);
    const float other = real(bytes);
    Utils::AVERAGE(value, other);
    Utils::SUM(std::vector<float>{value, other});
    if (std::isfinite(value) && std::isfinite(other))
        expect(Utils::MIN(value, other) <= Utils::MAX(value, other), "MIN is at most MAX");
    double x[] = {static_cast<double>(value), 1.0};
    double y[] = {static_cast<double>(other), 2.0};
    Utils::forecast(0.5, y, x, bytes.ConsumeIntegralInRange(-1, 2));
    Utils::s2f(text(bytes));
}

void pieces(Bytes& bytes)
{
    const std::string a = text(bytes);
    const std::string b = text(bytes);
    const int count = whole(bytes);
    const int length = Utils::LEN(a);
    const bool inside = count >= 0 && count <= length;
    expect(Utils::LEFT(a, count).size() == (inside ? static_cast<std::size_t>(count) : 0), "LEFT has so many");
    expect(Utils::RIGHT(a, count).size() == (inside ? static_cast<std::size_t>(count) : 0), "RIGHT has so many");
    if (inside)
        expect(Utils::LEFT(a, count) + Utils::RIGHT(a, length - count) == a, "LEFT and RIGHT make the whole");
    const int found = Utils::FIND(b, a, count);
    expect(found == -1 || a.compare(static_cast<std::size_t>(found), b.size(), b) == 0, "FIND finds it there");
    const std::string swapped = Utils::SUBSTITUTE(a, b, b);
    expect(swapped == a, "SUBSTITUTE by the same changes nothing");
    Utils::SUBSTITUTE(a, b, text(bytes));
    expect(Utils::LEN(Utils::SUM(std::vector<std::string>{a, b})) == length + Utils::LEN(b), "SUM joins");
}

void whitespace(Bytes& bytes)
{
    const std::string before = text(bytes);
    std::string once = before;
    Utils::trim(once);
    std::string twice = once;
    Utils::ltrim(twice);
    Utils::rtrim(twice);
    expect(once == twice, "trim leaves nothing to trim");
    expect(before.find(once) != std::string::npos, "trim takes from the ends alone");
    std::string words = before;
    Utils::convertToCamelString(words);
    expect(words.size() == before.size(), "names keep their length");
    Utils::removeWhiteSpaces(words);
    expect(words.find(' ') == std::string::npos, "no blank is left");
}

void lists(Bytes& bytes)
{
    std::vector<std::string> parts;
    while (bytes.remaining_bytes() > 0)
        parts.push_back(text(bytes));
    Utils::mergeStrVect(parts, bytes.ConsumeIntegralInRange(0u, 5u), ".");
    std::vector<std::string> unique;
    Utils::UNIQUE(parts, unique, true);
    expect(unique.size() <= parts.size(), "UNIQUE adds nothing");
    std::sort(unique.begin(), unique.end());
    expect(std::adjacent_find(unique.begin(), unique.end()) == unique.end(), "UNIQUE leaves no two alike");
    Utils::Table<float> table;
    for (const std::string& part : parts)
        table[part] = 1.0f;
    if (parts.size() > 1) {
        Utils::getCfgKeyVectorFromVar(table, parts, false);
        Utils::getCfgDataFromVar(table, parts);
    }
}

} // namespace

void zelm::fuzz::run(const std::uint8_t* data, std::size_t size)
{
    Bytes bytes(data, size);
    static constexpr void (*kinds[])(Bytes&) = {wholeNumbers, realNumbers, pieces, whitespace, lists};
    bytes.PickValueInArray(kinds)(bytes);
}
