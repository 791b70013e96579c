#pragma once

#include "host/estimate/Results.h"

#include <vector>

namespace zelm::host {

/// What one rail asks of its supply.
struct SupplyLoad {
    std::string rail;
    double volts = 0.0;
    double dynamicAmperes = 0.0;
    double dynamicWatts = 0.0;
    double staticAmperes = 0.0; ///< its own: what another rail's current holds of it is taken out there
    double powerUpAmperes = 0.0;
};

/// The loads of a side's rails. Power-up currents are the largest of all sides: the model knows the worst case only.
std::vector<SupplyLoad> supplyLoads(const Side& side, const std::vector<Side>& sides);

/// The efficiency of a supply at a load: on the lines between the points of its curve, held beyond them.
double efficiencyAt(const Supply& supply, double amperes);

/// The tree of supplies under these loads. A rail whose static current another rail's holds is fed by that rail's
/// supply unless it stands in one itself.
SupplyTree supplyTree(const Supplies& supplies, const std::vector<SupplyLoad>& loads);

/// Adds to each side of an estimate its tree, and warnings of rails that nobody feeds. An Error tells of rails of
/// different volts on one supply.
void addSupplies(Estimate& estimate);

} // namespace zelm::host
