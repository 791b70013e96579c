#pragma once

#include <limits>
#include <string_view>

namespace zelm {

/// What a user input may hold. The library computes with anything; this is for hosts, which check what people write.
struct Legal {
    enum class Kind {
        number, ///< from lowest to highest, of those in text if it tells any; beyond usualHighest a slip is likely
        words,  ///< the words in text, separated by '|'
        keys,   ///< the keys of tables that text tells, and the words known, but none of those barred: see keysOf
        text    ///< any text
    };

    Kind kind = Kind::number;
    double lowest = -std::numeric_limits<double>::infinity();
    double highest = std::numeric_limits<double>::infinity();
    double usualHighest = std::numeric_limits<double>::infinity();
    std::string_view text{};
    std::string_view known{};
    std::string_view barred{};
    std::string_view rail{}; ///< the supply rail whose voltage an input takes, empty if it is no voltage of a rail
};

/// The words that the rows of cells use for what is legal in an input.
namespace legal {

inline constexpr Legal any{};
inline constexpr Legal freeText{.kind = Legal::Kind::text};
inline constexpr Legal fromZero{.lowest = 0.0};
inline constexpr Legal fromOne{.lowest = 1.0};
inline constexpr Legal aboveZero{.lowest = std::numeric_limits<float>::denorm_min()};
/// A fraction: above 1 only by mistake, most likely percent.
inline constexpr Legal share{.lowest = 0.0, .usualHighest = 1.0};
/// Toggles per clock cycle of a signal that may be a clock itself, at both edges, or glitch.
inline constexpr Legal toggles{.lowest = 0.0, .usualHighest = 2.0};
/// A clock in MHz: 10 GHz and more is most likely hertz.
inline constexpr Legal megahertz{.lowest = 0.0, .usualHighest = 10000.0};
/// Degrees Celsius of a junction, above absolute zero.
inline constexpr Legal degrees{.lowest = -273.15, .usualHighest = 150.0};

constexpr Legal between(double lowest, double highest)
{
    return {.lowest = lowest, .highest = highest};
}

constexpr double wholeNumber(std::string_view text)
{
    const bool negative = text.starts_with('-');
    double number = 0.0;
    for (const char digit : text.substr(negative ? 1 : 0))
        number = number * 10.0 + (digit - '0');
    return negative ? -number : number;
}

/// Some whole numbers, in ascending order: oneOf("1|2|4|8|16").
constexpr Legal oneOf(std::string_view list)
{
    return {.lowest = wholeNumber(list.substr(0, list.find('|'))),
            .highest = wholeNumber(list.substr(list.rfind('|') + 1)),
            .text = list};
}

/// The voltage of a supply rail. "VCCO" is the bank rail of the group's standard. An unused rail has 0 V.
constexpr Legal volts(std::string_view rail)
{
    return {.lowest = 0.0, .usualHighest = 4.0, .rail = rail};
}

/// A voltage that is no rail's.
inline constexpr Legal anyVolts{.lowest = 0.0, .usualHighest = 4.0};

/// words("SDR|DDR|Clock|Async")
constexpr Legal words(std::string_view list)
{
    return {.kind = Legal::Kind::words, .text = list};
}

inline constexpr Legal yesNo = words("YES|NO");

/// The keys of a table: keysOf("PER_NODE_CAP"). Or of a level below its first, with what the formulas put around the
/// word: keysOf("SKU_LIST/*/{}"), keysOf("FINAL_DATA/{}_CURR"), where {} is the word and * any key. Several such chains
/// are separated by '|'; a key of any of them is legal. Words known are legal whatever the tables hold: the formulas
/// name them, or a data file without them isn't whole. Keys barred serve another purpose. Both are separated by '|'
/// too.
constexpr Legal keysOf(std::string_view chain, std::string_view known = {}, std::string_view barred = {})
{
    return {.kind = Legal::Kind::keys, .text = chain, .known = known, .barred = barred};
}

} // namespace legal

/// What a model output is to the device.
struct Destination {
    enum class Kind {
        none,    ///< neither a power nor a current
        rail,    ///< load of a supply rail
        offchip, ///< power that is burnt outside the device
        shown,   ///< a figure for people, part of no sum
        part     ///< contained in another output
    };

    Kind kind = Kind::none;
    std::string_view name{};    ///< the rail ("VCCO" for the bank rail of the group's standard), or the other output
    std::string_view scaling{}; ///< an output that the load is multiplied with, empty if none
};

/// The words that the rows of cells use for where an output goes.
namespace goes {

inline constexpr Destination nowhere{};
inline constexpr Destination offchip{.kind = Destination::Kind::offchip};
inline constexpr Destination shown{.kind = Destination::Kind::shown};

constexpr Destination rail(std::string_view name, std::string_view scaling = {})
{
    return {.kind = Destination::Kind::rail, .name = name, .scaling = scaling};
}

constexpr Destination part(std::string_view output)
{
    return {.kind = Destination::Kind::part, .name = output};
}

} // namespace goes

} // namespace zelm

/// What a block tells about one cell of its parameter block, taken from the row that defines the cell.
struct ZelmCellInfo {
    enum class Kind { userInput, modelOutput, intermediate };
    enum class Type { integer, real, text };

    std::string_view name;     ///< the enumerator: CLOCK_FREQ
    std::string_view function; ///< the name behind get or calculate: ClockFreq
    Kind kind;
    Type type;
    int ordinal; ///< the enumerator's value, in the enum of the cell's type
    std::string_view
        defaultText;        ///< the default as it stands in the row, an expression if derived; empty if not an input
    std::string_view unit;  ///< empty for plain numbers and text
    zelm::Legal legal;      ///< of an input
    zelm::Destination goes; ///< of an output
    std::string_view meaning;
};

/// What a block tells about one table of its data file.
struct ZelmTableInfo {
    std::string_view group;  ///< the setting's name in the file: PER_NODE_CAP
    std::string_view member; ///< the name behind get: PerNodeCap
    std::string_view type;   ///< bool, int, float or string
    std::string_view keys;   ///< the key chain, outermost first, separated by ", "
    std::string_view unit;
    std::string_view meaning;
};
