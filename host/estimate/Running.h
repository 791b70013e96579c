#pragma once

#include "host/design/Design.h"
#include "host/estimate/Origin.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::host {

/// A group at work: its parameter block and where each input came from.
struct Running {
    std::string name;
    const Block* block = nullptr;
    int count = 1;
    std::string place; ///< the group's path in the design
    std::unique_ptr<Instance> instance;
    std::map<std::string, Origin, std::less<>> origins;
    std::vector<MissingRow> missingRows;

    /// With the group's inputs that this block has: a group may reach more blocks than its own.
    Running(const Block& ofBlock, const Group& group, const std::string& asName);

    void set(const ZelmCellInfo& cell, const Value& value, Origin origin);
    bool isSet(std::string_view cell) const;
    Value get(std::string_view cell) const;
    int whole(std::string_view cell) const;
    std::string text(std::string_view cell) const;
    Origin originOf(std::string_view cell) const;
    /// The input that holds the voltage of a rail, if the block has one.
    const ZelmCellInfo* railInput(const std::string& rail) const;
    /// The rail of the group's I/O bank.
    std::string bankRail() const;

    void calculate();
};

} // namespace zelm::host
