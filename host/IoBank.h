#pragma once

#include "host/Running.h"

#include <string>
#include <vector>

namespace zelm::host {

/// An I/O standard of one bank kind.
struct IoStandard {
    std::string bank;      ///< the block: Selv or Nalt
    std::string direction; ///< "input" or "output"
    std::string name;
    float volts = 0.0f; ///< the bank rail that the standard is made for
};

const std::vector<IoStandard>& ioStandards();
/// The table of standards, for people.
std::string listStandards(bool json);

/// Gives an I/O group's bank the voltage of its standard unless the design sets it, and warns where they don't fit.
void setBankVoltage(Running& group, const RailVolts& rails, std::vector<std::string>& warnings);

} // namespace zelm::host
