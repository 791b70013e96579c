#pragma once

#include "host/blocks/Block.h"

#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

namespace zelm::host {

/// What a table look-up asked for and found; std::monostate is a miss.
struct LookedUp {
    const ZelmTableInfo* table = nullptr;
    std::vector<std::string> keys;
    std::variant<std::monostate, bool, int, float, std::string> value;

    /// The keys as a data file has them, joined by '.'.
    std::string row() const;

    bool operator==(const LookedUp&) const = default;
};

/// What a cell was computed from.
struct CellTrace {
    std::vector<const ZelmCellInfo*> operands; ///< each once, in the order of reading
    std::vector<LookedUp> lookUps;             ///< each once
};

/// A run of a block's formulas of which is known what each cell was computed from.
class Trace {
public:
    /// Inputs that are given are set, the others take their defaults.
    Trace(const Block& block, const std::vector<std::pair<const ZelmCellInfo*, Value>>& given);

    const Block& block() const
    {
        return *m_block;
    }
    Value value(const ZelmCellInfo& cell);
    /// Null for an input that was given: it was computed from nothing.
    const CellTrace* of(const ZelmCellInfo& cell);

private:
    class Recorder;

    void pull(const ZelmCellInfo& cell);

    const Block* m_block;
    std::unique_ptr<Instance> m_instance;
    std::unordered_map<const ZelmCellInfo*, CellTrace> m_traces;
};

} // namespace zelm::host
