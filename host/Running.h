#pragma once

#include "host/Estimate.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zelm::host {

struct ResolvedDevice;

/// The voltages that the design's rails give, else the device's nominal ones.
class RailVolts {
public:
    RailVolts(const Design& design, const ResolvedDevice* device);

    struct Known {
        float volts;
        InputValue::Origin origin;
    };
    std::optional<Known> find(const std::string& rail) const;
    std::optional<double> volts(const std::string& rail) const;

private:
    std::map<std::string, Known> m_known;
};

/// The names of all supply rails.
std::vector<std::string> railNames();

/// A group at work: its parameter block and where each input came from.
struct Running {
    std::string name;
    const Block* block = nullptr;
    int count = 1;
    std::unique_ptr<Instance> instance;
    std::map<std::string, InputValue::Origin, std::less<>> origins;
    std::vector<MissingRow> missingRows;

    void set(const ZelmCellInfo& cell, const Value& value, InputValue::Origin origin);
    bool isSet(std::string_view cell) const;
    Value get(std::string_view cell) const;
    int whole(std::string_view cell) const;
    std::string text(std::string_view cell) const;
    InputValue::Origin originOf(std::string_view cell) const;
    /// The input that holds the voltage of a rail, if the block has one.
    const ZelmCellInfo* railInput(const std::string& rail) const;
    /// The rail of the group's I/O bank.
    std::string bankRail() const;
};

/// Makes and calculates the groups of a design: sets their inputs, carries clock accounting into the blocks that it
/// feeds, and rail voltages everywhere.
std::vector<Running> start(const Design& design, const RailVolts& rails, const ResolvedDevice* device,
                           std::vector<Carried>& carried, std::vector<std::string>& warnings);

} // namespace zelm::host
