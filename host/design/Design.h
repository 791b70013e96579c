#pragma once

#include "host/base/JsonSource.h"
#include "host/base/SharedList.h"
#include "host/blocks/Block.h"
#include "host/design/Distribution.h"
#include "host/design/Modes.h"
#include "host/design/Supplies.h"

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zelm::host {

/// A group of like resources: the inputs of one parameter block, and how many times it stands in the device.
struct Group {
    const Block* block = nullptr;
    std::string name;
    int count = 1;
    std::string clock; ///< the name of the Clock group that clocks it, empty if none is named
    std::vector<std::pair<std::string, Value>> inputs; ///< in the design's order, legal in their cells
    std::string place;                                 ///< its path in the file: groups[2]
    std::vector<std::string> warnings;                 ///< values that are legal but most likely a slip
    std::string in{};                                  ///< its place in the hierarchy: datapath/fir; empty if none

    const Value* input(std::string_view cell) const;

    bool operator==(const Group&) const = default;
};

/// What the design says of the device; empty words are the static power model's defaults.
struct Device {
    std::string part;   ///< orderable part or device name
    std::string family; ///< series name; looked for if empty
    std::string process;
    std::string speedGrade;
    std::string voltageGrade;
    std::string powerScreen;
    std::string temperatureGrade;
    std::string overdrive;

    bool operator==(const Device&) const = default;
};

struct Cooling {
    std::string name;
    double thetaJA = 0.0; ///< degrees per watt

    bool operator==(const Cooling&) const = default;
};

struct Environment {
    std::optional<double> junction; ///< given directly, or
    std::optional<double> ambient;  ///< found from ambient and the first cooling
    std::vector<Cooling> cooling;
    std::optional<double> junctionLimit;

    bool operator==(const Environment&) const = default;
};

struct Budgets {
    std::optional<double> totalPower;    ///< W
    std::optional<double> junction;      ///< degrees Celsius
    std::map<std::string, double> rails; ///< A by rail
    std::string judgedAt;                ///< the process side that counts; empty: the worse of both

    bool operator==(const Budgets&) const = default;
};

struct Design {
    JsonSource source;
    std::string name;
    std::optional<Device> device;
    Environment environment;
    std::map<std::string, float> rails;       ///< V by rail
    std::map<std::string, double> regulators; ///< largest current, A by rail
    Supplies supplies;                        ///< the regulators among them, unless there are only those
    Budgets budgets;
    std::vector<Mode> modes;          ///< what the device does over and over; empty: always the same
    std::vector<ThermalStage> stages; ///< of the way from the junction to the air, in place of one thetaJA
    std::optional<double> batteryWattHours;
    std::vector<std::pair<std::string, Value>> staticInputs; ///< of the Static block, set by hand
    SharedList<Group> groups;
    std::vector<std::string> warnings; ///< the same, outside of groups
    std::vector<Uncertain> uncertain;  ///< values that are distributions, of which the centres count here

    /// Null if the value at that path is none.
    const Distribution* distributionAt(std::string_view path) const;
};

/// A group's path with its name in place of its index, unless that can't stand in a path: groups[line buffers].
std::string groupPath(const Design& design, std::size_t index);
/// The same for a path into a group, as readDesign tells it; others stay as they are.
std::string namedPath(const Design& design, const std::string& path);
/// "2 inputs are distributions and count with ...: ..."; empty if none is.
std::string remarkOfDistributions(const Design& design);

/// Reads a design file. Whatever is wrong with it is an Error that tells file, line, place and what was expected.
Design readDesign(const std::string& file);
Design readDesign(const Json& root, const JsonSource& source);
Design parseDesign(const std::string& file, const std::string& text);

/// An input of the static power model that has a field of its own in a design, so that no two can contradict.
struct OwnField {
    std::string_view cell;
    std::string_view place;
};
std::span<const OwnField> ownFields();

/// The blocks whose inputs a group of this block may set: a clock's inputs also reach the blocks that it feeds.
std::vector<const Block*> inputBlocks(const Block& block);

} // namespace zelm::host
