#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zelm::host {

/// A column of what a study tells of each of its points.
struct PointColumn {
    enum class Type { real, whole, text };

    std::string name;
    std::string unit;
    Type type = Type::real;
    std::size_t width = 0;  ///< of text: bytes of the longest
    bool isSetting = false; ///< or a quantity

    /// "parameters.fclk [MHz]"
    std::string heading() const;
};
using PointColumns = std::vector<PointColumn>;
/// One for each column, of its type; NaN where a number isn't known.
using PointRow = std::vector<std::variant<double, std::int64_t, std::string>>;

/// What the points of a study are written as.
enum class PointForm { csv, jsonLines, hdf5 };

/// The form that a file's name ends in; an Error names the endings.
PointForm pointFormOf(const std::string& file);

/// What stands in front of all rows.
std::string pointHead(PointForm form, const PointColumns& columns);
/// Adds a row to a text: a line, or for HDF5 the bytes that Hdf5Points takes.
void addPoint(std::string& text, PointForm form, const PointColumns& columns, const PointRow& row);

/// The bytes of a row for HDF5.
std::size_t packedBytes(const PointColumn& column);
std::size_t packedBytes(const PointColumns& columns);

} // namespace zelm::host
