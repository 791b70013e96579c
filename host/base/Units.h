#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::host {

/// The powers of what units are made of: seconds, bits, volts, amperes, degrees. None of them: a plain number.
using Dimension = std::array<int, 5>;
inline constexpr Dimension kPlain{};

/// A unit that designs and command lines may write: 1 of it is factor x 10^exponent of what its dimension counts in.
struct Unit {
    std::string_view symbol;
    Dimension dimension;
    int exponent;
    double factor = 1.0;
};
inline constexpr std::size_t kUnitCount = 66;
std::span<const Unit, kUnitCount> units();
/// Null if there is none. "µs", "°C" and "Ω" are other ways to write "us", "C" and "ohm".
const Unit* findUnit(std::string_view symbol);
/// An Error that names the nearest units if there is none.
const Unit& unit(std::string_view symbol);
/// The units of a dimension, for patterns of what may be written.
std::vector<std::string> unitsLike(std::string_view symbol);

/// A number in what its dimension counts in: hertz, bits per second, volts.
struct Quantity {
    double value = 0.0;
    Dimension dimension = kPlain;
};

/// A number and its unit as people write them: "322 MHz", "12.5%". The number is decimal text still, so that a
/// conversion between units of ten rounds once: "850 mV" is the double that 0.85 is.
struct WrittenQuantity {
    std::string_view number;
    const Unit* unit = nullptr;
};
/// Nothing if the text is no number with something behind it; an Error if that is no unit.
std::optional<WrittenQuantity> writtenQuantity(std::string_view text);

/// The unit that a text's number is written with; empty if there is none.
std::string writtenUnitIn(std::string_view text);

/// The number of units of that symbol; "" for a plain number. An Error names both if the dimensions differ.
double inUnit(const WrittenQuantity& written, std::string_view symbol);
double inUnit(const Quantity& quantity, std::string_view symbol);
Quantity quantityOf(const WrittenQuantity& written);

/// The whole text as a finite number.
std::optional<double> plainNumber(std::string_view text);

/// "a frequency", "a plain number", or the powers themselves: "V^2/s".
std::string dimensionWords(const Dimension& dimension);
/// "a frequency (MHz)", "a plain number": what is expected where a unit stands.
std::string expectedWords(std::string_view symbol);

} // namespace zelm::host
