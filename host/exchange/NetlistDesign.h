#pragma once

#include "host/exchange/FlatNetlist.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zelm::host {

/// What a person says of a netlist beside it.
struct NetlistWishes {
    std::vector<std::string> clocks; ///< "clk=200MHz"; others run at 200 MHz
    std::optional<std::string> part;
    std::string in;        ///< what the netlist stands in: "datapath"
    std::size_t depth = 0; ///< instances below so many levels count in what holds them; 0 for all levels
};

/// The groups of a design that a netlist makes, before they are text.
struct NetlistPlan {
    struct Clock {
        std::string name;
        std::string parameter; ///< that holds its frequency
        std::string frequency; ///< "200MHz"
        NetBit net = 0;
    };
    /// An input that activity sets: the mean of its nets' toggles per clock cycle.
    struct Rate {
        std::string cell;
        std::vector<NetBit> nets;
    };
    struct Group {
        std::string block;
        std::string name;
        std::string in;
        std::optional<std::size_t> clock;                        ///< in clocks
        std::vector<std::pair<std::string, std::string>> inputs; ///< cell and value as JSON
        std::vector<Rate> rates;
    };
    /// Cells of a type, and what became of them.
    struct Counted {
        std::string what;
        std::size_t count = 0;
        std::string fate;
    };

    std::string file;
    std::string top;
    std::size_t instances = 0;
    std::size_t cells = 0;
    std::vector<Clock> clocks;
    std::vector<Group> groups;   ///< those of Clock are not among them
    std::vector<Counted> mapped; ///< by type, all instances together
    std::vector<Counted> unmapped;
    std::vector<Counted> ports;     ///< of the top: bits and direction. Pads need a standard, which no netlist tells
    std::vector<std::string> notes; ///< what was assumed
};

NetlistPlan plannedGroups(const FlatNetlist& netlist, const NetlistWishes& wishes);

/// The plan as a design file in the form of zelm format.
std::string netlistDesign(const NetlistPlan& plan, const NetlistWishes& wishes);

/// The block memories, each of a width and depth, that a memory takes.
struct BlockMemories {
    std::string mode; ///< of Bram; empty for large ones
    std::uint64_t count = 0;
    std::uint64_t deep = 0; ///< of them stand behind each other
    int width = 0;          ///< of a port
};
/// The least that hold it; of as many, the widest and deepest, of which one in a column is active at a time.
BlockMemories blockMemories(std::uint64_t depth, std::uint64_t width, bool eachPortBoth);

/// The DSP slices of 27 x 24 bits that a multiplier takes; without signs they have a bit less.
std::uint64_t dspSlices(std::uint64_t a, std::uint64_t b, bool isSigned);

} // namespace zelm::host
