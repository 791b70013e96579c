#pragma once

#include "framework/ZelmInfo.h"
#include "framework/ZelmLookUpMisses.h"
#include "framework/ZelmWatcher.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>
#include <vector>

namespace zelm::host {

/// A cell's value; std::monostate is an unset cell.
using Value = std::variant<std::monostate, int, float, std::string>;

/// Where the values of a parameter block's cells stand, by type and ordinal; unset ones hold their marks.
struct CellSlots {
    int* ints;
    float* floats;
    std::string* strings;
};

/// One parameter block of a kind that is chosen at run time.
class Instance {
public:
    virtual ~Instance() = default;
    virtual void set(const ZelmCellInfo& cell, const Value& value) = 0;
    virtual Value get(const ZelmCellInfo& cell) const = 0;
    /// Where a float cell's value stands, the unset one's too, for those who look at it often.
    virtual const float& slot(const ZelmCellInfo& cell) const = 0;
    /// Where all values stand, for those who set and look at many and never recalculate.
    virtual CellSlots slots() = 0;
    /// The value of a float cell, if it is set.
    std::optional<float> real(const ZelmCellInfo& cell) const;
    virtual void calculate() = 0;
    /// calculate, by way of another instance of the kind, which takes over the inputs and recalculates: little to do if
    /// it held nearly the same ones before. What the formulas do is seen by watchers only as far as they do it again.
    virtual void calculateBy(Instance& other, std::span<const ZelmCellInfo* const> inputs) = 0;
    /// calculate, but only of what depends on the inputs that were set since the last call. The first call finds out
    /// what depends on what, which costs more than calculate.
    virtual void recalculate() = 0;
    /// The same, but only these cells need to be up to date.
    virtual void recalculate(std::span<const CellRef> wanted) = 0;
    /// Computes one cell that calculate may leave out.
    virtual void pull(const ZelmCellInfo& cell) = 0;
};

/// A row missing from a data file.
struct MissingRow {
    std::string table;
    std::string key;

    bool operator==(const MissingRow&) const = default;
};

/// Of names of cells, blocks and rails, by their length and the words at their ends and in their middle: most of what
/// is looked up is a name that the code knows, and is looked up often.
struct NameHash {
    std::size_t operator()(std::string_view name) const noexcept;
};
template <class T>
using ByName = std::unordered_map<std::string_view, T, NameHash>;

/// A resource kind.
struct Block {
    std::string_view name;
    std::string_view subsystem;
    std::string_view title;
    std::span<const ZelmCellInfo> cells;
    std::span<const ZelmTableInfo> tables;

    std::unique_ptr<Instance> (*create)();
    /// How often the data has been loaded: what was computed from it belongs to one load.
    unsigned (*loads)();
    /// Loads the data file unless it is loaded. An Error for people if it is missing, broken or lacks a table.
    void (*load)();
    std::vector<std::string> (*keys)(std::vector<std::string> chain, bool whole);
    std::string_view (*groupOf)(const void* table);

    ByName<const ZelmCellInfo*> cellsByName;
    std::vector<const ZelmCellInfo*> inputs;
    std::vector<const ZelmCellInfo*> voltages;    ///< inputs that hold a rail's voltage
    std::vector<const ZelmCellInfo*> deviceNames; ///< inputs that name the device
    std::vector<const ZelmCellInfo*> speedGrades; ///< inputs that hold its speed grade
    std::vector<const ZelmCellInfo*> powers;      ///< outputs that load a rail, or burn power off chip

    const ZelmCellInfo* findCell(std::string_view cell) const;
    /// An Error that names the nearest cells if there is none of that name.
    const ZelmCellInfo& cell(std::string_view name) const;
    const ZelmCellInfo& input(std::string_view name) const;
    std::string dataFile() const;
    /// The noted misses that are this block's, each once.
    std::vector<MissingRow> missingRows(const LookUpMisses& misses) const;
};

std::span<const Block> blocks();
/// The place of a block among them.
std::size_t placeOf(const Block& block);
/// An Error that names the nearest blocks if there is none of that name.
const Block& block(std::string_view name);

/// The value that text stands for in a cell; an Error if it doesn't fit the cell's type.
Value parseValue(const ZelmCellInfo& cell, std::string_view text);
std::string valueText(const Value& value);
/// A default as people write it: 200.0f is "200", "OTHER" loses its quotes; empty if the default is derived.
std::string constantDefault(const ZelmCellInfo& cell);

std::string_view kindWord(ZelmCellInfo::Kind kind);
std::string_view typeWord(ZelmCellInfo::Type type);

} // namespace zelm::host
