#pragma once

#include "framework/ZelmDependencies.h"
#include "framework/ZelmExport.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zelm {

/// The work of a Recalculation. It knows the block by its three arrays of cells, so that it is compiled once for all.
class ZELM_EXPORT RecalculationOfCells {
public:
    virtual ~RecalculationOfCells() = default;
    RecalculationOfCells& operator=(const RecalculationOfCells&) = delete;

    /// Sets an input, by its place in the array of its type. The unset sentinel gives it back to its default.
    void setInt(int cell, int value);
    void setFloat(int cell, float value);
    void setString(int cell, std::string_view value);

    /// Brings all cells up to date.
    void recalculate();
    /// Brings these up to date, and of the others just what they are computed from: the rest may be unset until
    /// somebody asks for it. A wanted cell that calculate leaves out is computed, too.
    void recalculate(std::span<const CellRef> wanted);

protected:
    /// The cells between two markers.
    struct Range {
        int first;
        int last;
    };
    template <class Value>
    struct Cells {
        Value* values;
        int size; ///< markers included
        Range inputs;
    };

    RecalculationOfCells(Cells<int> ints, Cells<float> floats, Cells<std::string> strings);
    RecalculationOfCells(const RecalculationOfCells&) = default;

private:
    using Node = Dependencies::Node;

    virtual unsigned loads() const = 0;     // of the data block
    virtual void clearComputed() const = 0; // intermediates and outputs
    virtual void pullOutputs() const = 0;
    virtual void pull(std::span<const CellRef> cells) const = 0;

    template <class Visit>
    void forEachInput(Visit visit) const;
    template <class Value, class Given>
    void assign(CellRef cell, const Cells<Value>& cells, const Given& value);
    bool isUnsetAt(CellRef cell) const;
    void unset(CellRef cell);
    bool isOutOfDate() const;
    void forgetDependents();
    void findDependents();
    void calculateAll();
    template <class Pull>
    void run(Pull pullCells);
    void unsetUnread();

    Cells<int> m_ints;
    Cells<float> m_floats;
    Cells<std::string> m_strings;
    Dependencies m_dependencies;
    std::vector<bool> m_given; // which inputs the host has set
    std::vector<Node> m_changed;
    std::vector<Node> m_dependents;
    std::vector<float*> m_dependentFloats; // of those, where nearly all of them stand
    std::vector<CellRef> m_otherDependents;
    std::vector<Node> m_dependentsOf; // what they were found for,
    unsigned m_version = 0;           // and when
    std::vector<bool> m_isRoot;       // what calculate pulls itself
    std::vector<CellRef> m_dependentRoots;
    std::vector<CellRef> m_unsetWanted;
    std::vector<Node> m_unread;
    unsigned m_loads = 0;
    bool m_pending = false;     // some roots were left unset
    bool m_mayBeUnread = false; // a cell that is set: what read it reads less, or was given
    bool m_all = true;
};

/// A parameter block whose inputs are set one at a time, and of which only what depends on them is computed again.
/// After recalculate every cell holds what calculate gives on a fresh block with the same inputs set, bit by bit.
///
/// Nobody else may write to the parameter block meanwhile. A data block that is loaded anew is noticed.
template <class Model>
class Recalculation final : public RecalculationOfCells {
public:
    using Params = typename Model::Params;
    using Data = typename Model::Data;
    using IntCell = typename Params::IntEnum;
    using FloatCell = typename Params::FloatEnum;
    using StringCell = typename Params::StringEnum;

    /// Inputs that are set now count as set by the host; the others take their defaults.
    Recalculation(const Model& model, Params& params, const Data& data)
        : RecalculationOfCells(
              {&params[Params::FirstUIInt], Params::LastInt, {Params::FirstUIInt, Params::LastUIInt}},
              {&params[Params::FirstUIFloat], Params::LastFloat, {Params::FirstUIFloat, Params::LastUIFloat}},
              {&params[Params::FirstUIString], Params::LastString, {Params::FirstUIString, Params::LastUIString}}),
          m_model(model), m_params(params), m_data(data)
    {
    }

    /// Sets an input. The unset sentinel gives it back to its default.
    void set(IntCell cell, int value)
    {
        setInt(cell, value);
    }
    void set(FloatCell cell, float value)
    {
        setFloat(cell, value);
    }
    void set(StringCell cell, std::string_view value)
    {
        setString(cell, value);
    }

private:
    unsigned loads() const override
    {
        return m_data.loads();
    }
    void clearComputed() const override
    {
        m_params.resetIntermediateCalculations();
        m_params.resetModelOutputs();
    }
    void pullOutputs() const override
    {
        m_model.pullOutputs(m_params, m_data);
    }
    void pull(std::span<const CellRef> cells) const override
    {
        m_model.pull(cells, m_params, m_data);
    }

    const Model& m_model;
    Params& m_params;
    const Data& m_data;
};

} // namespace zelm
