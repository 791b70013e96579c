#pragma once

#include "host/exchange/FlatNetlist.h"
#include "host/exchange/NetlistDesign.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace zelm::host {

/// What a net does, seen once per clock cycle: the share of cycles in which it is 1, and that of cycles in which it
/// changes.
struct NetActivity {
    double probability = 0.5;
    double density = 0.0;
};

/// A LUT's output from its inputs, which are taken as independent of each other: exact then, whatever changes at once.
/// Bit i of the table is the output where the inputs, the first being the lowest digit, read i.
NetActivity throughLut(std::uint64_t table, const std::vector<NetActivity>& inputs);

/// A register that loads only in some cycles. What it loads is taken to forget its past at the same rate in each cycle.
NetActivity throughEnable(const NetActivity& data, double enabled);

/// The activity of a netlist's nets from that of its inputs.
struct Propagation {
    /// LUTs of an instance, and how many of them aren't exact: inputs that hang on a common net aren't independent.
    struct Part {
        std::string path;
        std::size_t luts = 0;
        std::size_t reconvergent = 0;
    };
    std::vector<NetActivity> nets{}; ///< by net of the flat netlist
    std::vector<bool> driven{};      ///< by net: what nothing drives has no activity
    std::vector<Part> parts{};
    std::vector<std::pair<std::string, std::size_t>> guessed{}; ///< types of cells without a truth table, and how many
    std::size_t looped = 0;                                     ///< LUTs in circles without a register
    std::size_t rounds = 0;                                     ///< until registers gave what they had taken
    double moved = 0.0;                                         ///< by how much they still differed in the last
    bool settled = false;
};

/// Inputs are "port=PROBABILITY,DENSITY" or "port[3]=..."; others have 0.5 and 0.125. An Error tells of a port that
/// isn't there and of shares that can't be.
Propagation propagated(const FlatNetlist& netlist, const std::vector<std::string>& inputs);

/// The design with the toggle rates of the plan's groups that it has, by their names.
struct RatedDesign {
    std::string text;
    std::size_t groups = 0;             ///< that were set
    std::vector<std::string> missing{}; ///< groups of the plan that the design doesn't have
};
RatedDesign rated(const std::string& file, const NetlistPlan& plan, const Propagation& propagation);

/// Named nets and what they do, as CSV; each once, by its outermost name.
std::string netsCsv(const FlatNetlist& netlist, const Propagation& propagation);

} // namespace zelm::host
