#pragma once

#include "framework/ZelmExport.h"
#include "framework/ZelmUnset.h"

#include <cfloat>
#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <vector>

#ifdef __SSE__
#include <xmmintrin.h>
#endif

namespace libconfig {
class Config;
}

namespace zelm {
template <class T>
class Table;

namespace detail {

/// The mean of the values that aren't notAveraged; 0 if all are.
[[gnu::noinline, gnu::cold]] inline float averageBut(float notAveraged, std::initializer_list<float> values)
{
    float sum = 0.0f;
    int count = 0;
    for (const float value : values) {
        const bool given = value != notAveraged;
        sum += given ? value : 0.0f;
        count += given;
    }
    return count == 0 ? 0.0f : sum / static_cast<float>(count);
}

} // namespace detail
} // namespace zelm

/// The spreadsheet functions that formulas are written in, and the table store behind the data blocks.
/// The functions differ from a spreadsheet's of the same name in places; results must match the characterisation
/// workbook's macros, so the differences stay. None of them throws unless its comment says so.
class ZELM_EXPORT ZelmHelperUtils {
    static constexpr float kNotAveraged = -FLT_MAX;
    static constexpr float kNotInMin = FLT_MAX;
    static constexpr float kNotInMax = FLT_MIN; // positive on purpose, see MAX

    // Whether the compiler sees that an argument was left out: its step then needs no code, and nothing waits for it.
    [[gnu::always_inline]] static bool isLeftOut(float value, float notGiven)
    {
        return __builtin_constant_p(value) && value == notGiven;
    }

    // One step of MIN or MAX: the second operand stays if the first equals it or is a NaN.
    static float lesser(float value, float least)
    {
        return value < least ? value : least;
    }
    static float greater(float value, float greatest)
    {
        return value > greatest ? value : greatest;
    }

    // The first step is against a number that compilers see, of which they make jumps. The machine's own minimum does
    // just the same without them.
#ifdef __SSE__
    static float firstLesser(float value, float least)
    {
        return _mm_cvtss_f32(_mm_min_ss(_mm_set_ss(value), _mm_set_ss(least)));
    }
    static float firstGreater(float value, float greatest)
    {
        return _mm_cvtss_f32(_mm_max_ss(_mm_set_ss(value), _mm_set_ss(greatest)));
    }
#else
    static float firstLesser(float value, float least)
    {
        return lesser(value, least);
    }
    static float firstGreater(float value, float greatest)
    {
        return greater(value, greatest);
    }
#endif

public:
    template <class T>
    using Table = std::unordered_map<std::string, T>;

    // ---- Table store; T is bool, int, float or std::string ----

    /// Loads the settings below path into table, keyed by the names below the second element of path, joined by '.'.
    /// False if path doesn't exist. A value of a type that doesn't convert is left out; arrays and lists are left out
    /// with a line on standard output. path is unchanged after a true result.
    template <class T>
    static bool loadCfgDataToVar(libconfig::Config* cfg, std::vector<std::string>& path, Table<T>& table,
                                 bool topLevel);

    /// The value under the joined keys. A miss gives the type's unset sentinel; in a bool table it writes
    /// "Boolean error issues" on standard output and gives false.
    template <class T>
    static T getCfgDataFromVar(const Table<T>& table, std::vector<std::string>& keys);

    template <class T>
    static T getCfgDataFromVar(const Table<T>& table, std::string k1, std::string k2, std::string k3, std::string k4,
                               std::string k5, std::string k6, std::string k7, std::string k8, std::string k9,
                               std::string k10);

    /// What a look-up without copies gives: the value itself, for strings a view of it.
    template <class T>
    using Found = std::conditional_t<std::is_same_v<T, std::string>, std::string_view, T>;

    /// The keys below the joined keys, unordered: in full if whole, else their next level only, without duplicates.
    template <class T>
    static std::vector<std::string> getCfgKeyVectorFromVar(const Table<T>& table, std::vector<std::string>& keys,
                                                           bool whole);

    /// The same for the tables of data blocks.
    template <class T>
    static bool loadCfgDataToVar(libconfig::Config* cfg, std::vector<std::string>& path, zelm::Table<T>& table,
                                 bool topLevel);
    template <class T>
    static std::vector<std::string> getCfgKeyVectorFromVar(const zelm::Table<T>& table, std::vector<std::string>& keys,
                                                           bool whole);

    /// Joins parts from index first on. Empty elements are skipped, and one between two others also takes the
    /// separator between them away: the test for a separator looks one element ahead only.
    static std::string mergeStrVect(const std::vector<std::string>& parts, unsigned int first, std::string separator);

    // ---- Spreadsheet functions ----

    /// The mean of the arguments that aren't -FLT_MAX; 0 if all are. An unset cell counts as the number that it holds.
    static float AVERAGE(float a, float b = kNotAveraged, float c = kNotAveraged, float d = kNotAveraged,
                         float e = kNotAveraged, float f = kNotAveraged, float g = kNotAveraged, float h = kNotAveraged,
                         float i = kNotAveraged)
    {
        float sum = 0.0f;
        int count = 0;
        bool allGiven = true; // but for those that were left out
        const auto add = [&](float value) {
            if (isLeftOut(value, kNotAveraged))
                return;
            sum += value;
            ++count;
            allGiven = allGiven && value > kNotAveraged;
        };
        add(a), add(b), add(c), add(d), add(e), add(f), add(g), add(h), add(i);
        if (allGiven && count > 0) [[likely]]
            return sum / static_cast<float>(count);
        return zelm::detail::averageBut(kNotAveraged, {a, b, c, d, e, f, g, h, i});
    }

