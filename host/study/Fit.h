#pragma once

#include "host/estimate/Results.h"

#include <optional>
#include <string>
#include <vector>

namespace zelm::host {

struct FitWish {
    std::string speed;       ///< grades and package of the parts to try; empty: all
    std::string temperature; ///< the part's letter (i) or the word (INDUSTRIAL)
    std::string package;
    unsigned jobs = 1;
};

struct FitSide {
    std::string process;
    double totalWatts = 0.0;
    double staticWatts = 0.0;
    double junction = 0.0; ///< NaN, as the watts, if the device runs away
};

/// A design on one part of the catalogue.
struct FitPart {
    std::string part;
    std::string device;
    std::string package;
    bool isDesigns = false;
    std::string why;                  ///< the part can't be estimated
    std::vector<Utilisation> lacking; ///< resources of which the design uses more than there are
    std::vector<std::string> broken;  ///< budgets, regulators and limits, by name
    std::vector<std::string> notes;   ///< warnings that the design doesn't get on its own part
    std::vector<FitSide> sides;

    bool fits() const
    {
        return why.empty() && lacking.empty();
    }
    bool keeps() const
    {
        return why.empty() && broken.empty();
    }
};

struct Fit {
    std::string design;
    std::string part; ///< the design's own, as it names it
    bool hasBudgets = false;
    std::vector<FitPart>
        parts; ///< those that fit and keep everything first, by total power on the design's process side
};

/// Estimates a design on each orderable part of the catalogue: grades come from the part. An Error if the design names
/// no device, or if no part has what is wished for.
Fit fit(const std::string& designFile, const FitWish& wish);

} // namespace zelm::host
