#pragma once

#include "host/design/Design.h"

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace zelm::host {

/// A device as the static power model and the resource tables know it.
struct ResolvedDevice {
    std::string name;   ///< key of the leakage tables
    std::string part;   ///< orderable part, if one was given
    std::string family; ///< series name
    std::string process;
    int speedGrade = 0;             ///< its number; 0 if the grade isn't one
    std::vector<std::string> names; ///< what data files call it: device, die, internal name
    std::vector<std::pair<std::string, std::string>> staticInputs; ///< cell and word: grades, process, device name
    std::map<std::string, int> resources;
    std::map<std::string, float> volts; ///< nominal, by rail, for the grades; of those rails that have any
};

/// Finds the device of a design that names one, and checks its grades; an Error names the legal words.
std::shared_ptr<const ResolvedDevice> resolve(const Design& design);

} // namespace zelm::host
