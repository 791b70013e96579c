#pragma once

#include "framework/ZelmExport.h"
#include "framework/ZelmHelperUtils.h"
#include "framework/ZelmModel.h"
#include "framework/ZelmWatcher.h"

#include <span>
#include <string>
#include <string_view>

namespace zelm {
template <class Model>
class Sheet;
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

    /// Pulls the outputs that calculate pulls, without clearing anything: what is set stays.
    void pullOutputs(Params& params, const Data& data) const;

    /// Pulls one cell that is chosen at run time, by its get or calculate function. Markers do nothing.
    void pull(typename Params::IntEnum cell, Params& params, const Data& data) const;
    void pull(typename Params::FloatEnum cell, Params& params, const Data& data) const;
    void pull(typename Params::StringEnum cell, Params& params, const Data& data) const;
    /// The same for several cells.
    void pull(std::span<const zelm::CellRef> cells, Params& params, const Data& data) const;

protected:
    ZelmModelBlock() = default;
    ~ZelmModelBlock() = default;

    /// What pull gives: the bodies of the published functions.
    static int pulled(typename Params::IntEnum cell, Params& params, const Data& data);
    static float pulled(typename Params::FloatEnum cell, Params& params, const Data& data);
    static std::string pulled(typename Params::StringEnum cell, Params& params, const Data& data);
};
