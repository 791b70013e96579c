#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace zelm::host {

/// How far the numbers of a block may be off: one standard deviation over the number.
struct Uncertainty {
    std::string kind; ///< dynamic, static, process or temperature; empty for a rail that moves apart from the others
    std::string rail;
    double relative = 0.0;
    std::string reason;
};

/// By block, what the first uncertainty.json of the data directories says; empty if none of them has the file.
std::map<std::string, std::vector<Uncertainty>, std::less<>> uncertainties();

/// "dynamic 12 %: a hard macro"
std::string uncertaintyWords(const Uncertainty& uncertainty);

} // namespace zelm::host
