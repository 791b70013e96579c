// The spreadsheet functions, conversions, and the arithmetic helpers.
#include "framework/ZelmArithmetic.h"
#include "framework/ZelmHelperUtils.h"
#include "framework/ZelmText.h"

#include "support/Bits.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>

namespace zelm::test::spreadsheetTest {

using Utils = ZelmHelperUtils;

constexpr float kUnset = 3.4028235e38f;
constexpr float kTiny = 1.17549435e-38f;
const float kNan = std::nanf("");
const float kInf = std::numeric_limits<float>::infinity();

TEST(Average, CountsWhatIsGiven)
{
    EXPECT_THAT(Utils::AVERAGE(1.0f, 3.0f), IsBits(2.0f));
    EXPECT_THAT(Utils::AVERAGE(1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f, 7.0f, 8.0f, 9.0f), IsBits(5.0f));
    EXPECT_THAT(Utils::AVERAGE(1.0f, -kUnset, 4.0f), IsBits(2.5f));
    EXPECT_THAT(Utils::AVERAGE(-kUnset), IsBits(0.0f));
    // An unset cell is a number here: (1 + FLT_MAX) / 2.
    EXPECT_THAT(Utils::AVERAGE(1.0f, kUnset), IsBits(kUnset / 2.0f));
    EXPECT_TRUE(std::isnan(Utils::AVERAGE(1.0f, kNan)));
}

TEST(Average, SumsInSinglePrecisionFromTheLeft)
{
    // 2^24 + 1 stays 2^24 in a float, twice; a double sum would give (2^24 + 2) / 3.
    const float big = 16777216.0f;
    EXPECT_THAT(Utils::AVERAGE(big, 1.0f, 1.0f), IsBits(big / 3.0f));
}

// Arguments that the compiler sees to be left out take no step. These it can't see.
TEST(LeftOut, IsTheSameAsGivenTheDefault)
{
    const volatile float one = 1.0f;
    const volatile float minusTwo = -2.0f;
    const volatile float unset = kUnset;
    const volatile float minusUnset = -kUnset;
    const volatile float tiny = kTiny;
    const volatile float minusZero = -0.0f;
    EXPECT_THAT(Utils::AVERAGE(one, minusUnset, minusTwo), IsBits(-0.5f));
    EXPECT_THAT(Utils::AVERAGE(minusUnset, minusUnset), IsBits(0.0f));
    EXPECT_THAT(Utils::AVERAGE(minusZero, minusZero), IsBits(0.0f)); // the sum starts from 0
    EXPECT_THAT(Utils::MIN(one, unset, minusTwo, unset), IsBits(-2.0f));
    EXPECT_THAT(Utils::MAX(minusTwo, tiny, minusZero), IsBits(kTiny));
    EXPECT_THAT(Utils::MAX(minusZero, one), IsBits(1.0f));
    // A default among given ones takes its step, for it isn't left out.
    EXPECT_THAT(Utils::MAX(-1.0f, kTiny, -1.0f, -1.0f, -1.0f, -1.0f, -1.0f, -1.0f, -1.0f), IsBits(kTiny));
    EXPECT_THAT(Utils::MAX(-1.0f, -2.0f, -1.0f, -1.0f, -1.0f, -1.0f, -1.0f, -1.0f, kTiny), IsBits(kTiny));
}

TEST(Average, InfinitiesAndNansAreGiven)
{
    EXPECT_THAT(Utils::AVERAGE(1.0f, kInf), IsBits(kInf));
    EXPECT_THAT(Utils::AVERAGE(1.0f, -kInf), IsBits(-kInf));
    EXPECT_TRUE(std::isnan(Utils::AVERAGE(kInf, -kInf)));
    EXPECT_TRUE(std::isnan(Utils::AVERAGE(kNan)));
}

TEST(Min, UnsetNeverWinsAndNanIsPassedOver)
{
    EXPECT_THAT(Utils::MIN(1.0f, kUnset), IsBits(1.0f));
    EXPECT_THAT(Utils::MIN(-1.0f, 2.0f, -3.0f), IsBits(-3.0f));
    EXPECT_THAT(Utils::MIN(kUnset), IsBits(kUnset));
    EXPECT_THAT(Utils::MIN(kNan, 2.0f), IsBits(2.0f));
    EXPECT_THAT(Utils::MIN(kNan), IsBits(kUnset));
    EXPECT_THAT(Utils::MIN(kInf), IsBits(kUnset));
    EXPECT_THAT(Utils::MIN(9.0f, 8.0f, 7.0f, 6.0f, 5.0f, 4.0f, 3.0f, 2.0f, 1.0f), IsBits(1.0f));
    EXPECT_THAT(Utils::MIN(0.0f, -0.0f), IsBits(0.0f)); // the first of two equals
    EXPECT_THAT(Utils::MIN(-0.0f, 0.0f), IsBits(-0.0f));
    EXPECT_THAT(Utils::MIN(1.0f, kNan, 2.0f), IsBits(1.0f));
}

TEST(Max, UnsetWinsAndNothingPositiveGivesTheSmallestNormal)
{
    EXPECT_THAT(Utils::MAX(1.0f, kUnset), IsBits(kUnset));
    EXPECT_THAT(Utils::MAX(-1.0f, -2.0f), IsBits(kTiny));
    EXPECT_THAT(Utils::MAX(0.0f, 0.0f), IsBits(kTiny));
    EXPECT_THAT(Utils::MAX(2.0f, 3.0f), IsBits(3.0f));
    EXPECT_THAT(Utils::MAX(kNan, 2.0f), IsBits(2.0f));
    EXPECT_THAT(Utils::MAX(3.0f, kNan, 2.0f), IsBits(3.0f));
    EXPECT_THAT(Utils::MAX(kInf, kUnset), IsBits(kInf));
    // All nine given: no default takes part.
    EXPECT_THAT(Utils::MAX(-0.0f, 0.0f, -1.0f, -1.0f, -1.0f, -1.0f, -1.0f, -1.0f, -1.0f), IsBits(-0.0f));
    EXPECT_THAT(Utils::MAX(-9.0f, -8.0f, -7.0f, -6.0f, -5.0f, -4.0f, -3.0f, -2.0f, -1.5f), IsBits(-1.5f));
}

TEST(Sum, LeavesOutTheBlankValuesOfEachType)
{
    EXPECT_THAT(Utils::SUM(std::vector<float>{1.0f, kUnset, 2.0f}), IsBits(3.0f));
    EXPECT_THAT(Utils::SUM(std::vector<float>{}), IsBits(0.0f));
    EXPECT_TRUE(std::isnan(Utils::SUM(std::vector<float>{1.0f, kNan})));
    EXPECT_EQ(Utils::SUM(std::vector<int>{1, 2147483646, 2}), 3);
    EXPECT_EQ(Utils::SUM(std::vector<int>{1, 2147483647}), std::numeric_limits<int>::min());
    EXPECT_EQ(Utils::SUM(std::vector<std::string>{"a", "", "UninitializedString"}), "aUninitializedString");
}

TEST(Text, FindCountsFromZero)
{
    EXPECT_EQ(Utils::LEN("abc"), 3);
    EXPECT_EQ(Utils::FIND("b", "abcb", 0), 1);
    EXPECT_EQ(Utils::FIND("b", "abcb", 2), 3);
    EXPECT_EQ(Utils::FIND("x", "abc", 0), -1);
    EXPECT_EQ(Utils::FIND("a", "abc", -1), -1);
    EXPECT_EQ(Utils::FIND("", "abc", 1), 1);
    EXPECT_EQ(Utils::FIND("c", "abc", 3), -1); // at the end
    EXPECT_EQ(Utils::FIND("a", "abc", 4), -1); // beyond it
    EXPECT_EQ(Utils::FIND("", "abc", 3), 3);
    EXPECT_EQ(Utils::FIND("", "abc", 4), -1);
}

TEST(Text, LeftAndRightRefuseMoreThanThereIs)
{
    EXPECT_EQ(Utils::LEFT("abc", 3), "abc");
    EXPECT_EQ(Utils::LEFT("abc", 2), "ab");
    EXPECT_EQ(Utils::LEFT("abc", 4), "");
    EXPECT_EQ(Utils::LEFT("abc", -1), "");
    EXPECT_EQ(Utils::LEFT("", 0), "");
    EXPECT_EQ(Utils::RIGHT("abc", 2), "bc");
    EXPECT_EQ(Utils::RIGHT("abc", 3), "abc");
    EXPECT_EQ(Utils::RIGHT("abc", 0), "");
    EXPECT_EQ(Utils::RIGHT("abc", 4), "");
    EXPECT_EQ(Utils::RIGHT("abc", -1), "");
}

// What formulas cut is part of the text itself. The published functions, whose edges are tested above, copy it.
TEST(Text, CutsOfViewsCopyNothing)
{
    const std::string text = "ab_cb";
    EXPECT_EQ(left(text, 2), "ab");
    EXPECT_EQ(left(text, 2).data(), text.data());
    EXPECT_EQ(right(text, 2), "cb");
    EXPECT_EQ(right(text, 2).data(), text.data() + 3);
    EXPECT_EQ(left(text, 6), "");
    EXPECT_EQ(left(text, -1), "");
    EXPECT_EQ(left("", 0), "");
    EXPECT_EQ(right(text, 6), "");
    EXPECT_EQ(right(text, -1), "");
    EXPECT_EQ(zelm::find("b", text, 2), 4);
    EXPECT_EQ(zelm::find("a", text, -1), -1);
    EXPECT_EQ(zelm::find("", text, 5), 5);
    EXPECT_EQ(zelm::find("", text, 6), -1);
    EXPECT_EQ(length(text), 5);
}

TEST(Text, ComposedIsPutTogetherWhereItIsStored)
{
    const std::string device = "zq44";
    const std::string_view none;
    for (std::string cell : {"", "UninitializedString", "a text longer than all the parts together"}) {
        Composed{std::string_view(device), "_", none, "x"}.storeIn(cell);
        EXPECT_EQ(cell, "zq44_x");
    }
    std::string cell = "a";
    Composed{}.storeIn(cell);
    EXPECT_EQ(cell, "");
    Composed{"1", "22", "333", "4444", "55555", "666666", "7777777", "88888888"}.storeIn(cell);
    EXPECT_EQ(cell, "122333444455555666666777777788888888");
}

TEST(Number, IsTheCLibrarysToTheLastBit)
{
    // Plain decimals, on both sides of what is read without the C library: digits below 2^24, ten decimals.
    for (const std::string text : {"0",
                                   "0.",
                                   ".0",
                                   "0.125",
                                   ".5",
                                   "5.",
                                   "1",
                                   "007",
                                   "0.1",
                                   "0.3",
                                   "3.1415927",
                                   "16777215",
                                   "16777216",
                                   "16777217",
                                   "1677721.5",
                                   "1.6777217",
                                   "0.0000000001",
                                   "0.0016777215",
                                   "0.00000000001",
                                   "0.1000000000",
                                   "0.10000000000",
                                   "99999999999999999999",
                                   "4294967297",
                                   "0.4294967297",
                                   "340282346638528859811704183484516925440",
                                   "0.000000000000000000000000000000000000012"}) {
        char* end = nullptr;
        const float read = std::strtof(text.c_str(), &end);
        ASSERT_EQ(*end, '\0') << text;
        EXPECT_THAT(number(text), IsBits(read)) << text;
    }
    for (unsigned int digits = 0; digits < 16777216; digits += 4099) { // a prime
        for (const std::size_t decimals : {0u, 1u, 4u, 8u}) {
            std::string text = std::to_string(digits);
            text.insert(0, 9 - std::min<std::size_t>(9, text.size()), '0');
            text.insert(text.size() - decimals, 1, '.');
            EXPECT_THAT(number(text), IsBits(std::strtof(text.c_str(), nullptr))) << text;
        }
    }
}

TEST(Number, WhatIsNotPlainIsTheCLibrarys)
{
    EXPECT_THAT(number("-0.5"), IsBits(-0.5f));
    EXPECT_THAT(number("+2"), IsBits(2.0f));
    EXPECT_THAT(number(" 1.5 V"), IsBits(1.5f));
    EXPECT_THAT(number("1.5.2"), IsBits(1.5f));
    EXPECT_THAT(number("2e3"), IsBits(2000.0f));
    EXPECT_THAT(number("0x1.8p3"), IsBits(12.0f)); // 1.5 x 8
    EXPECT_THAT(number(std::string_view("1\0002", 3)), IsBits(1.0f));
    EXPECT_THAT(number(std::string_view("0.125", 3)), IsBits(0.1f)); // a view needs no end
    for (const std::string text : {"", ".", "V", "UninitializedString", "..1", "-"})
        EXPECT_THROW(number(text), std::invalid_argument) << text;
    EXPECT_THROW(number("1e39"), std::out_of_range);
    EXPECT_THROW(number("9999999999999999999999999999999999999999"), std::out_of_range);
}

TEST(Text, SubstituteReplacesTheFirstOnly)
{
    EXPECT_EQ(Utils::SUBSTITUTE("a_b_c", "_", "-"), "a-b_c");
    EXPECT_EQ(Utils::SUBSTITUTE("abc", "x", "-"), "abc");
    EXPECT_EQ(Utils::SUBSTITUTE("abc", "", "-"), "-abc");
}

TEST(Rounding, QuotientIsZeroForDivisorsBelowOne)
{
    EXPECT_EQ(Utils::QUOTIENT(7, 0), 0);
    EXPECT_EQ(Utils::QUOTIENT(7, -2), 0);
    EXPECT_EQ(Utils::QUOTIENT(-7, 2), -3);
    EXPECT_EQ(Utils::QUOTIENT(7, 2), 3);
}

TEST(Rounding, RoundupGoesTowardsPositiveInfinity)
{
    EXPECT_THAT(Utils::ROUNDUP(1.01f, 0), IsBits(2.0f));
    EXPECT_THAT(Utils::ROUNDUP(0.0f, 0), IsBits(0.0f));
    EXPECT_THAT(Utils::ROUNDUP(-1.5f, 0), IsBits(-1.0f));
    EXPECT_THAT(Utils::ROUNDUP(1.25f, 1), IsBits(1.3f)); // ceil(12.5) / 10
}

TEST(Rounding, RoundTakesHalvesUpward)
{
    EXPECT_THAT(Utils::ROUND(-0.5f, 0), IsBits(0.0f));
    EXPECT_THAT(Utils::ROUND(2.5f, 0), IsBits(3.0f));
    EXPECT_THAT(Utils::ROUND(-2.5f, 0), IsBits(-2.0f));
    EXPECT_THAT(Utils::ROUND(1.25f, 1), IsBits(1.3f)); // floor(12.5 + 0.5) / 10
    // 0.35f is 0.349999994, but its product with 10 is rounded to 3.5 before the half is added.
    EXPECT_THAT(Utils::ROUND(0.35f, 1), IsBits(0.4f));
}

TEST(Rounding, WhatIsNoNumberStaysSo)
{
    for (const unsigned int digits : {0u, 2u}) {
        EXPECT_TRUE(std::isnan(Utils::ROUND(kNan, digits)));
        EXPECT_TRUE(std::isnan(Utils::ROUNDUP(kNan, digits)));
        EXPECT_THAT(Utils::ROUND(kInf, digits), IsBits(kInf));
        EXPECT_THAT(Utils::ROUND(-kInf, digits), IsBits(-kInf));
        EXPECT_THAT(Utils::ROUNDUP(kInf, digits), IsBits(kInf));
        EXPECT_THAT(Utils::ROUNDUP(-kInf, digits), IsBits(-kInf));
    }
    // An unset cell times 100 is infinite in a float; times 1 it is itself.
    EXPECT_THAT(Utils::ROUND(kUnset, 2), IsBits(kInf));
    EXPECT_THAT(Utils::ROUNDUP(kUnset, 2), IsBits(kInf));
    EXPECT_THAT(Utils::ROUNDUP(kUnset, 0), IsBits(kUnset));
}

TEST(Unique, KeepsFirstAppearancesAndDropsBlanksOnRequest)
{
    std::vector<int> ints{99};
    Utils::UNIQUE({3, 1, 3, 2147483646, 2147483647}, ints, false);
    EXPECT_EQ(ints, (std::vector<int>{3, 1, 2147483647}));
    Utils::UNIQUE({3, 2147483646, 3}, ints, true);
    EXPECT_EQ(ints, (std::vector<int>{3, 2147483646}));
    std::vector<float> floats;
    Utils::UNIQUE({kUnset, 1.0f, 1.0f}, floats, false);
    EXPECT_EQ(floats, (std::vector<float>{1.0f}));
    Utils::UNIQUE({kUnset, 1.0f}, floats, true);
    EXPECT_EQ(floats, (std::vector<float>{kUnset, 1.0f}));
    std::vector<std::string> strings;
    Utils::UNIQUE({"b", "", "a", "b", "UninitializedString"}, strings, false);
    EXPECT_EQ(strings, (std::vector<std::string>{"b", "a", "UninitializedString"}));
}

TEST(Forecast, ContinuesTheRegressionLine)
{
    double x[] = {1.0, 2.0};
    double y[] = {2.0, 4.0};
    EXPECT_EQ(Utils::forecast(3.0, y, x, 2), 6.0);
    EXPECT_EQ(Utils::forecast(3.0, y, x, 0), 0.0);
    EXPECT_EQ(Utils::forecast(3.0, y, x, -1), 0.0);
    double three[] = {0.0, 1.0, 2.0};
    double rough[] = {1.0, 1.0, 4.0}; // means 1 and 2, Sxy 3, Sxx 2: slope 1.5 from 0.5
    EXPECT_DOUBLE_EQ(Utils::forecast(4.0, rough, three, 3), 6.5);
    double same[] = {1.0, 1.0};
    EXPECT_FALSE(std::isfinite(Utils::forecast(3.0, y, same, 2)));
}

TEST(IfError, ReplacesUnsetValuesOnly)
{
    EXPECT_THAT(Utils::IFERROR(kUnset, 1), IsBits(1.0f));
    EXPECT_THAT(Utils::IFERROR(kUnset, 0.5), IsBits(0.5f));
    EXPECT_THAT(Utils::IFERROR(kUnset, 0.25f), IsBits(0.25f));
    EXPECT_THAT(Utils::IFERROR(2.0f, 1), IsBits(2.0f));
    EXPECT_TRUE(std::isnan(Utils::IFERROR(kNan, 1)));
    EXPECT_THAT(Utils::IFERROR(kInf, 1), IsBits(kInf));
    EXPECT_THAT(Utils::IFERROR(-kUnset, 1), IsBits(-kUnset));
    EXPECT_EQ(Utils::IFERROR(0x7fffffff, -1), -1);
    EXPECT_EQ(Utils::IFERROR(0x7ffffffe, -1), 0x7ffffffe);
    EXPECT_EQ(Utils::IFERROR(std::string("UninitializedString"), "No"), "No");
    EXPECT_EQ(Utils::IFERROR(std::string("UninitializedString"), std::string("No")), "No");
    EXPECT_EQ(Utils::IFERROR(std::string(""), "No"), "");
    EXPECT_EQ(Utils::IFERROR(std::string_view("UninitializedString"), "No"), "No");
}

TEST(IfError, TheBoolFormsTalkAtEveryCall)
{
    testing::internal::CaptureStdout();
    EXPECT_TRUE(Utils::IFERROR(true, false));
    EXPECT_TRUE(Utils::IFERROR(false, true));
    EXPECT_FALSE(Utils::IFERROR(false, false));
    EXPECT_FALSE(Utils::ISERROR(true));
    EXPECT_TRUE(Utils::ISERROR(false));
    std::string expected;
    for (int call = 0; call < 5; ++call)
        expected += "Boolean error issues";
    EXPECT_EQ(testing::internal::GetCapturedStdout(), expected);
}

TEST(IsError, KnowsTheSentinelsOnly)
{
    EXPECT_TRUE(Utils::ISERROR(kUnset));
    EXPECT_FALSE(Utils::ISERROR(kNan));
    EXPECT_TRUE(Utils::ISERROR(0x7fffffff));
    EXPECT_FALSE(Utils::ISERROR(0x7ffffffe));
    EXPECT_TRUE(Utils::ISERROR(std::string("UninitializedString")));
    EXPECT_FALSE(Utils::ISERROR(std::string("uninitializedString")));
}

TEST(Conversion, NumbersToText)
{
    EXPECT_EQ(Utils::ToString(std::string("as is")), "as is");
    EXPECT_EQ(Utils::ToString(-12), "-12");
    EXPECT_EQ(Utils::ToString(2147483646), "");
    EXPECT_EQ(Utils::ToString(2147483647), "2147483647");
    EXPECT_EQ(Utils::ToString(kUnset), "");
    EXPECT_EQ(Utils::ToString(1.5f), "1.5");
    EXPECT_EQ(Utils::ToString(0.0f), "0");
    EXPECT_EQ(Utils::ToString(0.123456f), "0.12346"); // 0.1235 is 0.036 percent off, five decimals 0.003
    EXPECT_EQ(Utils::i2s(42, 5, '0'), "00042");
    EXPECT_EQ(Utils::i2s(-7, 4, '*'), "**-7");
    EXPECT_EQ(Utils::i2s(12345, 3, '0'), "12345");
    EXPECT_EQ(Utils::i2s(5, 0, '0'), "5");
    EXPECT_EQ(Utils::i2s(5, -3, '0'), "5");
}

TEST(Conversion, TightNumbersKeepTheTolerance)
{
    std::string text = "before";
    Utils::numToTightStr(1.5f, text, 1000.0f);
    EXPECT_EQ(text, "before");
    Utils::numToTightStr(1.5f, text, 50.0f); // 2 is 33 percent off
    EXPECT_EQ(text, "2");
    Utils::numToTightStr(1.5f, text, 1.0f);
    EXPECT_EQ(text, "1.5");
    Utils::numToTightStr(1e-7f, text, 1.0f); // five decimals at most
    EXPECT_EQ(text, "0.00000");
    Utils::numToTightStr(-kUnset, text, 1.0f);
    EXPECT_EQ(text, "-340282346638528859811704183484516925440");
}

TEST(Conversion, TextToNumbersSwallowsFailures)
{
    EXPECT_THAT(Utils::s2f("1.25 V"), IsBits(1.25f));
    EXPECT_THAT(Utils::s2f(""), IsBits(kUnset));
    EXPECT_THAT(Utils::s2f("V"), IsBits(kUnset));
    EXPECT_THAT(Utils::s2f("1e99"), IsBits(kUnset));
    EXPECT_EQ(Utils::s2i("12a"), 12);
    EXPECT_EQ(Utils::s2i("-5"), -5);
    EXPECT_EQ(Utils::s2i(""), 2147483646);
    EXPECT_EQ(Utils::s2i("a"), 2147483646);
    EXPECT_EQ(Utils::s2i("2147483648"), 2147483646);
    EXPECT_EQ(Utils::ToString(Utils::s2i("a")), "");
}

TEST(Conversion, TextToNumbersKnowsSignsHexAndWords)
{
    EXPECT_THAT(Utils::s2f(" \t+1.5"), IsBits(1.5f));
    EXPECT_THAT(Utils::s2f("-.5e1x"), IsBits(-5.0f));
    EXPECT_THAT(Utils::s2f("0x1.8p3"), IsBits(12.0f)); // 1.5 x 8
    EXPECT_THAT(Utils::s2f("0xg"), IsBits(0.0f));      // the 0 in front of the x
    EXPECT_THAT(Utils::s2f("inf"), IsBits(kInf));
    EXPECT_THAT(Utils::s2f("-INFINITY"), IsBits(-kInf));
    EXPECT_TRUE(std::isnan(Utils::s2f("nan")));
    EXPECT_TRUE(std::isnan(Utils::s2f("NaN(1)")));
    EXPECT_THAT(Utils::s2f("-1e39"), IsBits(kUnset)); // out of range, whatever the sign
    EXPECT_THAT(Utils::s2f("1e-50"), IsBits(kUnset)); // and so is what is too small
    EXPECT_EQ(Utils::s2i(" \n+7"), 7);
    EXPECT_EQ(Utils::s2i("0x1F"), 0); // decimal: the 0 in front of the x
    EXPECT_EQ(Utils::s2i("017"), 17);
    EXPECT_EQ(Utils::s2i("1e3"), 1);
    EXPECT_EQ(Utils::s2i("inf"), 2147483646);
    EXPECT_EQ(Utils::s2i("nan"), 2147483646);
    EXPECT_EQ(Utils::s2i("- 1"), 2147483646);
    EXPECT_EQ(Utils::s2i("-2147483648"), std::numeric_limits<int>::min());
    EXPECT_EQ(Utils::s2i("-2147483649"), 2147483646);
}

TEST(Conversion, TextHelpers)
{
    const auto camel = [](std::string text) {
        Utils::convertToCamelString(text);
        return text;
    };
    EXPECT_EQ(camel("CLOCK_FREQ"), "Clock Freq");
    EXPECT_EQ(camel("A"), "A");
    EXPECT_EQ(camel("a_b_"), "a b ");
    EXPECT_EQ(camel("A__B"), "A _b"); // the character behind an underscore is skipped, whatever it is
    std::string text = " \ta b\n ";
    Utils::removeWhiteSpaces(text);
    EXPECT_EQ(text, "\tab\n");
    text = " \ta b\n ";
    Utils::ltrim(text);
    EXPECT_EQ(text, "a b\n ");
    Utils::rtrim(text);
    EXPECT_EQ(text, "a b");
    text = " \v ";
    Utils::trim(text);
    EXPECT_EQ(text, "");
}

TEST(Arithmetic, IntsWrapAndFloatsTruncate)
{
    constexpr int lowest = std::numeric_limits<int>::min();
    constexpr int highest = std::numeric_limits<int>::max();
    EXPECT_EQ(zelm::wrapAdd(highest, 1), lowest);
    EXPECT_EQ(zelm::wrapSubtract(lowest, 1), highest);
    EXPECT_EQ(zelm::wrapMultiply(65536, 65536), 0);
    EXPECT_EQ(zelm::quotientOrZero(-7, 2), -3);
    EXPECT_EQ(zelm::quotientOrZero(7, 0), 0);
    EXPECT_EQ(zelm::quotientOrZero(lowest, -1), lowest);
    EXPECT_EQ(zelm::remainderOrZero(-7, 4), -3);
    EXPECT_EQ(zelm::remainderOrZero(7, 0), 0);
    EXPECT_EQ(zelm::remainderOrZero(lowest, -1), 0);
    EXPECT_EQ(zelm::truncate(-1.9), -1);
    EXPECT_EQ(zelm::truncate(2147483647.9), highest);
    EXPECT_EQ(zelm::truncate(2147483648.0), lowest);
    EXPECT_EQ(zelm::truncate(-2147483648.9), lowest);
    EXPECT_EQ(zelm::truncate(kUnset), lowest);
    EXPECT_EQ(zelm::truncate(kNan), lowest);
    EXPECT_THAT(zelm::ratioOrZero(1.0f, 4.0f), IsBits(0.25f));
    EXPECT_THAT(zelm::ratioOrZero(1.0f, 0.0f), IsBits(0.0f));
}

} // namespace zelm::test::spreadsheetTest
