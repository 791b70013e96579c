#pragma once

#include "framework/ZelmArithmetic.h"
#include "framework/ZelmExport.h"
#include "framework/ZelmHelperUtils.h"
#include "framework/ZelmModel.h"
#include "framework/ZelmUnset.h"

#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace zelm {

/// The cell that stands offset places behind first: how a family's member finds the cells of its metrics.
template <class Enum>
constexpr Enum cellBehind(Enum first, int offset)
{
    return static_cast<Enum>(static_cast<int>(first) + offset);
}

} // namespace zelm

/// A model block: the formulas of one resource kind, each a function of the block's cells and tables. It has no state,
/// so any number of threads may run it on different parameter blocks.
template <class Derived, class ParamsT, class DataT>
class ZELM_EXPORT ZelmModelBlock : public ZelmModel {
public:
    using Params = ParamsT;
    using Data = DataT;

    static const Derived& getGlobal();
    static Derived& getMutableGlobal();

    std::string className() const override;

    /// Loads the data block if nothing has before, clears intermediates and outputs, and pulls the outputs. User inputs
    /// stay; unset ones that a formula reads take their defaults.
    void calculate(Params& params) const;

protected:
    ZelmModelBlock() = default;
    ~ZelmModelBlock() = default;

    /// The cell pattern: the cell if it is set, else the formula's value, narrowed, stored and returned. A value that
    /// is the sentinel itself counts as not computed and is computed again at the next pull.
    template <class Cell, class Formula>
    static Cell once(Cell& cell, Formula formula)
    {
        using Value = std::invoke_result_t<Formula>;
        static_assert(std::is_same_v<Cell, int> == std::is_same_v<Value, int>, "truncate or convert in the formula");
        if (zelm::isUnset(cell))
            cell = static_cast<Cell>(formula());
        return cell;
    }

    template <class Formula>
    static std::string_view once(std::string& cell, Formula formula)
    {
        if (zelm::isUnset(cell))
            cell = formula();
        return cell;
    }
};
