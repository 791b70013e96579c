#pragma once

#include "framework/ZelmInfo.h"
#include "framework/ZelmParams.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::test {

/// A zelm::Recalculation with its types erased.
class Recalculated {
public:
    virtual ~Recalculated() = default;
    /// Sets an input to what it holds in from, unset ones too.
    virtual void set(const ZelmCellInfo& cell, ZelmParams& from) = 0;
    virtual void recalculate() = 0;
    virtual void recalculate(const ZelmCellInfo& wanted) = 0;
};

/// A block with its types erased: cells go by type and name, so that what is tested of every block compiles once.
struct Block {
    using Type = ZelmCellInfo::Type;

    std::string_view paramsName, dataName, modelName;
    std::span<const ZelmCellInfo> (*cells)();
    std::span<const ZelmTableInfo> (*tables)();
    std::string (*classNames)(); ///< of the parameter, data and model block, joined by blanks
    /// The nine name lists: inputs, outputs and intermediates, each as ints, floats and strings.
    std::vector<std::vector<std::string>> (*nameLists)();
    bool (*reload)();
    std::vector<std::string> (*keysOf)(std::string_view group);

    std::unique_ptr<ZelmParams> (*makeParams)();
    /// The name that comes back from name -> enumerator -> name.
    std::string (*thereAndBack)(Type type, const std::string& name);
    int& (*intCell)(ZelmParams& params, const std::string& name);
    float& (*floatCell)(ZelmParams& params, const std::string& name);
    std::string& (*stringCell)(ZelmParams& params, const std::string& name);
    void (*calculate)(ZelmParams& params);
    void (*pull)(ZelmParams& params, Type type, const std::string& name);
    std::unique_ptr<Recalculated> (*recalculation)(ZelmParams& params);
    /// Sets an input to what it holds in from, unset ones too.
    void (*copyCell)(const ZelmCellInfo& cell, ZelmParams& from, ZelmParams& to);
    /// The name and both values of the first cell that isn't the same bits, empty if all are.
    std::string (*firstDifference)(ZelmParams& a, ZelmParams& b);
    /// The same of one cell.
    std::string (*difference)(const ZelmCellInfo& cell, ZelmParams& a, ZelmParams& b);
};

/// The block of a model; instantiated in the sources that the build makes from Blocks.def.
template <class Model>
const Block& block();

} // namespace zelm::test
