#pragma once

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

/// Whether a buffer of a standard drives or receives a pair: two pins.
bool isPair(const std::string& standard);

/// The standards of all banks, from their data files.
const std::vector<IoStandard>& ioStandards();

} // namespace zelm::host
