#pragma once

#include "host/exchange/Netlist.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zelm::host {

/// What a cell is to the fabric.
enum class CellKind {
    lut,
    carry,
    flipFlop,
    latch,
    shiftRegister,
    memory,
    multiplier,
    nothing, ///< no hardware: checks and prints
    unknown,
};

struct CellRole {
    CellKind kind = CellKind::unknown;
    std::string_view clock{};   ///< the port that clocks it
    std::string_view control{}; ///< of a register: "enable, synchronous reset"
};

/// What a cell's type is, by the names that synthesis gives.
CellRole roleOf(std::string_view type);

/// A netlist without hierarchy: every instance of every module has nets and cells of its own.
struct FlatNetlist {
    struct Instance {
        std::string path; ///< below the top: "fir/tap0", the top's is empty
        std::uint32_t module = 0;
        std::uint32_t firstBit = 0; ///< of its bits among those of all
    };
    struct Cell {
        std::uint32_t instance = 0;
        std::uint32_t cell = 0; ///< in its module's list
    };

    const Netlist* netlist = nullptr;
    std::vector<Instance> instances{}; ///< the top first
    std::vector<Cell> cells{};         ///< all that aren't instances of modules with content
    std::vector<CellRole> roles{};     ///< by names of types
    std::vector<NetBit> nets{};        ///< the net of each bit of each instance
    std::uint32_t netCount = 0;

    const Netlist::Module& top() const
    {
        return netlist->modules[instances.front().module];
    }
    const Netlist::Module& moduleOf(const Cell& cell) const
    {
        return netlist->modules[instances[cell.instance].module];
    }
    const Netlist::Cell& of(const Cell& cell) const
    {
        return moduleOf(cell).cells[cell.cell];
    }
    const CellRole& roleOf(const Cell& cell) const
    {
        return roles[of(cell).type];
    }
    const std::string& typeOf(const Cell& cell) const
    {
        return netlist->names[of(cell).type];
    }
    /// A bit's net among all, or the constant that it is or is tied to.
    NetBit net(std::uint32_t instance, NetBit bit) const
    {
        return isConstant(bit) ? bit : nets[instances[instance].firstBit + bit];
    }
    /// The nets at a cell's port; none if it has no such port.
    std::vector<NetBit> netsAt(const Cell& cell, std::string_view port) const;
    /// Where a connection goes; by its port's name where the file doesn't say.
    PortDirection directionOf(const Cell& cell, const Netlist::Connection& connection) const;
};

/// Spreads a netlist from its top, the module that is marked so or that no other holds. An Error tells of a top that
/// isn't there, modules that hold themselves, and more instances than a design can need.
FlatNetlist flattened(const Netlist& netlist, const std::optional<std::string>& top);

} // namespace zelm::host
