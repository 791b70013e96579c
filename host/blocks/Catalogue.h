#pragma once

#include "host/blocks/Block.h"

#include <map>
#include <string>
#include <vector>

namespace zelm::host {

/// The fields of an orderable part: device, package, speed, voltage grade, temperature letter, screen letter.
enum PartField { deviceField, packageField, speedField, voltageField, temperatureField, screenField, gradedFields };

/// The devices of the catalogue, in small letters as its tables have them.
std::vector<std::string> deviceNames();
std::vector<std::string> orderableParts();
bool isInFamily(const std::string& family, const std::string& part);
/// How many of each resource a part has; a device without a package is asked for by its name and the separator.
std::map<std::string, int> resourcesOf(const std::string& family, const std::string& part);

/// The keys below a chain of keys in a block's tables.
std::vector<std::string> sortedKeys(const Block& block, std::vector<std::string> chain);

} // namespace zelm::host