    /// The least argument; unset cells never win, NaNs are passed over.
    static float MIN(float a, float b = kNotInMin, float c = kNotInMin, float d = kNotInMin, float e = kNotInMin,
                     float f = kNotInMin, float g = kNotInMin, float h = kNotInMin, float i = kNotInMin)
    {
        float least = firstLesser(a, FLT_MAX);
        const auto take = [&](float value) { least = isLeftOut(value, kNotInMin) ? least : lesser(value, least); };
        take(b), take(c), take(d), take(e), take(f), take(g), take(h), take(i);
        return least;
    }

    /// The greatest argument; an unset cell wins, NaNs are passed over. With fewer than nine arguments the smallest
    /// positive normal float takes part, so a MAX of nothing positive gives that: formulas rely on it.
    static float MAX(float a, float b = kNotInMax, float c = kNotInMax, float d = kNotInMax, float e = kNotInMax,
                     float f = kNotInMax, float g = kNotInMax, float h = kNotInMax, float i = kNotInMax)
    {
        const bool lastIsLeftOut = isLeftOut(i, kNotInMax); // and taken first, for all that were left out with it
        float greatest = firstGreater(a, lastIsLeftOut ? kNotInMax : -FLT_MAX);
        const auto take = [&](float value) {
            greatest = lastIsLeftOut && isLeftOut(value, kNotInMax) ? greatest : greater(value, greatest);
        };
        take(b), take(c), take(d), take(e), take(f), take(g), take(h), take(i);
        return greatest;
    }

    /// Floats: all that aren't unset. Ints: all but 0x7ffffffe, wrapping; an unset cell is added as a number.
    /// Strings: joined without separator.
    static float SUM(const std::vector<float>& values);
    static int SUM(const std::vector<int>& values);
    static std::string SUM(const std::vector<std::string>& values);

    static int LEN(std::string text);
    /// The position counted from 0, at or after start; -1 without a match.
    static int FIND(std::string needle, std::string text, int start);
    /// The first or last count characters; empty if text is empty, or count is negative or above its length.
    static std::string LEFT(std::string text, int count);
    static std::string RIGHT(std::string text, int count);
    /// Replaces the first occurrence only.
    static std::string SUBSTITUTE(std::string text, std::string from, std::string to);

    /// The quotient cut towards zero; 0 for a divisor below 1.
    static int QUOTIENT(int a, int b);
    /// Rounds towards positive infinity, so a negative value rounds towards zero.
    static float ROUNDUP(float value, unsigned int digits);
    /// Rounds half towards positive infinity.
    static float ROUND(float value, unsigned int digits);

    /// The values without repetitions, in order of first appearance. Without keepUnset, int 0x7ffffffe, float FLT_MAX
    /// and the empty string are left out. T is int, float or std::string.
    template <class T>
    static void UNIQUE(const std::vector<T>& in, std::vector<T>& out, bool keepUnset)
    {
        _UNIQUE<T>(in, out, keepUnset);
    }
    template <class T>
    static void _UNIQUE(const std::vector<T>& in, std::vector<T>& out, bool keepUnset); // NOLINT: published name

    /// The linear-regression forecast at x, in double precision; 0 for a count below 1. Equal X give NaN or infinity.
    static double forecast(double x, double* knownY, double* knownX, int count);

    /// fallback if value is unset, else value. NaNs and infinities aren't errors. The bool form gives value || fallback
    /// and writes "Boolean error issues" on standard output at every call.
    template <class T, class U>
    static T IFERROR(T value, U fallback)
    {
        return ISERROR(value) ? static_cast<T>(fallback) : value;
    }
    static bool IFERROR(bool value, bool fallback)
    {
        return ISERROR(value) ? fallback : value;
    }

    /// Whether IFERROR would replace value.
    template <class T>
    static bool ISERROR(T value)
    {
        if constexpr (std::is_same_v<T, bool>)
            return !reportBool(value);
        else
            return zelm::isUnset(value);
    }

    // ---- Conversions and text; numbers are written and read as in the C locale, whichever the process has set ----

    static std::string ToString(std::string value);
    /// Empty for 0x7ffffffe.
    static std::string ToString(int value);
    /// Empty for FLT_MAX, else numToTightStr within 0.01 percent.
    static std::string ToString(float value);
    /// FLT_MAX for text that doesn't start with a number or is out of range; what follows the number is ignored.
    static float s2f(const std::string& text);
    /// 0x7ffffffe for text that doesn't start with a decimal number or is out of range.
    static int s2i(const std::string& text);
    static std::string i2s(int value, int width, char fill);
    /// The shortest fixed-point text, of at most five decimals, that reads back within tolerancePercent. Leaves out
    /// alone if the tolerance isn't below 1000. Lets std::stof's exceptions through.
    static void numToTightStr(float value, std::string& out, float tolerancePercent);
    /// CLOCK_FREQ becomes "Clock Freq": words with blanks, whatever the name says.
    static void convertToCamelString(std::string& text);
    /// Blanks only, not other white space.
    static void removeWhiteSpaces(std::string& text);
    static void ltrim(std::string& text);
    static void rtrim(std::string& text);
    static void trim(std::string& text);

private:
    static bool reportBool(bool value);
};
