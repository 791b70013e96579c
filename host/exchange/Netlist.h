#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::host {

/// A bit of a net of a module: its number there, from 0 on, or one of the constants.
using NetBit = std::uint32_t;
inline constexpr NetBit kBit0 = 0xFFFFFFFC;
inline constexpr NetBit kBit1 = 0xFFFFFFFD;
inline constexpr NetBit kBitX = 0xFFFFFFFE; ///< x and z
inline constexpr bool isConstant(NetBit bit)
{
    return bit >= kBit0;
}

/// Where a signal goes at a port, as its module or cell sees it.
enum class PortDirection : std::uint8_t { unknown, input, output, both };

/// A place in a module's list of bits.
struct BitRange {
    std::uint32_t first = 0;
    std::uint32_t count = 0;
};

/// A netlist as JSON has it after synthesis: modules of cells, some of which are instances of other modules.
struct Netlist {
    struct Port {
        std::string name;
        PortDirection direction = PortDirection::unknown;
        BitRange bits{};
    };
    struct Connection {
        std::uint32_t port = 0; ///< in names
        PortDirection direction = PortDirection::unknown;
        BitRange bits{};
    };
    struct Parameter {
        std::uint32_t name = 0; ///< in names
        std::string value;      ///< digits of a binary number, or a text; the begin of a long one
    };
    struct Cell {
        std::string name;
        std::uint32_t type = 0; ///< in names
        BitRange connections{}; ///< in the module's list of them
        BitRange parameters{};
    };
    struct Net {
        std::string name;
        BitRange bits{};
    };
    struct Module {
        std::string name;
        bool top = false;
        bool blackBox = false;
        std::uint32_t bitCount = 0; ///< of different bits that aren't constant
        std::vector<Port> ports{};
        std::vector<Cell> cells{};
        std::vector<Net> nets{}; ///< those with a name that a person gave
        std::vector<Connection> connections{};
        std::vector<Parameter> parameters{};
        std::vector<NetBit> bits{};

        std::span<const NetBit> at(BitRange range) const
        {
            return std::span(bits).subspan(range.first, range.count);
        }
        std::span<const Connection> of(const Cell& cell) const
        {
            return std::span(connections).subspan(cell.connections.first, cell.connections.count);
        }
    };

    std::string file;
    std::vector<Module> modules{};
    std::vector<std::string> names{}; ///< of types, ports and parameters, each once

    /// The bits at a cell's port; none if it has no such port.
    std::span<const NetBit> bitsAt(const Module& module, const Cell& cell, std::string_view port) const;
    /// A parameter's text; empty if it isn't there.
    std::string_view parameter(const Module& module, const Cell& cell, std::string_view name) const;
    /// The same as a number, which JSON writes as binary digits; an Error, with its place, if it isn't one.
    std::uint64_t number(const Module& module, const Cell& cell, std::string_view name) const;
    /// "synth.json: modules.top.cells.$mul$1"
    std::string at(const Module& module, const Cell& cell) const;
};

/// Reads a netlist. An Error tells the line of what is no JSON, and the path of what is no netlist.
Netlist readNetlist(const std::string& file);
Netlist parseNetlist(const std::string& text, const std::string& file);

} // namespace zelm::host
