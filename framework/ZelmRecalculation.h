#pragma once

#include "framework/ZelmExport.h"
#include "framework/ZelmUnset.h"
#include "framework/ZelmWatcher.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace zelm {

/// Which cells each cell of a run was computed from, kept up to date while parts of it are computed again.
class ZELM_EXPORT Dependencies final : public Watcher {
public:
    using Node = std::uint16_t;

    /// Of a block with so many cells in its three arrays, markers included.
    Dependencies(int ints, int floats, int strings);

    Node nodeOf(CellRef cell) const
    {
        return static_cast<Node>(m_first[static_cast<std::size_t>(cell.type)] + cell.ordinal);
    }
    CellRef cellOf(Node node) const;
    std::size_t size() const
    {
        return m_operands.size();
    }

    /// Forgets everything; a run from the beginning follows.
    void clear();

    /// Whether the cell was computed from others.
    bool hasOperands(Node node) const
    {
        return !m_operands[node].empty();
    }

    /// Adds to found all cells that were computed from changed ones, directly or through others, each once. A fixed
    /// cell was given from outside and ends the way.
    void findDependents(const std::vector<Node>& changed, const std::vector<bool>& fixed, std::vector<Node>& found);

    /// Whether a cell has read less than the time before, since this was asked last. What it reads no more may hold a
    /// value that a run from the beginning wouldn't have given it.
    bool takeLostOperands();

    void onRead(CellRef cell) override;
    void onCompute(CellRef cell) override;
    void onComputed(CellRef cell) override;

private:
    // A cell that is being computed. As long as it reads what it read the last time there is nothing to note.
    struct Frame {
        Node node;
        std::size_t read = 0;
        std::vector<Node> before{}; // the rest of the last time's reads, once it has left them
    };

    int m_first[3];
    std::vector<std::vector<Node>> m_operands; // in the order of reading
    std::vector<std::vector<Node>> m_readers;
    std::vector<Frame> m_frames;
    std::vector<unsigned> m_foundIn; // the search that found the node last
    unsigned m_search = 0;
    bool m_lostOperands = false;
};

/// A parameter block whose inputs are set one at a time, and of which only what depends on them is computed again.
/// After recalculate every cell holds what calculate gives on a fresh block with the same inputs set, bit by bit.
///
/// Nobody else may write to the parameter block meanwhile. A data block that is loaded anew is noticed.
template <class Model>
class Recalculation {
public:
    using Params = typename Model::Params;
    using Data = typename Model::Data;
    using IntCell = typename Params::IntEnum;
    using FloatCell = typename Params::FloatEnum;
    using StringCell = typename Params::StringEnum;

    /// Inputs that are set now count as set by the host; the others take their defaults.
    Recalculation(const Model& model, Params& params, const Data& data)
        : m_model(model), m_params(params), m_data(data),
          m_dependencies(Params::LastInt, Params::LastFloat, Params::LastString), m_given(m_dependencies.size(), false)
    {
        forEachInput([this](auto cell) { m_given[nodeOf(cell)] = !isUnset(m_params[cell]); });
    }

    /// Sets an input. The unset sentinel gives it back to its default.
    void set(IntCell cell, int value)
    {
        assign(cell, value);
    }
    void set(FloatCell cell, float value)
    {
        assign(cell, value);
    }
    void set(StringCell cell, std::string_view value)
    {
        assign(cell, value);
    }

    void recalculate()
    {
        if (m_all || m_data.loads() != m_loads) {
            calculateAll();
        } else if (!m_changed.empty()) {
            m_dependents.clear();
            m_dependencies.findDependents(m_changed, m_given, m_dependents);
            for (const Dependencies::Node node : m_dependents)
                unset(node);
            run();
            if (m_dependencies.takeLostOperands())
                calculateAll();
        }
        m_changed.clear();
    }

private:
    template <class Cell>
    Dependencies::Node nodeOf(Cell cell) const
    {
        return m_dependencies.nodeOf({typeOf(cell), static_cast<int>(cell)});
    }
    static constexpr ZelmCellInfo::Type typeOf(IntCell)
    {
        return ZelmCellInfo::Type::integer;
    }
    static constexpr ZelmCellInfo::Type typeOf(FloatCell)
    {
        return ZelmCellInfo::Type::real;
    }
    static constexpr ZelmCellInfo::Type typeOf(StringCell)
    {
        return ZelmCellInfo::Type::text;
    }

    template <class Visit>
    static void forEachInput(Visit visit)
    {
        for (int cell = Params::FirstUIInt + 1; cell < Params::LastUIInt; ++cell)
            visit(static_cast<IntCell>(cell));
        for (int cell = Params::FirstUIFloat + 1; cell < Params::LastUIFloat; ++cell)
            visit(static_cast<FloatCell>(cell));
        for (int cell = Params::FirstUIString + 1; cell < Params::LastUIString; ++cell)
            visit(static_cast<StringCell>(cell));
    }

    static bool same(float a, float b)
    {
        return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
    }
    template <class Value>
    static bool same(const Value& a, const Value& b)
    {
        return a == b;
    }

    template <class Cell, class Value>
    void assign(Cell cell, const Value& value)
    {
        auto& slot = m_params[cell];
        const Dependencies::Node node = nodeOf(cell);
        const bool given = !isUnset(value);
        if (m_given[node] == given &&
            (!given || same(slot, static_cast<std::remove_reference_t<decltype(slot)>>(value))))
            return;
        // What its default was computed from may now be read by nobody.
        m_all = m_all || (given && !m_given[node] && m_dependencies.hasOperands(node));
        m_given[node] = given;
        slot = value;
        m_changed.push_back(node);
    }

    void unset(Dependencies::Node node)
    {
        const CellRef cell = m_dependencies.cellOf(node);
        if (cell.type == ZelmCellInfo::Type::integer)
            m_params[static_cast<IntCell>(cell.ordinal)] = unsetInt;
        else if (cell.type == ZelmCellInfo::Type::real)
            m_params[static_cast<FloatCell>(cell.ordinal)] = unsetFloat;
        else
            m_params[static_cast<StringCell>(cell.ordinal)] = unsetString;
    }

    void calculateAll()
    {
        m_dependencies.clear();
        forEachInput([this](auto cell) {
            if (!m_given[nodeOf(cell)])
                unset(nodeOf(cell));
        });
        m_params.resetIntermediateCalculations();
        m_params.resetModelOutputs();
        m_loads = m_data.loads();
        run();
        m_dependencies.takeLostOperands();
        m_all = false;
    }

    void run()
    {
        const Watching watching(m_dependencies);
        m_model.pullOutputs(m_params, m_data);
    }

    const Model& m_model;
    Params& m_params;
    const Data& m_data;
    Dependencies m_dependencies;
    std::vector<bool> m_given; // which inputs the host has set
    std::vector<Dependencies::Node> m_changed;
    std::vector<Dependencies::Node> m_dependents;
    unsigned m_loads = 0;
    bool m_all = true;
};

} // namespace zelm
