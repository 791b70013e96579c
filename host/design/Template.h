#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace zelm::host {

/// The kinds of designs to begin with: blank, controller, network, radio, vision.
std::vector<std::string> templateNames();

/// What a new design is made for.
struct TemplateDevice {
    std::string name;                                  ///< as the data files have it: ZQ4410
    std::string part;                                  ///< as the design names it
    std::map<std::string, int> resources;              ///< groups that need others are left out
    std::vector<std::pair<std::string, double>> rails; ///< with their volts
};

/// A supply of a new design: all rails of one voltage.
struct TemplateSupply {
    double volts = 0.0;
    std::vector<std::string> rails;
    double maxAmperes = 0.0;
};

/// A commented design of a kind, in the form of zelm format. It estimates as it stands; what a person has to fill in is
/// marked. Without supplies it has none. An Error names the kinds.
std::string templateDesign(const std::string& kind, const TemplateDevice& device,
                           const std::vector<TemplateSupply>& supplies = {});

} // namespace zelm::host
