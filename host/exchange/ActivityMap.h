#pragma once

#include "host/design/Design.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::host {

/// How an input follows from what nets do.
enum class ActivityKind {
    toggles,       ///< of a bit per clock cycle
    accessToggles, ///< of a bit per access of the port
    share,         ///< of time at 1
    signalRate     ///< toggles of a bit per second, MHz
};

/// Nothing if an input is none of activity.
std::optional<ActivityKind> activityKind(const Block& block, std::string_view input);

/// The input that tells how often the port of such toggles is accessed.
std::string_view accessShareOf(std::string_view input);

/// What a person says of one group: where its nets are, its clock, and the signals of single inputs.
struct MappedGroup {
    struct Input {
        std::string cell;
        std::vector<std::string> signals; ///< "top.dut.ram.we"; "!" in front: at 0
    };
    std::string scope;
    std::string clock;                ///< a signal
    std::vector<std::string> signals; ///< those that count, in place of all of its scope
    std::vector<Input> inputs;
};

/// Reads {"group": "scope", "other group": {"scope": ..., "clock": ..., "signals": [...], "inputs": {...}}}. An Error
/// tells file, line, place and the nearest name.
std::map<std::string, MappedGroup> readActivityMap(const std::string& file, const Design& design);

} // namespace zelm::host
