#pragma once

#include "framework/ZelmExport.h"

#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace zelm {

/// What parameter blocks do with the names of their cells, compiled once for all of them.
class ZELM_EXPORT CellNames {
public:
    using Names = std::vector<std::string>;
    using Ordinals = std::unordered_map<std::string, unsigned int>;

    /// Fills an empty table with the names in enumSource, all but the last; leaves a filled one alone.
    static void fill(Names& table, std::string enumSource, std::mutex& mutex);
    static void fill(Ordinals& table, std::string enumSource, std::mutex& mutex);

    /// A table that populate has filled.
    static Names filled(void (*populate)(Names& table, std::string enumSource), std::string_view enumSource);
    static Ordinals filled(void (*populate)(Ordinals& table, std::string enumSource), std::string_view enumSource);

    /// "StringError" if there are not as many.
    static std::string nameOf(const Names& names, unsigned int ordinal);
    /// last if no cell has that name.
    static unsigned int ordinalOf(const Ordinals& ordinals, const std::string& name, unsigned int last);

    /// Replaces list by the names between two markers.
    static void list(Names& list, const Names& names, int first, int last);

    /// Appends a line of reflect() for each cell between two markers.
    static void reflect(std::string& text, const Names& names, std::span<const int> cells, int first, int last);
    static void reflect(std::string& text, const Names& names, std::span<const float> cells, int first, int last);
    static void reflect(std::string& text, const Names& names, std::span<const std::string> cells, int first, int last);
};

} // namespace zelm
