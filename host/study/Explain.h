#pragma once

#include "host/blocks/Formulas.h"
#include "host/blocks/Trace.h"
#include "host/estimate/Results.h"
#include "host/study/Quantity.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zelm::host {

/// Where a value came from that no formula gave.
struct ValueOrigin {
    std::string kind;     ///< design, rails, device, carried or default
    std::string from{};   ///< of what is carried, or the device's: whose it is; of a distribution: which of its values
    std::string file{};   ///< empty if it stands in none
    std::size_t line = 0; ///< 0 if none is known
};

/// A look-up, and the row of the data file that answered it.
struct ExplainedLookUp {
    LookedUp what;
    std::string file;
    std::size_t line = 0; ///< 0 for a miss
};

/// A quantity or cell, and what it was worked out from.
struct ExplainedNode {
    std::string quantity;               ///< empty for a cell
    std::string_view group;             ///< of a cell: the group's name; "static power" for the model of that
    const Block* block = nullptr;       ///< of a cell
    const ZelmCellInfo* cell = nullptr; ///< of a cell
    std::string process;                ///< if it differs by process side
    std::variant<std::monostate, int, float, double, std::string> value; ///< none: unset, or thermal runaway
    std::string_view unit;
    std::string_view meaning;
    std::string words;                 ///< how the tool works a quantity out
    const Formula* formula = nullptr;  ///< of a cell that is computed
    std::vector<std::size_t> operands; ///< their ids; contributions stand largest first
    std::vector<std::size_t> terms;    ///< of a sum: the operands in the order of adding
    std::vector<ExplainedLookUp> lookUps;
    std::optional<ValueOrigin> origin; ///< of what was typed, or taken from elsewhere

    /// "total@MAX", "group:bus.CLOCK_FREQ".
    std::string name() const;
};

/// How the quantities of an estimate, which has to outlive it, come about: a net of nodes, each worked out when it is
/// asked for. A cell that several others take is one node.
class Explanation {
public:
    explicit Explanation(const Estimate& estimate);
    ~Explanation();
    Explanation(const Explanation&) = delete;
    Explanation& operator=(const Explanation&) = delete;

    std::size_t idOf(const NamedQuantity& quantity);
    /// All of it, and its operands so far as to have names and values. It stays where it is.
    const ExplainedNode& node(std::size_t id);
    /// Without its operands, look-ups and origin, unless they have been asked for.
    const ExplainedNode& head(std::size_t id) const;
    std::size_t size() const;

private:
    class Net;
    std::unique_ptr<Net> m_net;
};

} // namespace zelm::host
