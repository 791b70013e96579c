#pragma once

#include "host/base/JsonFwd.h"
#include "host/exchange/Dump.h"

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zelm::host {

struct ActivityWishes {
    std::string dump; ///< VCD or SAIF
    std::string design;
    std::optional<std::string>
        scope;                       ///< of the design in the dump, "top.dut"; else the one that has most of its groups
    std::optional<std::string> map;  ///< a file that tells which scopes and signals groups are
    std::optional<std::string> from; ///< "10 us", or a number in the dump's units
    std::optional<std::string> to;
};

/// What a dump says of one group.
struct GroupActivity {
    std::string group;
    std::string block;
    std::string scope; ///< empty if none was found
    std::string clock; ///< what its cycles were counted by, for people
    double cycles = 0.0;
    std::size_t nets = 0;
    double bits = 0.0;
    double toggles = 0.0;
    std::vector<std::pair<std::string, double>> inputs; ///< those that were set
    std::vector<std::string> kept;                      ///< inputs of activity that stayed as they were
    std::string note;                                   ///< why nothing was set
};

/// A design with the activity of a simulation, and how much of it that covers.
struct ActivityImport {
    std::string text; ///< the design, in the form of zelm format, without comments
    std::string scope;
    double seconds = 0.0; ///< of the window
    std::size_t nets = 0; ///< of the design in the dump
    std::size_t annotatedNets = 0;
    std::vector<GroupActivity> groups; ///< those that have inputs of activity
};

ActivityImport importActivity(const ActivityWishes& wishes);

} // namespace zelm::host
